// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Processes.h"
#include "support/StallingShare.h"
#include "support/TestHome.h"

#include <QElapsedTimer>
#include <QTest>
#include <QThread>

#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

using namespace lumbra;
using Processes::End;

namespace {

Processes::Result shell(const QByteArray& script, const Processes::Options& options = {}) {
    return Processes::run("/bin/sh", {"-c", script}, options);
}

bool isAlive(pid_t process) {
    return ::kill(process, 0) == 0 || errno != ESRCH;
}

} // namespace

class ProcessesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void outputAndErrorsComeApart() {
        const auto result = shell("echo said; echo complained >&2");
        QCOMPARE(result.end, End::exited);
        QVERIFY(result.succeeded());
        QCOMPARE(result.output, QByteArray("said\n"));
        QCOMPARE(result.errors, QByteArray("complained\n"));
    }

    void theExitStatusIsTold() {
        const auto result = shell("echo partly; exit 3");
        QCOMPARE(result.end, End::exited);
        QCOMPARE(result.status, 3);
        QVERIFY(!result.succeeded());
        QCOMPARE(result.output, QByteArray("partly\n"));
    }

    void argumentsArriveAsTheyAre() {
        const auto result = Processes::run("printf", {"%s|", "a b", "", "$HOME", "\xc3\xa4"});
        QCOMPARE(result.output, QByteArray("a b||$HOME|\xc3\xa4|"));
    }

    void aSignalIsNoStatusOfSuccess() {
        const auto result = shell("kill -9 $$");
        QCOMPARE(result.end, End::signalled);
        QCOMPARE(result.status, SIGKILL);
        QVERIFY(!result.succeeded());
    }

    void aProgramThatIsNotThereIsNotStarted() {
        QCOMPARE(Processes::run("/nowhere/program", {}).end, End::notStarted);
        QCOMPARE(Processes::run("no-program-of-this-name", {}).end, End::notStarted);
        Processes::Options options;
        options.folder = Location(QByteArray("/nowhere"));
        QCOMPARE(shell("true", options).end, End::notStarted);
    }

    void theTimeIsKeptAndTheWholeGroupEnds() {
        Processes::Options options;
        options.timeout = 0.1;
        QElapsedTimer timer;
        timer.start();
        const auto result = shell("sleep 100 & echo $!; trap '' TERM; sleep 100; sleep 100", options);
        QCOMPARE(result.end, End::timedOut);
        QVERIFY(!result.succeeded());
        QVERIFY(timer.elapsed() < 10'000);
        const pid_t grandchild = result.output.trimmed().toInt();
        QVERIFY(grandchild > 1);
        QTRY_VERIFY(!isAlive(grandchild));
    }

    void aChildAskedToEndMayCleanUp() {
        Processes::Options options;
        options.timeout = 0.1;
        const auto result = shell("trap 'echo cleaned; exit 0' TERM; while :; do sleep 0.01; done", options);
        QCOMPARE(result.end, End::timedOut);
        QCOMPARE(result.output, QByteArray("cleaned\n"));
    }

    // On a share that has stopped answering.
    void aProgramThatCantBeEndedIsLeftBehind() {
        const TestHome home;
        const Location folder = home.folder("share");
        StallingShare share(folder, {{"file", "bytes"}});
        if (!share.isMounted())
            QSKIP("no file system can be mounted here");
        const QByteArray file = folder.child("file").path();
        QCOMPARE(Processes::run("cat", {file}).output, "bytes");
        share.stall();
        Processes::Options options;
        options.timeout = 0.1;
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(Processes::run("cat", {file}, options).end, End::timedOut);
        QVERIFY2(timer.elapsed() < 10'000, QByteArray::number(timer.elapsed()));
    }

    void tooMuchOutputEndsIt() {
        Processes::Options options;
        options.outputLimit = 1000;
        const auto result = shell("yes", options);
        QCOMPARE(result.end, End::tooMuchOutput);
        QCOMPARE(result.output.size(), 1000);
    }

    void outputOfExactlyTheBoundIsKept() {
        Processes::Options options;
        options.outputLimit = 200'000;
        const auto result = shell("head -c 200000 /dev/zero", options);
        QVERIFY(result.succeeded());
        QCOMPARE(result.output.size(), 200'000);
    }

    void aFloodOfErrorsNeitherBlocksNorFails() {
        const auto result = shell("head -c 3000000 /dev/zero >&2; echo done");
        QVERIFY(result.succeeded());
        QCOMPARE(result.output, QByteArray("done\n"));
        QCOMPARE(result.errors.size(), 16 * 1024);
    }

    void aGrandchildThatKeepsThePipesHoldsNobodyUp() {
        QElapsedTimer timer;
        timer.start();
        const auto result = shell("sleep 100 & echo $!");
        QVERIFY(result.succeeded());
        QVERIFY(timer.elapsed() < 4'000);
        const pid_t grandchild = result.output.trimmed().toInt();
        QTRY_VERIFY(!isAlive(grandchild));
    }

    void closedPipesAreNotTheEnd() {
        const auto result = shell("exec >&- 2>&-; sleep 0.05; exit 7");
        QCOMPARE(result.end, End::exited);
        QCOMPARE(result.status, 7);
    }

    void standardInputIsEmpty() {
        const auto result = Processes::run("cat", {});
        QVERIFY(result.succeeded());
        QVERIFY(result.output.isEmpty());
    }

    void noOpenFileOfOursIsPassedOn() {
        int ends[2];
        QCOMPARE(::pipe(ends), 0); // deliberately without close-on-exec
        const auto result = shell("ls /proc/self/fd | wc -l");
        QCOMPARE(result.output.trimmed(), QByteArray("4")); // three, and the folder that ls reads
        ::close(ends[0]);
        ::close(ends[1]);
    }

    void namedVariablesAreNotPassedOn() {
        qputenv("LUMBRA_TEST_A", "a");
        qputenv("LUMBRA_TEST_AB", "ab");
        Processes::Options options;
        options.unset = {"LUMBRA_TEST_A"};
        QCOMPARE(shell("echo $LUMBRA_TEST_A/$LUMBRA_TEST_AB", options).output, QByteArray("/ab\n"));
        QCOMPARE(shell("echo $LUMBRA_TEST_A/$LUMBRA_TEST_AB").output, QByteArray("a/ab\n"));
    }

    void itWorksInTheGivenFolder() {
        TestHome home;
        Processes::Options options;
        options.folder = home.folder("here");
        QCOMPARE(shell("pwd -P", options).output.trimmed(), home.path().child("here").path());
    }

    void limitsHold() {
        TestHome home;
        Processes::Options options;
        options.folder = home.path();
        options.fileSize = 4096;
        const auto result = shell("sleep 0.05; head -c 100000 /dev/zero > big", options);
        QVERIFY(!result.succeeded());
        QCOMPARE(QFileInfo(home.path().child("big").toString()).size(), 4096);
    }

    void signalsIgnoredHereAreNotIgnoredThere() {
        const auto previous = std::signal(SIGPIPE, SIG_IGN);
        const auto result = shell("kill -PIPE $$; echo survived");
        std::signal(SIGPIPE, previous);
        QCOMPARE(result.end, End::signalled);
    }

    void manyThreadsMayRunAtOnce() {
        std::vector<std::unique_ptr<QThread>> threads;
        std::atomic<int> right = 0;
        for (int number = 0; number < 8; ++number) {
            threads.emplace_back(QThread::create([number, &right] {
                for (int round = 0; round < 5; ++round) {
                    const QByteArray word = QByteArray::number(number * 100 + round);
                    if (Processes::run("/bin/echo", {word}).output == word + '\n')
                        ++right;
                }
            }));
            threads.back()->start();
        }
        for (const auto& thread : threads)
            thread->wait();
        QCOMPARE(right.load(), 40);
    }
};

QTEST_GUILESS_MAIN(ProcessesTest)
#include "tst_processes.moc"
