// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/FileEvents.h"
#include "support/EventMirror.h"
#include "support/TestHome.h"
#include "support/WatchedFolders.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTest>
#include <QThread>

#include <sys/stat.h>
#include <sys/xattr.h>

#include <fstream>
#include <future>

using namespace lumbra;
namespace fs = std::filesystem;

namespace {

// The folders that are to have a watch, the root included.
size_t shownFolders(const Location& root) {
    size_t count = 1;
    for (const auto& entry : fs::recursive_directory_iterator(text(root)))
        if (entry.is_directory() && entry.path().native().find("/.") == std::string::npos)
            ++count;
    return count;
}

// A folder whose batches come this many seconds apart.
struct Watched {
    explicit Watched(double latency)
        : mirror({root}, [latency] {
              FileEvents::Options options;
              options.latency = latency;
              return options;
          }()) {}

    TestHome home;
    const Location root = home.folder("root");
    EventMirror mirror;
};

// How often the thread of the events gave up the processor, which it does once for each time that it slept.
qint64 wakeUps() {
    for (const auto& task : fs::directory_iterator("/proc/self/task")) {
        QFile name(QString::fromStdString(task.path() / "comm"));
        QFile status(QString::fromStdString(task.path() / "status"));
        if (!name.open(QIODevice::ReadOnly) || name.readAll().trimmed() != "file-events"
            || !status.open(QIODevice::ReadOnly))
            continue;
        for (const QByteArray& line : status.readAll().split('\n'))
            if (line.startsWith("voluntary_ctxt_switches:"))
                return line.mid(line.indexOf(':') + 1).trimmed().toLongLong();
    }
    return -1;
}

} // namespace

class tst_FileEvents : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void reportsAChange_data();
    void reportsAChange();
    void saysWhatWasCreatedAndRenamed();
    void aFolderStandsForWhatIsBelowIt();
    void keepsCreatedWhenTheFolderIsTouchedAfterwards();
    void theFirstEventOfAQuietTimeComesAtOnce();
    void aFileThatIsSavedComesAgainOnceItIsWhole();
    void aBurstComesInOneBatchAWindow();
    void whatWaitsForItsWindowCanBeHadAtOnce();
    void waitingForTheWatchesIsExact();
    void restsWithoutWakingUp();
    void endsInTheMiddleOfEverything();
};

