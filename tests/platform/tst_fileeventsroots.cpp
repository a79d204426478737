// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/FileEvents.h"
#include "support/EventMirror.h"
#include "support/TestHome.h"
#include "support/WatchedFolders.h"

#include <QTest>

#include <sys/mount.h>

using namespace lumbra;
namespace fs = std::filesystem;

namespace {

std::optional<QByteArray> whyNothingCanBeMounted;

void mountMemory(const Location& folder) {
    QVERIFY2(!whyNothingCanBeMounted, whyNothingCanBeMounted.value_or(QByteArray()).constData());
    QCOMPARE(::mount("none", folder.path().constData(), "tmpfs", 0, nullptr), 0);
}

void mountFolder(const Location& source, const Location& folder) {
    QVERIFY2(!whyNothingCanBeMounted, whyNothingCanBeMounted.value_or(QByteArray()).constData());
    QCOMPARE(::mount(source.path().constData(), folder.path().constData(), nullptr, MS_BIND, nullptr), 0);
}

void unmount(const Location& folder) {
    // Lazily, for the watches look at it for an instant.
    QCOMPARE(::umount2(folder.path().constData(), MNT_DETACH), 0);
}

// No event that says of anything in the root that it is not there.
bool nothingIsReported(const EventMirror& mirror) {
    return mirror.batches().isEmpty();
}

} // namespace

class tst_FileEventsRoots : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aRootThatIsMissingIsWaitedFor();
    void aRootThatIsRenamedAwayTakesNothingWithIt();
    void aRootThatIsBackBeforeAnyoneLookedIsReportedAsAWhole();
    void aRootWhoseParentIsRenamedTakesNothingWithIt();
    void aRootThatIsDeletedAndMadeAgainIsWatched();
    void anotherFolderInTheRootsPlaceIsTheRoot();
    void aRootThatIsALinkIsNotThere();
    void otherRootsGoOnWhileOneIsMissing();
    void anUnmountedRootTakesNothingWithIt_data();
    void anUnmountedRootTakesNothingWithIt();
    void aFileSystemThatEndsTakesNothingWithIt();
    void aRootOnAnUnmountedFileSystemTakesNothingWithIt();
    void aFileSystemMountedOverTheRootIsTheRoot();
    void aFileSystemUnmountedInsideARootTakesNothingWithIt();
    void aFolderMountedInsideItselfIsGoneThroughOnce();
};

void tst_FileEventsRoots::aRootThatIsMissingIsWaitedFor() {
    TestHome home;
    const Location root = home.path().child("not/yet");
    EventMirror mirror({root}, quick());
    QCOMPARE(mirror.events().status(), (FileEvents::Status{0, 0, 0, false}));
    QVERIFY(mirror.events().waitUntilWatching(20));

    home.file("elsewhere/deep/a.mp4");
    fs::create_directory(text(root.parent()));
    fs::rename(text(home.path().child("elsewhere")), text(root));
    QTRY_VERIFY(mirror.reported(root, FileEvent::mustScan));
    QVERIFY(mirror.becomesTrue());
    QCOMPARE(mirror.view().size(), size_t(1));
    QTRY_COMPARE(mirror.events().status(), (FileEvents::Status{2, 0, 0, true}));
    write(root.child("deep/b.mp4"));
    QVERIFY(mirror.becomesTrue());
}

void tst_FileEventsRoots::aRootThatIsRenamedAwayTakesNothingWithIt() {
    TestHome home;
    const Location root = home.folder("root");
    const Location away = home.path().child("away");
    home.file("root/a/deep/x.mp4");
    home.file("root/b/y.mp4");
    EventMirror mirror({root}, quick());
    const auto before = mirror.view();

    fs::rename(text(root), text(away));
    QTRY_COMPARE(mirror.events().status(), (FileEvents::Status{0, 0, 0, false}));
    write(away.child("a/deep/x.mp4"), 6);
    fs::remove(text(away.child("b/y.mp4")));
    write(away.child("new.mp4"));
    QVERIFY(mirror.events().waitUntilWatching(20));
    QVERIFY(nothingIsReported(mirror));
    QVERIFY(mirror.view() == before);

    fs::rename(text(away), text(root));
    QVERIFY(mirror.becomesTrue());
    QVERIFY(mirror.view() != before);
    QTRY_COMPARE(mirror.events().status(), (FileEvents::Status{4, 0, 0, true}));
    QCOMPARE(mirror.batches(), (QList<QList<FileEvent>>{{{root, FileEvent::mustScan}}}));
    write(root.child("a/deep/z.mp4"));
    QVERIFY(mirror.becomesTrue());
}

