// One reader process as its parent sees it: started, asked, listened to, and ended without waiting for it.
//
// Used by one thread, and by the same one throughout: the process is told to die with the thread that started it.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Protocol.h"

#include <sys/types.h>

#include <memory>
#include <optional>

namespace lumbra::reader {

class Child {
public:
    struct Options {
        QByteArray program;        // absolute path
        bool idlePriority = false; // processor and disk only when nobody else wants them
    };

    // Returns as soon as the process exists; its greeting comes later. Nothing if it can't be started.
    static std::unique_ptr<Child> start(const Options& options);

    // Ends the process at once. It is reaped by `reapEnded`.
    ~Child();

    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    // To poll for input.
    int socket() const { return m_socket; }

    // False if the process does not take it, which it does not do when it is well.
    bool send(const Request& request);

    // Tells the process that nobody waits for its answer any more; it still sends one.
    void sendStop();

    enum class Received { nothing, answer, nonsense, gone };

    // Takes one message, without waiting. Writes `answer` only for Received::answer.
    Received receive(Answer* answer);

    // A copy of what the last answer left in the arena.
    QByteArray bulk(qsizetype size) const;

    // Reaps what has ended since, without waiting; false while some process has not.
    static bool reapEnded();

private:
    Child(pid_t process, int socket, int arena, uchar* memory);

    pid_t m_process;
    int m_socket;
    int m_arena;
    uchar* m_memory;
};

} // namespace lumbra::reader
