// A view of folders that is kept by file events alone, to be compared with the truth on disk: what a consumer of
// FileEvents would know. Also the few strange things that tests do to folders.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/FileEvents.h"

#include <QByteArray>

#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>
#include <thread>

namespace lumbra {

class EventMirror {
public:
    struct Entry {
        qint64 size = 0;
        bool starred = false;

        friend bool operator==(const Entry&, const Entry&) = default;
    };
    using View = std::map<std::string, Entry>;

    // Returns when all is watched and the view equals the disk.
    explicit EventMirror(const QList<Location>& roots, FileEvents::Options options = {});
    ~EventMirror();

    FileEvents& events() { return *m_events; }

    // The regular files below the roots, hidden folders (when `enters` says so) and missing roots left out.
    View truth() const;
    View view() const;

    // Waits until the view equals the truth; says how it differs if it never does.
    bool becomesTrue(double seconds = 20);

    // All events so far, by batch.
    QList<QList<FileEvent>> batches() const;
    bool reported(const Location& path, quint32 flags = 0) const;
    void forgetBatches();

private:
    void follow(const std::stop_token& stop);
    void apply(const FileEvent& event);
    void scan(const std::string& folder, View& into) const;

    const QList<Location> m_roots;
    const std::function<bool(std::string_view)> m_enters;
    mutable std::mutex m_mutex;
    std::condition_variable_any m_arrived;
    std::deque<QList<FileEvent>> m_waiting;
    QList<QList<FileEvent>> m_batches;
    View m_view;
    std::unique_ptr<FileEvents> m_events;
    std::jthread m_follower;
};

// Puts this process, while it has one thread, into mounts of its own where it may mount: as root, or as the root of a
// user namespace. Absent when done, otherwise why not.
std::optional<QByteArray> enterPrivateMounts();

// Runs a shell script in the folder; false when it fails.
bool runScript(const Location& folder, const QByteArray& script);

} // namespace lumbra
