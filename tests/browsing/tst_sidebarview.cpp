// SPDX-License-Identifier: GPL-3.0-or-later
#include "browsing/sidebar/Sidebar.h"
#include "library/Library.h"
#include "support/QmlWindow.h"
#include "support/TestHome.h"

#include <QAccessible>
#include <QRegularExpression>
#include <QWheelEvent>
#include <QtQuickTest/quicktest.h>

Q_IMPORT_QML_PLUGIN(Lumbra_MediaPlugin)
Q_IMPORT_QML_PLUGIN(Lumbra_BrowsingPlugin)

using namespace lumbra;

namespace {

QString text(const char* latin) {
    return QString::fromLatin1(latin);
}

} // namespace

class tst_SidebarView : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<TestHome> m_home;
    std::unique_ptr<Library> m_library;
    std::unique_ptr<Sidebar> m_sidebar;
    std::unique_ptr<QmlWindow> m_window;

    Location at(const char* relative) const { return m_library->root().child(std::string_view(relative)); }

    void folder(const std::string& relative) { m_home->folder("Library/" + relative); }

    void open(int height = 600) {
        m_library = std::make_unique<Library>(m_home->path().child("Library"), true);
        m_sidebar = std::make_unique<Sidebar>(m_library.get());
        m_window = std::make_unique<QmlWindow>(
            "property var controller\nSidebarView { anchors.fill: parent; sidebar: parent.controller }",
            "import Lumbra.Browsing", QVariantMap{{text("controller"), QVariant::fromValue(m_sidebar.get())}},
            QSize(264, height));
        if (!QTest::qWaitFor([this] { return !m_library->indexing(); }, 10000))
            qFatal("the first walk does not end");
    }

    QQuickItem* list() { return m_window->find<QQuickItem>("rows"); }

    int row(const char* title) const {
        const QList<SidebarRow>& rows = m_sidebar->rows()->rows();
        for (int row = int(rows.size()) - 1; row >= 0; --row) {
            if (rows[row].title == text(title))
                return row;
        }
        return -1;
    }

    QQuickItem* cell(const char* title) {
        QQuickItem* found = nullptr;
        const auto shown = [&] {
            QMetaObject::invokeMethod(list(), "itemAtIndex", Q_RETURN_ARG(QQuickItem*, found), Q_ARG(int, row(title)));
            return found != nullptr;
        };
        if (!QTest::qWaitFor(shown))
            qFatal("no row %s", title);
        return found;
    }

    // In a row, from its left end, halfway up.
    QPoint in(const char* title, qreal x = 120) {
        // Rows that have just come or gone take their places with the next frame.
        if (QQuickTest::qIsPolishScheduled(list()) && !QQuickTest::qWaitForPolish(list()))
            qFatal("the rows do not take their places");
        const QQuickItem* item = cell(title);
        return item->mapToScene(QPointF(x, item->height() / 2)).toPoint();
    }

    void press(Qt::Key key) { m_window->press(key); }

    void click(const QPoint& point, Qt::MouseButton button = Qt::LeftButton) {
        QTest::mouseMove(m_window->window(), point);
        QTest::mouseClick(m_window->window(), button, {}, point);
    }

    void startDrag(const QPoint& from, const QPoint& to) {
        QTest::mouseMove(m_window->window(), from);
        QTest::mousePress(m_window->window(), Qt::LeftButton, {}, from);
        for (int part = 1; part <= 8; ++part)
            QTest::mouseMove(m_window->window(), from + (to - from) * part / 8);
    }

    void drag(const QPoint& from, const QPoint& to) {
        startDrag(from, to);
        QTest::mouseRelease(m_window->window(), Qt::LeftButton, {}, to);
    }

    QString groups() const {
        QStringList all;
        const QList<ProjectGroup> stored = m_library->state().groups;
        for (const ProjectGroup& group : stored)
            all.append(group.name + u'(' + group.projects.join(u' ') + u')');
        return all.join(QStringLiteral(", "));
    }

private Q_SLOTS:
    void initTestCase() { Look::prepareApplication(); }
    void init();
    void cleanup();

    void aClickGoesToThePlaceAndTheChevronOnlyOpens();
    void typingFiltersAndEscapeShowsAllAgain();
    void downFromTheFilterGoesToTheFirstResult();
    void theKeyboardWalksOpensAndChooses();
    void aDragOntoASiblingMakesAGroup();
    void aDragOntoTheHeaderLeavesTheGroup();
    void escapeGivesADragUp();
    void aDragShowsWhatItCarriesAndWhereItMayLand();
    void theWheelScrollsAndTheMouseDoesNot();
    void aRightClickOpensTheMenuOfTheRow();
    void theMenuKeyOpensTheMenuOfTheRow();
    void theRowUnderThePointerOffersItsMenu();
    void theSuggestionIsAnsweredByItsButtons();
    void rowsTellAssistiveTechnologyWhatTheyAre();
    void folderRowsLearnOfTheirChildrenByThemselves();
};

