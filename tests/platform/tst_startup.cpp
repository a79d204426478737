// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Startup.h"

#include <QTest>

#include <atomic>
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

    void theEndMayBeToldTwice() {
        Startup::begin();
        Startup::end();
        Startup::end();
        Startup::awaitEnd();
    }
};

QTEST_GUILESS_MAIN(StartupTest)
#include "tst_startup.moc"
