// What stands beside the controls of the player: the stage of a sound, the queue, the drawer, the keys; used as a
// person does.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "RoomPiece.h"
#include "library/Actions.h"
#include "support/Strings.h"
#include "support/TestPanels.h"

#include <QClipboard>
#include <QDesktopServices>
#include <QGuiApplication>
#include <QtTest>

using namespace lumbra;

namespace {

constexpr char drawer[] =
    "InfoDrawerView { objectName: 'drawer'; height: parent ? parent.height : 0; room: parent ? parent.room : null }";
constexpr char queue[] =
    "UpNextView { objectName: 'upNext'; height: parent ? parent.height : 0; room: parent ? parent.room : null }";

// As the application's, with the room over its page.
constexpr char window[] = R"(
    import QtQuick
    import QtQuick.Controls.Basic as Controls
    import Lumbra.Look
    import Lumbra.Media

    Controls.ApplicationWindow {
        id: window
        property var room
        width: 900
        height: 540
        visible: true

        Item {
            objectName: "page"
            focus: true
            activeFocusOnTab: true
        }
        Item {
            parent: window.contentItem.parent
            anchors.fill: parent
            z: 1

            ScreeningRoomView {
                anchors.fill: parent
                room: window.room
            }
        }
        Menu {
            objectName: "menu"
            MenuItem { text: "One" }
        }
    })";

} // namespace

// What would open an address in another program.
class Opener : public QObject {
    Q_OBJECT

public:
    Q_INVOKABLE void open(const QUrl& url) { opened.append(url); }

    QList<QUrl> opened;
};