void tst_FileEvents::reportsAChange_data() {
    QTest::addColumn<QByteArray>("script");

    QTest::newRow("a file lands") << QByteArray("echo new > here/new.mp4");
    QTest::newRow("a file is rewritten") << QByteArray("echo longer than before > here/old.mp4");
    QTest::newRow("a file is appended to") << QByteArray("echo more >> here/old.mp4");
    QTest::newRow("a file is truncated") << QByteArray("truncate -s 2 here/old.mp4");
    QTest::newRow("a file is replaced") << QByteArray("echo other bytes > t; mv t here/old.mp4");
    QTest::newRow("a file is starred by another process")
        << QByteArray("setfattr -n user.com.lumbra.starred -v 1 here/old.mp4");
    QTest::newRow("a file loses its star to another process")
        << QByteArray("setfattr -x user.com.lumbra.starred here/starred.mp4");
    QTest::newRow("a file is deleted") << QByteArray("rm here/old.mp4");
    QTest::newRow("a file is renamed") << QByteArray("mv here/old.mp4 here/other.mp4");
    QTest::newRow("a file is moved out") << QByteArray("mv here/old.mp4 ../outside/");
    QTest::newRow("a file is moved in") << QByteArray("mv ../outside/out.mp4 here/");
    QTest::newRow("a file becomes a folder")
        << QByteArray("rm here/old.mp4; mkdir here/old.mp4; echo x > here/old.mp4/x");
    QTest::newRow("a folder becomes a file") << QByteArray("rm -r here; echo x > here");
    QTest::newRow("a folder moves in with files") << QByteArray("mv ../outside/filled .");
    QTest::newRow("a folder moves in and its files change")
        << QByteArray("mv ../outside/filled . && echo late > filled/deep/er/late.mp4 && echo longer >> filled/a.mp4");
    QTest::newRow("a folder is copied in") << QByteArray("cp -a ../outside/filled copy");
    QTest::newRow("a folder moves within") << QByteArray("mv here deep/ && echo late > deep/here/late.mp4");
    QTest::newRow("a folder moves down into its sibling")
        << QByteArray("mkdir n && mv here n/ && mv n deep/ && echo late > deep/n/here/late.mp4");
    QTest::newRow("a folder moves out") << QByteArray(
        "mv here ../outside/ && echo unseen > ../outside/here/unseen.mp4");
    QTest::newRow("a folder moves out and back")
        << QByteArray("mv deep ../outside/ && echo away > ../outside/deep/er/away.mp4 && mv ../outside/deep back && "
                      "echo late > back/er/late.mp4");
    QTest::newRow("two folders swap their names") << QByteArray(
        "mv here t && mv deep here && mv t deep && echo late > here/late.mp4 && echo late > deep/late2.mp4");
    QTest::newRow("two folders swap within their siblings")
        << QByteArray("mv here/in t && mv deep/er here/in && mv t deep/er && echo 1 > here/in/1.mp4 && echo 2 > "
                      "deep/er/2.mp4");
    QTest::newRow("a folder moves onto an empty one")
        << QByteArray("mkdir empty && mv -T here empty && echo late > empty/late.mp4");
    QTest::newRow("a folder is deleted") << QByteArray("rm -r deep");
    QTest::newRow("a folder is deleted and made again")
        << QByteArray("rm -r deep && mkdir -p deep/er && echo again > deep/er/again.mp4");
    QTest::newRow("a hidden folder shows itself") << QByteArray("mv .hidden shown && echo late > shown/late.mp4");
    QTest::newRow("a folder hides itself") << QByteArray("mv here .here && echo unseen > .here/unseen.mp4");
    QTest::newRow("a folder is made, renamed and filled") << QByteArray("mkdir -p q/r; mv q s; echo x > s/r/x.mp4");
}

void tst_FileEvents::reportsAChange() {
    QFETCH(QByteArray, script);
    TestHome home;
    const Location root = home.folder("root");
    QVERIFY(runScript(home.path(),
                      "mkdir -p outside/filled/deep/er root/here/in root/deep/er root/.hidden/in;"
                      "echo a > outside/filled/a.mp4; echo b > outside/filled/deep/er/b.mp4;"
                      "echo out > outside/out.mp4; echo old > root/here/old.mp4; echo s > root/here/starred.mp4;"
                      "setfattr -n user.com.lumbra.starred -v 1 root/here/starred.mp4;"
                      "echo e > root/deep/er/e.mp4; echo in > root/here/in/in.mp4; echo h > root/.hidden/in/h.mp4"));
    EventMirror mirror({root}, withoutDotFolders());
    const auto before = mirror.truth();
    QVERIFY(runScript(root, script));
    QVERIFY(mirror.truth() != before);
    QVERIFY(mirror.becomesTrue());

    // And every watch is where it belongs: what happens from now on is seen.
    QVERIFY(mirror.events().waitUntilWatching(20));
    QVERIFY(runScript(root, "find . -type d ! -path '*/.*' -exec sh -c 'echo after > \"$1/after.mp4\"' - {} \\;"));
    QVERIFY(mirror.becomesTrue());
    QTRY_COMPARE(mirror.events().status().watched, shownFolders(root));
}

