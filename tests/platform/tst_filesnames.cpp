// Names: which is free, which can be given, and what is said when one can't.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Files.h"
#include "support/FileSystems.h"
#include "support/FileTrees.h"
#include "support/TestHome.h"

#include <QTest>

#include <cerrno>
#include <filesystem>

using namespace lumbra;

namespace {

const QString longName = QString(251, u'x') + QStringLiteral(".png");

void addUnusualNames() {
    QTest::addColumn<QString>("name");
    QTest::newRow("a newline") << QStringLiteral("a\nb.png");
    QTest::newRow("a percent sign") << QStringLiteral("100%41 %.png");
    QTest::newRow("255 bytes") << longName;
    QTest::newRow("255 bytes of two each") << QString(127, u'é') + u'x';
    QTest::newRow("a leading dash") << QStringLiteral("-rf");
    QTest::newRow("only dots") << QStringLiteral("...");
    QTest::newRow("blanks") << QStringLiteral(" a  b ");
    QTest::newRow("quotes and backslashes") << QStringLiteral("a'\"\\b");
    QTest::newRow("an emoji") << QStringLiteral("👩‍👩‍👧.png");
}

} // namespace

class FilesNamesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theNextFreeNameCounts_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QStringList>("taken");
        QTest::addColumn<QString>("free");
        const auto s = [](const char* text) { return QString::fromUtf8(text); };
        QTest::newRow("free as it is") << s("clip.mp4") << QStringList{} << s("clip.mp4");
        QTest::newRow("taken") << s("clip.mp4") << QStringList{s("clip.mp4")} << s("clip 2.mp4");
        QTest::newRow("taken twice") << s("clip.mp4") << QStringList{s("clip.mp4"), s("clip 2.mp4")} << s("clip 3.mp4");
        QTest::newRow("a gap is used") << s("a.png") << QStringList{s("a.png"), s("a 3.png")} << s("a 2.png");
        QTest::newRow("without an extension") << s("Renders") << QStringList{s("Renders")} << s("Renders 2");
        QTest::newRow("hidden") << s(".hidden") << QStringList{s(".hidden")} << s(".hidden 2");
        QTest::newRow("hidden with an extension") << s(".a.png") << QStringList{s(".a.png")} << s(".a 2.png");
        QTest::newRow("several dots") << s("a.tar.gz") << QStringList{s("a.tar.gz")} << s("a.tar 2.gz");
        QTest::newRow("a dot at the end") << s("a.") << QStringList{s("a.")} << s("a. 2");
        QTest::newRow("only dots") << s("...") << QStringList{s("...")} << s("... 2");
        QTest::newRow("ends in a counter") << s("a 2.png") << QStringList{s("a 2.png")} << s("a 2 2.png");
        QTest::newRow("a newline") << s("a\nb.png") << QStringList{s("a\nb.png")} << s("a\nb 2.png");
        QTest::newRow("a leading dash") << s("-a.png") << QStringList{s("-a.png")} << s("-a 2.png");
    }
    void theNextFreeNameCounts() {
        QFETCH(QString, name);
        QFETCH(QStringList, taken);
        QFETCH(QString, free);
        TestHome home;
        const Location folder = home.folder("folder");
        for (const QString& one : taken)
            writeFile(pathOf(folder.child(one)), "x");
        QCOMPARE(Files::freeName(name, folder), folder.child(free));
        QVERIFY(!Files::isTaken(folder.child(free)));
    }

    void aFreeNameFitsInto255Bytes_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("free");
        const QString family = QStringLiteral("👩‍👩‍👧"); // 18 bytes
        QTest::newRow("letters") << longName << QString(249, u'x') + QStringLiteral(" 2.png");
        QTest::newRow("without an extension") << QString(255, u'x') << QString(253, u'x') + QStringLiteral(" 2");
        QTest::newRow("of two bytes each")
            << QString(125, u'é') + QStringLiteral("x.png") << QString(124, u'é') + QStringLiteral(" 2.png");
        QTest::newRow("characters of many bytes stay whole")
            << family.repeated(14) + QStringLiteral("png") << family.repeated(14) + QStringLiteral("p 2");
        QTest::newRow("none of many bytes is halved")
            << QStringLiteral("abc") + family.repeated(14)
            << QStringLiteral("abc") + family.repeated(13) + QStringLiteral(" 2");
        QTest::newRow("nearly all extension") << QStringLiteral("a.") + QString(253, u'e')
                                              << QStringLiteral("a.") + QString(251, u'e') + QStringLiteral(" 2");
    }
    void aFreeNameFitsInto255Bytes() {
        QFETCH(QString, name);
        QFETCH(QString, free);
        TestHome home;
        const Location folder = home.folder("folder");
        QVERIFY(name.toUtf8().size() <= 255);
        writeFile(pathOf(folder.child(name)), "x");
        const Location found = Files::freeName(name, folder);
        QCOMPARE(found.name(), free);
        QVERIFY(found.lastComponent().size() <= 255);
        writeFile(pathOf(found), "x");
        QVERIFY(found.exists());
    }

    void aBrokenLinkTakesItsName() {
        TestHome home;
        const Location link = home.path().child("a.png");
        std::filesystem::create_symlink("/no/where", pathOf(link));
        QVERIFY(Files::isTaken(link));
        QCOMPARE(Files::freeName(QStringLiteral("a.png"), home.path()), home.path().child("a 2.png"));
    }

    void unusualNamesAreGivenAndCarried_data() { addUnusualNames(); }
    void unusualNamesAreGivenAndCarried() {
        QFETCH(QString, name);
        TestHome home;
        SecondDisk disk;
        const Location file = home.file("plain", "bytes");
        const Location named = home.path().child(name);
        QVERIFY(!Files::rename(file, named));
        QCOMPARE(fileBytes(named), "bytes");
        QVERIFY(!Files::makeFolder(home.folder("folders").child(name)));
        const Location folder = disk.isThere() ? disk.path() : home.folder("to");
        const auto arrivals =
            Files::carryOut({{named, folder.child(name), Files::Transfer::Kind::move}}, home.path().child("journal"));
        QVERIFY(!arrivals[0].error);
        QCOMPARE(arrivals[0].target, folder.child(name));
        QCOMPARE(fileBytes(folder.child(name)), "bytes");
        QVERIFY(!named.exists());
    }

    void impossibleNamesAreRefused_data() {
        QTest::addColumn<QString>("name");
        QTest::newRow("itself") << QStringLiteral(".");
        QTest::newRow("the folder above") << QStringLiteral("..");
        QTest::newRow("too long") << QString(256, u'x');
        QTest::newRow("a character that ends texts") << QStringLiteral("a") + QChar(0) + QStringLiteral("b");
    }
    void impossibleNamesAreRefused() {
        QFETCH(QString, name);
        TestHome home;
        const Location file = home.file("folder/a.png");
        const Location folder = file.parent();
        const QByteArrayList before = everythingIn(folder);
        QVERIFY(Files::rename(file, folder.child(name)));
        QVERIFY(Files::makeFolder(folder.child(name)));
        for (const auto kind : {Files::Transfer::Kind::move, Files::Transfer::Kind::copy}) {
            const auto arrivals = Files::carryOut({{file, folder.child(name), kind}}, home.path().child("journal"));
            QVERIFY(!arrivals[0].target);
            QVERIFY(arrivals[0].error);
        }
        QCOMPARE(everythingIn(folder), before);
    }

    void renamingKeepsAllAttributes() {
        TestHome home;
        const EmptiedAtEnd homeEmptied(home.path());
        const Location source = home.path().child("before");
        makeMixedTree(source);
        const QByteArrayList before = everythingIn(source);
        QVERIFY(!Files::rename(source, home.folder("below").child("after")));
        QCOMPARE(everythingIn(home.path().child("below").child("after")), before);
        QVERIFY(!source.exists());
    }

    void renamingNeverReplaces_data() {
        QTest::addColumn<bool>("isFolder");
        QTest::newRow("a file") << false;
        QTest::newRow("an empty folder") << true;
    }
    void renamingNeverReplaces() {
        QFETCH(bool, isFolder);
        TestHome home;
        const Location source = isFolder ? home.file("a/inner").parent() : home.file("a");
        const Location target = isFolder ? home.folder("b") : home.file("b", "other");
        const QByteArrayList before = everythingIn(home.path());
        const auto error = Files::rename(source, target);
        QCOMPARE(error->code, EEXIST);
        QCOMPARE(error->description, QStringLiteral("Couldn't rename a: there is already something called b."));
        QCOMPARE(everythingIn(home.path()), before);
        QCOMPARE(Files::rename(source, source)->code, EEXIST);
    }

    void renamingALinkLeavesItsTarget() {
        TestHome home;
        const Location target = home.folder("real/project");
        const Location link = home.path().child("project");
        std::filesystem::create_directory_symlink(pathOf(target), pathOf(link));
        QVERIFY(!Files::rename(link, home.path().child("renamed")));
        QCOMPARE(std::filesystem::read_symlink(pathOf(home.path().child("renamed"))).native(), pathOf(target));
        QVERIFY(target.exists());
        QVERIFY(!Files::isTaken(link));
    }

    void renamingToAnotherDiskTouchesNothing() {
        TestHome home;
        SecondDisk disk;
        if (!disk.isThere())
            QSKIP("there is no second file system here");
        const auto error = Files::rename(home.file("a.png"), disk.path().child("a.png"));
        QCOMPARE(error->code, EXDEV);
        QCOMPARE(error->description, QStringLiteral("Couldn't move a.png: it would have to go to another disk."));
        QVERIFY(home.path().child("a.png").exists());
        QCOMPARE(namesIn(disk.path()), QByteArrayList());
    }

    void whatIsWrongIsSaidInASentence_data() {
        QTest::addColumn<QByteArray>("from");
        QTest::addColumn<QByteArray>("to");
        QTest::addColumn<QString>("sentence");
        QTest::newRow("gone") << QByteArray("gone.png") << QByteArray("b.png")
                              << QStringLiteral("Couldn't rename gone.png: it isn't there any more.");
        QTest::newRow("no folder") << QByteArray("a.png") << QByteArray("none/b.png")
                                   << QStringLiteral("Couldn't move a.png: it isn't there any more.");
        QTest::newRow("too long") << QByteArray("a.png") << QByteArray(300, 'x')
                                  << QStringLiteral("Couldn't rename a.png: the name is too long.");
        QTest::newRow("into itself") << QByteArray("folder") << QByteArray("folder/below")
                                     << QStringLiteral("Couldn't move folder: it can't be named or placed like this.");
        QTest::newRow("below a file") << QByteArray("folder") << QByteArray("a.png/folder")
                                      << QStringLiteral(
                                             "Couldn't move folder: something on the way to it isn't a folder.");
        QTest::newRow("in one line") << QByteArray("a\nb") << QByteArray("c")
                                     << QStringLiteral("Couldn't rename a b: it isn't there any more.");
    }
    void whatIsWrongIsSaidInASentence() {
        QFETCH(QByteArray, from);
        QFETCH(QByteArray, to);
        QFETCH(QString, sentence);
        TestHome home;
        home.file("a.png");
        home.folder("folder");
        const auto error = Files::rename(home.path().child(from.toStdString()), home.path().child(to.toStdString()));
        QVERIFY(error);
        QCOMPARE(error->description, sentence);
    }

    void oneFolderIsMade() {
        TestHome home;
        QVERIFY(!Files::makeFolder(home.path().child("new")));
        QVERIFY(home.path().child("new").isFolder());
        QCOMPARE(Files::makeFolder(home.path().child("new"))->code, EEXIST);
        QCOMPARE(Files::makeFolder(home.path().child("new"))->description,
                 QStringLiteral("Couldn't make the folder new: something with this name is there already."));
        QCOMPARE(Files::makeFolder(home.path().child("none").child("new"))->code, ENOENT);
    }

    void foldersAreMadeWithThoseAbove() {
        TestHome home;
        const Location deep = home.path().child("a").child("b").child("c");
        QVERIFY(!Files::makeFolders(deep));
        QVERIFY(deep.isFolder());
        QVERIFY(!Files::makeFolders(deep));
        home.file("file");
        QVERIFY(Files::makeFolders(home.path().child("file")));
        QVERIFY(Files::makeFolders(home.path().child("file").child("below")));
    }

    void foldersAreMadeBehindLinks() {
        TestHome home;
        home.folder("real");
        std::filesystem::create_directory_symlink("real", pathOf(home.path()) + "/link");
        QVERIFY(!Files::makeFolders(home.path().child("link").child("below")));
        QVERIFY(home.path().child("real").child("below").isFolder());
    }
};

QTEST_GUILESS_MAIN(FilesNamesTest)
#include "tst_filesnames.moc"
