// Work off the main thread. Work is given copies of values and hands back a value:
//
//     Tasks::run(Tasks::Pool::utility, [index] { return summary(index); })
//         .then(this, [this](Summary summary) { m_summary = summary; });
//
// `.then(context, ...)` runs on the context's thread and is dropped when the context has died. Work that can be
// cancelled takes a std::stop_token from the source that its owner keeps.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFuture>
#include <QThreadPool>
#include <QtConcurrentRun>

#include <utility>

namespace lumbra::Tasks {

enum class Pool {
    userInitiated, // the user waits for it: normal priority
    utility,       // nobody waits: nice 10, so that it yields to agents at work without starving behind them
};

// The process-wide pool. It lives until the process ends.
QThreadPool& pool(Pool which);

// Lowers the calling thread to the pool's priority; called by `run` on the worker.
void adoptPriority(Pool which);

// Runs the function on the pool. A pool never takes the calling thread.
template <typename Function>
auto run(Pool which, Function function) -> QFuture<decltype(function())> {
    return QtConcurrent::run(&pool(which), [which, function = std::move(function)]() mutable {
        adoptPriority(which);
        return function();
    });
}

// Lets the last reference to something large die on the utility pool instead of here.
template <typename Value>
void dropLater(Value value) {
    pool(Pool::utility).start([dropped = std::move(value)]() mutable { Value(std::move(dropped)); });
}

} // namespace lumbra::Tasks