void tst_FileEventsRoots::aRootThatIsBackBeforeAnyoneLookedIsReportedAsAWhole() {
    TestHome home;
    const Location root = home.folder("root");
    const Location away = home.path().child("away");
    home.file("root/a/x.mp4");
    EventMirror mirror({root}, quick());
    for (int i = 0; i < 50; ++i) {
        fs::rename(text(root), text(away));
        write(away.child(numbered("a/file", i, ".mp4")));
        fs::rename(text(away), text(root));
    }
    QVERIFY(mirror.becomesTrue());
    QTRY_VERIFY(mirror.reported(root, FileEvent::mustScan));
    QTRY_COMPARE(mirror.events().status(), (FileEvents::Status{2, 0, 0, true}));
}

void tst_FileEventsRoots::aRootWhoseParentIsRenamedTakesNothingWithIt() {
    TestHome home;
    const Location root = home.folder("disk/root");
    home.file("disk/root/a/x.mp4");
    EventMirror mirror({root}, quick());
    const auto before = mirror.view();

    // Nothing tells of it but that the root's own events now come from nowhere.
    fs::rename(text(home.path().child("disk")), text(home.path().child("other")));
    const Location away = home.path().child("other/root");
    fs::remove(text(away.child("a/x.mp4")));
    write(away.child("a/new.mp4"));
    QTRY_VERIFY(!mirror.events().status().rootsPresent);
    QVERIFY(nothingIsReported(mirror));
    QVERIFY(mirror.view() == before);

    fs::rename(text(home.path().child("other")), text(home.path().child("disk")));
    QVERIFY(mirror.becomesTrue());
    QVERIFY(mirror.view() != before);
    QTRY_COMPARE(mirror.events().status(), (FileEvents::Status{2, 0, 0, true}));
}

void tst_FileEventsRoots::aRootThatIsDeletedAndMadeAgainIsWatched() {
    TestHome home;
    const Location root = home.folder("root");
    home.file("root/a/x.mp4");
    EventMirror mirror({root}, quick());
    fs::remove_all(text(root));
    QTRY_VERIFY(!mirror.events().status().rootsPresent);

    home.file("root/b/y.mp4");
    QVERIFY(mirror.becomesTrue());
    QTRY_COMPARE(mirror.events().status(), (FileEvents::Status{2, 0, 0, true}));
    write(root.child("b/z.mp4"));
    QVERIFY(mirror.becomesTrue());
    QVERIFY(!mirror.view().contains(text(root.child("a/x.mp4"))));
}

void tst_FileEventsRoots::anotherFolderInTheRootsPlaceIsTheRoot() {
    TestHome home;
    const Location root = home.folder("root");
    home.file("root/a/x.mp4");
    home.file("other/b/y.mp4");
    EventMirror mirror({root}, quick());
    fs::rename(text(root), text(home.path().child("old")));
    fs::rename(text(home.path().child("other")), text(root));
    QVERIFY(mirror.becomesTrue());
    QCOMPARE(mirror.view().size(), size_t(1));
    QTRY_COMPARE(mirror.events().status(), (FileEvents::Status{2, 0, 0, true}));
    mirror.forgetBatches();
    write(home.path().child("old/a/unseen.mp4"));
    write(root.child("b/seen.mp4"));
    QVERIFY(mirror.becomesTrue());
    QVERIFY(!mirror.reported(root.child("a/unseen.mp4")));
}

