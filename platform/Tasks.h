// Work off the main thread. Work is given copies of values and hands back a value:
//
//     Tasks::run(Tasks::Pool::utility, [index] { return summary(index); })
//         .then(this, [this](Summary summary) { m_summary = summary; });
//
// What follows with `.then(context, ...)` runs on the main thread and is dropped when the context, which lives there,
// has died. Work that can be cancelled takes a std::stop_token from the source that its owner keeps.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFuture>
#include <QPointer>
#include <QThreadPool>
#include <QtConcurrentRun>

#include <functional>
#include <type_traits>
#include <utility>

namespace lumbra::Tasks {

enum class Pool {
    userInitiated, // the user waits for it: normal priority
    utility,       // nobody waits: nice 10, so that it yields to agents at work without starving behind them
    lasting,       // copies, the trash, other programs: may take minutes, and must keep no page waiting meanwhile
};

// The process-wide pool. It lives until the process ends.
QThreadPool& pool(Pool which);

// Lowers the calling thread to the pool's priority, if it is one of the pool's; called by `run` on the worker.
void adoptPriority(Pool which);

// Posts to the main thread; dropped once the application object has gone.
void postToMain(std::function<void()> function);

// The result of work under way.
template <typename Value>
class Task : public QFuture<Value> {
public:
    explicit Task(QFuture<Value> future) : QFuture<Value>(std::move(future)) {}

    // Hides QFuture's own, which in Qt 6.4 goes to a context that has died in the meantime.
    template <typename Function>
    void then(QObject* context, Function function) {
        const QPointer<QObject> receiver(context);
        QFuture<Value>::then(QtFuture::Launch::Sync, [receiver, function](const QFuture<Value>& done) {
            if constexpr (std::is_void_v<Value>) {
                postToMain([receiver, function]() mutable {
                    if (receiver)
                        function();
                });
            } else {
                postToMain([receiver, function, value = done.result()]() mutable {
                    if (receiver)
                        function(std::move(value));
                });
            }
        });
    }
};

// Runs the function on the pool. It begins on the calling thread only if that waits for it before a worker is free.
template <typename Function>
auto run(Pool which, Function function) -> Task<decltype(function())> {
    return Task<decltype(function())>(
        QtConcurrent::run(&pool(which), [which, function = std::move(function)]() mutable {
            adoptPriority(which);
            return function();
        }));
}

// Lets the last reference to something large die on the utility pool instead of here.
template <typename Value>
void dropLater(Value value) {
    pool(Pool::utility).start([dropped = std::move(value)]() mutable { Value(std::move(dropped)); });
}

} // namespace lumbra::Tasks
