// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Stars.h"
#include "library/Scanner.h"
#include "support/AsNobody.h"
#include "support/TestHome.h"

#include <QDir>
#include <QFile>
#include <QtTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <set>
#include <thread>

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

    void everyPrunedNameIsPassedBy_data() {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<bool>("pruned");
        for (const char* name :
             {"node_modules", ".git", "build", "dist", "DerivedData", "venv", ".venv", "Pods", "gradle-home", ".gradle",
              "caches", "__pycache__", ".next", ".turbo", ".cache", "site-packages", ".build", "bower_components"})
            QTest::newRow(name) << QByteArray(name) << true;
        for (const char* name : {"Build", "Dist", "deriveddata", "pods", "cache", "Caches", "node_modules2", "builds"})
            QTest::newRow(name) << QByteArray(name) << false;
    }
    void everyPrunedNameIsPassedBy() {
        QFETCH(QByteArray, name);
        QFETCH(bool, pruned);
        const TestHome home;
        const Location project = home.folder("p");
        const Location file = home.file("p/deep/" + name.toStdString() + "/below/a.png");
        QCOMPARE(walked(project).empty(), pruned);
        QCOMPARE(indexed(project, 2).empty(), pruned);
        QCOMPARE(Scanner::list(project.child("deep")).folders.isEmpty(), pruned);
        QCOMPARE(Scanner::isInsidePruned(file, project), pruned);
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

    void aFileCalledLikeAPackageIsAnAsset() {
        const TestHome home;
        home.file("p/deck.key");
        QCOMPARE(walked(home.path().child("p")), std::set<std::string>{"deck.key"});
        QCOMPARE(Scanner::list(home.path().child("p")).assets.size(), 1);
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

    void whatIsKnownIsNotLookedAtAgain() {
        const TestHome home;
        const Location folder = home.file("p/kept.png", "1234").parent();
        const Location fresh = home.file("p/new.png", "12");
        home.folder("p/turned.png");
        AssetIndex::Folder known(std::string(folder.view()));
        for (const char* name : {"gone.png", "kept.png", "turned.png"})
            known.add({name, AssetKind::image, 99, Date{5}, Date{6}});
        known.finish();
        const auto listing = Scanner::list(folder, &known);
        QCOMPARE(listing.folders, QList{folder.child("turned.png")});
        QCOMPARE(listing.assets.size(), 2);
        QVERIFY(listing.assets.contains(Asset::read(fresh)));
        QVERIFY(listing.assets.contains(Asset{folder.child("kept.png"), AssetKind::image, 99, Date{5}, Date{6}}));
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
        const std::set<std::string> expected{"line\nbreak.png"};
        QCOMPARE(walked(home.path().child("p")), expected);
        QCOMPARE(indexed(home.path().child("p"), 2), expected);
        const auto listing = Scanner::list(home.path().child("p"));
        QVERIFY(listing.folders.isEmpty());
        QCOMPARE(listing.assets.size(), 1);
    }

    void specialFilesAreNoAssets() {
        const TestHome home;
        home.folder("p");
        QVERIFY(::mkfifo(home.path().child("p/pipe.png").path().constData(), 0644) == 0);
        QVERIFY(walked(home.path().child("p")).empty());
    }

    // The first asset that is told takes all others away, whose names the walk has read by then.
    void whatVanishesBetweenTheListingAndTheLookIsAbsent() {
        const TestHome home;
        for (int i = 0; i < 50; ++i) {
            home.file(QStringLiteral("p/%1.png").arg(i).toStdString());
            home.file(QStringLiteral("p/sub %1/a.png").arg(i).toStdString());
        }
        int told = 0;
        Scanner::walk(home.path().child("p"), [&](const Asset& asset) {
            ++told;
            QDir everything(home.path().child("p").toString());
            for (const QString& name : everything.entryList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot))
                if (name != asset.url.name())
                    QVERIFY(everything.remove(name) || QDir(everything.filePath(name)).removeRecursively());
        });
        QCOMPARE(told, 1);
    }

    void aFolderThatBecomesALinkAfterTheListingIsNotFollowed() {
        const TestHome home;
        home.file("outside/stranger.png");
        home.file("p/first.png");
        const Location folder = home.folder("p/folder");
        std::set<std::string> names;
        Scanner::walk(home.path().child("p"), [&](const Asset& asset) {
            names.emplace(asset.url.lastComponent());
            QVERIFY(QDir().rmdir(folder.toString()));
            link(home.path().child("outside"), folder);
        });
        QCOMPARE(names, std::set<std::string>{"first.png"});
    }

    void filesThatComeAndGoDuringTheWalkDisturbNoOthers() {
        const TestHome home;
        std::set<std::string> steady;
        for (int i = 0; i < 200; ++i)
            steady.insert("steady " + std::to_string(i) + ".png");
        for (const std::string& name : steady)
            home.file("p/" + name);
        const QByteArray passing = home.path().child("p/passing ").path();
        std::jthread agent([&](const std::stop_token& stop) {
            for (int i = 0; !stop.stop_requested(); i = (i + 1) % 100) {
                const QByteArray path = passing + QByteArray::number(i) + ".png";
                ::close(::open(path.constData(), O_CREAT | O_WRONLY | O_CLOEXEC, 0644));
                ::unlink(path.constData());
            }
        });
        for (int round = 0; round < 50; ++round) {
            auto found = indexed(home.path().child("p"), 2);
            std::erase_if(found, [](const std::string& name) { return name.starts_with("passing"); });
            QCOMPARE(found, steady);
        }
    }

    void whatMayNotBeReadIsAbsent() {
        const TestHome home;
        home.file("p/closed/a.png");
        home.file("p/names only/b.png"); // may be listed, but nothing in it examined
        home.file("p/open/c.png");
        ::chmod(home.path().path().constData(), 0755);
        ::chmod(home.path().child("p/closed").path().constData(), 0);
        ::chmod(home.path().child("p/names only").path().constData(), 0744);
        const AsNobody nobody;
        const std::set<std::string> expected{"open/c.png"};
        QCOMPARE(walked(home.path().child("p")), expected);
        QCOMPARE(indexed(home.path().child("p"), 2), expected);
        QCOMPARE(Scanner::list(home.path().child("p")).folders.size(), 3);
        QVERIFY(Scanner::list(home.path().child("p/closed")).assets.isEmpty());
        QVERIFY(Scanner::list(home.path().child("p/names only")).assets.isEmpty());
    }

    void aTreeOfFiveHundredFoldersIsWalkedToItsEnd() {
        const TestHome home;
        std::string deepest;
        std::set<std::string> expected;
        for (int depth = 1; depth <= 500; ++depth) {
            deepest += "d/";
            if (depth % 50 == 0)
                expected.insert(deepest + "f.png");
        }
        for (const std::string& path : expected)
            home.file("p/" + path);
        QCOMPARE(walked(home.path().child("p")), expected);
        QCOMPARE(indexed(home.path().child("p"), 2), expected);
        QCOMPARE(Scanner::list(home.path().child("p/" + deepest)).assets.size(), 1);
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

    void treesThatOverlapAreCountedOnce() {
        const TestHome home;
        home.file("p/a.png");
        home.file("p/sub/b.png");
        const Location project = home.path().child("p");
        QCOMPARE(Scanner::index({project, project.child("sub"), project}, 2).count(), 2);
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

    void aPathThroughALinkIsJudgedByWhereItLeads() {
        const TestHome home;
        const Location root = home.folder("root");
        home.folder("root/.hidden");
        home.folder("root/plain");
        link(root.child(".hidden"), root.child("alias"));
        link(root.child("plain"), root.child(".alias"));
        QVERIFY(Scanner::isInsidePruned(root.child("alias/a.png"), root));
        QVERIFY(!Scanner::isInsidePruned(root.child(".alias/a.png"), root));
    }

    void aPathAboveTheRootIsNotInside() {
        const TestHome home;
        QVERIFY(!Scanner::isInsidePruned(home.folder("a"), home.folder("a/.b/c")));
    }
};

QTEST_GUILESS_MAIN(ScannerTest)
#include "tst_scanner.moc"
