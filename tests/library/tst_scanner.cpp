// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Stars.h"
#include "library/Scanner.h"
#include "support/TestHome.h"

#include <QtTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <set>

using namespace lumbra;

class ScannerTest : public QObject {
    Q_OBJECT

private:
    static std::set<std::string> walked(const Location& root) {
        std::set<std::string> paths;
        Scanner::walk(root, [&](const Asset& asset) {
            QByteArray path = asset.url.path();
            paths.insert(path.mid(root.path().size() + 1).toStdString());
        });
        return paths;
    }

    static std::set<std::string> indexed(const Location& root, int workers) {
        std::set<std::string> paths;
        const AssetIndex index = Scanner::index({root}, workers);
        for (const Asset& asset : index.assetsUnder(root))
            paths.insert(asset.url.path().mid(root.path().size() + 1).toStdString());
        return paths;
    }

    static void link(const Location& target, const Location& at) {
        QVERIFY(symlink(target.path().constData(), at.path().constData()) == 0);
    }

private Q_SLOTS:
    void prunedFoldersAreNotEnteredAtAnyDepth() {
        const TestHome home;
        for (const char* path : {"p/.git/a.png", "p/node_modules/b.png", "p/x/y/build/c.png", "p/site-packages/d.png"})
            home.file(path);
        home.file("p/build.mp4");
        home.file("p/Build/e.png"); // names compare exactly
        QCOMPARE(walked(home.path().child("p")), (std::set<std::string>{"build.mp4", "Build/e.png"}));
    }

    void hiddenFilesAndFoldersAreSkippedByBoth() {
        const TestHome home;
        home.file("p/.hidden.png");
        home.file("p/.folder/a.png");
        home.file("p/seen.png");
        QCOMPARE(walked(home.path().child("p")), std::set<std::string>{"seen.png"});
        const auto listing = Scanner::list(home.path().child("p"));
        QCOMPARE(listing.assets.size(), 1);
        QVERIFY(listing.folders.isEmpty());
    }

    void aPackageIsOneThingAndInNeitherList() {
        const TestHome home;
        home.file("p/Tool.app/Contents/icon.png");
        home.file("p/Slides.key/preview.jpg");
        QVERIFY(walked(home.path().child("p")).empty());
        const auto listing = Scanner::list(home.path().child("p"));
        QVERIFY(listing.folders.isEmpty());
        QVERIFY(listing.assets.isEmpty());
    }

    void symbolicLinksAreNotFollowed() {
        const TestHome home;
        const Location outside = home.file("outside/a.png");
        home.folder("p");
        link(outside, home.path().child("p/link.png"));
        link(outside.parent(), home.path().child("p/folder"));
        link(home.path().child("p"), home.path().child("p/circle"));
        QVERIFY(walked(home.path().child("p")).empty());
        const auto listing = Scanner::list(home.path().child("p"));
        QVERIFY(listing.folders.isEmpty());
        QVERIFY(listing.assets.isEmpty());
    }

    void aFolderThatDoesNotExistIsEmpty() {
        const auto listing = Scanner::list(Location(QByteArray("/nonexistent/folder")));
        QVERIFY(listing.folders.isEmpty());
        QVERIFY(listing.assets.isEmpty());
        QVERIFY(walked(Location(QByteArray("/nonexistent/folder"))).empty());
    }

    void anAssetComesWithItsFactsAndItsStar() {
        const TestHome home;
        const Location file = home.file("p/sub/a.png", "1234567");
        TestHome::touch(file, 1650000000.5);
        QVERIFY(Stars::write(file, true));
        Assets found;
        Scanner::walk(home.path().child("p"), [&](const Asset& asset) { found.append(asset); });
        QCOMPARE(found.size(), 1);
        QVERIFY(found.first() == Asset::read(file));
        QVERIFY(found.first().isStarred());
        QVERIFY(Scanner::index({home.path()}, 2).find(file) == found.first());
        QVERIFY(Scanner::list(file.parent()).assets == found);
    }

    void foldersOfAListingStandInNaturalOrder() {
        const TestHome home;
        for (const char* folder : {"p/take 10", "p/take 9", "p/Alpha", "p/beta"})
            home.folder(folder);
        QStringList names;
        for (const Location& folder : Scanner::list(home.path().child("p")).folders)
            names.append(folder.name());
        QCOMPARE(names, (QStringList{QStringLiteral("Alpha"), QStringLiteral("beta"), QStringLiteral("take 9"),
                                     QStringLiteral("take 10")}));
    }

