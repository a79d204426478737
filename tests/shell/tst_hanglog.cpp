// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/HangLog.h"

#include <QProcess>
#include <QTest>
#include <QTimer>

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
    void theVariableTurnsItOn_data();
    void theVariableTurnsItOn();
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

void tst_hanglog::theVariableTurnsItOn_data() {
    QTest::addColumn<bool>("isSet");
    QTest::addColumn<QByteArray>("value");
    QTest::newRow("unset: off") << false << QByteArray();
    QTest::newRow("set to nothing: on") << true << QByteArray();
    QTest::newRow("set to 0: on") << true << QByteArray("0");
}

void tst_hanglog::theVariableTurnsItOn() {
    QFETCH(bool, isSet);
    QFETCH(QByteArray, value);
    // In a process of its own, since the variable is read once.
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedOutputChannel);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("LUMBRA_HANGLOG"));
    if (isSet)
        environment.insert(QStringLiteral("LUMBRA_HANGLOG"), QString::fromLatin1(value));
    environment.insert(QStringLiteral("TST_HANGLOG_STALLS"), QStringLiteral("1"));
    process.setProcessEnvironment(environment);
    process.start(QCoreApplication::applicationFilePath(), {});
    QVERIFY(process.waitForFinished());
    const QByteArray written = process.readAllStandardError();
    QVERIFY2(isSet ? written.startsWith("HANG ") : written.isEmpty(), written.constData());
}

namespace {

// What the test starts: an application that stalls once and then ends.
int stall(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const HangLog log;
    QTimer::singleShot(100, &application, [] { QThread::msleep(300); });
    QTimer::singleShot(600, &application, &QCoreApplication::quit);
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsSet("TST_HANGLOG_STALLS"))
        return stall(argc, argv);
    QCoreApplication application(argc, argv);
    tst_hanglog test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_hanglog.moc"
