// SPDX-License-Identifier: GPL-3.0-or-later
#include "Watcher.h"

#include "Scanner.h"

#include <QMetaObject>

namespace lumbra {

Watcher::Watcher(const QList<Location>& paths, double latency, OnChange onChange, OnStarted onStarted) {
    FileEvents::Options options;
    options.latency = latency;
    options.enters = [](std::string_view name) { return !Scanner::isInvisibleFolder(name); };
    options.started = [this, onStarted = std::move(onStarted)] {
        const auto start = [this, onStarted] {
            m_hasStarted = true;
            if (onStarted)
                onStarted();
        };
        QMetaObject::invokeMethod(&m_context, start, Qt::QueuedConnection);
    };
    // A callback that releases the watcher still stands on its own feet: each call carries a reference to it.
    auto shared = std::make_shared<const OnChange>(std::move(onChange));
    m_events = std::make_unique<FileEvents>(paths, std::move(options), [this, shared](QList<FileEvent> events) {
        QMetaObject::invokeMethod(
            &m_context, [shared, events = std::move(events)] { (*shared)(events); }, Qt::QueuedConnection);
    });
}

Watcher::~Watcher() {
    // Ends the thread first, so that nothing is posted to a context that is going away.
    m_events.reset();
}

void Watcher::deliverNow(std::function<void()> onDelivered) {
    m_events->deliverNow([this, onDelivered = std::move(onDelivered)] {
        QMetaObject::invokeMethod(&m_context, onDelivered, Qt::QueuedConnection);
    });
}

} // namespace lumbra