void tst_FileEvents::saysWhatWasCreatedAndRenamed() {
    TestHome home;
    const Location root = home.folder("root");
    home.file("outside/in/a.mp4");
    home.file("root/old.mp4");
    EventMirror mirror({root}, withoutDotFolders());

    write(root.child("new.mp4"));
    QTRY_VERIFY(mirror.reported(root.child("new.mp4"), FileEvent::created));

    fs::rename(text(root.child("old.mp4")), text(root.child("other.mp4")));
    QTRY_VERIFY(mirror.reported(root.child("old.mp4"), FileEvent::renamed));
    QTRY_VERIFY(mirror.reported(root.child("other.mp4"), FileEvent::renamed));

    fs::rename(text(home.path().child("outside/in")), text(root.child("in")));
    QTRY_VERIFY(mirror.reported(root.child("in"), FileEvent::renamed));
    QVERIFY(!mirror.reported(root.child("in"), FileEvent::created));

    fs::rename(text(root.child("in")), text(root.child("on")));
    QTRY_VERIFY(mirror.reported(root.child("on"), FileEvent::renamed));

    fs::create_directories(text(root.child("made/inside")));
    QTRY_VERIFY(mirror.reported(root.child("made"), FileEvent::created));

    ::setxattr(root.child("new.mp4").path().constData(), "user.com.lumbra.starred", "1", 1, 0);
    mirror.forgetBatches();
    fs::last_write_time(text(root.child("made")), fs::file_time_type::clock::now());
    QTRY_VERIFY(mirror.reported(root.child("made")));
    QVERIFY(!mirror.reported(root.child("made"), FileEvent::created));
}

void tst_FileEvents::aFolderStandsForWhatIsBelowIt() {
    TestHome home;
    const Location root = home.folder("root");
    for (int i = 0; i < 1000; ++i)
        write(home.folder("root/many").child(numbered("file", i, ".mp4")));
    EventMirror mirror({root});
    QCOMPARE(mirror.view().size(), size_t(1000));

    QVERIFY(runScript(root, "rm -r many"));
    QVERIFY(mirror.becomesTrue());
    QTRY_VERIFY(mirror.reported(root.child("many")));
    QVERIFY(mirror.view().empty());
    // What was deleted before the first batch left came by itself; the rest is covered by the folder.
    const auto batches = mirror.batches();
    const auto& last = batches.back();
    QVERIFY(std::ranges::any_of(last, [&](const FileEvent& event) { return event.path == root.child("many"); }));
    QCOMPARE(last.size(), 1);
}

void tst_FileEvents::keepsCreatedWhenTheFolderIsTouchedAfterwards() {
    Watched watched(0.5);
    auto& [home, root, mirror] = watched;
    fs::rename(text(home.file("aside/opens-the-window.mp4")), text(root.child("opens-the-window.mp4")));
    QTRY_VERIFY(!mirror.batches().isEmpty());
    const Location folder = root.child("folder");
    fs::create_directory(text(folder));
    TestHome::touch(folder, 1'000'000);
    ::chmod(folder.path().constData(), 0700);
    QTRY_COMPARE(mirror.batches().size(), 2);
    const auto batch = mirror.batches().back();
    QCOMPARE(std::ranges::count(batch, folder, &FileEvent::path), 1);
    QVERIFY(mirror.reported(folder, FileEvent::created));
}

void tst_FileEvents::theFirstEventOfAQuietTimeComesAtOnce() {
    Watched watched(3600);
    auto& [home, root, mirror] = watched;
    const Location file = home.file("aside/first.mp4");
    fs::rename(text(file), text(root.child("first.mp4")));
    QTRY_COMPARE(mirror.batches().size(), 1);
    QVERIFY(mirror.reported(root.child("first.mp4")));
}

void tst_FileEvents::aFileThatIsSavedComesAgainOnceItIsWhole() {
    Watched watched(3600);
    auto& [home, root, mirror] = watched;
    std::ofstream file(text(root.child("part")));
    QTRY_COMPARE(mirror.batches().size(), 1);
    file << "some" << std::flush;
    file.close();
    QTRY_COMPARE(mirror.batches().size(), 2);
    fs::rename(text(root.child("part")), text(root.child("whole.mp4")));
    QTRY_VERIFY(mirror.reported(root.child("whole.mp4"), FileEvent::renamed));
    QVERIFY(mirror.becomesTrue());
}

