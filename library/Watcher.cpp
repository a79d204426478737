// SPDX-License-Identifier: GPL-3.0-or-later
#include "Watcher.h"

#include "Scanner.h"

#include <QMetaObject>

namespace lumbra {

Watcher::Watcher(const QList<Location>& paths, double latency, OnChange onChange) : m_onChange(std::move(onChange)) {
    FileEvents::Options options;
    options.latency = latency;
    options.enters = [](std::string_view name) { return !Scanner::isInvisibleFolder(name); };
    m_events = std::make_unique<FileEvents>(paths, std::move(options), [this](QList<FileEvent> events) {
        QMetaObject::invokeMethod(
            &m_context, [this, events = std::move(events)] { m_onChange(events); }, Qt::QueuedConnection);
    });
}

Watcher::~Watcher() {
    // Ends the thread first, so that nothing is posted to a context that is going away.
    m_events.reset();
}

} // namespace lumbra
