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
#include <QPromise>
#include <QThreadPool>
#include <QtConcurrentRun>

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

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

// What comes of work: one value, and all that is to follow it. Our own and not QFuture's continuation: in Qt 6.4 that
// runs twice, and crashes, when the work ends while it is being attached. Safe on any thread.
template <typename Value>
class Outcome {
public:
    using Kept = std::conditional_t<std::is_void_v<Value>, std::monostate, Value>;
    using Follower = std::function<void(const Kept&)>;

    // To be called once. What follows runs within the call.
    void tell(Kept value) {
        std::vector<Follower> followers;
        {
            const std::lock_guard lock(m_mutex);
            m_value = std::move(value);
            followers.swap(m_followers);
        }
        for (const Follower& follower : followers)
            follower(*m_value); // which changes no more
    }

    // Runs within the call if the value is there, else where it is told.
    void follow(Follower follower) {
        {
            const std::lock_guard lock(m_mutex);
            if (!m_value) {
                m_followers.push_back(std::move(follower));
                return;
            }
        }
        follower(*m_value);
    }

private:
    std::mutex m_mutex;
    std::optional<Kept> m_value;
    std::vector<Follower> m_followers;
};

// The result of work under way.
template <typename Value>
class Task : public QFuture<Value> {
public:
    Task(QFuture<Value> future, std::shared_ptr<Outcome<Value>> outcome)
        : QFuture<Value>(std::move(future)), m_outcome(std::move(outcome)) {}

    // Hides QFuture's own, which in Qt 6.4 also goes to a context that has died in the meantime.
    template <typename Function>
    void then(QObject* context, Function function) {
        const QPointer<QObject> receiver(context);
        m_outcome->follow([receiver, function](const typename Outcome<Value>::Kept& value) {
            postToMain([receiver, function, value]() mutable {
                if (!receiver)
                    return;
                if constexpr (std::is_void_v<Value>)
                    function();
                else
                    function(std::move(value));
            });
        });
    }

    // The task of what the function, which must be quick and safe on any thread, makes of the value.
    template <typename Function>
    auto map(Function function) -> Task<std::invoke_result_t<Function, Value>>;

private:
    std::shared_ptr<Outcome<Value>> m_outcome;
};

// Where the value of a task comes from that no pool works on. Dropped without a value, it cancels its task, which
// nothing follows then.
template <typename Value>
class Promise {
public:
    Promise() { m_promise.start(); }

    Task<Value> task() { return Task<Value>(m_promise.future(), m_outcome); }

    // To be called once, on any thread.
    void give(const Value& value) {
        m_outcome->tell(value);
        m_promise.addResult(value);
        m_promise.finish();
    }

private:
    QPromise<Value> m_promise;
    std::shared_ptr<Outcome<Value>> m_outcome = std::make_shared<Outcome<Value>>();
};

template <typename Value>
template <typename Function>
auto Task<Value>::map(Function function) -> Task<std::invoke_result_t<Function, Value>> {
    const auto promise = std::make_shared<Promise<std::invoke_result_t<Function, Value>>>();
    m_outcome->follow([promise, function](const Value& value) { promise->give(function(value)); });
    return promise->task();
}

// Runs the function on the pool. It begins on the calling thread only if that waits for it before a worker is free.
template <typename Function>
auto run(Pool which, Function function) -> Task<std::invoke_result_t<Function&>> {
    using Value = std::invoke_result_t<Function&>;
    const auto outcome = std::make_shared<Outcome<Value>>();
    return Task<Value>(QtConcurrent::run(&pool(which),
                                         [which, outcome, function = std::move(function)]() mutable -> Value {
                                             adoptPriority(which);
                                             if constexpr (std::is_void_v<Value>) {
                                                 function();
                                                 outcome->tell({});
                                             } else {
                                                 Value value = function();
                                                 outcome->tell(value);
                                                 return value;
                                             }
                                         }),
                       outcome);
}

// Lets the last reference to something large die on the utility pool instead of here.
template <typename Value>
void dropLater(Value value) {
    pool(Pool::utility).start([dropped = std::move(value)]() mutable { Value(std::move(dropped)); });
}

} // namespace lumbra::Tasks
