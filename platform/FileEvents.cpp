// SPDX-License-Identifier: GPL-3.0-or-later
#include "FileEvents.h"

#include "Descriptor.h"
#include "Startup.h"
#include "Tasks.h"
#include "events/BatchPace.h"
#include "events/ChangeReader.h"
#include "events/EventBatch.h"
#include "events/FolderPoll.h"
#include "events/FolderWatches.h"
#include "events/WatchedRoots.h"

#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <array>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace lumbra {

namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

// How often a missing root is looked for. Nothing tells when a path comes to exist somewhere above it.
constexpr auto seekInterval = 1s;

// In an endless stream of events a batch still leaves in time.
constexpr auto longestRead = 50ms;

} // namespace

class FileEvents::Worker {
public:
    Worker(const QList<Location>& roots, Options options, std::function<void(QList<FileEvent>)> deliver)
        : m_started(std::move(options.started)),
          m_deliver(std::move(deliver)),
          m_watches(std::move(options.enters), options.watchLimit, m_stopping),
          m_roots(roots, m_watches, m_batch),
          m_pace(std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(options.latency))),
          m_reader(m_watches, m_roots, m_batch, m_pace),
          m_poll(m_watches, m_batch, m_stopping),
          m_thread([this](const std::stop_token& stop) { run(stop); }) {}

    Q_DISABLE_COPY_MOVE(Worker)

    // To be called before it is destroyed.
    void stop() {
        m_stopping = true;
        m_thread.request_stop();
        wake();
        m_thread.join();
    }

    Status status() const {
        const std::lock_guard lock(m_mutex);
        return m_status;
    }

    bool waitUntilWatching(double seconds) {
        std::unique_lock lock(m_mutex);
        const quint64 asked = ++m_asked;
        wake();
        return m_answer.wait_for(lock, std::chrono::duration<double>(seconds),
                                 [this, asked] { return m_answered >= asked; });
    }

    void deliverNow(std::function<void()> delivered) {
        const std::lock_guard lock(m_mutex);
        m_fences.push_back({++m_asked, std::move(delivered)});
        wake();
    }

private:
    using TimePoint = Clock::time_point;

    struct Fence {
        quint64 asked;
        std::function<void()> delivered;
    };

    void wake() {
        const quint64 one = 1;
        [[maybe_unused]] const ssize_t written = ::write(m_wake.number(), &one, sizeof one);
    }

    void run(const std::stop_token& stop);
    void seekRoots();
    void sleep();
    std::vector<Fence> reachedFences();
    void flush();
    void publish(bool isComplete);
    std::optional<TimePoint> nextDeadline() const;

    const std::function<void()> m_started;
    const std::function<void(QList<FileEvent>)> m_deliver;

    std::atomic<bool> m_stopping = false;
    const Descriptor m_wake{::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)};
    // Tells when anything is mounted or unmounted, which the folders themselves do not always tell.
    const Descriptor m_mounts{::open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC)};

    // The thread's own.
    events::EventBatch m_batch;
    events::FolderWatches m_watches;
    events::WatchedRoots m_roots;
    events::BatchPace m_pace;
    events::ChangeReader m_reader;
    events::FolderPoll m_poll;
    bool m_isAllRead = true;
    TimePoint m_nextSeek; // for a root that is missing
    quint64 m_heard = 0;  // the last question that came before the present reading

    mutable std::mutex m_mutex;
    std::condition_variable m_answer;
    Status m_status;
    quint64 m_asked = 0; // questions whether all that happened before has been read
    quint64 m_answered = 0;
    std::vector<Fence> m_fences;

    std::jthread m_thread; // last: it uses all the others
};

void FileEvents::Worker::run(const std::stop_token& stop) {
    ::pthread_setname_np(::pthread_self(), "file-events");
    Startup::awaitEnd(stop);
    m_roots.begin();
    publish(false);
    if (m_started && !m_stopping)
        m_started();

    m_isAllRead = false;
    while (!m_stopping) {
        sleep();
        if (m_stopping)
            return;
        m_pace.advance(Clock::now(), !m_batch.isEmpty());
        m_isAllRead = m_reader.readAll(Clock::now() + longestRead);
        if (m_isAllRead)
            m_reader.settleMoves();
        seekRoots();
        m_poll.lookIfDue();
        const auto fences = reachedFences();
        if (!fences.empty())
            m_pace.endWindow();
        flush();
        publish(m_isAllRead);
        for (const Fence& fence : fences)
            fence.delivered();
    }
}

