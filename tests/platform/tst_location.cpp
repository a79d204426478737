// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Location.h"
#include "support/TestHome.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <unistd.h>

using namespace lumbra;

namespace {

Location at(const char* path) {
    return Location(QByteArray(path));
}

void makeLink(const Location& from, const Location& to) {
    QCOMPARE(::symlink(to.path().constData(), from.path().constData()), 0);
}

} // namespace

class LocationTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void trailingSlashesAreDropped() {
        QCOMPARE(at("/a/b//").path(), QByteArray("/a/b"));
        QCOMPARE(at("/").path(), QByteArray("/"));
        QCOMPARE(at("///").path(), QByteArray("/"));
        QCOMPARE(at("").path(), QByteArray());
    }

    void aTildeAtTheStartIsTheHomeFolder() {
        TestHome home;
        QCOMPARE(Location::expandingTilde(u"~"), home.path());
        QCOMPARE(Location::expandingTilde(u"~/a/b"), home.path().child("a/b"));
        QCOMPARE(Location::expandingTilde(u"/a/~/b"), at("/a/~/b"));
        QCOMPARE(Location::expandingTilde(u"~other/a"), at("~other/a"));
        QCOMPARE(Location::expandingTilde(u""), Location());
    }

    void theCanonicalFormIsStandard_data() {
        QTest::addColumn<QByteArray>("given");
        QTest::addColumn<QByteArray>("canonical");
        const auto row = [](const char* given, const char* canonical) {
            QTest::newRow(given) << QByteArray(given) << QByteArray(canonical);
        };
        row("/nowhere/a/b", "/nowhere/a/b");
        row("/nowhere/a/b/", "/nowhere/a/b");
        row("/nowhere//a///b", "/nowhere/a/b");
        row("/nowhere/./a/.", "/nowhere/a");
        row("/nowhere/a/../b", "/nowhere/b");
        row("/nowhere/a/..", "/nowhere");
        row("/../nowhere", "/nowhere");
        row("/..", "/");
        row("/", "/");
        row("/nowhere/Case", "/nowhere/Case");
        row("/nowhere/...", "/nowhere/...");
    }

    void theCanonicalFormIsStandard() {
        QFETCH(QByteArray, given);
        QTEST(Location(given).canonical().path(), "canonical");
    }

    void caseIsNeverFolded() {
        TestHome home;
        home.folder("Media");
        QCOMPARE(home.path().child("media").canonical(), home.path().child("media"));
    }

    void linksAreResolvedInWhatExists() {
        TestHome home;
        const Location target = home.folder("target/deep");
        makeLink(home.path().child("link"), home.path().child("target"));
        QCOMPARE(home.path().child("link").canonical(), home.path().child("target"));
        QCOMPARE(home.path().child("link/deep").canonical(), target);
        QCOMPARE(home.path().child("link/new/file.png").canonical(), home.path().child("target/new/file.png"));
        QCOMPARE(home.path().child("link/deep/..").canonical(), home.path().child("target"));
    }

    void aLinkIsFollowedBeforeItsParentIsTaken() {
        TestHome home;
        home.folder("one/inner");
        makeLink(home.path().child("link"), home.path().child("one/inner"));
        QCOMPARE(home.path().child("link/../x").canonical(), home.path().child("one/x"));
    }

    void aBrokenLinkStaysItself() {
        TestHome home;
        makeLink(home.path().child("link"), home.path().child("gone"));
        const Location canonical = home.path().child("link").canonical();
        QVERIFY(canonical == home.path().child("link") || canonical == home.path().child("gone"));
        QCOMPARE(canonical.canonical(), canonical);
    }

    void aLoopOfLinksEndsAsItsText() {
        TestHome home;
        makeLink(home.path().child("a"), home.path().child("b"));
        makeLink(home.path().child("b"), home.path().child("a"));
        QCOMPARE(home.path().child("a/./x/..").canonical(), home.path().child("a"));
    }

    // What lies behind a circle of links can't be resolved; what lies before it is, all the same.
    void whatLiesAboveALoopOfLinksIsResolved() {
        TestHome home;
        home.folder("target");
        makeLink(home.path().child("link"), home.path().child("target"));
        makeLink(home.path().child("target/round"), home.path().child("target/round"));
        QCOMPARE(home.path().child("link/round/x").canonical(), home.path().child("target/round/x"));
        QVERIFY(home.path().child("link/round/x").isInside(home.path().child("target")));
    }

    void aPathThatNoSystemCallTakesIsResolvedAsFarAsItExists() {
        TestHome home;
        home.folder("target");
        makeLink(home.path().child("link"), home.path().child("target"));
        const QByteArray longName(300, 'n');
        QCOMPARE(home.path().child("link/" + longName.toStdString()).canonical(),
                 home.path().child("target/" + longName.toStdString()));
        QByteArray deep;
        for (int depth = 0; depth < 100'000; ++depth)
            deep += "/x";
        QCOMPARE(Location(home.path().child("link").path() + deep).canonical().path(),
                 home.path().child("target").path() + deep);
    }

    void aRelativePathIsTakenFromTheWorkingFolder() {
        TestHome home;
        const QString before = QDir::currentPath();
        QVERIFY(QDir::setCurrent(home.path().toString()));
        const Location canonical = at("some/../file.png").canonical();
        QDir::setCurrent(before);
        QCOMPARE(canonical, home.path().child("file.png"));
    }

    void insideIsByWholeComponents_data() {
        QTest::addColumn<QByteArray>("path");
        QTest::addColumn<QByteArray>("folder");
        QTest::addColumn<bool>("inside");
        const auto row = [](const char* path, const char* folder, bool inside) {
            QTest::addRow("%s in %s", path, folder) << QByteArray(path) << QByteArray(folder) << inside;
        };
        row("/nowhere/a/b", "/nowhere/a", true);
        row("/nowhere/a/b", "/nowhere/a/", true);
        row("/nowhere/a/b", "/nowhere/a/b", true);
        row("/nowhere/a/b/", "/nowhere/a/b", true);
        row("/nowhere/a/bc", "/nowhere/a/b", false);
        row("/nowhere/a", "/nowhere/a/b", false);
        row("/nowhere/a/../b", "/nowhere/a", false);
        row("/nowhere/A/b", "/nowhere/a", false);
        row("/nowhere/a", "/", true);
        row("/", "/", true);
        row("/", "/nowhere", false);
    }

    void insideIsByWholeComponents() {
        QFETCH(QByteArray, path);
        QFETCH(QByteArray, folder);
        QTEST(Location(path).isInside(Location(folder)), "inside");
    }

    void aLinkThatPointsOutOfAFolderIsNotInsideIt() {
        TestHome home;
        const Location root = home.folder("root");
        const Location outside = home.folder("outside");
        makeLink(root.child("way out"), outside);
        QVERIFY(!root.child("way out").isInside(root));
        QVERIFY(!root.child("way out/file.png").isInside(root));
        QVERIFY(root.child("way out").isInside(outside));
    }

    void aFolderReachedThroughALinkIsTheFolder() {
        TestHome home;
        const Location root = home.folder("root");
        makeLink(home.path().child("alias"), root);
        QVERIFY(home.path().child("alias/a.png").isInside(root));
        QVERIFY(root.child("a.png").isInside(home.path().child("alias")));
    }

    void aPathIsAtOrBelowAFolderByItsTextAlone() {
        QVERIFY(at("/a/b").isAtOrBelow(at("/a")));
        QVERIFY(at("/a").isAtOrBelow(at("/a")));
        QVERIFY(at("/a").isAtOrBelow(at("/")));
        QVERIFY(!at("/ab").isAtOrBelow(at("/a")));
    }

    void partsOfAPath_data() {
        QTest::addColumn<QByteArray>("path");
        QTest::addColumn<QByteArray>("parent");
        QTest::addColumn<QByteArray>("last");
        QTest::addColumn<QByteArray>("extension");
        const auto row = [](const char* path, const char* parent, const char* last, const char* extension) {
            QTest::newRow(path) << QByteArray(path) << QByteArray(parent) << QByteArray(last) << QByteArray(extension);
        };
        row("/a/b.png", "/a", "b.png", "png");
        row("/a.d/b", "/a.d", "b", "");
        row("/b.tar.GZ", "/", "b.tar.GZ", "GZ");
        row("/.hidden", "/", ".hidden", "");
        row("/.hidden.png", "/", ".hidden.png", "png");
        row("/dot.", "/", "dot.", "");
        row("/", "/", "", "");
        row("name.txt", "", "name.txt", "txt");
    }

    void partsOfAPath() {
        QFETCH(QByteArray, path);
        const Location location(path);
        QTEST(location.parent().path(), "parent");
        QTEST(QByteArray(location.lastComponent().data(), qsizetype(location.lastComponent().size())), "last");
        QTEST(QByteArray(location.extension().data(), qsizetype(location.extension().size())), "extension");
    }

    void namesThatAreNotUtf8HaveNoLocation() {
        QVERIFY(Location::fromFileSystem("/a/\xc3\xa4"));
        QVERIFY(!Location::fromFileSystem("/a/\xff"));
        QVERIFY(!Location::fromFileSystem(std::string_view("/a\0b", 4)));
    }

    // A system call ends a path at its first NUL: what is told of the one file would be done to the other.
    void aTextThatNoPathCanBeIsNowhere_data() {
        QTest::addColumn<Location>("nowhere");
        TestHome home;
        const QByteArray file = home.file("a.png").path();
        QTest::newRow("a NUL after a file's name") << Location(file + QByteArray("\0b", 2));
        QTest::newRow("a NUL after a file's name, as text")
            << Location(QString(QString::fromUtf8(file) + QChar(u'\0') + u'b'));
        QTest::newRow("a NUL at the end") << Location(file + QByteArray("\0", 1));
        QTest::newRow("a NUL in a child's name") << home.path().child(std::string_view("a.png\0b", 7));
        QTest::newRow("a NUL behind a tilde") << Location::expandingTilde(QString(u"~/a.png"_qs + QChar(u'\0')));
        QTest::newRow("half a character") << Location(QString(QString::fromUtf8(file) + QChar(0xd800)));
        QTest::newRow("nothing") << Location(QByteArray());
    }

    void aTextThatNoPathCanBeIsNowhere() {
        QFETCH(Location, nowhere);
        QVERIFY(nowhere.isEmpty());
        QVERIFY(!nowhere.exists());
        QVERIFY(!nowhere.isFolder());
        QVERIFY(nowhere.child("tmp").isEmpty()); // and not "/tmp"
        QVERIFY(nowhere.canonical().isEmpty());  // and not the working folder
        QVERIFY(!nowhere.isInside(at("/")));
        QVERIFY(!at("/tmp").isInside(nowhere));
        QVERIFY(!at("/tmp").isAtOrBelow(nowhere));
    }

    void whatExistsIsTold() {
        TestHome home;
        const Location file = home.file("a.png");
        QVERIFY(file.exists() && !file.isFolder());
        QVERIFY(home.path().exists() && home.path().isFolder());
        QVERIFY(!home.path().child("gone").exists());
        makeLink(home.path().child("link"), home.path());
        QVERIFY(home.path().child("link").isFolder());
    }

    void theHomeFolderIsShortenedForPeople() {
        TestHome home;
        QCOMPARE(home.path().abbreviated(), QStringLiteral("~"));
        QCOMPARE(home.path().child("a/b").abbreviated(), QStringLiteral("~/a/b"));
        QCOMPARE(at("/a/b").abbreviated(), QStringLiteral("/a/b"));
        const Location neighbour(home.path().path() + "er");
        QCOMPARE(neighbour.abbreviated(), neighbour.toString());
    }
};

QTEST_GUILESS_MAIN(LocationTest)
#include "tst_location.moc"
