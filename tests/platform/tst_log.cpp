// Starts itself again, since whether the log is on is decided once in the life of a process.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Log.h"

#include <QProcess>
#include <QTest>

#include <cstring>
#include <thread>
#include <vector>

using namespace lumbra;

namespace {

constexpr int threads = 4;
constexpr int linesEach = 200;

// What the other process does.
int speak() {
    Log::line("%s %.0f ms for %d files", "DERIVED", 12.4, 7);
    Log::line("%s", std::string(5000, 'x').c_str());
    std::vector<std::jthread> speakers;
    for (int i = 0; i < threads; ++i)
        speakers.emplace_back([] {
            for (int line = 0; line < linesEach; ++line)
                Log::line("one whole line");
        });
    return 0;
}

QByteArrayList linesWith(const QString& variable) {
    QProcess process;
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("LUMBRA_HANGLOG"));
    if (!variable.isNull())
        environment.insert(QStringLiteral("LUMBRA_HANGLOG"), variable);
    process.setProcessEnvironment(environment);
    process.start(QCoreApplication::applicationFilePath(), {QStringLiteral("speak")});
    if (!process.waitForFinished() || process.exitCode() != 0)
        qFatal("the speaking process failed");
    QByteArrayList lines = process.readAllStandardError().split('\n');
    lines.removeLast(); // what follows the last newline
    return lines;
}

} // namespace

class LogTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void itIsOffByDefault() { QVERIFY(linesWith({}).isEmpty()); }

    void anyValueTurnsItOn_data() {
        QTest::addColumn<QString>("value");
        QTest::newRow("1") << QStringLiteral("1");
        QTest::newRow("0") << QStringLiteral("0");
        QTest::newRow("nothing") << QStringLiteral("");
    }

    void anyValueTurnsItOn() {
        QFETCH(QString, value);
        const QByteArrayList lines = linesWith(value);
        QCOMPARE(lines.size(), 2 + threads * linesEach);
        QCOMPARE(lines[0], QByteArray("DERIVED 12 ms for 7 files"));
        QVERIFY(lines[1].size() < 1000); // cut, not overrun
    }

    void linesOfSeveralThreadsDoNotMingle() {
        const QByteArrayList lines = linesWith(QStringLiteral("1"));
        QCOMPARE(lines.count("one whole line"), threads * linesEach);
    }
};

int main(int count, char** arguments) {
    if (count > 1 && std::strcmp(arguments[1], "speak") == 0)
        return speak();
    QCoreApplication application(count, arguments);
    LogTest test;
    return QTest::qExec(&test, count, arguments);
}

#include "tst_log.moc"
