// SPDX-License-Identifier: GPL-3.0-or-later
#include "SidebarWindow.h"

#include <QRegularExpression>
#include <QWheelEvent>

using namespace lumbra;

namespace {

// The texts that are to be seen on an item and below it.
QStringList textsOn(const QQuickItem* item) {
    QStringList all;
    const QList<QQuickItem*> children = item->childItems();
    for (const QQuickItem* child : children) {
        if (!child->isVisible())
            continue;
        if (child->inherits("QQuickText"))
            all.append(child->property("text").toString());
        all.append(textsOn(child));
    }
    return all;
}

} // namespace

class tst_SidebarView : public QObject, SidebarWindow {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Look::prepareApplication(); }
    void init();
    void cleanup() { takeDown(); }

    void aClickGoesToThePlaceAndTheChevronOnlyOpens();
    void typingFiltersAndEscapeShowsAllAgain();
    void downFromTheFilterGoesToTheFirstResult();
    void theKeyboardWalksOpensAndChooses();
    void aDragOntoASiblingMakesAGroup();
    void aDragOntoTheHeaderLeavesTheGroup();
    void escapeGivesADragUp();
    void aDragShowsWhatItCarriesAndWhereItMayLand();
    void theWheelScrollsAndTheMouseDoesNot();
    void theKeyboardReachesTheEndOfALongList();
    void aRightClickOpensTheMenuOfTheRow();
    void theMenuKeyOpensTheMenuOfTheRow();
    void theRowUnderThePointerOffersItsMenu();
    void aRowShowsOneTipAtATime();
    void theSuggestionIsAnsweredByItsButtons();
    void folderRowsLearnOfTheirChildrenByThemselves();
};

void tst_SidebarView::init() {
    QTest::failOnWarning(QRegularExpression(QStringLiteral("Browsing/.*\\.qml")));
    make();
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

void tst_SidebarView::theKeyboardReachesTheEndOfALongList() {
    for (int number = 100; number < 300; ++number)
        folder("a-project " + std::to_string(number));
    folder("a-last");
    open(400);
    m_sidebar->setByActivity(false);
    QTRY_VERIFY(row("a-project 299") > 200);
    list()->forceActiveFocus(Qt::TabFocusReason);
    const auto isWhole = [this] {
        const QQuickItem* const current = m_window->window()->activeFocusItem();
        const QRectF place = current->mapRectToItem(list(), current->boundingRect());
        return place.height() > 0 && QRectF(0, 0, list()->width(), list()->height()).contains(place);
    };
    press(Qt::Key_End);
    QCOMPARE(list()->property("currentIndex").toInt(), row("a-project 299"));
    QTRY_VERIFY(isWhole());
    // The wheel leaves it behind, and nothing brings the view back to it but a key.
    QWheelEvent turn(QPointF(100, 200), QPointF(100, 200), {}, QPoint(0, 2400), Qt::NoButton, Qt::NoModifier,
                     Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(m_window->window(), &turn);
    QTRY_VERIFY(!isWhole());
    QTRY_VERIFY(!list()->property("moving").toBool());
    QVERIFY(!isWhole());
    press(Qt::Key_Home);
    QTRY_VERIFY(isWhole());
    m_sidebar->setByActivity(true);
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

void tst_SidebarView::aRowShowsOneTipAtATime() {
    folder("cats/renders");
    open();
    m_library->togglePin(at("cats/renders"));
    QTRY_VERIFY(row("renders") >= 0);
    const auto tips = [this] {
        QStringList all;
        const QList<QQuickItem*> layers = m_window->window()->contentItem()->childItems();
        for (const QQuickItem* layer : layers)
            if (layer->inherits("QQuickOverlay"))
                all = textsOn(layer);
        return all;
    };
    QTest::mouseMove(m_window->window(), in("renders"));
    QTRY_COMPARE(tips(), QStringList{at("cats/renders").abbreviated()});
    QTest::mouseMove(m_window->window(), in("renders", 240)); // where the button is
    QTRY_COMPARE(tips(), QStringList{text("Unpin")});
    QTest::mouseMove(m_window->window(), in("renders"));
    QTRY_COMPARE(tips(), QStringList{at("cats/renders").abbreviated()});
}

void tst_SidebarView::theSuggestionIsAnsweredByItsButtons() {
    folder("acme-a");
    folder("acme-b");
    open();
    in("2 projects start with acme. Group them?");
    auto* accept = cell("2 projects start with acme. Group them?")->findChild<QQuickItem*>(text("accept"));
    QVERIFY(accept);
    QCOMPARE(accept->property("text").toString(), text("Group as Acme"));
    accept->forceActiveFocus(Qt::BacktabFocusReason); // as from the foot
    QVERIFY(accept->hasActiveFocus());
    press(Qt::Key_Return);
    QCOMPARE(groups(), text("Acme(acme-a acme-b)"));
}

void tst_SidebarView::folderRowsLearnOfTheirChildrenByThemselves() {
    folder("cats/branch/twig");
    open();
    click(in("cats", 20));
    QTRY_VERIFY(row("branch") >= 0 && m_sidebar->rows()->rows()[row("branch")].isExpandable());
}

QTEST_MAIN(tst_SidebarView)
#include "tst_sidebarview.moc"
