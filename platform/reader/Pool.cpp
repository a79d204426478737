// SPDX-License-Identifier: GPL-3.0-or-later
#include "Pool.h"

#include "platform/EndedProcesses.h"

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

// A reader that was so quick is asked ahead, and one that is not takes longer than that.
constexpr auto quick = 30ms;

// Decoders leak and fragment. A new reader costs 20 ms of a processor, and 50 with its plugins.
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
}

void Pool::ask(size_t level, Job job) {
    {
        const std::lock_guard lock(m_mutex);
        job.level = level;
        m_queue.push(std::move(job));
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
    [[maybe_unused]] const auto written = ::write(m_wakeUp.number(), &one, sizeof one);
}

void Pool::run() {
    while (true) {
        {
            const std::lock_guard lock(m_mutex);
            if (m_stop)
                break;
        }
        feed();
        startWanted();

        std::vector<pollfd> waited{{m_wakeUp.number(), POLLIN, 0}};
        for (const Seat& seat : m_seats)
            waited.push_back({seat.child ? seat.child->socket() : -1, POLLIN, 0});
        ::poll(waited.data(), waited.size(), pause());
        if (waited[0].revents) {
            quint64 count;
            [[maybe_unused]] const auto taken = ::read(m_wakeUp.number(), &count, sizeof count);
        }
        for (size_t i = 0; i < m_seats.size(); ++i) {
            // To hear one may have been to ask another, and to find it gone.
            if (waited[i + 1].revents && m_seats[i].child)
                hear(m_seats[i]);
            watch(m_seats[i]);
        }
    }
    m_seats.clear();
    // Most are gone at once. What hangs in the kernel is left to other pools, and in the end to init.
    for (int tries = 0; tries < 25 && EndedProcesses::reap(); ++tries)
        std::this_thread::sleep_for(2ms);
}

// Milliseconds until something is due that no descriptor tells of; -1 for never.
int Pool::pause() {
    auto until = Clock::time_point::max();
    const auto now = Clock::now();
    for (const Seat& seat : m_seats) {
        if (!seat.child)
            continue;
        if (!seat.greeted)
            until = std::min(until, seat.deadline);
        else if (!seat.asked.empty())
            until = std::min({until, seat.deadline, now + watchInterval});
        else if (m_options.idleLimit > 0ms)
            until = std::min(until, seat.since + m_options.idleLimit);
        if (seat.asked.size() > 1 && seat.asked.back().job)
            until = std::min(until, seat.since + quick);
    }
    if (const auto next = EndedProcesses::reap())
        until = std::min(until, now + *next);
    if (until == Clock::time_point::max())
        return -1;
    return int(std::chrono::ceil<std::chrono::milliseconds>(std::max(until - now, Clock::duration::zero())).count());
}

void Pool::startWanted() {
    size_t wanted = 0;
    {
        const std::lock_guard lock(m_mutex);
        m_queue.prune();
        wanted = std::exchange(m_warm, false) ? m_seats.size() : m_queue.size();
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
    seat.since = Clock::now();
    seat.deadline = seat.since + startLimit;
    ++m_startedCount;
    if (!seat.child)
        m_noStartBefore = Clock::now() + startPause;
}

void Pool::feed() {
    for (Seat& seat : m_seats) {
        if (isIdle(seat))
            give(seat);
    }
    const auto isAtWork = [](const Seat& seat) { return seat.greeted && !seat.asked.empty(); };
    if (!std::all_of(m_seats.begin(), m_seats.end(), isAtWork))
        return;
    for (Seat& seat : m_seats) {
        if (isAskedAhead(seat))
            give(seat);
    }
}

bool Pool::isAskedAhead(const Seat& seat) const {
    return seat.wasQuick && seat.asked.size() == 1 && seat.answers + 2 < answersOfOneChild;
}

// A reader that was sent where others hang would hang there too, and after it the next.
std::optional<Job> Pool::nextThatCanBeRead() {
    while (std::optional<Job> job = takeNext()) {
        if (!EndedProcesses::hangAt(job->request.path))
            return job;
        job->deliver(std::nullopt);
    }
    return std::nullopt;
}

std::optional<Job> Pool::takeNext() {
    const std::lock_guard lock(m_mutex);
    return m_queue.pop();
}

void Pool::give(Seat& seat) {
    std::optional<Job> job = nextThatCanBeRead();
    if (!job)
        return;
    if (++seat.lastNumber == 0)
        ++seat.lastNumber;
    job->request.number = seat.lastNumber;
    const bool isSent = seat.child->send(job->request);
    seat.asked.push_back({seat.lastNumber, std::chrono::milliseconds(job->request.limit), std::move(job)});
    if (seat.asked.size() == 1)
        begin(seat, Clock::now());
    if (!isSent)
        failed(seat);
}

// The first that it was asked, or to be idle.
void Pool::begin(Seat& seat, Clock::time_point now) {
    seat.since = now;
    if (!seat.asked.empty())
        seat.deadline = now + (seat.asked.front().job ? seat.asked.front().limit : unwantedLimit);
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
        m_failedStarts = 0;
        return begin(seat, Clock::now());
    }
    // An answer to no question, or a second one to the same.
    if (seat.asked.empty() || answer.number != seat.asked.front().number)
        return failed(seat);
    std::optional<Job>& asked = seat.asked.front().job;
    std::optional<Found> found;
    if (answer.found && asked) {
        found = Found{answer.details, seat.child->bulk(answer.number, answer.bulk)};
        if (!asked->makesSense(*found))
            return failed(seat);
    }
    const std::optional<Job> job = std::exchange(asked, std::nullopt);
    seat.asked.pop_front();
    const auto now = Clock::now();
    seat.wasQuick = now - seat.since < quick;
    begin(seat, now);
    if (++seat.answers >= answersOfOneChild && seat.asked.empty())
        seat = {};
    feed(); // before the picture is unpacked: no reader need wait for that
    if (job && !job->isCancelled())
        job->deliver(std::move(found));
}

void Pool::watch(Seat& seat) {
    if (!seat.child)
        return;
    const auto now = Clock::now();
    if (isIdle(seat)) {
        if (m_options.idleLimit > 0ms && now >= seat.since + m_options.idleLimit)
            seat = {};
        return;
    }
    for (Asked& asked : seat.asked) {
        if (!asked.job || !asked.job->isCancelled())
            continue;
        asked.job.reset();
        seat.child->stop(asked.number);
        if (&asked == &seat.asked.front())
            seat.deadline = std::min(seat.deadline, now + unwantedLimit);
    }
    if (seat.asked.size() > 1 && seat.asked.back().job && now >= seat.since + quick) {
        seat.child->stop(seat.asked.back().number);
        putBack(seat.asked.back());
    }
    if (now >= seat.deadline)
        failed(seat);
}

void Pool::putBack(Asked& waiting) {
    const std::lock_guard lock(m_mutex);
    m_queue.push(*std::exchange(waiting.job, std::nullopt));
}

void Pool::failed(Seat& seat) {
    const bool neverReady = !seat.greeted;
    for (size_t waiting = 1; waiting < seat.asked.size(); ++waiting) {
        if (seat.asked[waiting].job)
            putBack(seat.asked[waiting]);
    }
    const std::optional<Job> job = seat.asked.empty() ? std::nullopt : std::move(seat.asked.front().job);
    seat = {};
    if (neverReady && ++m_failedStarts >= startsBeforePause) {
        m_failedStarts = 0;
        m_noStartBefore = Clock::now() + startPause;
    }
    if (job && !job->isCancelled())
        job->deliver(std::nullopt);
}

void Pool::giveUpQueue() {
    while (const std::optional<Job> job = takeNext())
        job->deliver(std::nullopt);
}

} // namespace lumbra::reader
