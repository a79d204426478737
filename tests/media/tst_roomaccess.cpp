// The screening room without a pointer and without eyes: what assistive technology reads in it, where Tab leads, and
// what the desktop's wish for less motion and more contrast changes.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "RoomPiece.h"
#include "support/PdfFiles.h"
#include "support/Strings.h"

#include <QMetaEnum>
#include <QtTest>

using namespace lumbra;

namespace {

// What a person can act on.
bool isControl(QAccessible::Role role) {
    return role == QAccessible::Button || role == QAccessible::ButtonMenu || role == QAccessible::CheckBox
           || role == QAccessible::Slider || role == QAccessible::ListItem;
}

QString told(QAccessibleInterface* interface) {
    return QStringLiteral("%1 \"%2\" %3")
        .arg(QString::fromLatin1(QMetaEnum::fromType<QAccessible::Role>().valueToKey(interface->role())),
             interface->text(QAccessible::Name), interface->object() ? interface->object()->objectName() : QString());
}

// Everything that can be seen, in its order.
QList<QAccessibleInterface*> everythingIn(QAccessibleInterface* parent) {
    QList<QAccessibleInterface*> all;
    for (int i = 0; i < parent->childCount(); ++i) {
        QAccessibleInterface* const child = parent->child(i);
        if (!child || child->state().invisible)
            continue;
        all.append(child);
        all.append(everythingIn(child));
    }
    return all;
}

} // namespace