void tst_SidebarView::init() {
    QTest::failOnWarning(QRegularExpression(QStringLiteral("Browsing/.*\\.qml")));
    m_home = std::make_unique<TestHome>();
    m_home->folder("Library");
}

void tst_SidebarView::cleanup() {
    m_window.reset();
    m_sidebar.reset();
    m_library.reset();
}

void tst_SidebarView::aClickGoesToThePlaceAndTheChevronOnlyOpens() {
    folder("cats/renders");
    open();
    click(in("Starred"));
    QVERIFY(m_library->place() == Place::starred());
    click(in("cats", 20));
    QTRY_VERIFY(row("renders") >= 0);
    QVERIFY(m_library->place() == Place::starred());
    click(in("renders"));
    QVERIFY(m_library->place() == Place::folder(at("cats/renders")));
    click(in("cats", 20));
    QTRY_COMPARE(row("renders"), -1);
}

void tst_SidebarView::typingFiltersAndEscapeShowsAllAgain() {
    folder("cats");
    folder("dogs");
    open();
    m_window->find<QQuickItem>("filter")->forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_D);
    press(Qt::Key_O);
    QCOMPARE(m_sidebar->filter(), text("do"));
    QTRY_COMPARE(row("cats"), -1);
    press(Qt::Key_Escape);
    QCOMPARE(m_sidebar->filter(), QString());
    QTRY_VERIFY(row("cats") >= 0);
}

void tst_SidebarView::downFromTheFilterGoesToTheFirstResult() {
    folder("cats");
    folder("dogs");
    open();
    m_window->find<QQuickItem>("filter")->forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_D);
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    QVERIFY(m_library->place() == Place::folder(at("dogs")));
}

void tst_SidebarView::theKeyboardWalksOpensAndChooses() {
    folder("cats/renders");
    open();
    list()->forceActiveFocus(Qt::TabFocusReason);
    QCOMPARE(list()->property("currentIndex").toInt(), 0);
    QVERIFY(cell("Recent")->hasActiveFocus());
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    QCOMPARE(list()->property("currentIndex").toInt(), row("cats"));
    press(Qt::Key_Right);
    QTRY_VERIFY(row("renders") >= 0);
    press(Qt::Key_Right);
    press(Qt::Key_Return);
    QVERIFY(m_library->place() == Place::folder(at("cats/renders")));
    press(Qt::Key_Left);
    QCOMPARE(list()->property("currentIndex").toInt(), row("cats"));
    press(Qt::Key_Left);
    QCOMPARE(row("renders"), -1);
    press(Qt::Key_Home);
    press(Qt::Key_Return);
    QVERIFY(m_library->place() == Place::recent());
    press(Qt::Key_End);
    QCOMPARE(list()->property("currentIndex").toInt(), row("cats"));
}

void tst_SidebarView::aDragOntoASiblingMakesAGroup() {
    folder("cats-a");
    folder("cats-b");
    open();
    m_library->dismiss(*m_library->groupSuggestion());
    QTRY_COMPARE(row("2 projects start with cats. Group them?"), -1);
    drag(in("cats-b"), in("cats-a"));
    QCOMPARE(groups(), text("Cats(cats-a cats-b)"));
    QVERIFY(m_library->place() == Place::recent());
}

void tst_SidebarView::aDragOntoTheHeaderLeavesTheGroup() {
    folder("cats");
    folder("dogs");
    open();
    m_library->newGroup(text("Pets"), {text("cats"), text("dogs")});
    QTRY_VERIFY(row("Pets") >= 0);
    drag(in("cats"), in("Projects"));
    QCOMPARE(groups(), text("Pets(dogs)"));
    QTRY_VERIFY(row("Pets") >= 0);
    drag(in("cats"), in("Pets"));
    QCOMPARE(groups(), text("Pets(dogs cats)"));
}

void tst_SidebarView::escapeGivesADragUp() {
    folder("cats-a");
    folder("dogs");
    open();
    startDrag(in("dogs"), in("cats-a"));
    press(Qt::Key_Escape);
    QTest::mouseRelease(m_window->window(), Qt::LeftButton, {}, in("cats-a"));
    QCOMPARE(groups(), QString());
    // And the next one lands again.
    drag(in("dogs"), in("cats-a"));
    QCOMPARE(groups(), text("New Group(cats-a dogs)"));
}

void tst_SidebarView::aDragShowsWhatItCarriesAndWhereItMayLand() {
    folder("cats");
    folder("dogs");
    open();
    auto* ghost = m_window->find<QQuickItem>("ghost");
    QVERIFY(!ghost->isVisible());
    startDrag(in("dogs"), in("cats"));
    QVERIFY(ghost->isVisible());
    QCOMPARE(ghost->property("name").toString(), text("dogs"));
    QCOMPARE(ghost->property("payload").toString(), text("lumbra-project:dogs"));
    QVERIFY(cell("cats")->property("targeted").toBool());
    QTest::mouseMove(m_window->window(), in("Recent"));
    QVERIFY(!cell("cats")->property("targeted").toBool());
    QVERIFY(!cell("Recent")->property("targeted").toBool());
    QTest::mouseMove(m_window->window(), in("dogs"));
    QVERIFY(!cell("dogs")->property("targeted").toBool());
    QTest::mouseRelease(m_window->window(), Qt::LeftButton, {}, in("dogs"));
    QVERIFY(!ghost->isVisible());
    QCOMPARE(groups(), QString());
}

