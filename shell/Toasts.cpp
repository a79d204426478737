// SPDX-License-Identifier: GPL-3.0-or-later
#include "Toasts.h"

namespace lumbra {

Toasts::Toasts(Library* library, std::chrono::milliseconds time, QObject* parent)
    : QObject(parent), m_library(library) {
    m_time.setSingleShot(true);
    m_time.setInterval(time);
    m_time.setTimerType(Qt::PreciseTimer);
    connect(&m_time, &QTimer::timeout, this, &Toasts::remove);
    connect(library, &Library::toastChanged, this, &Toasts::follow);
    follow();
}

QString Toasts::symbol() const {
    return m_toast.symbol.value_or(m_toast.starred ? QStringLiteral("star.fill") : QStringLiteral("star.slash"));
}

void Toasts::undo() {
    if (!m_shown || !m_toast.undo)
        return;
    // Removed first: the action may raise a toast of its own.
    const auto action = m_toast.undo;
    remove();
    action();
}

void Toasts::follow() {
    const std::optional<Toast> toast = m_library->toast();
    m_shown = toast.has_value();
    if (!toast) {
        m_time.stop();
        Q_EMIT changed();
        return;
    }
    m_toast = *toast;
    m_time.start();
    Q_EMIT changed();
    Q_EMIT appeared();
}

void Toasts::remove() {
    const std::optional<Toast> toast = m_library->toast();
    if (toast && toast->id == m_toast.id)
        m_library->setToast(std::nullopt);
}

} // namespace lumbra