class tst_RoomAccess : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        Look::prepareApplication();
        QAccessible::setActive(true);
    }

    void everyKind_data() {
        QTest::addColumn<QString>("name");
        for (const char* name : {"long.mp4", "tone.wav", "a.png", "a.pdf", "a.md", "a.csv", "a.zip"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }
    void everyKind() {
        QFETCH(QString, name);
        OpenRoom in(m_home);
        RoomPiece shown = roomWith(in, name);
        in.room().setShowInfo(true);
        QTRY_VERIFY(shown->root()->findChild<QObject*>(QStringLiteral("drawerStar")));
        QVERIFY(shown->root()->findChild<QObject*>(QStringLiteral("autoplay")));
        QTRY_VERIFY(everythingIn(QAccessible::queryAccessibleInterface(shown->window())).size() > 30);
        const auto all = everythingIn(QAccessible::queryAccessibleInterface(shown->window()));
        int controls = 0;
        for (QAccessibleInterface* const each : all) {
            const QByteArray what = told(each).toUtf8();
            QVERIFY2(each->role() != QAccessible::NoRole, what);
            if (!isControl(each->role()))
                continue;
            ++controls;
            QVERIFY2(!each->text(QAccessible::Name).isEmpty(), what);
            QVERIFY2(each->rect().isValid(), what);
            QVERIFY2(each->actionInterface() && !each->actionInterface()->actionNames().isEmpty(), what);
            if (each->role() == QAccessible::CheckBox)
                QVERIFY2(each->state().checkable, what);
            if (each->role() == QAccessible::Slider)
                QVERIFY2(each->valueInterface(), what);
        }
        QVERIFY(controls > 15);
    }

    void whatIsOnOrOffSaysSo() {
        OpenRoom in(m_home);
        RoomPiece shown = roomWith(in, QStringLiteral("long.mp4"));
        in.room().setShowInfo(true);
        QTRY_VERIFY(shown->root()->findChild<QObject*>(QStringLiteral("drawerStar")));
        const auto isChecked = [&](const char* name) {
            const QAccessible::State state = shown.accessible(name)->state();
            return state.checkable && state.checked;
        };
        QVERIFY(isChecked("roomInfo") && isChecked("roomQueue") && isChecked("autoplay"));
        QVERIFY(!isChecked("roomStar") && !isChecked("drawerStar") && !isChecked("loop") && !isChecked("mute"));
        in.engine().setLoop(true);
        in.engine().setMuted(true);
        in.room().toggleStar();
        QTRY_VERIFY(isChecked("roomStar") && isChecked("drawerStar") && isChecked("loop") && isChecked("mute"));
        QCOMPARE(shown.accessible("roomStar")->text(QAccessible::Name), QStringLiteral("Starred"));
        QCOMPARE(shown.accessible("scrubber")->valueInterface()->maximumValue().toDouble(), in.engine().duration());
        QVERIFY(shown.accessible("row0")->state().selected);
        QVERIFY(!shown.accessible("row1")->state().selected);
    }

    void thePanesHaveTheirNames() {
        OpenRoom in(m_home);
        RoomPiece shown = roomWith(in, QStringLiteral("long.mp4"));
        in.room().setShowInfo(true);
        QTRY_VERIFY(shown->root()->findChild<QObject*>(QStringLiteral("drawerStar")));
        QTRY_VERIFY(everythingIn(QAccessible::queryAccessibleInterface(shown->window())).size() > 30);
        QStringList panes;
        const auto all = everythingIn(QAccessible::queryAccessibleInterface(shown->window()));
        for (QAccessibleInterface* const each : all)
            if (each->role() == QAccessible::Pane || each->role() == QAccessible::ToolBar)
                panes << each->text(QAccessible::Name);
        for (const char* name : {"Screening room", "Player", "Up next", "Info"})
            QVERIFY2(panes.contains(QLatin1String(name)), qPrintable(panes.join(u',')));
    }

    void tabFollowsTheReadingOrder() {
        OpenRoom in(m_home);
        RoomPiece shown = roomWith(in, QStringLiteral("long.mp4"));
        in.room().setShowInfo(true);
        QTRY_VERIFY(shown->root()->findChild<QObject*>(QStringLiteral("drawerStar")));
        QTRY_VERIFY(in.room().focused());
        QStringList order;
        for (int i = 0; i < 40 && (order.isEmpty() || order.last() != QStringLiteral("action6")); ++i) {
            shown->press(Qt::Key_Tab);
            QQuickItem* const focused = (*shown)->activeFocusItem();
            order << focused->objectName();
            QVERIFY2(showsItsFocus(focused), qPrintable(order.last()));
        }
        QStringList expected =
            strings({"roomBack", "roomStar", "roomShare",  "roomReveal",    "roomInfo",  "roomQueue",  "scrubber",
                     "play",     "back",     "ahead",      "previousFrame", "nextFrame", "speed",      "loop",
                     "mute",     "volume",   "fullScreen", "autoplay",      "row0",      "drawerStar", "drawerClose",
                     "action0",  "action1",  "action2",    "action3",       "action4",   "action5",    "action6"});
        if (shown->value("pip", "enabled").toBool()) // not on every display
            expected.insert(expected.indexOf(QStringLiteral("fullScreen")), QStringLiteral("pip"));
        QCOMPARE(order, expected);
        // And the other way.
        for (qsizetype i = order.size() - 2; i >= 0; --i) {
            shown->press(Qt::Key_Backtab, Qt::ShiftModifier);
            QCOMPARE((*shown)->activeFocusItem()->objectName(), order[i]);
        }
    }

    void withReducedMotionTheRoomDoesNotMove() {
        OpenRoom in(m_home);
        in.open(in.clip("long.mp4"));
        in.settle();
        RoomPiece shown(in, R"(
            property bool still: Theme.reducedMotion
            Loader {
                objectName: "loader"
                anchors.fill: parent
                active: parent ? parent.still : false
                sourceComponent: ScreeningRoomView { objectName: "view"; room: parent.parent.room }
            })");
        Look::setAppearance(shown->engine(), false, true);
        QTRY_VERIFY(shown->root()->findChild<QObject*>(QStringLiteral("view")));
        QCOMPARE(shown->value("view", "opacity").toDouble(), 1.0); // at once
        in.library().setPlaying(std::nullopt);
        QCOMPARE(shown->value("view", "opacity").toDouble(), 0.0);
    }

    void withHighContrastTextsAndLinesAreBrighter() {
        OpenRoom in(m_home);
        RoomPiece shown = roomWith(in, QStringLiteral("a.md"));
        const auto alpha = [&] { return shown->value("roomMeta", "color").value<QColor>().alphaF(); };
        QVERIFY(alpha() < 0.7F);
        Look::setAppearance(shown->engine(), true, false);
        QTRY_VERIFY(alpha() > 0.9F);
        Look::setAppearance(shown->engine(), false, false);
    }

private:
    // The file with two beside it, in a room with place for everything.
    RoomPiece roomWith(OpenRoom& in, const QString& name) {
        const QByteArray file = name.toLatin1();
        QImage picture(64, 48, QImage::Format_RGB32);
        picture.fill(Qt::red);
        Location shown;
        if (file == "a.png") {
            shown = in.file("a.png");
            picture.save(shown.toString());
        } else if (file == "a.pdf") {
            shown = PdfFiles::write(in.file("a.pdf"), {{"Words"}});
        } else if (file == "long.mp4" || file == "tone.wav") {
            shown = in.clip(file.constData());
        } else {
            shown = in.file(file.constData(), "a,b\n1,2\n");
        }
        in.file("next.txt");
        in.file("last.txt");
        in.open(shown);
        if (in.room().usesEngine())
            in.settle();
        return RoomPiece(in, wholeRoom, QSize(1440, 900));
    }

    // A ring around it or within it.
    static bool showsItsFocus(QQuickItem* item) {
        const QList<QQuickItem*> children = item->childItems();
        for (QQuickItem* const child : children) {
            const bool isRing = child->inherits("QQuickRectangle") && child->property("shown").toBool();
            if ((isRing && child->isVisible()) || showsItsFocus(child))
                return true;
        }
        return false;
    }

    TestHome m_home;
};

int main(int argc, char** argv) {
    return runWithPlayer<tst_RoomAccess>(argc, argv);
}
#include "tst_roomaccess.moc"
