// Measures stalls of the main thread, where the environment asks for diagnostics: a thread of its own asks the main
// thread for a sign of life, again and again, and writes a line whenever that took too long.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>
#include <thread>

namespace lumbra {

class HangLog {
public:
    using Sink = std::function<void(const QString& line)>;

    // Watches the calling thread, which must have an event loop, and writes to the diagnostic log. Does nothing at all
    // unless the log is on.
    HangLog();

    // Watches in any case and hands each line to `sink`, on the watching thread.
    explicit HangLog(Sink sink);

    HangLog(const HangLog&) = delete;
    HangLog& operator=(const HangLog&) = delete;

    // The line for a wait; empty for one that is no stall.
    static QString lineFor(std::chrono::duration<double, std::milli> wait);

private:
    struct Answer;

    void watch(Sink sink);

    QObject m_here; // lives on the thread that is watched; what is posted to it is dropped with it
    std::shared_ptr<Answer> m_answer;
    std::jthread m_thread; // the last, so that it has ended when the others go
};

} // namespace lumbra