void tst_FileEventsRoots::aRootThatIsALinkIsNotThere() {
    TestHome home;
    home.file("real/a.mp4");
    const Location root = home.path().child("link");
    fs::create_directory_symlink(text(home.path().child("real")), text(root));
    FileEvents events({root}, quick(), [](const QList<FileEvent>&) {});
    QVERIFY(events.waitUntilWatching(20));
    QCOMPARE(events.status(), (FileEvents::Status{0, 0, 0, false}));
}

void tst_FileEventsRoots::otherRootsGoOnWhileOneIsMissing() {
    TestHome home;
    const Location stays = home.folder("stays");
    const Location goes = home.folder("goes");
    home.file("goes/x.mp4");
    EventMirror mirror({stays, goes}, quick());
    fs::rename(text(goes), text(home.path().child("gone")));
    QTRY_VERIFY(!mirror.events().status().rootsPresent);
    fs::create_directories(text(stays.child("a/b")));
    write(stays.child("a/b/y.mp4"));
    QTRY_VERIFY(mirror.view().contains(text(stays.child("a/b/y.mp4"))));
    QVERIFY(mirror.view().contains(text(goes.child("x.mp4"))));
    fs::rename(text(home.path().child("gone")), text(goes));
    QVERIFY(mirror.becomesTrue());
}

void tst_FileEventsRoots::anUnmountedRootTakesNothingWithIt_data() {
    QTest::addColumn<bool>("isBind");
    QTest::newRow("a file system of its own") << false;
    QTest::newRow("another folder of the same file system") << true;
}

void tst_FileEventsRoots::anUnmountedRootTakesNothingWithIt() {
    QFETCH(bool, isBind);
    TestHome home;
    const Location root = home.folder("root");
    const Location source = home.folder("source");
    // The content lives on, wherever it is mounted.
    mountMemory(source);
    if (isBind)
        unmount(source);
    home.file("source/a/deep/x.mp4");
    mountFolder(source, root);
    {
        EventMirror mirror({root}, quick());
        const auto before = mirror.view();
        QCOMPARE(before.size(), size_t(1));
        for (int i = 0; i < 5; ++i) {
            mirror.forgetBatches();
            const auto known = mirror.view();
            unmount(root);
            QTRY_VERIFY(!mirror.events().status().rootsPresent);
            write(source.child(numbered("a/deep/while-away", i, ".mp4")));
            QVERIFY(root.isFolder()); // the bare mount point
            QVERIFY(mirror.events().waitUntilWatching(20));
            QVERIFY(!mirror.events().status().rootsPresent);
            QVERIFY(nothingIsReported(mirror));
            QVERIFY(mirror.view() == known);

            // A mounter may make the mount point anew.
            fs::remove(text(root));
            fs::create_directory(text(root));
            QVERIFY(mirror.events().waitUntilWatching(20));
            QVERIFY(!mirror.events().status().rootsPresent);

            mountFolder(source, root);
            QVERIFY(mirror.becomesTrue());
            QCOMPARE(mirror.view().size(), size_t(2 + i));
            QTRY_COMPARE(mirror.events().status(), (FileEvents::Status{3, 0, 0, true}));
            write(root.child("a/deep/x.mp4"), size_t(i + 2));
            QVERIFY(mirror.becomesTrue());
        }
        // Away and back at once.
        unmount(root);
        mountFolder(source, root);
        write(root.child("a/deep/at-once.mp4"));
        QVERIFY(mirror.becomesTrue());
    }
    unmount(root);
    if (!isBind)
        unmount(source);
}

void tst_FileEventsRoots::aFileSystemThatEndsTakesNothingWithIt() {
    TestHome home;
    const Location root = home.folder("root");
    mountMemory(root);
    home.file("root/a/deep/x.mp4");
    {
        EventMirror mirror({root}, quick());
        unmount(root);
        QTRY_COMPARE(mirror.events().status(), (FileEvents::Status{0, 0, 0, false}));
        QVERIFY(nothingIsReported(mirror));
        QCOMPARE(mirror.view().size(), size_t(1));

        // Another one with other content is the root all the same.
        mountMemory(root);
        home.file("root/b/y.mp4");
        QVERIFY(mirror.becomesTrue());
        QVERIFY(mirror.view().contains(text(root.child("b/y.mp4"))));
        QTRY_COMPARE(mirror.events().status(), (FileEvents::Status{2, 0, 0, true}));
    }
    unmount(root);
}

