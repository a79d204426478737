// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/HangLog.h"

#include <QProcess>
#include <QTest>

#include <mutex>

using namespace lumbra;
using namespace std::chrono_literals;

class tst_hanglog : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void onlyALongWaitIsAStall_data();
    void onlyALongWaitIsAStall();
    void aStallOfTheMainThreadIsWritten();
    void aLogThatEndsWhileTheMainThreadIsBusyDoesNotHang();
};

void tst_hanglog::onlyALongWaitIsAStall_data() {
    QTest::addColumn<double>("wait");
    QTest::addColumn<QString>("line");
    QTest::newRow("none") << 0.1 << QString();
    QTest::newRow("49 ms") << 49.0 << QString();
    QTest::newRow("exactly 50 ms") << 50.0 << QString();
    QTest::newRow("51 ms") << 51.0 << QStringLiteral("HANG 51 ms");
    QTest::newRow("rounded") << 1234.6 << QStringLiteral("HANG 1235 ms");
}

void tst_hanglog::onlyALongWaitIsAStall() {
    QFETCH(double, wait);
    QFETCH(QString, line);
    QCOMPARE(HangLog::lineFor(std::chrono::duration<double, std::milli>(wait)), line);
}

void tst_hanglog::aStallOfTheMainThreadIsWritten() {
    std::mutex mutex;
    QStringList lines;
    const HangLog log([&](const QString& line) {
        const std::lock_guard lock(mutex);
        lines.append(line);
    });
    // Longer than the pause between two questions and the threshold together.
    QThread::msleep(300);
    QTRY_VERIFY([&] {
        const std::lock_guard lock(mutex);
        return !lines.isEmpty();
    }());
    const std::lock_guard lock(mutex);
    QVERIFY2(lines.first().startsWith(QStringLiteral("HANG ")), qPrintable(lines.first()));
}

void tst_hanglog::aLogThatEndsWhileTheMainThreadIsBusyDoesNotHang() {
    // The question is asked, and never answered: this thread runs no events.
    for (int i = 0; i < 3; ++i) {
        const HangLog log([](const QString&) {});
        QThread::msleep(80);
    }
}

QTEST_GUILESS_MAIN(tst_hanglog)
#include "tst_hanglog.moc"
