// SPDX-License-Identifier: GPL-3.0-or-later
#include "TransferProgress.h"

#include "platform/Phrases.h"

#include <algorithm>

namespace lumbra {

TransferProgress::TransferProgress(Library* library, std::chrono::milliseconds delay, QObject* parent)
    : QObject(parent), m_library(library) {
    m_delay.setSingleShot(true);
    m_delay.setInterval(delay);
    connect(&m_delay, &QTimer::timeout, this, [this] { setShown(m_library->transfer().has_value()); });
    connect(library, &Library::transferChanged, this, &TransferProgress::follow);
    follow();
}

void TransferProgress::follow() {
    const auto progress = m_library->transfer();
    if (!progress) {
        m_delay.stop();
        return setShown(false);
    }
    if (!m_shown && !m_delay.isActive())
        m_delay.start();
    m_progress = *progress;
    Q_EMIT changed();
}

void TransferProgress::setShown(bool shown) {
    if (m_shown == shown)
        return;
    m_shown = shown;
    Q_EMIT shownChanged();
}

QString TransferProgress::figures() const {
    QStringList parts;
    if (m_progress.fileCount > 1)
        parts.append(QStringLiteral("%1 of %2 files").arg(m_progress.files).arg(m_progress.fileCount));
    if (m_progress.byteCount > 0)
        parts.append(
            QStringLiteral("%1 of %2").arg(Phrases::bytes(m_progress.bytes), Phrases::bytes(m_progress.byteCount)));
    return parts.join(QStringLiteral(" · "));
}

double TransferProgress::value() const {
    const auto ratio = [](qint64 part, qint64 whole) {
        return whole > 0 ? std::clamp(double(part) / double(whole), 0.0, 1.0) : 0.0;
    };
    return m_progress.byteCount > 0 ? ratio(m_progress.bytes, m_progress.byteCount)
                                    : ratio(m_progress.files, m_progress.fileCount);
}

} // namespace lumbra
