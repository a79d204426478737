// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/FileEvents.h"
#include "support/EventMirror.h"
#include "support/TestHome.h"
#include "support/WatchedFolders.h"

#include <QFile>
#include <QProcess>
#include <QSemaphore>
#include <QTest>

#include <atomic>
#include <mutex>

using namespace lumbra;
namespace fs = std::filesystem;

// What happens when the kernel gives no more: its queue is full, or there are no watches left.
class tst_FileEventsLimits : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void eventsThatTheKernelDroppedAreMadeUpFor();
    void aTreeThatMovedWhileEventsWereDroppedIsWatchedWhereItIs();
    void foldersWithoutAWatchArePolled();
    void polledFoldersGetAWatchOnceThereIsOne();
    void theKernelsLimitsAreLivedWith_data();
    void theKernelsLimitsAreLivedWith();
    void worksUnderTheKernelsLimits();
};

void tst_FileEventsLimits::eventsThatTheKernelDroppedAreMadeUpFor() {
    TestHome home;
    const Location root = home.folder("root");
    for (int i = 0; i < 100; ++i)
        home.file(numbered("root/old/file", i, ".mp4"));
    std::mutex mutex;
    QList<FileEvent> events;
    QSemaphore delivered;
    QSemaphore mayGoOn;
    FileEvents watched({root}, quick(), [&](const QList<FileEvent>& batch) {
        {
            const std::lock_guard lock(mutex);
            events += batch;
        }
        delivered.release();
        mayGoOn.acquire();
    });
    QVERIFY(watched.waitUntilWatching(20));

    // The first batch holds the reader up while more happens than the kernel keeps.
    write(text(root.child("first.mp4")));
    QVERIFY(delivered.tryAcquire(1, 20'000));
    const fs::path fresh = text(root.child("fresh"));
    fs::create_directory(fresh);
    for (int i = 0; i < 30'000; ++i)
        write(text(root.child(numbered("new", i, ".mp4"))));
    fs::create_directories(fresh / "deep");
    fs::remove_all(text(root.child("old")));
    mayGoOn.release(1000);

    QTRY_VERIFY(watched.status().overflows > 0);
    QVERIFY(watched.waitUntilWatching(20));
    QCOMPARE(watched.status().watched, size_t(3));
    const auto hasScan = [&] {
        const std::lock_guard lock(mutex);
        return std::ranges::any_of(
            events, [&](const FileEvent& event) { return event.path == root && (event.flags & FileEvent::mustScan); });
    };
    QTRY_VERIFY(hasScan());

    // Afterwards all is as before.
    write(fresh / "deep/after.mp4");
    const auto hasAfter = [&] {
        const std::lock_guard lock(mutex);
        return std::ranges::any_of(
            events, [&](const FileEvent& event) { return event.path == root.child("fresh/deep/after.mp4"); });
    };
    QTRY_VERIFY(hasAfter());
}

void tst_FileEventsLimits::aTreeThatMovedWhileEventsWereDroppedIsWatchedWhereItIs() {
    TestHome home;
    const Location root = home.folder("root");
    home.file("root/a/deep/er/x.mp4");
    home.file("root/b/y.mp4");
    home.folder("root/leaves");
    std::atomic<bool> hold = false;
    QSemaphore mayGoOn;
    QSemaphore held;
    FileEvents::Options options = quick();
    options.enters = [&](std::string_view name) {
        // The reader asks here in the midst of reading.
        if (name == "hold" && hold.exchange(false)) {
            held.release();
            mayGoOn.acquire();
        }
        return true;
    };
    EventMirror mirror({root}, options);
    hold = true;
    fs::create_directory(text(root.child("hold")));
    QVERIFY(held.tryAcquire(1, 20'000));
    for (int i = 0; i < 30'000; ++i)
        write(text(root.child(numbered("b/new", i % 1000, ".mp4"))), size_t(1 + i / 1000));
    fs::rename(text(root.child("a/deep")), text(root.child("b/moved")));
    fs::rename(text(root.child("leaves")), text(home.path().child("left")));
    fs::create_directory(text(root.child("a/deep")));
    mayGoOn.release();

    QVERIFY(mirror.becomesTrue());
    QTRY_VERIFY(mirror.events().status().overflows > 0);
    QVERIFY(mirror.events().waitUntilWatching(20));
    QCOMPARE(mirror.events().status().watched, foldersIn(root));
    write(text(root.child("b/moved/er/late.mp4")));
    write(text(root.child("a/deep/late.mp4")));
    QVERIFY(mirror.becomesTrue());
}

void tst_FileEventsLimits::foldersWithoutAWatchArePolled() {
    TestHome home;
    const Location root = home.folder("root");
    for (int i = 0; i < 20; ++i)
        home.file(numbered("root/n", i, "/deep/file.mp4"));
    FileEvents::Options options = quick();
    options.watchLimit = 7;
    EventMirror mirror({root}, options);
    QCOMPARE(mirror.events().status().watched, size_t(7));
    QCOMPARE(mirror.events().status().polled, foldersIn(root) - 7);

    QVERIFY(runScript(root,
                      "for i in $(seq 0 19); do echo more >> n$i/deep/file.mp4; echo new > n$i/deep/new.mp4; done;"
                      "mkdir -p n3/deep/er/still; echo x > n3/deep/er/still/x.mp4; rm -r n4/deep; mv n5/deep n6/other;"
                      "setfattr -n user.com.lumbra.starred -v 1 n7/deep/file.mp4; rm n8/deep/file.mp4;"
                      "rm n9/deep/file.mp4; mkdir n9/deep/file.mp4; echo x > n9/deep/file.mp4/x.mp4;"
                      "mv n10 n1/; mv n11 ..; truncate -s 0 n12/deep/file.mp4"));
    QVERIFY(mirror.becomesTrue());
    QVERIFY(mirror.events().waitUntilWatching(20));
    QTRY_COMPARE(mirror.events().status().watched + mirror.events().status().polled, foldersIn(root));

    // A second time, to see that the pictures were kept up.
    QVERIFY(runScript(root, "find . -type d -exec sh -c 'echo after > \"$1/after.mp4\"' - {} \\;"));
    QVERIFY(mirror.becomesTrue());
    QVERIFY(runScript(root, "find . -name after.mp4 -delete"));
    QVERIFY(mirror.becomesTrue());
}

void tst_FileEventsLimits::polledFoldersGetAWatchOnceThereIsOne() {
    TestHome home;
    const Location root = home.folder("root");
    home.folder("root/a/b/c");
    home.folder("root/d/e/f");
    FileEvents::Options options = quick();
    options.watchLimit = 4;
    EventMirror mirror({root}, options);
    QCOMPARE(mirror.events().status().polled, size_t(3));
    fs::remove_all(text(root.child("a")));
    QTRY_COMPARE(mirror.events().status(), (FileEvents::Status{4, 0, 0, true}));
    write(text(root.child("d/e/f/x.mp4")));
    QVERIFY(mirror.becomesTrue());
}

void tst_FileEventsLimits::theKernelsLimitsAreLivedWith_data() {
    QTest::addColumn<QByteArray>("limit");
    QTest::newRow("few watches") << QByteArray("max_inotify_watches");
    QTest::newRow("no queue of events at all") << QByteArray("max_inotify_instances");
}

// The kernel's limits hold for a user namespace, so a test of them needs its own process in one of its own.
void tst_FileEventsLimits::theKernelsLimitsAreLivedWith() {
    QFETCH(QByteArray, limit);
    QProcess limited;
    limited.setProcessChannelMode(QProcess::MergedChannels);
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LIMITED_BY"), QString::fromLatin1(limit));
    limited.setProcessEnvironment(environment);
    limited.start(QStringLiteral("unshare"),
                  {QStringLiteral("-Ur"), QStringLiteral("/bin/sh"), QStringLiteral("-c"),
                   QStringLiteral("echo $1 > /proc/sys/user/$LIMITED_BY && exec $0 worksUnderTheKernelsLimits"),
                   QCoreApplication::applicationFilePath(),
                   limit.endsWith("watches") ? QStringLiteral("8") : QStringLiteral("0")});
    QVERIFY2(limited.waitForFinished(60'000), "the process with a user namespace of its own did not end");
    const QByteArray output = limited.readAll();
    QVERIFY2(limited.exitCode() == 0, output.constData());
}

void tst_FileEventsLimits::worksUnderTheKernelsLimits() {
    const QByteArray limit = qgetenv("LIMITED_BY");
    if (limit.isEmpty())
        return; // started by the test above
    TestHome home;
    const Location root = home.folder("root");
    for (int i = 0; i < 10; ++i)
        home.file(numbered("root/n", i, "/deep/file.mp4"));
    EventMirror mirror({root}, quick());
    const size_t watched = limit.endsWith("watches") ? 8 : 0;
    QCOMPARE(mirror.events().status(), (FileEvents::Status{watched, 21 - watched, 0, true}));
    for (int i = 0; i < 10; ++i)
        write(text(root.child(numbered("n", i, "/deep/new.mp4"))));
    fs::rename(text(root.child("n1/deep")), text(root.child("n2/moved")));
    fs::create_directories(text(root.child("n3/made/deep")));
    write(text(root.child("n3/made/deep/x.mp4")));
    QVERIFY(mirror.becomesTrue());

    // Once the limit is raised, as `lumbra status` advises, every folder gets its watch.
    QFile setting(QStringLiteral("/proc/sys/user/") + QString::fromLatin1(limit));
    QVERIFY(setting.open(QIODevice::WriteOnly) && setting.write("1000") > 0);
    setting.close();
    QTRY_COMPARE(mirror.events().status(), (FileEvents::Status{foldersIn(root), 0, 0, true}));
    write(text(root.child("n9/deep/late.mp4")));
    QVERIFY(mirror.becomesTrue());
}

QTEST_GUILESS_MAIN(tst_FileEventsLimits)
#include "tst_fileeventslimits.moc"