void tst_FileEvents::aBurstComesInOneBatchAWindow() {
    Watched watched(0.4);
    auto& [home, root, mirror] = watched;

    QElapsedTimer clock;
    clock.start();
    int made = 0;
    while (clock.elapsed() < 1000)
        write(root.child(numbered("file", made++ % 100, ".mp4")));
    QVERIFY(mirror.becomesTrue());
    QTRY_VERIFY(mirror.batches().size() >= 3);
    // At 0, 0.4 and 0.8 seconds, and what came last; and the first file once more as it is closed.
    QVERIFY2(mirror.batches().size() <= 3 + clock.elapsed() / 400,
             qPrintable(QString::number(mirror.batches().size())));
    for (const auto& batch : mirror.batches()) {
        auto sorted = batch;
        std::ranges::sort(sorted, {}, &FileEvent::path);
        QVERIFY(std::ranges::adjacent_find(sorted, {}, &FileEvent::path) == sorted.end());
    }
}

void tst_FileEvents::whatWaitsForItsWindowCanBeHadAtOnce() {
    Watched watched(3600);
    auto& [home, root, mirror] = watched;
    fs::rename(text(home.file("aside/opens-the-window.mp4")), text(root.child("opens-the-window.mp4")));
    QTRY_COMPARE(mirror.batches().size(), 1);
    for (int i = 0; i < 20; ++i) {
        const Location file = root.child(numbered("file", i, ".mp4"));
        write(file);
        std::promise<bool> isDelivered;
        mirror.events().deliverNow([&] { isDelivered.set_value(mirror.reported(file)); });
        QVERIFY(isDelivered.get_future().get());
    }
    // Also when there is nothing to deliver, and in the order in which it was asked for.
    std::promise<QByteArray> order;
    const auto letters = std::make_shared<QByteArray>();
    mirror.events().deliverNow([letters] { letters->append('a'); });
    mirror.events().deliverNow([letters, &order] { order.set_value(letters->append('b')); });
    QCOMPARE(order.get_future().get(), QByteArray("ab"));
}

void tst_FileEvents::waitingForTheWatchesIsExact() {
    TestHome home;
    const Location root = home.folder("root");
    FileEvents events({root}, withoutDotFolders(), [](const QList<FileEvent>&) {});
    for (int i = 0; i < 100; ++i) {
        fs::create_directories(text(root.child(numbered("n", i, "/a/b"))));
        QVERIFY(events.waitUntilWatching(20));
        QCOMPARE(events.status().watched, size_t(1 + 3 * (i + 1)));
    }
    fs::remove_all(text(root.child("n0")));
    QVERIFY(events.waitUntilWatching(20));
    QCOMPARE(events.status().watched, size_t(1 + 3 * 99));
}

void tst_FileEvents::restsWithoutWakingUp() {
    TestHome home;
    const Location root = home.folder("root");
    EventMirror mirror({root}, withoutDotFolders());
    fs::create_directories(text(root.child("a/b/c")));
    fs::rename(text(root.child("a")), text(home.path().child("away")));
    QVERIFY(mirror.becomesTrue());

    // After the last window and the last open move the thread sleeps for good.
    qint64 before = 0;
    const auto staysAsleep = [&before] {
        before = wakeUps();
        QTest::qWait(1500);
        return wakeUps() == before;
    };
    QTRY_VERIFY(staysAsleep());
    QVERIFY(before > 0);

    write(root.child("wakes.mp4"));
    QTRY_VERIFY(mirror.reported(root.child("wakes.mp4")));
    QTRY_VERIFY(wakeUps() > before); // counted as it falls asleep again
}

void tst_FileEvents::endsInTheMiddleOfEverything() {
    TestHome home;
    const Location root = home.folder("root");
    for (int i = 0; i < 300; ++i)
        home.folder(numbered("root/n", i, "/a/b"));
    for (int i = 0; i < 50; ++i) {
        std::atomic<bool> ended = false;
        std::atomic<bool> calledLate = false;
        {
            FileEvents events({root}, withoutDotFolders(), [&](const QList<FileEvent>&) { calledLate = bool(ended); });
            if (i % 2)
                QThread::usleep(unsigned(i) * 100);
            write(root.child(numbered("file", i, ".mp4")));
        }
        ended = true;
        write(root.child(numbered("late", i, ".mp4")));
        QVERIFY(!calledLate);
    }
}

QTEST_GUILESS_MAIN(tst_FileEvents)
#include "tst_fileevents.moc"