void tst_SidebarView::theWheelScrollsAndTheMouseDoesNot() {
    for (int number = 0; number < 60; ++number)
        folder("project " + std::to_string(number));
    open(400);
    const auto scrolled = [this] {
        return list()->property("contentY").toReal() - list()->property("originY").toReal();
    };
    QTRY_VERIFY(list()->property("contentHeight").toReal() > 1000);
    drag(in("Tidy"), in("Tidy") - QPoint(0, 80));
    drag(in("project 0"), in("Tidy"));
    QCOMPARE(scrolled(), 0.0);
    QWheelEvent turn(QPointF(100, 200), QPointF(100, 200), {}, QPoint(0, -240), Qt::NoButton, Qt::NoModifier,
                     Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(m_window->window(), &turn);
    QTRY_VERIFY(scrolled() > 0);
}

void tst_SidebarView::aRightClickOpensTheMenuOfTheRow() {
    folder("cats");
    open();
    click(in("cats"), Qt::RightButton);
    // The keys pass over dividers.
    const QVariantList menu = m_sidebar->menu(row("cats"));
    for (const QVariant& entry : menu) {
        if (!entry.value<MenuEntry>().isDivider())
            press(Qt::Key_Down);
        if (entry.value<MenuEntry>().title == text("Hide Project"))
            break;
    }
    press(Qt::Key_Return);
    QTRY_COMPARE(m_library->state().hidden, QStringList{text("cats")});
}

void tst_SidebarView::theMenuKeyOpensTheMenuOfTheRow() {
    folder("cats");
    open();
    list()->forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_Menu);
    press(Qt::Key_End);
    press(Qt::Key_Menu);
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    QTRY_COMPARE(m_library->state().pins, QStringList{text("cats")});
}

void tst_SidebarView::theRowUnderThePointerOffersItsMenu() {
    folder("cats");
    open();
    m_library->togglePin(at("cats"));
    QTRY_VERIFY(m_sidebar->rows()->rows()[row("cats")].pinned);
    const auto visible = [this](const char* name) {
        const auto* item = cell("cats")->findChild<QQuickItem*>(text(name));
        return item && item->isVisible();
    };
    QVERIFY(visible("pin mark"));
    QVERIFY(!visible("more"));
    QTest::mouseMove(m_window->window(), in("cats"));
    QTRY_VERIFY(visible("more"));
    QVERIFY(!visible("pin mark"));
    QTest::mouseMove(m_window->window(), in("Recent"));
    QTRY_VERIFY(visible("pin mark"));
}

void tst_SidebarView::theSuggestionIsAnsweredByItsButtons() {
    folder("acme-a");
    folder("acme-b");
    open();
    in("2 projects start with acme. Group them?");
    auto* accept = cell("2 projects start with acme. Group them?")->findChild<QQuickItem*>(text("accept"));
    QVERIFY(accept);
    QCOMPARE(accept->property("text").toString(), text("Group as Acme"));
    accept->forceActiveFocus(Qt::TabFocusReason);
    QVERIFY(accept->hasActiveFocus());
    press(Qt::Key_Return);
    QCOMPARE(groups(), text("Acme(acme-a acme-b)"));
}

void tst_SidebarView::rowsTellAssistiveTechnologyWhatTheyAre() {
    folder("cats");
    open();
    QTRY_VERIFY(row("cats") >= 0);
    QAccessibleInterface* tree = QAccessible::queryAccessibleInterface(list());
    QVERIFY(tree);
    QCOMPARE(tree->role(), QAccessible::Tree);
    const auto* drawn = cell("Recent")->findChild<QQuickItem*>(text("row"));
    QVERIFY(drawn);
    QAccessibleInterface* recent = QAccessible::queryAccessibleInterface(const_cast<QQuickItem*>(drawn));
    QVERIFY(recent);
    QCOMPARE(recent->role(), QAccessible::TreeItem);
    QCOMPARE(recent->text(QAccessible::Name), text("Recent"));
    QVERIFY(recent->state().selected);
}

void tst_SidebarView::folderRowsLearnOfTheirChildrenByThemselves() {
    folder("cats/branch/twig");
    open();
    click(in("cats", 20));
    QTRY_VERIFY(row("branch") >= 0 && m_sidebar->rows()->rows()[row("branch")].isExpandable());
}

QTEST_MAIN(tst_SidebarView)
#include "tst_sidebarview.moc"
