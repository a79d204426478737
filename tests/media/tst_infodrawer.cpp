// SPDX-License-Identifier: GPL-3.0-or-later
#include "OpenRoom.h"
#include "library/Actions.h"
#include "media/room/InfoDrawer.h"
#include "support/Strings.h"
#include "support/TestPanels.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QSignalSpy>
#include <QtTest>

using namespace lumbra;

namespace {

struct Drawer {
    explicit Drawer(const TestHome& home) : in(home) {}
    // Opens the room on the file.
    void open(const Location& shown) {
        in.open(shown);
        drawer.setRoom(&in.room());
    }
    ~Drawer() { Actions::usePanels(nullptr); }

    void choose(const char* title) {
        for (const InfoAction& action : drawer.actions())
            if (action.title == QString::fromUtf8(title))
                return action.run();
        qFatal("no action %s", title);
    }

    QString fact(const char* label) const {
        for (const InfoFact& fact : drawer.facts())
            if (fact.label == QLatin1String(label))
                return fact.value;
        return {};
    }

    OpenRoom in;
    InfoDrawer drawer;
    TestPanels panels;
};

} // namespace

class tst_InfoDrawer : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theActionsStandInTheirOrder() {
        QStringList titles;
        InfoDrawer drawer;
        for (const InfoAction& action : drawer.actions()) {
            titles << action.title;
            QCOMPARE(action.destructive, action.title == u"Move to Trash");
            action.run(); // without a room, nothing
        }
        QCOMPARE(titles, strings({"Copy", "Save a Copy…", "Show in Finder", "Copy Path", "Open in Default App",
                                  "Move To…", "Move to Trash"}));
        QVERIFY(drawer.facts().isEmpty());
    }

    // What is known

    void theFactsOfAFilmComeWithIt() {
        Drawer on(m_home);
        const Location file = on.in.clip("h264.mp4");
        on.open(file);
        QTRY_COMPARE(on.fact("Dimensions"), QStringLiteral("160 × 90"));
        QTRY_COMPARE(on.fact("Codec"), QStringLiteral("H.264"));
        QTRY_COMPARE(on.fact("Length"), QStringLiteral("0:02"));
        QCOMPARE(on.fact("Path"), file.toString());
        QCOMPARE(on.fact("Starred"), QString());
    }

    void anotherFileShowsNoFactOfTheOneBefore() {
        Drawer on(m_home);
        on.in.clip("h264.mp4");
        on.in.clip("vp9.webm");
        on.in.file("notes.txt");
        on.open(on.in.folder("site").child("h264.mp4"));
        QTRY_VERIFY(!on.fact("Codec").isEmpty() && !on.fact("Length").isEmpty());
        QSignalSpy changes(&on.drawer, &InfoDrawer::factsChanged);
        for (const char* name : {"vp9.webm", "notes.txt"}) {
            on.in.room().go(1);
            QCOMPARE(on.in.room().name(), QString::fromLatin1(name));
            QVERIFY(!changes.isEmpty());
            QCOMPARE(on.fact("Dimensions"), QString());
            QCOMPARE(on.fact("Codec"), QString());
            QCOMPARE(on.fact("Length"), QString());
            QVERIFY(on.fact("Path").endsWith(QString::fromLatin1(name)));
            changes.clear();
        }
    }

    void anImageTellsItsPixels() {
        Drawer on(m_home);
        QImage image(800, 600, QImage::Format_RGB32);
        image.fill(Qt::red);
        QByteArray bytes;
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        QVERIFY(image.save(&buffer, "PNG"));
        on.open(on.in.file("a.png", bytes));
        on.in.room().setStagePixels(QSize(400, 400)); // decoded smaller than it is
        QTRY_COMPARE(on.fact("Dimensions"), QStringLiteral("800 × 600"));
    }

    void aStarShows() {
        Drawer on(m_home);
        on.open(on.in.file("a.txt"));
        on.drawer.toggleStar();
        QTRY_VERIFY(!on.fact("Starred").isEmpty());
        on.drawer.toggleStar();
        QTRY_VERIFY(on.fact("Starred").isEmpty());
    }

    void aRoomThatGoesTakesTheFactsAlong() {
        Drawer on(m_home);
        on.open(on.in.file("a.txt"));
        on.in.closeRoom();
        on.choose("Copy");
        on.choose("Move To…");
        on.choose("Move to Trash");
        on.drawer.toggleStar();
        on.drawer.close();
        QVERIFY(!on.drawer.room());
    }

    // What can be done

    void copyPutsTheFileOnTheClipboard() {
        Drawer on(m_home);
        const Location file = on.in.file("a.txt");
        on.open(file);
        on.choose("Copy");
        QCOMPARE(QGuiApplication::clipboard()->mimeData()->urls(), QList{file.toUrl()});
        QVERIFY(on.in.library().toast());
    }

    void copyPathPutsThePathThere() {
        Drawer on(m_home);
        const Location file = on.in.file("a.txt");
        on.open(file);
        on.choose("Copy Path");
        QCOMPARE(QGuiApplication::clipboard()->text(), file.toString());
    }

    void saveACopyAsksForAPlace() {
        Drawer on(m_home);
        const Location file = on.in.file("a.txt", "bytes");
        on.open(file);
        Actions::usePanels(&on.panels);
        on.choose("Save a Copy…");
        QCOMPARE(on.panels.asked, QStringLiteral("save"));
        QCOMPARE(on.panels.name, QStringLiteral("a.txt"));
        const Location target = on.in.home().folder("elsewhere").child("b.txt");
        on.panels.answerPath(target);
        QTRY_VERIFY(target.exists());
        QVERIFY(file.exists());
        QCOMPARE(on.in.shown(), file);
    }

    void theActionsAreOfTheFileThatIsOnShowWhenTheyAreChosen() {
        Drawer on(m_home);
        const Location first = on.in.file("a.txt");
        const Location second = on.in.file("b.txt");
        on.open(first);
        const QList<InfoAction> made = on.drawer.actions();
        on.in.room().go(1);
        made.at(3).run(); // Copy Path
        QCOMPARE(QGuiApplication::clipboard()->text(), second.toString());
    }

    void moveToKeepsTheRoomOnTheFile() {
        Drawer on(m_home);
        on.in.file("0.txt");
        const Location file = on.in.file("a.txt");
        on.in.file("b.txt");
        on.open(file);
        Actions::usePanels(&on.panels);
        on.choose("Move To…");
        QCOMPARE(on.panels.asked, QStringLiteral("folder"));
        QCOMPARE(on.panels.button, QStringLiteral("Move Here"));
        const Location target = on.in.folder("other").child("a.txt");
        on.panels.answerFolder(target.parent());
        QTRY_COMPARE(on.in.shown(), target);
        QVERIFY(target.exists() && !file.exists());
        QCOMPARE(on.in.room().path(), target);
        // And from there the arrows lead on.
        QCOMPARE(on.in.room().index(), 1);
        on.in.room().go(1);
        QCOMPARE(on.in.room().name(), QStringLiteral("b.txt"));
    }

    void aMoveThatIsCancelledChangesNothing() {
        Drawer on(m_home);
        const Location file = on.in.file("a.txt");
        on.open(file);
        Actions::usePanels(&on.panels);
        on.choose("Move To…");
        on.panels.answerFolder(std::nullopt);
        QCOMPARE(on.in.shown(), file);
        QVERIFY(file.exists());
    }

    void aMoveToWhereItIsChangesNothing() {
        Drawer on(m_home);
        const Location file = on.in.file("a.txt");
        on.open(file);
        Actions::usePanels(&on.panels);
        on.choose("Move To…");
        on.panels.answerFolder(file.parent());
        QTest::qWait(0);
        QCOMPARE(on.in.shown(), file);
        QVERIFY(file.exists());
    }

    void aFileThatWasLeftMeanwhileDoesNotComeBack() {
        Drawer on(m_home);
        const Location file = on.in.file("a.txt");
        const Location next = on.in.file("b.txt");
        on.open(file);
        Actions::usePanels(&on.panels);
        on.choose("Move To…");
        on.in.room().go(1);
        const Location target = on.in.folder("other").child("a.txt");
        on.panels.answerFolder(target.parent());
        QTRY_VERIFY(target.exists());
        QTest::qWait(50);
        QCOMPARE(on.in.shown(), next);
    }

    void aDrawerThatClosesLetsTheMoveGoOn() {
        Drawer on(m_home);
        const Location file = on.in.file("a.txt");
        on.in.open(file);
        Actions::usePanels(&on.panels);
        {
            InfoDrawer drawer;
            drawer.setRoom(&on.in.room());
            drawer.move();
        }
        const Location target = on.in.folder("other").child("a.txt");
        on.panels.answerFolder(target.parent());
        QTRY_COMPARE(on.in.shown(), target);
    }

    void trashGoesOnToTheNextFile() {
        Drawer on(m_home);
        const Location file = on.in.file("a.txt");
        const Location next = on.in.file("b.txt");
        on.open(file);
        on.choose("Move to Trash");
        QCOMPARE(on.in.shown(), next);
        QVERIFY(on.in.room().isOpen());
        QTRY_VERIFY(!file.exists());
        QVERIFY(next.exists());
    }

    void trashOfTheLastFileClosesTheRoom() {
        Drawer on(m_home);
        on.in.file("a.txt");
        const Location last = on.in.file("b.txt");
        on.open(last);
        on.choose("Move to Trash");
        QVERIFY(!on.in.library().playing());
        QVERIFY(!on.in.room().isOpen());
        QTRY_VERIFY(!last.exists());
    }

    void closeShutsTheDrawerAndNotTheRoom() {
        Drawer on(m_home);
        on.open(on.in.file("a.txt"));
        on.in.room().setShowInfo(true);
        on.drawer.close();
        QVERIFY(!on.in.room().showInfo());
        QVERIFY(on.in.room().isOpen());
    }

private:
    TestHome m_home;
};

QTEST_MAIN(tst_InfoDrawer)
#include "tst_infodrawer.moc"