void tst_FileEventsRoots::aRootOnAnUnmountedFileSystemTakesNothingWithIt() {
    TestHome home;
    const Location disk = home.folder("disk");
    const Location source = home.folder("source");
    home.file("source/root/a/x.mp4");
    // Below the mount point stands a folder of the root's name, to be mistaken for it.
    home.folder("disk/root");
    mountFolder(source, disk);
    const Location root = disk.child("root");
    {
        EventMirror mirror({root}, quick());
        QCOMPARE(mirror.view().size(), size_t(1));
        unmount(disk);
        // A bind mount leaves no trace in the watches themselves.
        QTRY_VERIFY(!mirror.events().status().rootsPresent);
        QVERIFY(mirror.events().waitUntilWatching(20));
        QVERIFY(!mirror.events().status().rootsPresent);
        QVERIFY(nothingIsReported(mirror));
        QCOMPARE(mirror.view().size(), size_t(1));
        write(source.child("root/a/y.mp4"));
        mountFolder(source, disk);
        QVERIFY(mirror.becomesTrue());
        QCOMPARE(mirror.view().size(), size_t(2));
    }
    unmount(disk);
}

void tst_FileEventsRoots::aFileSystemMountedOverTheRootIsTheRoot() {
    TestHome home;
    const Location root = home.folder("root");
    EventMirror mirror({root}, quick());
    mountMemory(root);
    fs::create_directory(text(root.child("a")));
    write(root.child("a/x.mp4"));
    QVERIFY(mirror.becomesTrue());
    QCOMPARE(mirror.view().size(), size_t(1));
    QTRY_COMPARE(mirror.events().status(), (FileEvents::Status{2, 0, 0, true}));
    write(root.child("a/y.mp4"));
    QVERIFY(mirror.becomesTrue());
    unmount(root);
    QTRY_VERIFY(!mirror.events().status().rootsPresent);
    QCOMPARE(mirror.view().size(), size_t(2));
}

void tst_FileEventsRoots::aFileSystemUnmountedInsideARootTakesNothingWithIt() {
    TestHome home;
    const Location root = home.folder("root");
    const Location disk = home.folder("root/disk");
    mountMemory(disk);
    fs::create_directory(text(disk.child("a")));
    write(disk.child("a/x.mp4"));
    EventMirror mirror({root}, quick());
    QCOMPARE(mirror.view().size(), size_t(1));
    unmount(disk);
    QTRY_COMPARE(mirror.events().status().watched, size_t(1));
    write(root.child("y.mp4"));
    QTRY_COMPARE(mirror.view().size(), size_t(2));
    QVERIFY(mirror.view().contains(text(disk.child("a/x.mp4"))));
}

void tst_FileEventsRoots::aFolderMountedInsideItselfIsGoneThroughOnce() {
    TestHome home;
    const Location root = home.folder("root");
    const Location inner = home.folder("root/a/b/again");
    home.folder("root/a/c");
    mountFolder(root.child("a"), inner);
    {
        FileEvents events({root}, quick(), [](const QList<FileEvent>&) {});
        QVERIFY(events.waitUntilWatching(20));
        // The root, a, b, c, and the folder that the mount covers, which shows itself inside the mount.
        QVERIFY2(events.status().watched >= 4 && events.status().watched <= 5,
                 qPrintable(QString::number(events.status().watched)));
        fs::create_directories(text(root.child("a/c/d")));
        QVERIFY(events.waitUntilWatching(20));
    }
    unmount(inner);
}

int main(int argc, char* argv[]) {
    whyNothingCanBeMounted = enterPrivateMounts(); // before there is a second thread
    tst_FileEventsRoots test;
    QCoreApplication application(argc, argv);
    return QTest::qExec(&test, argc, argv);
}

#include "tst_fileeventsroots.moc"
