// Keeps a few reader processes at work on one queue of requests, and replaces those that crash, stall or babble.
//
// One thread starts, feeds, hears and ends the readers. A reader is started when there is work that no idle one can
// take, and may be ended when there has been none for a while. One that was quick is asked ahead when all are at work,
// so that it need not wait for its next request; if it is not quick then, what waits for it goes back to the queue.
// What is cancelled while a reader works on it is stopped. The file at which a reader comes to grief reads as nothing
// and is not tried again; the rest of the queue goes to its successor. A reader that can't even be ended, since it
// hangs in a share that has stopped answering, is left alone, and what else lies there reads as nothing until it has
// gone. When readers do not even start, the queue is answered with nothing, and the next try waits a while.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Child.h"
#include "Queue.h"

#include <atomic>
#include <chrono>
#include <deque>
#include <mutex>
#include <thread>

namespace lumbra::reader {

class Pool {
public:
    struct Options {
        Child::Options child;
        size_t children = 2;
        std::chrono::milliseconds idleLimit{0}; // that a reader is kept without work; 0 for as long as the pool lives
    };

    explicit Pool(Options options);

    // Ends the readers and the thread; what still waits is dropped without being delivered.
    ~Pool();

    Pool(const Pool&) = delete;
    Pool& operator=(const Pool&) = delete;

    // Any thread. Level 0 is the most urgent. The request's number is given by the pool.
    void ask(size_t level, Job job);

    // Starts all readers now, so that the first request need not wait for one.
    void warmUp();

    // How many readers were started so far; any thread.
    size_t startedCount() const { return m_startedCount; }

private:
    using Clock = std::chrono::steady_clock;

    // What a reader was asked and has not answered.
    struct Asked {
        quint32 number;
        std::chrono::milliseconds limit;
        std::optional<Job> job; // none once the reader was told to stop
    };

    // A place for one reader.
    struct Seat {
        std::unique_ptr<Child> child;
        bool greeted = false;
        std::deque<Asked> asked; // what it works on, and perhaps one that waits
        quint32 lastNumber = 0;
        size_t answers = 0;
        bool wasQuick = false;           // with its last answer
        Clock::time_point since = {};    // when it began to start, to work on the first or to be idle
        Clock::time_point deadline = {}; // while starting or at work
    };

    void run();
    void startWanted();
    void start(Seat& seat);
    void feed();
    bool isAskedAhead(const Seat& seat) const;
    std::optional<Job> nextThatCanBeRead();
    std::optional<Job> takeNext();
    void give(Seat& seat);
    void begin(Seat& seat, Clock::time_point now);
    void hear(Seat& seat);
    void watch(Seat& seat);
    static bool isIdle(const Seat& seat) { return seat.child && seat.greeted && seat.asked.empty(); }
    void answered(Seat& seat, const Answer& answer);
    void failed(Seat& seat);
    void putBack(Asked& waiting);
    void giveUpQueue();
    int pause();
    void wake();

    const Options m_options;
    std::mutex m_mutex; // guards the queue, m_stop and m_warm
    Queue m_queue;
    bool m_stop = false;
    bool m_warm = false; // all are to run
    std::atomic<size_t> m_startedCount = 0;

    // The thread's own.
    std::vector<Seat> m_seats;
    int m_failedStarts = 0;
    Clock::time_point m_noStartBefore;

    const Descriptor m_wakeUp; // an eventfd
    std::thread m_thread;
};

} // namespace lumbra::reader
