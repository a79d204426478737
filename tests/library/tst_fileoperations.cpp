// SPDX-License-Identifier: GPL-3.0-or-later
#include "OpenLibrary.h"
#include "support/Strings.h"

#include <sys/stat.h>

using namespace lumbra;

class FileOperationsTest : public QObject {
    Q_OBJECT

private:
    TestHome m_home;
    std::unique_ptr<OpenLibrary> m_library;

    QList<Location> bring(const QList<Location>& urls, const Location& folder) const {
        return resultOf((*m_library)->bring(urls, folder));
    }

    void link(const Location& target, const Location& at) const {
        QVERIFY(::symlink(target.path().constData(), at.path().constData()) == 0);
    }

    static void strangeNames() {
        QTest::addColumn<QString>("name");
        QTest::newRow("a newline") << QStringLiteral("a\nb.png");
        QTest::newRow("a percent sign") << QStringLiteral("100%20.png");
        QTest::newRow("a leading dash") << QStringLiteral("-rf.png");
        QTest::newRow("only dots") << QStringLiteral("...");
        QTest::newRow("blanks around") << QStringLiteral(" a .png ");
        QTest::newRow("a backslash and quotes") << QStringLiteral("a\\\"'b.png");
        QTest::newRow("255 bytes") << QString(QString(251, u'n') + QStringLiteral(".png"));
        QTest::newRow("255 bytes of long letters") << QString(QString(83, u'日') + QStringLiteral("ab.png"));
    }

private Q_SLOTS:
    void init() { m_library = std::make_unique<OpenLibrary>(m_home); }
    void cleanup() { m_library.reset(); }

    void bringingAFileIntoItsOwnFolderDoesNothing() {
        OpenLibrary& library = *m_library;
        const Location file = library.file("one/a.png");
        library.open();
        const auto future = library->bring({file}, file.parent());
        QVERIFY(future.isFinished());
        QVERIFY(resultOf(future).isEmpty());
        QCOMPARE(entriesOf(file.parent()), strings({"a.png"}));
        QVERIFY(!library->lastError());
    }

    void aFileKnowsItsOwnFolderByAnySpelling() {
        OpenLibrary& library = *m_library;
        const Location file = library.file("one/a.png");
        link(file.parent(), library.outsideFolder("aside").child("alias"));
        library.open();
        const Location alias = library.root().parent().child("aside/alias");
        QVERIFY(bring({file}, alias).isEmpty());
        QVERIFY(bring({alias.child("a.png")}, file.parent()).isEmpty());
        QCOMPARE(entriesOf(file.parent()), strings({"a.png"}));
    }

    void bringingAFolderIntoItsOwnSubfolderDoesNothing() {
        OpenLibrary& library = *m_library;
        const Location inner = library.file("one/deep/er/a.png").parent();
        library.open();
        QVERIFY(bring({library.at("one/deep")}, inner).isEmpty());
        QVERIFY(bring({inner}, inner).isEmpty());
        QVERIFY(bring({library.root().parent()}, inner).isEmpty());
        QVERIFY(inner.child("a.png").exists());
        QVERIFY(!library->lastError());
    }

    void bringingAnOutsideFileLeavesTheOriginal() {
        OpenLibrary& library = *m_library;
        const Location file = marked(library.outside("desk/a.png", "picture"));
        const Carried carried = Carried::of(file);
        library.open();
        const QList<Location> arrived = bring({file}, library.folder("one"));
        QCOMPARE(arrived, QList{library.at("one/a.png")});
        QCOMPARE(bytesOf(arrived.first()), QByteArray("picture"));
        QVERIFY(Carried::of(arrived.first()) == carried);
        QVERIFY(Carried::of(file) == carried);
    }

    void bringingAFileOfTheLibraryMovesItWithinTheCall() {
        OpenLibrary& library = *m_library;
        const Location file = marked(library.file("one/a.png"));
        const Carried carried = Carried::of(file);
        library.open();
        const int revision = library->revision();
        const auto future = library->bring({file}, library.folder("two"));
        QVERIFY(future.isFinished());
        QCOMPARE(library->revision(), revision + 1);
        QCOMPARE(resultOf(future), QList{library.at("two/a.png")});
        QVERIFY(!file.exists());
        QVERIFY(Carried::of(library.at("two/a.png")) == carried);
        QVERIFY(!library->transfer());
    }

