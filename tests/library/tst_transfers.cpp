// SPDX-License-Identifier: GPL-3.0-or-later
#include "TwoDisks.h"
#include "support/Strings.h"

using namespace lumbra;

// Copies and moves between the disk of the home and one in memory.
class TransfersTest : public QObject, TwoDisks {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        if (!openDisks())
            QSKIP("there is no second file system");
    }
    void cleanup() { closeDisks(); }

    void aMoveAcrossFileSystemsKeepsWhatFilesCarry() {
        OpenLibrary& library = *m_library;
        const Location project = farProject();
        const Location file = marked(library.file("one/a.png", "picture"));
        const Location deep = marked(library.file("one/shots/deep/b.png"), "a hen");
        const Carried ofFile = Carried::of(file);
        const Carried ofDeep = Carried::of(deep);
        library.open();
        const auto future = library->bring({file, library.at("one/shots")}, project);
        QVERIFY(!future.isFinished());
        QVERIFY(library->transfer());
        QCOMPARE(resultOf(future), (QList{project.child("a.png"), project.child("shots")}));
        QCOMPARE(bytesOf(project.child("a.png")), QByteArray("picture"));
        QVERIFY(Carried::of(project.child("a.png")) == ofFile);
        QVERIFY(Carried::of(project.child("shots/deep/b.png")) == ofDeep);
        QCOMPARE(entriesOf(library.at("one")), QStringList());
        QVERIFY(!library->transfer());
        QVERIFY(!library->lastError());
        QVERIFY(leftoversBelow(far()).isEmpty());
    }

    void aCopyFromAnotherFileSystemKeepsWhatFilesCarry() {
        OpenLibrary& library = *m_library;
        const Location file = marked(farFile("a.png", "picture"));
        const Location deep = marked(farFile("shots/deep/b.png"), "a hen");
        library.open();
        QCOMPARE(resultOf(library->bring({file, far().child("shots")}, library.folder("one"))),
                 (QList{library.at("one/a.png"), library.at("one/shots")}));
        QVERIFY(Carried::of(library.at("one/a.png")) == Carried::of(file));
        QVERIFY(Carried::of(library.at("one/shots/deep/b.png")) == Carried::of(deep));
        QVERIFY(Stars::read(file) && Stars::read(deep));
    }

    void anExportToAnotherFileSystemKeepsWhatFilesCarry() {
        OpenLibrary& library = *m_library;
        const Location file = marked(library.file("one/a.png"));
        const Location deep = marked(library.file("one/shots/deep/b.png"));
        library.open();
        resultOf(library->exportTo({file, library.at("one/shots")}, far()));
        resultOf(library->exportAs(file, far().child("c.png")));
        QVERIFY(Carried::of(far().child("a.png")) == Carried::of(file));
        QVERIFY(Carried::of(far().child("c.png")) == Carried::of(file));
        QVERIFY(Carried::of(far().child("shots/deep/b.png")) == Carried::of(deep));
        QVERIFY(Stars::read(file) && Stars::read(deep));
    }

    void undoingAStarLeavesTheNoteOfAMovedFile() {
        OpenLibrary& library = *m_library;
        const Location project = farProject();
        const Location file = marked(library.file("one/a.png"));
        const QByteArray note = Carried::of(file).note;
        library.open();
        const Location moved = resultOf(library->bring({file}, project)).first();
        library->toggleStar({moved});
        QVERIFY(!Stars::read(moved));
        library->toast()->undo();
        QVERIFY(Stars::read(moved));
        QCOMPARE(Carried::of(moved).note, note);
        const Location back = resultOf(library->bring({moved}, library.at("one"))).first();
        QVERIFY(Stars::read(back));
        QCOMPARE(Carried::of(back).note, note);
    }

    void strangeNamesCrossFileSystems_data() {
        QTest::addColumn<QByteArray>("name");
        QTest::newRow("a newline") << QByteArray("a\nb.png");
        QTest::newRow("a percent sign") << QByteArray("100%20.png");
        QTest::newRow("a leading dash") << QByteArray("-rf.png");
        QTest::newRow("only dots") << QByteArray("...");
        QTest::newRow("255 bytes") << QByteArray(251, 'n') + ".png";
    }

    void strangeNamesCrossFileSystems() {
        QFETCH(QByteArray, name);
        OpenLibrary& library = *m_library;
        const Location project = farProject();
        const Location file = marked(library.file("one/" + name.toStdString()));
        const Carried carried = Carried::of(file);
        library.open();
        QCOMPARE(resultOf(library->bring({file}, project)), QList{project.child(std::string_view(name.data()))});
        QVERIFY(!file.exists());
        QVERIFY(Carried::of(project.child(std::string_view(name.data()))) == carried);
    }

    void twoOfOneNameOnTheirWayGetDifferentNames() {
        OpenLibrary& library = *m_library;
        const Location first = farFile("a/clip.mp4", "first");
        const Location second = farFile("b/clip.mp4", "second");
        const Location third = library.outside("c/clip.mp4", "third");
        const Location inside = library.file("two/clip.mp4", "inside");
        const Location folder = library.folder("one");
        library.open();
        const auto one = library->bring({first}, folder);
        QCOMPARE(library->freeNameFor(QStringLiteral("clip.mp4"), folder), folder.child("clip 2.mp4"));
        const auto two = library->bring({second, third}, folder);
        const auto three = library->bring({inside}, folder);
        QCOMPARE(resultOf(three), QList{folder.child("clip 4.mp4")});
        QCOMPARE(resultOf(one), QList{folder.child("clip.mp4")});
        QCOMPARE(resultOf(two), (QList{folder.child("clip 2.mp4"), folder.child("clip 3.mp4")}));
        QCOMPARE(bytesOf(folder.child("clip.mp4")), QByteArray("first"));
        QCOMPARE(bytesOf(folder.child("clip 2.mp4")), QByteArray("second"));
        QCOMPARE(bytesOf(folder.child("clip 3.mp4")), QByteArray("third"));
        QVERIFY(QFile::remove(folder.child("clip.mp4").toString()));
        QCOMPARE(library->freeNameFor(QStringLiteral("clip.mp4"), folder),
                 folder.child("clip.mp4")); // promised no more
    }

    void aNameThatIsTakenMeanwhileIsLeftToItsHolder() {
        OpenLibrary& library = *m_library;
        const Location source = filled(far().child("shots"));
        const Location folder = library.folder("one");
        library.open();
        const auto future = library->bring({source}, folder);
        QVERIFY(meetHalfWay());
        library.file("one/shots/mine.png", "an agent's");
        QCOMPARE(resultOf(future), QList{folder.child("shots 2")});
        QVERIFY(isWhole(folder.child("shots 2")));
        QCOMPARE(entriesOf(folder.child("shots")), strings({"mine.png"}));
    }

    void progressNamesTheFileAndCountsAllThatIsUnderWay() {
        OpenLibrary& library = *m_library;
        const Location one = filled(far().child("one"));
        const Location two = farFile("two.mp4", QByteArray(1000, '2'));
        library.open();
        QVERIFY(!library->transfer());
        const auto first = library->bring({one}, library.folder("p"));
        QCOMPARE(library->transfer()->name, QStringLiteral("one"));
        QVERIFY(meetHalfWay());
        QCOMPARE(library->transfer()->fileCount, shots);
        QCOMPARE(library->transfer()->byteCount, shots * shotBytes);
        QVERIFY2(library->transfer()->name.startsWith(QStringLiteral("shot-")), qPrintable(library->transfer()->name));
        const auto second = library->bring({two}, library.folder("p"));
        QCOMPARE(library->transfer()->fileCount, shots + 1);
        QCOMPARE(resultOf(second).size(), 1);
        if (!first.isFinished()) {
            // What has ended beside others still counts.
            QCOMPARE(library->transfer()->fileCount, shots + 1);
            QCOMPARE(library->transfer()->byteCount, shots * shotBytes + 1000);
        }
        QCOMPARE(resultOf(first).size(), 1);
        QVERIFY(!library->transfer());
    }
};

QTEST_GUILESS_MAIN(TransfersTest)
#include "tst_transfers.moc"
