// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/FileEvents.h"
#include "platform/Startup.h"
#include "support/TestHome.h"

#include <QTest>

#include <atomic>
#include <memory>
#include <thread>

using namespace lumbra;

class StartupTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void nothingStandsBackInAProgramThatNeverBegan() { Startup::awaitEnd(); }

    void workStandsBackUntilTheEnd() {
        Startup::begin();
        std::atomic<bool> isEnded = false;
        std::atomic<bool> cameTooEarly = false;
        std::atomic<int> waiting = 0;
        const auto work = [&] {
            ++waiting;
            Startup::awaitEnd();
            if (!isEnded)
                cameTooEarly = true;
        };
        std::thread first(work);
        std::thread second(work);
        QTRY_COMPARE(waiting.load(), 2);
        isEnded = true;
        Startup::end();
        first.join();
        second.join();
        QVERIFY(!cameTooEarly);
    }

    void workThatNobodyWaitsForAnyMoreGoesOn() {
        Startup::begin();
        std::jthread work([](const std::stop_token& stop) { Startup::awaitEnd(stop); });
        work.request_stop();
        work.join();
        Startup::end();
    }

    // Whoever lets go of them on the main thread would otherwise wait for the first frame, which comes from there.
    void watchesThatHaveNotBegunEndAtOnce() {
        TestHome home;
        Startup::begin();
        auto events =
            std::make_unique<FileEvents>(QList{home.path()}, FileEvents::Options(), [](const QList<FileEvent>&) {});
        events.reset();
        Startup::end();
    }

    void theEndMayBeToldTwice() {
        Startup::begin();
        Startup::end();
        Startup::end();
        Startup::awaitEnd();
    }
};

QTEST_GUILESS_MAIN(StartupTest)
#include "tst_startup.moc"