std::vector<FileEvents::Worker::Fence> FileEvents::Worker::reachedFences() {
    const std::lock_guard lock(m_mutex);
    // They stand in the order in which they were asked for.
    const auto end =
        std::ranges::find_if(m_fences, [this](const Fence& fence) { return !m_isAllRead || fence.asked > m_heard; });
    std::vector<Fence> reached(std::move_iterator(m_fences.begin()), std::move_iterator(end));
    m_fences.erase(m_fences.begin(), end);
    return reached;
}

void FileEvents::Worker::seekRoots() {
    if (!m_roots.areAllPresent() && (Clock::now() >= m_nextSeek || m_heard > m_answered)) {
        m_roots.seek();
        m_nextSeek = Clock::now() + seekInterval;
    }
    // The next one that goes is looked for at once: it may be back already.
    if (m_roots.areAllPresent())
        m_nextSeek = TimePoint();
}

void FileEvents::Worker::sleep() {
    int timeout = -1;
    if (!m_isAllRead || m_watches.inotify().hasNext()) // a walk may have taken events into memory
        timeout = 0;
    else if (const auto deadline = nextDeadline())
        timeout =
            int(std::max<qint64>(0, std::chrono::ceil<std::chrono::milliseconds>(*deadline - Clock::now()).count()));

    std::array<pollfd, 3> sources{
        {{m_watches.inotify().fd(), POLLIN, 0}, {m_wake.number(), POLLIN, 0}, {m_mounts.number(), POLLPRI, 0}}};
    ::poll(sources.data(), sources.size(), timeout);
    if (sources[1].revents) {
        quint64 count;
        [[maybe_unused]] const ssize_t taken = ::read(m_wake.number(), &count, sizeof count);
    }
    if (sources[2].revents & (POLLPRI | POLLERR)) {
        m_roots.verify();
        m_nextSeek = TimePoint();
    }
    const std::lock_guard lock(m_mutex);
    m_heard = m_asked;
}

std::optional<FileEvents::Worker::TimePoint> FileEvents::Worker::nextDeadline() const {
    const auto seek = m_roots.areAllPresent() ? std::nullopt : std::optional(m_nextSeek);
    std::optional<TimePoint> next;
    for (const auto& deadline : {m_pace.windowEnd(), seek, m_reader.nextSettling(), m_poll.due()})
        if (deadline && (!next || *deadline < *next))
            next = deadline;
    return next;
}

void FileEvents::Worker::flush() {
    if (m_batch.isEmpty() || !m_pace.mayLeave())
        return;
    // What a root's going did to its paths is not news of its files.
    m_roots.verify();
    if (m_batch.isEmpty())
        return;
    m_deliver(m_batch.take());
    m_pace.left(Clock::now());
}

void FileEvents::Worker::publish(bool isComplete) {
    const std::lock_guard lock(m_mutex);
    m_status = {m_watches.tree().watchCount(), m_watches.polledCount(), m_reader.overflows(), m_roots.areAllPresent()};
    if (isComplete && m_heard > m_answered) {
        m_answered = m_heard;
        m_answer.notify_all();
    }
}

FileEvents::FileEvents(const QList<Location>& roots, Options options, std::function<void(QList<FileEvent>)> deliver)
    : m_worker(std::make_shared<Worker>(roots, std::move(options), std::move(deliver))) {}

FileEvents::~FileEvents() {
    m_worker->stop();
    Tasks::dropLater(std::move(m_worker));
}

FileEvents::Status FileEvents::status() const {
    return m_worker->status();
}

bool FileEvents::waitUntilWatching(double seconds) const {
    return m_worker->waitUntilWatching(seconds);
}

void FileEvents::deliverNow(std::function<void()> delivered) {
    m_worker->deliverNow(std::move(delivered));
}

} // namespace lumbra