    void bringingAWholeFolderKeepsWhatItsFilesCarry() {
        OpenLibrary& library = *m_library;
        const Location inside = marked(library.file("one/renders/deep/a.png"));
        const Location outside = marked(library.outside("desk/shots/deep/b.png"));
        const Carried moved = Carried::of(inside);
        const Carried copied = Carried::of(outside);
        library.open();
        const QList<Location> arrived =
            bring({library.at("one/renders"), outside.parent().parent()}, library.folder("two"));
        QCOMPARE(arrived, (QList{library.at("two/renders"), library.at("two/shots")}));
        QVERIFY(Carried::of(library.at("two/renders/deep/a.png")) == moved);
        QVERIFY(Carried::of(library.at("two/shots/deep/b.png")) == copied);
        QVERIFY(!library.at("one/renders").exists());
        QVERIFY(outside.exists());
    }

    void aFileOfAProjectElsewhereIsMovedAsWell() {
        OpenLibrary& library = *m_library;
        const Location file = library.outside("elsewhere/a.png");
        link(file.parent(), library.at("linked"));
        library.open();
        QCOMPARE(bring({library.at("linked/a.png")}, library.folder("one")), QList{library.at("one/a.png")});
        QVERIFY(!file.exists());
    }

    void aTakenNameGetsTheNextCounter() {
        OpenLibrary& library = *m_library;
        library.file("one/a.png", "first");
        library.file("one/a 2.png", "second");
        const Location file = library.file("two/a.png", "third");
        library.open();
        QCOMPARE(bring({file}, library.at("one")), QList{library.at("one/a 3.png")});
        QCOMPARE(bytesOf(library.at("one/a 3.png")), QByteArray("third"));
        QCOMPARE(bytesOf(library.at("one/a.png")), QByteArray("first"));
    }