class tst_RoomPanels : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        Look::prepareApplication();
        QAccessible::setActive(true);
    }

    // The stage of a sound

    void theSignBreathesOnlyWhileItPlays() {
        OpenRoom in(m_home);
        in.open(in.clip("tone.wav"));
        in.settle();
        RoomPiece shown(in, "AudioStage { anchors.fill: parent; room: parent ? parent.room : null }");
        QVERIFY(!shown->value("breath", "running").toBool());
        in.engine().play();
        QTRY_VERIFY(shown->value("circle", "scale").toDouble() > 1.01);
        in.engine().pause();
        QTRY_COMPARE(shown->value("circle", "scale").toDouble(), 1.0);
        QVERIFY(!shown->value("breath", "running").toBool());
    }

    void withReducedMotionNothingBreathes() {
        OpenRoom in(m_home);
        in.open(in.clip("tone.wav"));
        in.settle();
        RoomPiece shown(in, "AudioStage { anchors.fill: parent; room: parent ? parent.room : null }");
        Look::setAppearance(shown->engine(), false, true);
        in.engine().play();
        QVERIFY(!shown->value("breath", "running").toBool());
        QCOMPARE(shown->value("circle", "scale").toDouble(), 1.0);
    }

    // The queue

    void theQueueTellsWhereItStands() {
        OpenRoom in(m_home);
        in.file("a.txt");
        const Location second = in.file("b.txt");
        in.file("c.txt");
        in.open(second);
        RoomPiece shown(in, queue);
        QCOMPARE(shown->value("position", "text").toString(), QStringLiteral("2 of 3"));
        QVERIFY(shown->value("row1", "playing").toBool());
        QVERIFY(!shown->value("row0", "playing").toBool());
        QAccessibleInterface* const accessible = shown.accessible("row1");
        QCOMPARE(accessible->text(QAccessible::Name), QStringLiteral("b.txt"));
        QVERIFY(accessible->text(QAccessible::Description).contains(u"Playing"));
        QVERIFY(accessible->state().selected);
        QCOMPARE(accessible->role(), QAccessible::ListItem);
    }

    void aClickPicksARow() {
        OpenRoom in(m_home);
        const Location first = in.file("a.txt");
        in.file("b.txt");
        const Location third = in.file("c.txt");
        in.open(first);
        RoomPiece shown(in, queue);
        shown->click("row2");
        QCOMPARE(in.shown(), third);
        QTRY_VERIFY(shown->value("row2", "playing").toBool());
        QCOMPARE(shown->value("position", "text").toString(), QStringLiteral("3 of 3"));
        QCOMPARE(in.library().playing()->order.size(), 3);
    }

    void theSwitchDecidesWhetherTheNextPlays() {
        OpenRoom in(m_home);
        in.open(in.file("a.txt"));
        RoomPiece shown(in, queue);
        QVERIFY(shown->value("autoplay", "checked").toBool());
        shown->click("autoplay");
        QVERIFY(!in.room().autoplayNext());
        QVERIFY(!shown.accessible("autoplay")->state().checked);
        in.room().setAutoplayNext(true);
        QVERIFY(shown->value("autoplay", "checked").toBool());
    }

    void aTimedRowTellsItsDurationAndOthersDoNot() {
        OpenRoom in(m_home);
        in.clip("long.mp4");
        in.open(in.file("a.txt"));
        RoomPiece shown(in, queue);
        QTRY_VERIFY(shown.accessible("row0")->text(QAccessible::Description).contains(QStringLiteral("0:10")));
        QCOMPARE(shown.accessible("row1")->text(QAccessible::Description), QStringLiteral("Playing"));
    }

    void aStarShowsInItsRow() {
        OpenRoom in(m_home);
        const Location file = in.file("a.txt");
        in.open(file);
        RoomPiece shown(in, queue);
        QVERIFY(!shown->value("row0", "starred").toBool());
        in.library().toggleStar({file});
        QTRY_VERIFY(shown->value("row0", "starred").toBool());
    }

    void ofAHundredThousandFilesAScreenfulIsMade() {
        OpenRoom in(m_home);
        const Location real = in.file("a.txt");
        Assets order;
        for (int i = 0; i < 100'000; ++i) {
            Asset asset = *Asset::read(real);
            asset.url = real.parent().child(QStringLiteral("%1.txt").arg(i));
            order.append(asset);
        }
        order[70'000] = *Asset::read(real);
        in.open(real, order);
        RoomPiece shown(in, queue);
        QCOMPARE(shown->value("position", "text").toString(), QStringLiteral("70001 of 100000"));
        QTRY_VERIFY(isInSight(shown, "row70000"));
        QVERIFY(madeRows(shown.item("queue")) < 40);
        for (const int row : {70'001, 3, 99'999}) {
            in.room().pick(order[row].url);
            const QByteArray name = "row" + QByteArray::number(row);
            QTRY_VERIFY(isInSight(shown, name.constData()));
            QVERIFY(madeRows(shown.item("queue")) < 60);
        }
    }

    // The drawer

    void theDrawerShowsItsFacts() {
        OpenRoom in(m_home);
        const Location file = in.clip("h264.mp4");
        in.open(file);
        RoomPiece shown(in, drawer);
        QTRY_COMPARE(shown->value("Dimensions", "text").toString(), QStringLiteral("160 × 90"));
        QCOMPARE(shown->value("Path", "text").toString(), file.toString());
        QVERIFY(shown->value("Path", "truncated").toBool());
    }

    void theDrawersActionsAreClicked() {
        OpenRoom in(m_home);
        const Location file = in.file("a.txt");
        const Location next = in.file("b.txt");
        in.open(file);
        RoomPiece shown(in, drawer);
        TestPanels panels;
        Actions::usePanels(&panels);
        shown->click("action3");
        QCOMPARE(QGuiApplication::clipboard()->text(), file.toString());
        shown->click("action0");
        QVERIFY(in.library().toast());
        shown->click("action1");
        QCOMPARE(panels.asked, QStringLiteral("save"));
        shown->click("action5");
        QCOMPARE(panels.button, QStringLiteral("Move Here"));
        shown->click("drawerStar");
        QTRY_VERIFY(in.room().isStarred());
        QVERIFY(shown.accessible("drawerStar")->state().checked);
        shown->click("action6");
        QCOMPARE(in.shown(), next);
        QTRY_VERIFY(!file.exists());
        in.room().setShowInfo(true);
        shown->click("drawerClose");
        QVERIFY(!in.room().showInfo());
        Actions::usePanels(nullptr);
    }

    void whatTheDrawerGivesToOtherProgramsIsClicked() {
        Opener opener;
        QDesktopServices::setUrlHandler(QStringLiteral("file"), &opener, "open");
        OpenRoom in(m_home);
        const Location file = in.file("a.txt");
        in.open(file);
        RoomPiece shown(in, drawer);
        QCOMPARE(shown->value("action4", "text").toString(), QStringLiteral("Open in Default App"));
        shown->click("action4");
        QCOMPARE(opener.opened, QList<QUrl>{file.toUrl()});
        QCOMPARE(shown->value("action2", "text").toString(), QStringLiteral("Show in Finder"));
        shown->click("action2");
        // No program for files runs here that could select it: its folder is opened.
        QTRY_COMPARE(opener.opened.value(1).adjusted(QUrl::StripTrailingSlash), file.parent().toUrl());
        QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
    }

    void theDrawersActionsAreReachedByKey() {
        OpenRoom in(m_home);
        const Location file = in.file("a.txt");
        in.open(file);
        RoomPiece shown(in, drawer, QSize(400, 300)); // lower than the drawer's content
        QStringList reached;
        for (int i = 0; i < 9; ++i) {
            shown->press(Qt::Key_Tab);
            reached << (*shown)->activeFocusItem()->objectName();
            QVERIFY2(isWithin(shown.item("drawer"), (*shown)->activeFocusItem()), qPrintable(reached.last()));
        }
        QCOMPARE(reached, strings({"drawerStar", "drawerClose", "action0", "action1", "action2", "action3", "action4",
                                   "action5", "action6"}));
        shown.item("action3")->forceActiveFocus(Qt::TabFocusReason);
        QGuiApplication::clipboard()->clear();
        shown->press(Qt::Key_Return);
        QCOMPARE(QGuiApplication::clipboard()->text(), file.toString());
    }

    // The keys

    void theKeysAreThoseOfTheKind() {
        OpenRoom in(m_home);
        const Location film = in.clip("h264.mp4");
        in.file("a.txt");
        in.open(film);
        RoomPiece shown(in, "KeyHints { objectName: 'hints'; room: parent ? parent.room : null }");
        QTRY_COMPARE(shown->value("hints", "hints").toList().size(), 8);
        QTRY_VERIFY(shown->value("hints", "inOneLine").toBool());
        const double oneLine = shown.item("hints")->implicitHeight();
        shown->find("hints")->setProperty("widest", 400);
        QTRY_VERIFY(shown.item("hints")->implicitHeight() > oneLine);
        QVERIFY(shown.item("hints")->implicitWidth() <= 400);
        in.room().go(1);
        QTRY_COMPARE(shown->value("hints", "hints").toList().size(), 4);
        QTRY_VERIFY(shown->value("hints", "inOneLine").toBool());
    }

    void aDrawerThatIsClosedByKeyLeavesTheKeysToTheRoom() {
        OpenRoom in(m_home);
        in.open(in.file("a.txt"));
        in.room().setShowInfo(true);
        RoomPiece shown(in, wholeRoom);
        QTRY_VERIFY(in.room().focused());
        shown.item("drawerClose")->forceActiveFocus(Qt::TabFocusReason);
        shown->press(Qt::Key_Return);
        QVERIFY(!in.room().showInfo());
        shown->press(Qt::Key_I);
        QVERIFY(in.room().showInfo());
    }

    void tabStaysInTheRoom() {
        OpenRoom in(m_home);
        in.open(in.file("a.txt"));
        QQmlEngine engine;
        const std::unique_ptr<QQuickWindow> shown = overAPage(engine, in.room());
        QTRY_VERIFY(in.room().focused());
        QStringList reached;
        for (int i = 0; i < 16; ++i) {
            QTest::keyClick(shown.get(), Qt::Key_Tab);
            QTRY_VERIFY(in.room().focused()); // also where the page behind had its turn
            reached << shown->activeFocusItem()->objectName();
        }
        QCOMPARE(reached.first(), QStringLiteral("roomBack"));
        for (const char* name : {"roomStar", "roomShare", "roomReveal", "roomInfo", "roomQueue"})
            QVERIFY2(reached.contains(QLatin1String(name)), name);
        QVERIFY(!reached.contains(QStringLiteral("page")));
    }

    void whatClosesOverTheRoomGivesTheKeysBackToIt() {
        OpenRoom in(m_home);
        in.open(in.file("a.txt"));
        QQmlEngine engine;
        const std::unique_ptr<QQuickWindow> made = overAPage(engine, in.room());
        QQuickWindow* const shown = made.get();
        QTRY_VERIFY(in.room().focused());
        auto* const menu = made->findChild<QObject*>(QStringLiteral("menu"));
        QMetaObject::invokeMethod(menu, "open");
        QTRY_VERIFY(menu->property("opened").toBool());
        QVERIFY(!in.room().focused());
        QTest::keyClick(shown, Qt::Key_Escape);
        QTRY_VERIFY(!menu->property("visible").toBool());
        QTRY_VERIFY(in.room().focused());
        QTest::keyClick(shown, Qt::Key_I);
        QVERIFY(in.room().showInfo());
    }

private:
    static bool isWithin(const QQuickItem* frame, const QQuickItem* item) {
        const QRectF place = item->mapRectToItem(frame, item->boundingRect());
        return frame->boundingRect().adjusted(-1, -1, 1, 1).contains(place);
    }

    static bool isInSight(RoomPiece& shown, const char* row) {
        const auto* const list = shown.item("queue");
        const QList<QQuickItem*> rows = list->childItems().first()->childItems();
        for (const QQuickItem* item : rows)
            if (item->objectName() == QLatin1String(row) && item->isVisible())
                return isWithin(list, item);
        return false;
    }

    static qsizetype madeRows(const QQuickItem* list) { return list->childItems().first()->childItems().size(); }

    static std::unique_ptr<QQuickWindow> overAPage(QQmlEngine& engine, ScreeningRoom& room) {
        Look::prepareEngine(engine);
        QQmlComponent component(&engine);
        component.setData(window, QUrl());
        QObject* const made =
            component.createWithInitialProperties({{QStringLiteral("room"), QVariant::fromValue<QObject*>(&room)}});
        if (!made)
            qFatal("%s", qPrintable(component.errorString()));
        std::unique_ptr<QQuickWindow> shown(qobject_cast<QQuickWindow*>(made));
        shown->requestActivate();
        return shown;
    }

    TestHome m_home;
};

QTEST_MAIN(tst_RoomPanels)
#include "tst_roompanels.moc"
