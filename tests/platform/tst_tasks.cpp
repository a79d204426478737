// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Tasks.h"

#include <QSemaphore>
#include <QTest>

#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <memory>
#include <thread>

using namespace lumbra;

namespace {

int niceness() {
    return ::getpriority(PRIO_PROCESS, id_t(::syscall(SYS_gettid)));
}

} // namespace

class TasksTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void workHappensElsewhereAndItsValueComesBackHere() {
        QThread* worker = nullptr;
        QThread* receiver = nullptr;
        int value = 0;
        Tasks::run(Tasks::Pool::userInitiated, [&worker] {
            worker = QThread::currentThread();
            return 7;
        }).then(this, [&](int given) {
            receiver = QThread::currentThread();
            value = given;
        });
        QCOMPARE(value, 0); // never before the event loop is back
        QTRY_COMPARE(value, 7);
        QVERIFY(worker && worker != thread());
        QCOMPARE(receiver, thread());
    }

    void workWithoutAValueIsFollowedToo() {
        bool followed = false;
        Tasks::run(Tasks::Pool::utility, [] {}).then(this, [&] { followed = true; });
        QTRY_VERIFY(followed);
    }

    void whatFollowsDiesWithItsContext() {
        auto context = std::make_unique<QObject>();
        QSemaphore mayEnd;
        bool followed = false;
        bool reached = false;
        auto task = Tasks::run(Tasks::Pool::userInitiated, [&] { mayEnd.acquire(); });
        task.then(context.get(), [&] { followed = true; });
        task.then(this, [&] { reached = true; });
        context.reset();
        mayEnd.release();
        QTRY_VERIFY(reached);
        QVERIFY(!followed);
    }

    void aContextThatDiesAfterTheWorkIsNotCalledEither() {
        auto context = std::make_unique<QObject>();
        bool followed = false;
        bool reached = false;
        auto task = Tasks::run(Tasks::Pool::userInitiated, [] {});
        task.then(context.get(), [&] { followed = true; });
        task.waitForFinished();
        context.reset(); // what follows is on its way by now
        Tasks::run(Tasks::Pool::userInitiated, [] {}).then(this, [&] { reached = true; });
        QTRY_VERIFY(reached);
        QVERIFY(!followed);
    }

    // Work that ends while something is attached to it is followed once, and not twice.
    void workIsFollowedOnceHoweverSoonItEnds() {
        constexpr int rounds = 20'000;
        int followed = 0;
        for (int i = 0; i < rounds; ++i)
            Tasks::run(Tasks::Pool::userInitiated, [i] { return i; }).then(this, [&](int) { ++followed; });
        QTRY_COMPARE(followed, rounds);
        Tasks::run(Tasks::Pool::userInitiated, [] {}).then(this, [&] { followed = -followed; });
        QTRY_COMPARE(followed, -rounds);
    }

    void aPromiseIsKeptForWhoAsksSoonAndLate() {
        Tasks::Promise<int> promise;
        auto task = promise.task();
        QList<int> given;
        task.then(this, [&](int value) { given.append(value); });
        std::thread([&] { promise.give(3); }).join();
        task.map([](int value) { return 2 * value; }).then(this, [&](int value) { given.append(value); });
        QTRY_COMPARE(given, (QList<int>{3, 6}));
        QCOMPARE(task.result(), 3);
    }

    void nothingFollowsAPromiseThatIsDropped() {
        bool followed = false;
        bool reached = false;
        auto promise = std::make_unique<Tasks::Promise<int>>();
        auto task = promise->task();
        task.then(this, [&](int) { followed = true; });
        promise.reset();
        QVERIFY(task.isCanceled() && task.isFinished());
        Tasks::run(Tasks::Pool::userInitiated, [] {}).then(this, [&] { reached = true; });
        QTRY_VERIFY(reached);
        QVERIFY(!followed);
    }

    void whatNobodyWaitsForYields() {
        const int here = niceness();
        int utility = -1;
        int userInitiated = -1;
        Tasks::run(Tasks::Pool::utility, niceness).then(this, [&](int value) { utility = value; });
        Tasks::run(Tasks::Pool::userInitiated, niceness).then(this, [&](int value) { userInitiated = value; });
        QTRY_COMPARE(utility, 10);
        QTRY_COMPARE(userInitiated, here);
    }

    // A thread that waits for what has not begun does it, and its priority could not be raised again.
    void whoWaitsForWorkKeepsItsPriority() {
        const int here = niceness();
        QSemaphore mayEnd;
        QList<QFuture<void>> busy;
        for (int i = 0; i < Tasks::pool(Tasks::Pool::utility).maxThreadCount(); ++i)
            busy.append(Tasks::run(Tasks::Pool::utility, [&] { mayEnd.acquire(); }));
        QThread* worker = nullptr;
        Tasks::run(Tasks::Pool::utility, [&] { worker = QThread::currentThread(); }).waitForFinished();
        QCOMPARE(worker, thread());
        QCOMPARE(niceness(), here);
        mayEnd.release(int(busy.size()));
        for (auto& task : busy)
            task.waitForFinished();
    }

    void thePoolsDoNotWaitForEachOther() {
        QSemaphore mayEnd;
        QList<QFuture<void>> busy;
        for (int i = 0; i < 2 * Tasks::pool(Tasks::Pool::utility).maxThreadCount(); ++i)
            busy.append(Tasks::run(Tasks::Pool::utility, [&] { mayEnd.acquire(); }));
        bool done = false;
        Tasks::run(Tasks::Pool::userInitiated, [] {}).then(this, [&] { done = true; });
        QTRY_VERIFY(done);
        mayEnd.release(int(busy.size()));
        for (auto& task : busy)
            task.waitForFinished();
    }

    void theLastReferenceDiesElsewhere() {
        QThread* grave = nullptr;
        QSemaphore dead;
        std::shared_ptr<int> value(new int(1), [&](int* number) {
            delete number;
            grave = QThread::currentThread();
            dead.release();
        });
        Tasks::dropLater(std::move(value));
        QVERIFY(dead.tryAcquire(1, 10'000));
        QVERIFY(grave != thread());
    }
};

QTEST_GUILESS_MAIN(TasksTest)
#include "tst_tasks.moc"
