// SPDX-License-Identifier: GPL-3.0-or-later
#include "MediaStream.h"

#include "MpvLibrary.h"
#include "platform/RegularFile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <condition_variable>
#include <cstring>
#include <map>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace lumbra::MediaStream {

namespace {

constexpr char scheme[] = "lumbra-file";

// At most this much is read at a time, whatever is asked for.
constexpr uint64_t largestRead = 256 * 1024;

// One open file, shared by mpv's thread and the one that waits for the disk. The latter may outlive the stream, if the
// disk never answers.
class Stream {
public:
    explicit Stream(QByteArray path) : m_path(std::move(path)), m_buffer(largestRead) {}

    static void start(const std::shared_ptr<Stream>& stream) {
        std::thread([stream] { stream->work(); }).detach();
    }

    // The calls of mpv. Numbers below zero are failures.

    qint64 read(char* bytes, uint64_t count) {
        const qint64 got = ask(Task::read, std::min(count, largestRead));
        if (got > 0) {
            std::memcpy(bytes, m_buffer.data(), size_t(got));
            m_position += got;
        }
        return got;
    }

    qint64 size() { return ask(Task::size, 0); }

    qint64 seek(qint64 position) {
        m_position = position;
        return position;
    }

    // Ends every call under way and to come.
    void cancel() {
        const std::lock_guard lock(m_mutex);
        m_isCancelled = true;
        m_changed.notify_all();
    }

private:
    enum class Task { none, read, size };

    qint64 ask(Task task, uint64_t count) {
        std::unique_lock lock(m_mutex);
        if (m_isCancelled)
            return MPV_ERROR_GENERIC;
        m_task = task;
        m_count = count;
        m_changed.notify_all();
        m_changed.wait(lock, [this] { return m_task == Task::none || m_isCancelled; });
        return m_isCancelled ? qint64(MPV_ERROR_GENERIC) : m_answer;
    }

    void work() {
        const auto file = RegularFile::open(Location(m_path));
        struct stat status {};
        std::unique_lock lock(m_mutex);
        for (;;) {
            m_changed.wait(lock, [this] { return m_task != Task::none || m_isCancelled; });
            if (m_isCancelled)
                return;
            const Task task = m_task;
            const size_t count = m_count;
            const off_t position = m_position;
            lock.unlock();
            // The buffer is this thread's while there is a task: mpv's side has either asked for it or given up.
            qint64 answer = MPV_ERROR_LOADING_FAILED;
            if (file && task == Task::read)
                answer = ::pread(file->descriptor(), m_buffer.data(), count, position);
            else if (file && ::fstat(file->descriptor(), &status) == 0)
                answer = status.st_size;
            lock.lock();
            m_answer = answer;
            m_task = Task::none;
            m_changed.notify_all();
        }
    }

    const QByteArray m_path;
    std::vector<char> m_buffer;
    qint64 m_position = 0; // changed by mpv's thread while there is no task

    std::mutex m_mutex;
    std::condition_variable m_changed;
    Task m_task = Task::none;
    size_t m_count = 0;
    qint64 m_answer = 0;
    bool m_isCancelled = false;
};

// The streams that are open, by number. The player may close one while it is being told to cancel it: a number that is
// no longer there does no harm, and a stream found here outlives the call.
class Streams {
public:
    static Streams& shared() {
        // Never destroyed: a player on its way out may still read.
        static auto* const streams = new Streams;
        return *streams;
    }

    quintptr add(std::shared_ptr<Stream> stream) {
        const std::lock_guard lock(m_mutex);
        m_streams.emplace(++m_last, std::move(stream));
        return m_last;
    }

    std::shared_ptr<Stream> find(void* cookie) {
        const std::lock_guard lock(m_mutex);
        const auto found = m_streams.find(quintptr(cookie));
        return found == m_streams.end() ? nullptr : found->second;
    }

    std::shared_ptr<Stream> take(void* cookie) {
        const std::lock_guard lock(m_mutex);
        auto node = m_streams.extract(quintptr(cookie));
        return node ? std::move(node.mapped()) : nullptr;
    }

private:
    std::mutex m_mutex;
    std::map<quintptr, std::shared_ptr<Stream>> m_streams;
    quintptr m_last = 0;
};

int open(void*, char* address, mpv_stream_cb_info* info) {
    const QByteArray text(address);
    const QByteArray path = QByteArray::fromPercentEncoding(text.sliced(text.indexOf("://") + 3));
    const auto stream = std::make_shared<Stream>(path);
    Stream::start(stream);
    // A number, not the stream: the player may still ask when that is gone.
    // NOLINTNEXTLINE(performance-no-int-to-ptr)
    info->cookie = reinterpret_cast<void*>(Streams::shared().add(stream));
    info->read_fn = [](void* cookie, char* bytes, uint64_t count) -> int64_t {
        const auto found = Streams::shared().find(cookie);
        return found ? found->read(bytes, count) : -1;
    };
    info->seek_fn = [](void* cookie, int64_t position) -> int64_t {
        const auto found = Streams::shared().find(cookie);
        return found ? found->seek(position) : int64_t(MPV_ERROR_GENERIC);
    };
    info->size_fn = [](void* cookie) -> int64_t {
        const auto found = Streams::shared().find(cookie);
        return found ? found->size() : int64_t(MPV_ERROR_GENERIC);
    };
    info->cancel_fn = [](void* cookie) {
        if (const auto found = Streams::shared().find(cookie))
            found->cancel();
    };
    info->close_fn = [](void* cookie) {
        if (const auto closed = Streams::shared().take(cookie))
            closed->cancel();
    };
    return 0;
}

} // namespace

void serve(const MpvLibrary& library, mpv_handle* mpv) {
    library.stream_cb_add_ro(mpv, scheme, nullptr, open);
}

QByteArray addressOf(const Location& file) {
    return QByteArray(scheme) + "://" + file.path().toPercentEncoding("/");
}

} // namespace lumbra::MediaStream