    void namesThatAreNotUtf8OrHoldNewlinesDoNoHarm() {
        const TestHome home;
        home.folder("p");
        const QByteArray folder = home.path().child("p").path();
        for (const QByteArray& name : {QByteArray("/bad\xff.png"), QByteArray("/line\nbreak.png")}) {
            const int fd = ::open((folder + name).constData(), O_CREAT | O_WRONLY, 0644);
            QVERIFY(fd >= 0);
            ::close(fd);
        }
        QVERIFY(::mkdir((folder + "/dir\xfe").constData(), 0755) == 0);
        QCOMPARE(walked(home.path().child("p")), std::set<std::string>{"line\nbreak.png"});
        QVERIFY(Scanner::list(home.path().child("p")).folders.isEmpty());
    }

    void specialFilesAreNoAssets() {
        const TestHome home;
        home.folder("p");
        QVERIFY(::mkfifo(home.path().child("p/pipe.png").path().constData(), 0644) == 0);
        QVERIFY(walked(home.path().child("p")).empty());
    }

    // The path of the deepest folders is longer than a system call takes; what lies above is there all the same.
    void aTreeOfFiveHundredFoldersIsWalkedAsFarAsPathsReach() {
        const TestHome home;
        home.file("p/top.png");
        int fd = ::open(home.path().child("p").path().constData(), O_RDONLY | O_DIRECTORY);
        for (int depth = 0; depth < 500; ++depth) {
            QVERIFY(::mkdirat(fd, "a-folder-of-19-byte", 0755) == 0);
            const int next = ::openat(fd, "a-folder-of-19-byte", O_RDONLY | O_DIRECTORY);
            ::close(fd);
            fd = next;
            const int file = ::openat(fd, "f.png", O_CREAT | O_WRONLY, 0644);
            QVERIFY(file >= 0);
            ::close(file);
        }
        ::close(fd);
        const auto found = indexed(home.path().child("p"), 2);
        QVERIFY(found.contains("top.png"));
        QVERIFY(found.size() > 150);
        QCOMPARE(walked(home.path().child("p")), found);
    }

    void severalWorkersFindWhatOneFinds() {
        const TestHome home;
        for (int i = 0; i < 600; ++i)
            home.file(QStringLiteral("p/%1/%2/%3/%4.png").arg(i % 7).arg(i % 5).arg(i % 3).arg(i).toStdString());
        const auto one = indexed(home.path().child("p"), 1);
        QCOMPARE(one.size(), 600u);
        QCOMPARE(indexed(home.path().child("p"), 2), one);
        QCOMPARE(indexed(home.path().child("p"), 8), one);
        QCOMPARE(walked(home.path().child("p")), one);
    }

    void aStopRequestEndsTheWalk() {
        const TestHome home;
        home.file("p/a.png");
        std::stop_source stop;
        stop.request_stop();
        QVERIFY(Scanner::index({home.path()}, 2, stop.get_token()).isEmpty());
    }

    void insidePruned_data() {
        QTest::addColumn<QByteArray>("url");
        QTest::addColumn<bool>("inside");
        QTest::newRow("the root itself, although hidden above") << QByteArray("") << false;
        QTest::newRow("a plain file") << QByteArray("/a/b.png") << false;
        QTest::newRow("a hidden file") << QByteArray("/a/.b.png") << true;
        QTest::newRow("within .git") << QByteArray("/.git/objects/a.png") << true;
        QTest::newRow("a file called build") << QByteArray("/a/build") << true;
        QTest::newRow("build with a capital") << QByteArray("/a/Build/x.png") << false;
        QTest::newRow("build.mp4") << QByteArray("/a/build.mp4") << false;
        QTest::newRow("node_modules deep down") << QByteArray("/a/b/node_modules/c/d.png") << true;
    }
    void insidePruned() {
        QFETCH(QByteArray, url);
        QFETCH(bool, inside);
        const TestHome home;
        const Location root = home.folder(".hidden/build/root");
        QCOMPARE(Scanner::isInsidePruned(Location(root.path() + url), root), inside);
    }

    void aPathAboveTheRootIsNotInside() {
        const TestHome home;
        QVERIFY(!Scanner::isInsidePruned(home.folder("a"), home.folder("a/.b/c")));
    }
};

QTEST_GUILESS_MAIN(ScannerTest)
#include "tst_scanner.moc"
