// The sidebar for who uses it by keyboard alone, or by a screen reader: what each part is, is called and says, read
// through the accessibility interface, and the order in which the Tab key goes through them.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "SidebarWindow.h"
#include "support/Strings.h"

#include <QAccessible>
#include <QRegularExpression>

using namespace lumbra;

class tst_SidebarAccess : public QObject, SidebarWindow {
    Q_OBJECT

private:
    static QAccessibleInterface* access(QQuickItem* item) { return QAccessible::queryAccessibleInterface(item); }
    static QString name(QQuickItem* item) { return access(item) ? access(item)->text(QAccessible::Name) : QString(); }
    QAccessibleInterface* rowOf(const char* title) { return access(cell(title)); }
    QString says(const char* title) { return rowOf(title)->text(QAccessible::Description); }
    QAccessible::State state(const char* title) { return rowOf(title)->state(); }
    void act(const char* title, const QString& action) { rowOf(title)->actionInterface()->doAction(action); }
    QQuickItem* current() { return m_window->window()->activeFocusItem(); }

    // Role and name of everything below, from the top.
    static void gather(const QAccessibleInterface* from, QStringList& lines) {
        QVERIFY(from);
        for (int index = 0; index < from->childCount(); ++index) {
            const QAccessibleInterface* const child = from->child(index);
            if (!child || child->state().invisible)
                continue;
            lines << QString::number(int(child->role())) + u' ' + child->text(QAccessible::Name);
            gather(child, lines);
        }
    }

private Q_SLOTS:
    void initTestCase() {
        Look::prepareApplication();
        QAccessible::setActive(true);
    }
    void init() {
        QTest::failOnWarning(QRegularExpression(QStringLiteral("Browsing/.*\\.qml")));
        make();
    }
    void cleanup() { takeDown(); }

    void theListIsATreeOfRows() {
        folder("cats");
        open();
        QCOMPARE(access(list())->role(), QAccessible::Tree);
        QCOMPARE(name(list()), text("Sidebar"));
        for (const char* title : {"Recent", "Starred", "Tidy", "cats"}) {
            QCOMPARE(rowOf(title)->role(), QAccessible::TreeItem);
            QCOMPARE(rowOf(title)->text(QAccessible::Name), text(title));
            QVERIFY(state(title).selectable && state(title).focusable);
        }
        QVERIFY(state("Recent").selected);
        QVERIFY(!state("cats").selected);
    }

    void everyPartHasARoleAndAName() {
        folder("acme-a");
        folder("acme-b");
        open();
        m_library->togglePin(at("acme-a"));
        QTRY_VERIFY(row("Pinned") >= 0);
        in("acme-b");
        QStringList parts;
        gather(QAccessible::queryAccessibleInterface(m_window->window()), parts);
        const auto is = [](QAccessible::Role role, const char* said) {
            return QString::number(int(role)) + u' ' + QString::fromUtf8(said);
        };
        for (const QString& part :
             {is(QAccessible::EditableText, "Find a project"), is(QAccessible::Button, "Jump to anything"),
              is(QAccessible::Heading, "Pinned"), is(QAccessible::Heading, "Projects"),
              is(QAccessible::Button, "New project or group"),
              is(QAccessible::StaticText, "2 projects start with acme. Group them?"),
              is(QAccessible::Button, "Group as Acme"), is(QAccessible::Button, "Not now"),
              is(QAccessible::TreeItem, "acme-a"), is(QAccessible::TreeItem, "acme-b"),
              is(QAccessible::StaticText, "~/Library · 2 projects"), is(QAccessible::Button, "Library options")})
            QVERIFY2(parts.contains(part), qPrintable(part + text(" is not among\n") + parts.join(u'\n')));
        // A name is said once.
        QCOMPARE(parts.filter(text("acme-b")).size(), 1);
    }

    void aRowSaysWhatStandsBesideItsName() {
        folder("cats");
        m_home->file("Library/cats/new.txt");
        open();
        QTRY_COMPARE(says("cats"), text("New in the last day"));
        m_library->togglePin(at("cats"));
        QTRY_COMPARE(row("Pinned") >= 0, true);
        QTRY_COMPARE(says("cats"), text("Pinned, New in the last day"));
        QTRY_COMPARE(says("Recent"), text("1 new in the last day"));
        m_library->newGroup(text("Pets"), {text("cats")});
        QTRY_VERIFY(row("Pets") >= 0);
        QTRY_COMPARE(says("Pets"), text("1"));
    }

    void aRowSaysWhetherItIsOpen() {
        folder("cats/renders");
        open();
        QVERIFY(state("cats").expandable && state("cats").collapsed);
        QVERIFY(!state("Recent").expandable);
        act("cats", QAccessibleActionInterface::toggleAction());
        QTRY_VERIFY(row("renders") >= 0);
        QVERIFY(state("cats").expanded && !state("cats").collapsed);
        QVERIFY(m_library->place() == Place::recent());
        act("renders", QAccessibleActionInterface::pressAction());
        QVERIFY(m_library->place() == Place::folder(at("cats/renders")));
    }

