// One reader process as its parent sees it: started, asked, listened to, and ended without waiting for it.
//
// Used by one thread, and by the same one throughout: the process is told to die with the thread that started it.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SharedBlock.h"
#include "platform/Descriptor.h"

#include <QByteArray>
#include <QList>

#include <sys/types.h>

#include <memory>
#include <optional>

namespace lumbra::reader {

class Child {
public:
    struct Options {
        QByteArray program;        // absolute path
        bool idlePriority = false; // processor and disk only when nobody else wants them

        // Taken here, by whoever makes the options: a thread that starts readers later would read the process's own
        // while another changes it.
        QList<QByteArray> environment = environmentNow();
    };

    // This process's environment but for what leads to a display or a bus, and what the decoders must know when they
    // start.
    static QList<QByteArray> environmentNow();

    // Returns as soon as the process exists; its greeting comes later. Nothing if it can't be started.
    static std::unique_ptr<Child> start(const Options& options);

    // Ends the process at once, without waiting for its end.
    ~Child();

    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    // To poll for input.
    int socket() const { return m_socket.number(); }

    // False if the process does not take it, which it does not do when it is well.
    bool send(const Request& request);

    // Tells the process that nobody waits for that answer any more; it still sends one.
    void stop(quint32 number) { m_block.stop(number); }

    enum class Received { nothing, answer, nonsense, gone };

    // Takes one message, without waiting. Writes `answer` only for Received::answer.
    Received receive(Answer* answer);

    // A copy of what the answer of that number left in its arena.
    QByteArray bulk(quint32 number, qsizetype size) const;

private:
    Child(pid_t process, Descriptor socket, Descriptor memory, SharedBlock block);

    pid_t m_process;
    Descriptor m_socket;
    Descriptor m_memory; // of the block
    SharedBlock m_block;
    QList<QByteArray> m_files; // that it works on, or did last, and one that waits
    int m_unanswered = 0;
};

} // namespace lumbra::reader
