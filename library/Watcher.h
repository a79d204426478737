// New work must appear the moment it lands. The watcher delivers batches of changed paths on the main thread; releasing
// it ends the stream. A change of paths means a new watcher.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/FileEvents.h"

#include <QObject>

#include <functional>
#include <memory>

namespace lumbra {

class Watcher {
public:
    using OnChange = std::function<void(const QList<FileEvent>&)>;
    using OnStarted = std::function<void()>;

    // `latency` in seconds. `onChange` runs on the thread that made the watcher, once for each batch. `onStarted` runs
    // there once, when every folder is watched: a walk that begins then misses nothing. Both may release the watcher.
    Watcher(const QList<Location>& paths, double latency, OnChange onChange, OnStarted onStarted = {});

    // No callback runs any more once this returns.
    ~Watcher();
    Q_DISABLE_COPY_MOVE(Watcher)

    // True from just before `onStarted`.
    bool hasStarted() const { return m_hasStarted; }

    // Brings all that has happened so far to `onChange` and then calls `onDelivered`, which may release the watcher:
    // another that had started before takes over without a gap.
    void deliverNow(std::function<void()> onDelivered);

    const FileEvents& events() const { return *m_events; }

private:
    bool m_hasStarted = false;
    QObject m_context; // its death drops the batches that are on their way
    std::unique_ptr<FileEvents> m_events;
};

} // namespace lumbra
