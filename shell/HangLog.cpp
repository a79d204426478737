// SPDX-License-Identifier: GPL-3.0-or-later
#include "HangLog.h"

#include "platform/Log.h"

#include <condition_variable>
#include <mutex>

namespace lumbra {

using namespace std::chrono_literals;

// Outlives the log in whatever the main thread still has to answer.
struct HangLog::Answer {
    std::mutex mutex;
    std::condition_variable_any changed;
    bool given = false;

    void give() {
        {
            const std::lock_guard lock(mutex);
            given = true;
        }
        changed.notify_all();
    }
};

HangLog::HangLog() {
    if (Log::isOn())
        watch([](const QString& line) { Log::line("%s", qPrintable(line)); });
}

HangLog::HangLog(Sink sink) {
    watch(std::move(sink));
}

QString HangLog::lineFor(std::chrono::duration<double, std::milli> wait) {
    constexpr auto stall = 50ms;
    return wait > stall ? QString::asprintf("HANG %.0f ms", wait.count()) : QString();
}

void HangLog::watch(Sink sink) {
    m_answer = std::make_shared<Answer>();
    m_thread = std::jthread([this, sink = std::move(sink)](const std::stop_token& stop) {
        constexpr auto pause = 50ms;
        Answer& answer = *m_answer;
        std::unique_lock lock(answer.mutex);
        for (;;) {
            // A sleep that the end of the log cuts short.
            answer.changed.wait_for(lock, stop, pause, [] { return false; });
            if (stop.stop_requested())
                return;
            answer.given = false;
            const auto asked = std::chrono::steady_clock::now();
            QMetaObject::invokeMethod(
                &m_here, [kept = m_answer] { kept->give(); }, Qt::QueuedConnection);
            if (!answer.changed.wait(lock, stop, [&answer] { return answer.given; }))
                return;
            const QString line = lineFor(std::chrono::steady_clock::now() - asked);
            if (!line.isEmpty())
                sink(line);
        }
    });
}

} // namespace lumbra