    // Who is told of the focus is told of the item that has it.
    void theRowWithTheKeyboardIsTheFocus() {
        folder("cats");
        open();
        list()->forceActiveFocus(Qt::TabFocusReason);
        press(Qt::Key_Down);
        QCOMPARE(name(current()), text("Starred"));
        QCOMPARE(access(current())->role(), QAccessible::TreeItem);
        QVERIFY(state("Starred").focused);
        QVERIFY(!state("Recent").focused);
    }

    void tabGoesInReadingOrder() {
        folder("acme-a");
        folder("acme-b");
        open();
        in("acme-b");
        m_window->find<QQuickItem>("filter")->forceActiveFocus(Qt::TabFocusReason);
        QStringList order;
        for (int step = 0; step < 8; ++step) {
            order << name(current());
            if (current()->property("visualFocus").isValid())
                QVERIFY2(current()->property("visualFocus").toBool(), qPrintable(order.last()));
            press(Qt::Key_Tab);
        }
        QCOMPARE(order, strings({"Find a project", "Jump to anything", "Recent", "New project or group",
                                 "Group as Acme", "Not now", "Library options", "Find a project"}));
    }

    void tabComesToTheRowsThoughAButtonAmongThemHadTheKeys() {
        folder("cats");
        open();
        auto* const filter = m_window->find<QQuickItem>("filter");
        filter->forceActiveFocus(Qt::TabFocusReason);
        for (int step = 0; step < 4; ++step)
            press(Qt::Key_Tab);
        QCOMPARE(name(current()), text("Library options"));
        press(Qt::Key_Backtab);
        QCOMPARE(name(current()), text("New project or group"));
        press(Qt::Key_Backtab);
        QCOMPARE(name(current()), text("Recent"));
        press(Qt::Key_Down);
        press(Qt::Key_Tab);
        QCOMPARE(name(current()), text("New project or group"));
        filter->forceActiveFocus(Qt::TabFocusReason);
        press(Qt::Key_Tab);
        press(Qt::Key_Tab);
        QCOMPARE(name(current()), text("Starred"));
        press(Qt::Key_Backtab);
        QCOMPARE(name(current()), text("Jump to anything"));
    }

    void theRowWithTheKeyboardHasARing() {
        folder("cats");
        open();
        list()->forceActiveFocus(Qt::TabFocusReason);
        press(Qt::Key_End);
        const auto rings = [this](const char* title) {
            int shown = 0;
            const auto inside = cell(title)->findChildren<QQuickItem*>();
            for (const QQuickItem* item : inside)
                shown += item->property("shown").toBool() && item->isVisible();
            return shown;
        };
        QCOMPARE(rings("cats"), 1);
        QCOMPARE(rings("Recent"), 0);
    }

    void theButtonOfTheHeaderOpensItsMenuByKey() {
        open();
        std::optional<NamePrompt> asked;
        m_sidebar->setNamePrompt([&asked](const NamePrompt& prompt) { asked = prompt; });
        list()->forceActiveFocus(Qt::TabFocusReason);
        press(Qt::Key_Tab);
        QCOMPARE(name(current()), text("New project or group"));
        press(Qt::Key_Return);
        press(Qt::Key_Down);
        press(Qt::Key_Down);
        press(Qt::Key_Return);
        QTRY_VERIFY(asked);
        QCOMPARE(asked->title, text("New Group"));
    }

    // What the pointer does by a drag is done by the menu, too.
    void aProjectIsGroupedByKeysAlone() {
        folder("cats");
        folder("dogs");
        open();
        m_library->newGroup(text("Pets"), {text("dogs")});
        QTRY_VERIFY(row("Pets") >= 0);
        list()->forceActiveFocus(Qt::TabFocusReason);
        while (name(current()) != text("cats"))
            press(Qt::Key_Down);
        press(Qt::Key_Menu);
        press(Qt::Key_Down);
        press(Qt::Key_Down);
        press(Qt::Key_Right);
        press(Qt::Key_Return);
        QTRY_COMPARE(groups(), text("Pets(dogs cats)"));
    }

    void theOptionsAreWalkedPastWhatCanNotBeChosen() {
        open();
        InsightEngine insights(m_library.get());
        m_sidebar->setInsights(&insights);
        auto* const options = m_window->find<QQuickItem>("options");
        options->forceActiveFocus(Qt::TabFocusReason);
        press(Qt::Key_Return);
        for (int step = 0; step < 5; ++step) // two to make, two to sort by, the switch
            press(Qt::Key_Down);
        press(Qt::Key_Return);
        QTRY_VERIFY(!insights.enabled());
        insights.setEnabled(true);
        m_sidebar->setByActivity(true);
    }
};

QTEST_MAIN(tst_SidebarAccess)
#include "tst_sidebaraccess.moc"