    void freeNamesCount_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("second");
        QTest::newRow("an extension") << QStringLiteral("clip.mp4") << QStringLiteral("clip 2.mp4");
        QTest::newRow("a folder") << QStringLiteral("Renders") << QStringLiteral("Renders 2");
        QTest::newRow("two dots") << QStringLiteral("a.tar.gz") << QStringLiteral("a.tar 2.gz");
        QTest::newRow("hidden") << QStringLiteral(".hidden") << QStringLiteral(".hidden 2");
        QTest::newRow("hidden, with an extension") << QStringLiteral(".hidden.png") << QStringLiteral(".hidden 2.png");
        QTest::newRow("only dots") << QStringLiteral("...") << QStringLiteral("... 2");
        QTest::newRow("a newline") << QStringLiteral("a\nb.png") << QStringLiteral("a\nb 2.png");
        QTest::newRow("a counter already") << QStringLiteral("a 2.png") << QStringLiteral("a 2 2.png");
    }

    void freeNamesCount() {
        QFETCH(QString, name);
        QFETCH(QString, second);
        OpenLibrary& library = *m_library;
        library.open();
        const Location folder = library.folder("one");
        QCOMPARE(library->freeNameFor(name, folder), folder.child(name));
        library.file("one/" + name.toStdString());
        QCOMPARE(library->freeNameFor(name, folder), folder.child(second));
    }

    void aLinkThatLeadsNowhereTakesItsName() {
        OpenLibrary& library = *m_library;
        link(library.root().child("gone"), library.folder("one").child("a.png"));
        library.open();
        QCOMPARE(library->freeNameFor(QStringLiteral("a.png"), library.at("one")), library.at("one/a 2.png"));
    }

    void aFileOfAnyNameIsBroughtRenamedExportedAndTrashed_data() { strangeNames(); }
    void aFileOfAnyNameIsBroughtRenamedExportedAndTrashed() {
        QFETCH(QString, name);
        OpenLibrary& library = *m_library;
        const Location file = marked(library.outside("desk/" + name.toStdString()));
        const Carried carried = Carried::of(file);
        library.open();

        const auto copied = bring({file}, library.folder("one"));
        QCOMPARE(copied, QList{library.at("one").child(name)});
        const auto moved = bring(copied, library.folder("two"));
        QCOMPARE(moved, QList{library.at("two").child(name)});
        const auto plain = library->rename(moved.first(), QStringLiteral("plain"));
        QCOMPARE(plain, std::optional(library.at("two/plain")));
        const auto back = library->rename(*plain, name);
        QCOMPARE(back, std::optional(moved.first()));
        const auto exported = resultOf(library->exportTo({*back}, library.outsideFolder("out")));
        QCOMPARE(exported, QList{library.root().parent().child("out").child(name)});
        QVERIFY(Carried::of(exported.first()) == carried);
        QVERIFY(Carried::of(*back) == carried);
        library->toggleStar({*back});
        QVERIFY(!Stars::read(*back));
        QCOMPARE(library.error(), QString());
        library->trash({*back});
        // Beside a trashed file stands one that is called after it and tells where it was.
        if (name.toUtf8().size() + qsizetype(strlen(".trashinfo")) <= 255)
            QTRY_VERIFY(!back->exists());
        else
            QTRY_VERIFY(library.error().contains(QStringLiteral("too long")));
        QCOMPARE(back->exists(), bool(library->lastError()));
    }

    void aFailureDoesNotStopTheOthers() {
        OpenLibrary& library = *m_library;
        const Location inside = library.file("one/a.png");
        const Location outside = library.outside("desk/b.png");
        library.open();
        const QList<Location> arrived = bring(
            {library.at("one/gone.png"), outside, library.root().parent().child("no"), inside}, library.folder("two"));
        QCOMPARE(arrived, (QList{library.at("two/b.png"), library.at("two/a.png")}));
        QVERIFY2(library.error().contains(QStringLiteral("no")), qPrintable(library.error()));
    }

    void whatArrivesAtOnceAndWhatLaterStandInTheOrderGiven() {
        OpenLibrary& library = *m_library;
        const Location first = library.outside("desk/1.png");
        const Location second = library.file("one/2.png");
        const Location third = library.outside("desk/3.png");
        library.open();
        const auto future = library->bring({first, second, third}, library.folder("two"));
        QVERIFY(library.at("two/2.png").exists()); // moved within the call
        QCOMPARE(resultOf(future), (QList{library.at("two/1.png"), library.at("two/2.png"), library.at("two/3.png")}));
    }

    void theRevisionRisesOnceAtTheEndOfACopy() {
        OpenLibrary& library = *m_library;
        QList<Location> files;
        for (int i = 0; i < 20; ++i)
            files.append(library.outside("desk/" + std::to_string(i) + ".png"));
        // Hidden from the watcher, which would raise it as well.
        const Location folder = library.folder("one/.aside");
        library.open();
        const int revision = library->revision();
        const auto future = library->bring(files, folder);
        QCOMPARE(library->revision(), revision);
        QCOMPARE(resultOf(future).size(), 20);
        QCOMPARE(library->revision(), revision + 1);
    }

    void aRenamedFileKeepsWhatItCarries() {
        OpenLibrary& library = *m_library;
        const Location file = marked(library.file("one/a.png"));
        const Carried carried = Carried::of(file);
        library.open();
        const int revision = library->revision();
        QCOMPARE(library->rename(file, QStringLiteral("b.png")), std::optional(library.at("one/b.png")));
        QCOMPARE(library->revision(), revision + 1);
        QVERIFY(Carried::of(library.at("one/b.png")) == carried);
        QVERIFY(library->rename(library.at("one"), QStringLiteral("uno")));
        QVERIFY(Carried::of(library.at("uno/b.png")) == carried);
    }

    void aRenameNeverReplaces() {
        OpenLibrary& library = *m_library;
        const Location file = library.file("one/a.png", "a");
        library.file("one/b.png", "b");
        library.open();
        const int revision = library->revision();
        QVERIFY(!library->rename(file, QStringLiteral("b.png")));
        QVERIFY(library->lastError());
        QCOMPARE(library->revision(), revision);
        QCOMPARE(bytesOf(library.at("one/b.png")), QByteArray("b"));
        QCOMPARE(bytesOf(file), QByteArray("a"));
    }

    void aRenameOfWhatIsGoneOrToWhatNoFileIsCalledSaysWhy() {
        OpenLibrary& library = *m_library;
        const Location file = library.file("one/a.png");
        library.open();
        for (const QString& name :
             {QStringLiteral("."), QStringLiteral(".."), QString(), QStringLiteral("no/b.png"), QString(300, u'n')}) {
            library->setLastError(std::nullopt);
            QVERIFY(!library->rename(file, name));
            QVERIFY(library->lastError());
        }
        QVERIFY(!library->rename(library.at("one/gone.png"), QStringLiteral("b.png")));
        QCOMPARE(entriesOf(library.at("one")), strings({"a.png"}));
    }

    void aNewFolderHasItsNameTrimmed() {
        OpenLibrary& library = *m_library;
        library.folder("one");
        library.open();
        const int revision = library->revision();
        QCOMPARE(library->newFolderIn(library.at("one"), QStringLiteral(" \n new folder\t ")),
                 std::optional(library.at("one/new folder")));
        QVERIFY(library.at("one/new folder").isFolder());
        QCOMPARE(library->revision(), revision + 1);
    }

    void aNewFolderWithATakenNameFails() {
        OpenLibrary& library = *m_library;
        library.folder("one/taken");
        library.open();
        const int revision = library->revision();
        QVERIFY(!library->newFolderIn(library.at("one"), QStringLiteral("taken")));
        QVERIFY2(library.error().contains(QStringLiteral("taken")), qPrintable(library.error()));
        QCOMPARE(library->revision(), revision);
    }

    void aNewFolderNeedsItsParent() {
        OpenLibrary& library = *m_library;
        library.folder("one");
        library.open();
        QVERIFY(!library->newFolderIn(library.at("one/gone"), QStringLiteral("new")));
        QVERIFY(library->lastError());
        QVERIFY(!library.at("one/gone").exists());
    }

    void trashedFilesLeaveAndTheOthersToo() {
        OpenLibrary& library = *m_library;
        const Location file = library.file("one/a.png");
        const Location folder = library.file("one/sub/b.png").parent();
        library.open();
        library->trash({file, library.at("one/gone.png"), folder});
        QTRY_VERIFY(!file.exists() && !folder.exists());
        QTRY_VERIFY2(library.error().contains(QStringLiteral("gone.png")), qPrintable(library.error()));
    }

    void trashingRaisesTheRevisionOnce() {
        OpenLibrary& library = *m_library;
        const Location hidden = library.file("one/.aside/c.png"); // no event tells of it, in a folder without a watch
        library.open();
        const int revision = library->revision();
        library->trash({hidden});
        QTRY_COMPARE(library->revision(), revision + 1);
        QVERIFY(!hidden.exists());
    }

    void trashOfAFolderWithALinkLeavesWhatTheLinkLeadsTo() {
        OpenLibrary& library = *m_library;
        const Location kept = library.outside("desk/kept.png");
        link(kept.parent(), library.folder("one/sub").child("link"));
        library.open();
        library->trash({library.at("one/sub/link"), library.at("one/sub")});
        QTRY_VERIFY(!library.at("one/sub").exists());
        QVERIFY(kept.exists());
    }

    void exportedFilesAreCopiesAndTheLibraryStaysAsItWas() {
        OpenLibrary& library = *m_library;
        const Location file = marked(library.file("one/a.png", "picture"));
        const Location folder = marked(library.file("one/sub/b.png")).parent();
        library.open();
        const Location out = library.outsideFolder("out");
        const int revision = library->revision();
        QCOMPARE(resultOf(library->exportTo({file, folder}, out)), (QList{out.child("a.png"), out.child("sub")}));
        QCOMPARE(resultOf(library->exportTo({file}, out)), QList{out.child("a 2.png")});
        QCOMPARE(library->revision(), revision);
        QVERIFY(Carried::of(out.child("a 2.png")) == Carried::of(file));
        QVERIFY(Carried::of(out.child("sub/b.png")) == Carried::of(folder.child("b.png")));
        QVERIFY(!library->lastError());
    }

    void anExportOfNothingEndsAtOnce() {
        OpenLibrary& library = *m_library;
        library.open();
        QVERIFY(library->exportTo({}, library.root()).isFinished());
    }

    void aFailedExportSaysSoAndGoesOn() {
        OpenLibrary& library = *m_library;
        const Location file = library.file("one/a.png");
        library.open();
        const Location out = library.outsideFolder("out");
        QCOMPARE(resultOf(library->exportTo({library.at("one/gone.png"), file}, out)), QList{out.child("a.png")});
        QVERIFY2(library.error().contains(QStringLiteral("gone.png")), qPrintable(library.error()));
    }

    void exportingToAPathReplacesWhatIsThere() {
        OpenLibrary& library = *m_library;
        const Location file = marked(library.file("one/a.png", "new"));
        const Location old = library.outside("out/b.png", "old");
        library.open();
        QCOMPARE(resultOf(library->exportAs(file, old)), QList{old});
        QCOMPARE(bytesOf(old), QByteArray("new"));
        QVERIFY(Carried::of(old) == Carried::of(file));
        QCOMPARE(entriesOf(old.parent()), strings({"b.png"}));
    }

    void exportingAFileOntoItselfLeavesIt() {
        OpenLibrary& library = *m_library;
        const Location file = marked(library.file("one/a.png", "picture"));
        const Carried carried = Carried::of(file);
        library.open();
        QVERIFY(resultOf(library->exportAs(file, file)).isEmpty());
        QVERIFY(library->lastError());
        QCOMPARE(bytesOf(file), QByteArray("picture"));
        QVERIFY(Carried::of(file) == carried);
    }

    void exportingAFolderIntoItselfEnds() {
        OpenLibrary& library = *m_library;
        const Location folder = library.file("one/sub/a.png").parent();
        library.open();
        resultOf(library->exportTo({folder}, folder));
        QVERIFY(folder.child("a.png").exists());
        QVERIFY(!folder.child("sub/sub/sub").exists());
    }
};

QTEST_GUILESS_MAIN(FileOperationsTest)
#include "tst_fileoperations.moc"
