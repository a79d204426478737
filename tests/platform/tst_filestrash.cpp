// The trash takes all that there is to a file, and says so when it does not take it.
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

class FilesTrashTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QVERIFY(!namesIn(m_home.path()).contains("a.png")); }

    void itKeepsAttributesAndNamesThatAreNoText() {
        const EmptiedAtEnd trashEmptied(trash());
        // Nothing has ever been trashed here: the folders of the trash are missing too.
        QVERIFY(!m_home.path().child(".local").exists());
        const Location source = m_home.path().child("folder");
        makeMixedTree(source);
        const QByteArrayList before = everythingIn(source);
        QVERIFY(!Files::trash(source));
        QVERIFY(!Files::isTaken(source));
        QCOMPARE(everythingIn(trash().child("folder")), before);
        QVERIFY(fileBytes(m_home.path().child(".local/share/Trash/info/folder.trashinfo"))
                    .contains("Path=" + source.path()));
    }

    void aSecondOfTheSameNameIsKeptBesideIt() {
        for (const char* bytes : {"1", "2"})
            QVERIFY(!Files::trash(m_home.file("a.png", bytes)));
        QCOMPARE(namesIn(trash()).size(), 2);
    }

    void aLinkGoesWithoutItsTarget() {
        const Location target = m_home.file("real/b.png").parent();
        const Location link = m_home.path().child("project");
        std::filesystem::create_directory_symlink(pathOf(target), pathOf(link));
        QVERIFY(!Files::trash(link));
        QVERIFY(!Files::isTaken(link));
        QVERIFY(target.child("b.png").exists());
        QVERIFY(std::filesystem::is_symlink(pathOf(trash().child("project"))));
    }

    void unusualNamesAreTrashed_data() {
        QTest::addColumn<QByteArray>("name");
        QTest::newRow("a newline") << QByteArray("new\nline");
        QTest::newRow("a percent sign") << QByteArray("%41");
        QTest::newRow("a leading dash") << QByteArray("-rf");
        QTest::newRow("only dots") << QByteArray("...");
    }
    void unusualNamesAreTrashed() {
        QFETCH(QByteArray, name);
        const Location file = m_home.file(name.toStdString());
        QVERIFY(!Files::trash(file));
        QVERIFY(!file.exists());
        QVERIFY(trash().child(name.toStdString()).exists());
    }

    void whatIsGoneIsSaid() {
        const auto error = Files::trash(m_home.path().child("gone.png"));
        QCOMPARE(error->code, ENOENT);
        QCOMPARE(error->description, QStringLiteral("Couldn't trash gone.png: it isn't there any more."));
    }

    void aDiskWithoutATrashKeepsTheFile() {
        SecondDisk disk;
        if (!disk.isThere())
            QSKIP("there is no second file system here");
        const Location file = disk.path().child("a.png");
        writeFile(pathOf(file), "picture");
        const auto error = Files::trash(file);
        if (!error)
            QSKIP("this system has a trash on the second file system");
        QCOMPARE(error->code, EOPNOTSUPP);
        QCOMPARE(error->description, QStringLiteral("Couldn't trash a.png: its disk has no Trash."));
        QCOMPARE(fileBytes(file), "picture");
    }

private:
    Location trash() const { return m_home.path().child(".local/share/Trash/files"); }

    TestHome m_home; // one for all: the trash is looked up once in a process
};

QTEST_GUILESS_MAIN(FilesTrashTest)
#include "tst_filestrash.moc"
