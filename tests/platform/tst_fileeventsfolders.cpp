// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/FileEvents.h"
#include "support/AsNobody.h"
#include "support/EventMirror.h"
#include "support/TestHome.h"
#include "support/WatchedFolders.h"

#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace lumbra;
namespace fs = std::filesystem;

// Which folders get a watch.
class tst_FileEventsFolders : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void foldersThatAreNotEnteredGetNoWatch();
    void namesThatAreNotUtf8AreNotReported();
    void foldersFiveHundredDeepAreWatched();
    void foldersTooDeepForAPathAreLeftOut();
    void linksAreNotFollowed();
    void aRootInsideAnotherIsWatchedOnce();
    void aFolderThatBecomesReadableIsEntered();
};

void tst_FileEventsFolders::foldersThatAreNotEnteredGetNoWatch() {
    TestHome home;
    const Location root = home.folder("root");
    home.folder("root/.git/objects");
    home.folder("root/shown");
    EventMirror mirror({root}, withoutDotFolders());
    QCOMPARE(mirror.events().status().watched, size_t(2));

    write(root.child(".git/objects/x.mp4"));
    fs::create_directories(text(root.child(".cache/deep")));
    write(root.child(".cache/deep/y.mp4"));
    write(root.child("shown/z.mp4"));
    QTRY_VERIFY(mirror.reported(root.child("shown/z.mp4")));
    QVERIFY(mirror.events().waitUntilWatching(20));
    QCOMPARE(mirror.events().status().watched, size_t(2));
    QVERIFY(!mirror.reported(root.child(".git/objects/x.mp4")));
    QVERIFY(!mirror.reported(root.child(".cache/deep/y.mp4")));
}

void tst_FileEventsFolders::namesThatAreNotUtf8AreNotReported() {
    TestHome home;
    const Location root = home.folder("root");
    fs::create_directory(text(root) + "/old\xff");
    EventMirror mirror({root}, withoutDotFolders());
    QCOMPARE(mirror.events().status().watched, size_t(1));

    write(text(root) + "/bad\xff.mp4");
    fs::create_directory(text(root) + "/folder\xff");
    write(text(root) + "/folder\xff/inside.mp4");
    fs::rename(text(root) + "/old\xff", text(root) + "/renamed\xfe");
    write(root.child("good.mp4"));
    QTRY_VERIFY(mirror.reported(root.child("good.mp4")));
    QVERIFY(mirror.events().waitUntilWatching(20));
    QCOMPARE(mirror.events().status().watched, size_t(1));
    for (const auto& batch : mirror.batches())
        for (const FileEvent& event : batch)
            QCOMPARE(event.path, root.child("good.mp4"));

    // A name that becomes readable brings its folder with it.
    write(text(root) + "/renamed\xfe/x.mp4");
    fs::rename(text(root) + "/renamed\xfe", text(root.child("shown")));
    QVERIFY(mirror.becomesTrue());
    QVERIFY(mirror.view().contains(text(root.child("shown/x.mp4"))));
    // Which the temporary home itself could not.
    QVERIFY(runScript(home.path(), "rm -r root"));
}

void tst_FileEventsFolders::foldersFiveHundredDeepAreWatched() {
    TestHome home;
    const Location root = home.folder("root");
    EventMirror mirror({root}, withoutDotFolders());
    std::string deep = text(root);
    for (int i = 0; i < 500; ++i)
        deep += numbered("/d", i);
    fs::create_directories(deep);
    QVERIFY(mirror.events().waitUntilWatching(20));
    QCOMPARE(mirror.events().status().watched, size_t(501));
    write(deep + "/deep.mp4");
    QVERIFY(mirror.becomesTrue());
    QCOMPARE(mirror.view().size(), size_t(1));

    fs::rename(text(root.child("d0")), text(root.child("e0")));
    QVERIFY(mirror.becomesTrue());
    fs::remove_all(text(root.child("e0")));
    QVERIFY(mirror.becomesTrue());
    QVERIFY(mirror.events().waitUntilWatching(20));
    QCOMPARE(mirror.events().status().watched, size_t(1));
}

