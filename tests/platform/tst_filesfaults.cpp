// When disks fail, rights are lost, places vanish and users change their minds: what has not arrived leaves nothing,
// and its source is as it was.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Files.h"
#include "support/FileSystems.h"
#include "support/FileTrees.h"
#include "support/TestHome.h"

#include <QTest>
#include <QThread>

#include <sys/statvfs.h>

#include <cerrno>
#include <chrono>
#include <filesystem>
#include <memory>
#include <random>
#include <thread>

using namespace lumbra;
using Files::Transfer;

namespace {

using Report = std::function<void(const Files::Progress&)>;

Report once(const std::function<void()>& act) {
    return [act, isDone = std::make_shared<bool>(false)](const Files::Progress&) {
        if (!std::exchange(*isDone, true))
            act();
    };
}

quint64 freeBlocks(const Location& folder) {
    struct statvfs facts;
    return ::statvfs(folder.path().constData(), &facts) == 0 ? facts.f_bfree : 0;
}

void kinds() {
    QTest::addColumn<bool>("isMove");
    QTest::newRow("copy") << false;
    QTest::newRow("move") << true;
}

Transfer::Kind kindOf(bool isMove) {
    return isMove ? Transfer::Kind::move : Transfer::Kind::copy;
}

} // namespace

class FilesFaultsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aFullDisk_data() { kinds(); }
    void aFullDisk() {
        QFETCH(bool, isMove);
        TestHome home;
        const MountedDisk disk("tmpfs", "size=1m");
        if (!disk.isThere())
            QSKIP("nothing may be mounted here");
        for (const char* name : {"source/a.png", "source/inner/b.png", "source/inner/c.png"})
            home.file(name, QByteArray(600'000, 'x'));
        const Location source = home.path().child("source");
        const QByteArrayList before = everythingIn(source);
        const quint64 blocks = freeBlocks(disk.path());
        const Location fitting = home.file("fitting.png", QByteArray(600'000, 'f'));
        const auto arrivals = Files::carryOut({{source, disk.path().child("source"), kindOf(isMove)},
                                               {fitting, disk.path().child("fitting.png"), kindOf(isMove)}},
                                              home.path().child("journal"));
        QVERIFY(!arrivals[0].target);
        QCOMPARE(arrivals[0].error->code, ENOSPC);
        QVERIFY(arrivals[0].error->description.endsWith(QStringLiteral(".png: the disk is full.")));
        QCOMPARE(everythingIn(source), before);
        // What there was room for has arrived.
        QCOMPARE(arrivals[1].target, disk.path().child("fitting.png"));
        QCOMPARE(namesIn(disk.path()), QByteArrayList{"fitting.png"});
        QCOMPARE(fitting.exists(), !isMove);
        QVERIFY(QFile::remove(disk.path().child("fitting.png").toString()));
        QCOMPARE(freeBlocks(disk.path()), blocks);
        QVERIFY(!home.path().child("journal").exists());
    }

    void aDiskWithoutRoomForOneMoreName() {
        TestHome home;
        const MountedDisk disk("tmpfs", "size=1m,nr_inodes=5");
        if (!disk.isThere())
            QSKIP("nothing may be mounted here");
        for (int i = 0; i < 9; ++i)
            home.file("source/" + std::to_string(i));
        const auto arrivals =
            Files::carryOut({{home.path().child("source"), disk.path().child("source"), Transfer::Kind::move}},
                            home.path().child("journal"));
        QCOMPARE(arrivals[0].error->code, ENOSPC);
        QCOMPARE(namesIn(disk.path()), QByteArrayList());
        QCOMPARE(namesIn(home.path().child("source")).size(), 9);
    }

    void aFullDiskForTheJournalStopsNothing() {
        TestHome home;
        const MountedDisk disk("tmpfs", "size=8k");
        if (!disk.isThere())
            QSKIP("nothing may be mounted here");
        writeFile(pathOf(disk.path()) + "/filler", QByteArray(16384, 'x'));
        const auto arrivals = Files::carryOut({{home.file("a.png"), home.path().child("b.png"), Transfer::Kind::copy}},
                                              disk.path().child("journal"));
        QCOMPARE(arrivals[0].target, home.path().child("b.png"));
        Files::cleanLeftovers(disk.path().child("journal"));
        QVERIFY(home.path().child("b.png").exists());
    }

    void aDiskThatBecomesReadOnly() {
        TestHome home;
        const MountedDisk disk("tmpfs", "size=1m");
        if (!disk.isThere())
            QSKIP("nothing may be mounted here");
        const Location source = home.file("source/a.png").parent();
        const Location journal = home.path().child("journal");
        const auto remount = [&](unsigned long flags) {
            return ::mount(nullptr, disk.path().path().constData(), nullptr, MS_REMOUNT | flags, nullptr);
        };
        const int failedStep = inChild([&] {
            int remounted = -1;
            const auto arrivals = Files::carryOut({{source, disk.path().child("source"), Transfer::Kind::move}},
                                                  journal, {}, once([&] { remounted = remount(MS_RDONLY); }));
            if (remounted != 0)
                return 1;
            return !arrivals[0].target && arrivals[0].error->code == EROFS ? 0 : 2;
        });
        QCOMPARE(failedStep, 0);
        QVERIFY(source.child("a.png").exists());
        // What could not be removed is, once it can be.
        QVERIFY(!Files::isTaken(disk.path().child("source")));
        QCOMPARE(namesIn(disk.path()).size(), 1);
        QCOMPARE(remount(0), 0);
        Files::cleanLeftovers(journal);
        QCOMPARE(namesIn(disk.path()), QByteArrayList());
        QVERIFY(!journal.exists());
    }

    void aFolderThatMayNotBeRead_data() {
        QTest::addColumn<bool>("isMove");
        QTest::addColumn<bool>("meanwhile");
        QTest::newRow("copy") << false << false;
        QTest::newRow("move") << true << false;
        QTest::newRow("copy, the right is lost meanwhile") << false << true;
        QTest::newRow("move, the right is lost meanwhile") << true << true;
    }
    void aFolderThatMayNotBeRead() {
        QFETCH(bool, isMove);
        QFETCH(bool, meanwhile);
        TestHome home;
        SecondDisk disk;
        const Location source = home.folder("source");
        const std::string inner = pathOf(source) + "/inner";
        const int failedStep = inChild([&] {
            if (!losePrivileges())
                return 1;
            home.file("source/inner/deeper/a.png");
            const auto close = [&] { ::chmod((inner + "/deeper").c_str(), 0); };
            if (meanwhile)
                home.file("source/inner/first"); // reported before its neighbour is entered, or after
            else
                close();
            const auto arrivals = Files::carryOut({{source, disk.path().child("source"), kindOf(isMove)}},
                                                  home.path().child("journal"), {}, meanwhile ? once(close) : Report());
            ::chmod((inner + "/deeper").c_str(), 0700);
            if (!arrivals[0].target && arrivals[0].error->code != EACCES)
                return 2;
            if (!arrivals[0].target && !(source.child("inner").child("deeper").child("a.png").exists()))
                return 3;
            if (!meanwhile && arrivals[0].target)
                return 4;
            return 0;
        });
        QCOMPARE(failedStep, 0);
        if (!meanwhile)
            QCOMPARE(namesIn(disk.path()), QByteArrayList());
        QVERIFY(!home.path().child("journal").exists());
    }

    void aFolderThatMayNotBeWritten_data() { kinds(); }
    void aFolderThatMayNotBeWritten() {
        QFETCH(bool, isMove);
        TestHome home;
        SecondDisk disk;
        const Location source = home.file("from/a.png");
        QCOMPARE(::chmod(disk.path().path().constData(), 0555), 0);
        const int failedStep = inChild([&] {
            if (!losePrivileges())
                return 1;
            const auto arrivals =
                Files::carryOut({{source, disk.path().child("a.png"), kindOf(isMove)}}, home.path().child("journal"));
            return !arrivals[0].target && arrivals[0].error->code == EACCES ? 0 : 2;
        });
        QCOMPARE(failedStep, 0);
        QVERIFY(source.exists());
    }

    void theTargetFolderVanishes_data() { kinds(); }
    void theTargetFolderVanishes() {
        QFETCH(bool, isMove);
        TestHome home;
        SecondDisk disk;
        const Location source = home.path().child("source");
        const EmptiedAtEnd homeEmptied(home.path());
        makeMixedTree(source);
        const QByteArrayList before = everythingIn(source);
        QVERIFY(!Files::makeFolder(disk.path().child("to")));
        const auto vanish = [&] { std::filesystem::remove_all(pathOf(disk.path()) + "/to"); };
        const auto arrivals = Files::carryOut({{source, disk.path().child("to").child("source"), kindOf(isMove)}},
                                              home.path().child("journal"), {}, once(vanish));
        QVERIFY(!arrivals[0].target);
        QVERIFY(arrivals[0].error);
        QCOMPARE(everythingIn(source), before);
        QCOMPARE(namesIn(disk.path()), QByteArrayList());
        QVERIFY(!home.path().child("journal").exists());
    }

    void theTargetFolderIsMissing() {
        TestHome home;
        const auto arrivals =
            Files::carryOut({{home.file("a.png"), home.path().child("none").child("a.png"), Transfer::Kind::copy}},
                            home.path().child("journal"));
        QCOMPARE(arrivals[0].error->code, ENOENT);
        QVERIFY(!home.path().child("none").exists());
    }

    void theSourceVanishes() {
        TestHome home;
        SecondDisk disk;
        const Location source = home.file("source/inner/a.png").parent().parent();
        const auto vanish = [&] { std::filesystem::remove_all(pathOf(source)); };
        const auto arrivals = Files::carryOut({{source, disk.path().child("source"), Transfer::Kind::move}},
                                              home.path().child("journal"), {}, once(vanish));
        // Whichever way it ends, nothing hidden is left.
        QVERIFY(arrivals[0].target || arrivals[0].error);
        for (const QByteArray& name : namesIn(disk.path()))
            QCOMPARE(name, QByteArray("source"));
        QVERIFY(!home.path().child("journal").exists());
    }

    void theNameIsTakenMeanwhile() {
        TestHome home;
        const Location source = home.file("a.png", "new");
        const Location target = home.folder("to").child("a.png");
        const auto arrivals = Files::carryOut({{source, target, Transfer::Kind::copy}}, home.path().child("journal"),
                                              {}, once([&] { home.file("to/a.png", "other"); }));
        QCOMPARE(arrivals[0].target, home.path().child("to").child("a 2.png"));
        QCOMPARE(fileBytes(target), "other");
    }

    void cancelledBeforeItBegins_data() { kinds(); }
    void cancelledBeforeItBegins() {
        QFETCH(bool, isMove);
        TestHome home;
        std::stop_source stop;
        stop.request_stop();
        const Location source = home.file("a.png");
        const auto arrivals = Files::carryOut({{source, home.path().child("b.png"), kindOf(isMove)}},
                                              home.path().child("journal"), stop.get_token());
        QVERIFY(!arrivals[0].target && !arrivals[0].error);
        QVERIFY(source.exists() && !home.path().child("b.png").exists());
    }

    void cancelledAtAnyStep_data() { kinds(); }
    void cancelledAtAnyStep() {
        QFETCH(bool, isMove);
        TestHome home;
        SecondDisk disk;
        if (!disk.isThere())
            QSKIP("there is no second file system here");
        const Location source = home.file("source/a.png", "picture").parent();
        home.file("source/inner/b.mp4", QByteArray(400'000, 'b'));
        const QByteArrayList before = everythingIn(source);
        for (int step = 0;; ++step) {
            std::stop_source stop;
            int left = step;
            const auto arrivals = Files::carryOut({{source, disk.path().child("source"), kindOf(isMove)}},
                                                  home.path().child("journal"), stop.get_token(), [&](const auto&) {
                                                      if (left-- == 0)
                                                          stop.request_stop();
                                                      QThread::msleep(51); // so that each step is reported
                                                  });
            QVERIFY(!arrivals[0].error);
            QVERIFY(!home.path().child("journal").exists());
            if (arrivals[0].target)
                break;
            QVERIFY(step < 50);
            QCOMPARE(namesIn(disk.path()), QByteArrayList());
            QCOMPARE(everythingIn(source), before);
        }
        QCOMPARE(everythingIn(disk.path().child("source")), before);
        QCOMPARE(source.exists(), !isMove);
    }

    void cancelledAtAnyMoment() {
        SecondDisk disk;
        if (!disk.isThere())
            QSKIP("there is no second file system here");
        std::mt19937 random(1);
        int cancelled = 0;
        for (int round = 0; round < 50; ++round) {
            TestHome home;
            const Location journal = disk.path().child("journal");
            const Location folder = disk.path().child("to");
            QVERIFY(!Files::makeFolder(folder));
            QList<Transfer> transfers;
            QList<QByteArrayList> before;
            for (int i = 0; i < 20; ++i) {
                const std::string name = "source " + std::to_string(i);
                for (int j = 0; j < 5; ++j)
                    home.file(name + '/' + std::to_string(j), QByteArray(20'000, char('a' + j)));
                transfers.append({home.path().child(name), folder.child(name), Transfer::Kind::move});
                before.append(everythingIn(home.path().child(name)));
            }
            std::stop_source stop;
            QList<Files::Arrival> arrivals;
            {
                const auto wait = std::chrono::microseconds(random() % 10'000);
                const std::jthread canceller([&stop, wait] {
                    std::this_thread::sleep_for(wait);
                    stop.request_stop();
                });
                arrivals = Files::carryOut(transfers, journal, stop.get_token());
            }
            for (qsizetype i = 0; i < arrivals.size(); ++i) {
                QVERIFY(!arrivals[i].error);
                QCOMPARE(everythingIn(arrivals[i].target.value_or(arrivals[i].source)), before[i]);
                QCOMPARE(Files::isTaken(transfers[i].target), arrivals[i].target.has_value());
                QCOMPARE(Files::isTaken(transfers[i].source), !arrivals[i].target.has_value());
                cancelled += !arrivals[i].target;
            }
            for (const QByteArray& name : namesIn(folder))
                QVERIFY(name.startsWith("source"));
            QVERIFY(!journal.exists());
            std::filesystem::remove_all(pathOf(folder));
        }
        QVERIFY(cancelled > 0);
    }
};

int main(int argc, char** argv) {
    enterOwnMounts();
    QCoreApplication application(argc, argv);
    FilesFaultsTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_filesfaults.moc"
