// SPDX-License-Identifier: GPL-3.0-or-later
#include "Pool.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace lumbra::reader {

using namespace std::chrono_literals;

namespace {

// A reader links large libraries: from a cold disk that takes its time.
constexpr auto startLimit = 20s;

// Readers that fail before they greet are no use trying again and again.
constexpr int startsBeforePause = 3;
constexpr auto startPause = 30s;

// How often it is looked whether somebody still waits for what is being read, and how long a reader may go on with what
// nobody waits for.
constexpr auto watchInterval = 200ms;
constexpr auto unwantedLimit = 500ms;

// Decoders leak and fragment. A new reader costs a tenth of a second.
constexpr size_t answersOfOneChild = 2000;

constexpr size_t queueWorthPruning = 256;

} // namespace

Pool::Pool(Options options)
    : m_options(std::move(options)),
      m_seats(std::max<size_t>(1, m_options.children)),
      m_wakeUp(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      m_thread([this] { run(); }) {}

Pool::~Pool() {
    {
        const std::lock_guard lock(m_mutex);
        m_stop = true;
    }
    wake();
    m_thread.join();
    ::close(m_wakeUp);
}

void Pool::ask(size_t level, Job job) {
    {
        const std::lock_guard lock(m_mutex);
        m_queue.push(level, std::move(job));
        if (m_queue.size() > queueWorthPruning)
            m_queue.prune();
    }
    wake();
}

void Pool::warmUp() {
    {
        const std::lock_guard lock(m_mutex);
        m_warm = true;
    }
    wake();
}

void Pool::wake() {
    const quint64 one = 1;
    [[maybe_unused]] const auto written = ::write(m_wakeUp, &one, sizeof one);
}

void Pool::run() {
    while (true) {
        {
            const std::lock_guard lock(m_mutex);
            if (m_stop)
                break;
        }
        for (Seat& seat : m_seats)
            feed(seat);
        startWanted();

        std::vector<pollfd> waited{{m_wakeUp, POLLIN, 0}};
        for (const Seat& seat : m_seats)
            waited.push_back({seat.child ? seat.child->socket() : -1, POLLIN, 0});
        ::poll(waited.data(), waited.size(), pause());
        if (waited[0].revents) {
            quint64 count;
            [[maybe_unused]] const auto taken = ::read(m_wakeUp, &count, sizeof count);
        }
        for (size_t i = 0; i < m_seats.size(); ++i) {
            if (waited[i + 1].revents)
                hear(m_seats[i]);
            watch(m_seats[i]);
        }
    }
    m_seats.clear();
    // Whatever hangs in the kernel is left to init.
    for (int tries = 0; tries < 100 && !Child::reapEnded(); ++tries)
        std::this_thread::sleep_for(2ms);
}

// Milliseconds until something is due that no descriptor tells of; -1 for never.
int Pool::pause() {
    auto until = Clock::time_point::max();
    const auto now = Clock::now();
    for (const Seat& seat : m_seats) {
        if (!seat.child)
            continue;
        if (seat.job)
            until = std::min({until, seat.deadline, now + watchInterval});
        else if (!seat.greeted)
            until = std::min(until, seat.deadline);
        else if (m_options.idleLimit > 0ms)
            until = std::min(until, seat.idleSince + m_options.idleLimit);
    }
    if (!Child::reapEnded())
        until = std::min(until, now + 50ms);
    if (until == Clock::time_point::max())
        return -1;
    return int(std::chrono::ceil<std::chrono::milliseconds>(std::max(until - now, Clock::duration::zero())).count());
}

void Pool::startWanted() {
    size_t wanted;
    {
        const std::lock_guard lock(m_mutex);
        m_queue.prune();
        wanted = m_warm ? m_seats.size() : m_queue.size();
        m_warm = false;
    }
    for (Seat& seat : m_seats) {
        const bool comesFree = seat.child && !seat.greeted;
        if (comesFree && wanted > 0)
            --wanted;
    }
    for (Seat& seat : m_seats) {
        if (!seat.child && wanted > 0 && Clock::now() >= m_noStartBefore) {
            start(seat);
            --wanted;
        }
    }
    const auto isEmpty = [](const Seat& seat) { return seat.child == nullptr; };
    if (Clock::now() < m_noStartBefore && std::all_of(m_seats.begin(), m_seats.end(), isEmpty))
        giveUpQueue();
}

void Pool::start(Seat& seat) {
    seat = {};
    seat.child = Child::start(m_options.child);
    seat.deadline = Clock::now() + startLimit;
    ++m_startedCount;
    if (!seat.child)
        m_noStartBefore = Clock::now() + startPause;
}

void Pool::feed(Seat& seat) {
    if (!isIdle(seat))
        return;
    {
        const std::lock_guard lock(m_mutex);
        seat.job = m_queue.pop();
    }
    if (!seat.job)
        return;
    if (++m_lastNumber == 0)
        ++m_lastNumber;
    seat.job->request.number = m_lastNumber;
    seat.isStopped = false;
    seat.deadline = Clock::now() + std::chrono::milliseconds(seat.job->request.limit);
    if (!seat.child->send(seat.job->request))
        failed(seat);
}

void Pool::hear(Seat& seat) {
    Answer answer;
    switch (seat.child->receive(&answer)) {
    case Child::Received::nothing:
        return;
    case Child::Received::answer:
        return answered(seat, answer);
    case Child::Received::nonsense:
    case Child::Received::gone:
        return failed(seat);
    }
}

void Pool::answered(Seat& seat, const Answer& answer) {
    if (!seat.greeted && answer.number == 0) {
        seat.greeted = true;
        seat.idleSince = Clock::now();
        m_failedStarts = 0;
        return;
    }
    // An answer to no question, or a second one to the same.
    if (!seat.job || answer.number != seat.job->request.number)
        return failed(seat);
    std::optional<Found> found;
    if (answer.found) {
        found = Found{answer.details, seat.child->bulk(answer.bulk)};
        if (!seat.job->makesSense(*found))
            return failed(seat);
    }
    const Job job = *std::exchange(seat.job, std::nullopt);
    seat.idleSince = Clock::now();
    if (++seat.answers == answersOfOneChild)
        seat = {};
    else
        feed(seat); // before the picture is unpacked: the reader need not wait for that
    if (!job.isCancelled())
        job.deliver(std::move(found));
}

void Pool::watch(Seat& seat) {
    if (!seat.child)
        return;
    const auto now = Clock::now();
    if (isIdle(seat)) {
        if (m_options.idleLimit > 0ms && now >= seat.idleSince + m_options.idleLimit)
            seat = {};
        return;
    }
    if (seat.job && !seat.isStopped && seat.job->isCancelled()) {
        seat.isStopped = true;
        seat.child->sendStop();
        seat.deadline = std::min(seat.deadline, now + unwantedLimit);
    }
    if (now >= seat.deadline)
        failed(seat);
}

void Pool::failed(Seat& seat) {
    const bool neverReady = !seat.greeted;
    const std::optional<Job> job = std::exchange(seat.job, std::nullopt);
    seat = {};
    if (neverReady && ++m_failedStarts >= startsBeforePause) {
        m_failedStarts = 0;
        m_noStartBefore = Clock::now() + startPause;
    }
    if (job && !job->isCancelled())
        job->deliver(std::nullopt);
}

void Pool::giveUpQueue() {
    while (true) {
        std::optional<Job> job;
        {
            const std::lock_guard lock(m_mutex);
            job = m_queue.pop();
        }
        if (!job)
            return;
        job->deliver(std::nullopt);
    }
}

} // namespace lumbra::reader
