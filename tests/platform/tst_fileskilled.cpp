// A process that moves things to another file system may be killed at any moment: everything is whole at one end or at
// both, and what is half goes at the next start.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Files.h"
#include "support/FileSystems.h"
#include "support/FileTrees.h"
#include "support/TestHome.h"

#include <QElapsedTimer>
#include <QTest>

#include <sys/ptrace.h>

#include <csignal>
#include <filesystem>
#include <random>
#include <thread>

using namespace lumbra;
using Files::Transfer;

namespace {

struct Scene {
    explicit Scene(const Location& from, const Location& to, bool replaces)
        : source(from.child("source")),
          target(to.child("target")),
          journal(to.child("journal")),
          isReplacing(replaces) {}

    void carry() const {
        const auto ifTaken = isReplacing ? Transfer::IfTaken::replace : Transfer::IfTaken::nextFreeName;
        Files::carryOut({{source, target, Transfer::Kind::move, ifTaken}}, journal);
    }

    Location source;
    Location target;
    Location journal;
    bool isReplacing;
};

// Each line of the tree as it was, to be found whole at the source, at the target or at both.
void checkNothingIsLost(const Scene& scene, const QByteArrayList& before, const QByteArrayList& replaced) {
    const QByteArrayList atTarget = everythingIn(scene.target);
    const QByteArrayList atSource = everythingIn(scene.source);
    QVERIFY2(atTarget.isEmpty() || atTarget == before || (scene.isReplacing && atTarget == replaced),
             "half a tree has the final name");
    if (atTarget != before)
        QCOMPARE(atSource, before);
    for (const QByteArray& line : atSource) {
        // The times of folders change while they are emptied.
        QVERIFY2(before.contains(line) || line.contains(" mode 4"), "the source has changed");
    }
}

void checkCleaned(const Scene& scene) {
    Files::cleanLeftovers(scene.journal);
    for (const QByteArray& name : namesIn(scene.target.parent()))
        QVERIFY2(name == "target", name.constData());
    QVERIFY(!scene.journal.exists());
}

// Runs the work in a child and kills it when it is about to make its n-th call into the system. False when it had ended
// before that.
bool killedAtCall(int n, const std::function<void()>& work) {
    const pid_t child = ::fork();
    if (child == 0) {
        ::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
        std::raise(SIGSTOP);
        work();
        ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    ::ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_EXITKILL);
    for (int call = 0; WIFSTOPPED(status); ++call) {
        if (call == 2 * n) // each call stops it twice: before and after
            ::kill(child, SIGKILL);
        else
            ::ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
        ::waitpid(child, &status, 0);
    }
    return WIFSIGNALED(status);
}

} // namespace

class FilesKilledTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        if (!SecondDisk().isThere())
            QSKIP("there is no second file system here");
    }

    void beforeAnyCallIntoTheSystem_data() {
        QTest::addColumn<bool>("replaces");
        QTest::newRow("moving") << false;
        QTest::newRow("moving and replacing") << true;
    }
    void beforeAnyCallIntoTheSystem() {
        QFETCH(bool, replaces);
        SecondDisk disk;
        TestHome home;
        int calls = 0;
        int wholeAtTarget = 0;
        for (bool wasKilled = true; wasKilled; ++calls) {
            const Scene scene(home.path(), disk.path(), replaces);
            for (const Location& tree : {scene.source, scene.target})
                std::filesystem::remove_all(pathOf(tree));
            std::filesystem::create_directories(pathOf(scene.source) + "/inner");
            writeFile(pathOf(scene.source) + "/a.png", "picture");
            writeFile(pathOf(scene.source) + "/inner/b.png", QByteArray(200'000, 'b'));
            std::filesystem::create_symlink("a.png", pathOf(scene.source) + "/link");
            setAttribute(scene.source.child("a.png"), "user.com.lumbra.starred", "1");
            if (replaces)
                writeFile(pathOf(scene.target), "replaced");
            const QByteArrayList before = everythingIn(scene.source);
            const QByteArrayList replaced = everythingIn(scene.target);

            wasKilled = killedAtCall(calls + 1, [&] { scene.carry(); });
            checkNothingIsLost(scene, before, replaced);
            checkCleaned(scene);
            if (QTest::currentTestFailed())
                QFAIL(qPrintable(QStringLiteral("killed before call %1").arg(calls + 1)));
            wholeAtTarget += wasKilled && everythingIn(scene.target) == before;
            QVERIFY(wasKilled || !scene.source.exists());
            QVERIFY(calls < 5'000);
        }
        // It was killed before and after the new name was given.
        QVERIFY(calls > 50);
        QVERIFY(wholeAtTarget > 5 && wholeAtTarget < calls - 5);
    }

    void atRandomMoments() {
        SecondDisk disk;
        TestHome home;
        std::mt19937 random(7);
        qint64 whole = 0; // nanoseconds that an undisturbed move takes
        int killed = 0;
        for (int round = 0; round <= 50; ++round) {
            const Scene scene(home.path(), disk.path(), false);
            for (const Location& tree : {scene.source, scene.target})
                std::filesystem::remove_all(pathOf(tree));
            for (int i = 0; i < 100; ++i)
                home.file("source/" + std::to_string(i % 10) + '/' + std::to_string(i),
                          QByteArray(50'000, char('0' + i % 10)));
            const QByteArrayList before = everythingIn(scene.source);
            QElapsedTimer timer;
            timer.start();
            const pid_t child = ::fork();
            if (child == 0) {
                scene.carry();
                ::_exit(0);
            }
            if (round > 0) {
                std::this_thread::sleep_for(std::chrono::nanoseconds(qint64(random() % 1000) * whole / 1000));
                ::kill(child, SIGKILL);
            }
            int status = 0;
            QCOMPARE(::waitpid(child, &status, 0), child);
            if (round == 0)
                whole = timer.nsecsElapsed();
            killed += WIFSIGNALED(status);
            checkNothingIsLost(scene, before, {});
            checkCleaned(scene);
            if (QTest::currentTestFailed())
                return;
        }
        QVERIFY(killed > 10);
    }
};

QTEST_GUILESS_MAIN(FilesKilledTest)
#include "tst_fileskilled.moc"