void tst_FileEventsFolders::foldersTooDeepForAPathAreLeftOut() {
    TestHome home;
    const Location root = home.folder("root");
    // 30 folders of 200 letters are a path of more than 6,000 bytes, which only openat reaches.
    const std::string name(200, 'd');
    int parent = ::open(root.path().constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    for (int i = 0; i < 30; ++i) {
        QCOMPARE(::mkdirat(parent, name.c_str(), 0755), 0);
        const int child = ::openat(parent, name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        ::close(parent);
        parent = child;
    }
    {
        FileEvents events({root}, withoutDotFolders(), [](const QList<FileEvent>&) {});
        QVERIFY(events.waitUntilWatching(20));
        QVERIFY(events.status().watched >= 19);
        QVERIFY(events.status().watched <= 21);
        ::mkdirat(parent, "last", 0755);
        QVERIFY(events.waitUntilWatching(20));
    }
    ::close(parent);
    QVERIFY(runScript(home.path(), "rm -r root"));
}

void tst_FileEventsFolders::linksAreNotFollowed() {
    TestHome home;
    const Location root = home.folder("root");
    home.file("outside/a.mp4");
    fs::create_directory_symlink(text(home.path().child("outside")), text(root.child("old-link")));
    EventMirror mirror({root}, withoutDotFolders());
    fs::create_directory_symlink(text(home.path().child("outside")), text(root.child("link")));
    QTRY_VERIFY(mirror.reported(root.child("link")));
    QVERIFY(mirror.events().waitUntilWatching(20));
    QCOMPARE(mirror.events().status().watched, size_t(1));
}

void tst_FileEventsFolders::aRootInsideAnotherIsWatchedOnce() {
    TestHome home;
    const Location outer = home.folder("outer");
    const Location inner = home.folder("outer/a/inner");
    home.folder("outer/a/inner/deep");
    const QList<QList<Location>> orders{{outer, inner}, {inner, outer}, {inner, inner, outer}};
    for (const auto& roots : orders) {
        EventMirror mirror(roots, withoutDotFolders());
        QCOMPARE(mirror.events().status().watched, size_t(4));
        write(inner.child("deep/x.mp4"));
        write(outer.child("a/y.mp4"));
        QVERIFY(mirror.becomesTrue());
        fs::rename(text(inner.child("deep")), text(inner.child("other")));
        QVERIFY(mirror.becomesTrue());
        fs::rename(text(inner.child("other")), text(inner.child("deep")));
        QVERIFY(mirror.becomesTrue());
        fs::remove(text(inner.child("deep/x.mp4")));
        fs::remove(text(outer.child("a/y.mp4")));
        QVERIFY(mirror.becomesTrue());
    }
}

void tst_FileEventsFolders::aFolderThatBecomesReadableIsEntered() {
    TestHome home;
    const Location root = home.folder("root");
    home.file("root/closed/a.mp4");
    ::chmod(home.path().path().constData(), 0755);
    ::chmod(root.child("closed").path().constData(), 0);
    std::unique_ptr<EventMirror> mirror;
    {
        const AsNobody nobody;
        mirror = std::make_unique<EventMirror>(QList{root}, withoutDotFolders());
    }
    QVERIFY(mirror->view().empty());
    QCOMPARE(mirror->events().status().watched, size_t(1));
    ::chmod(root.child("closed").path().constData(), 0755);
    QVERIFY(mirror->becomesTrue());
    QCOMPARE(mirror->view().size(), size_t(1));
    QCOMPARE(mirror->events().status().watched, size_t(2));
}

QTEST_GUILESS_MAIN(tst_FileEventsFolders)
#include "tst_fileeventsfolders.moc"
