// SPDX-License-Identifier: GPL-3.0-or-later
#include "browsing/palette/Palette.h"
#include "support/QmlWindow.h"
#include "support/Strings.h"
#include "support/TestHome.h"

#include <QAccessible>

Q_IMPORT_QML_PLUGIN(Lumbra_MediaPlugin)
Q_IMPORT_QML_PLUGIN(Lumbra_BrowsingPlugin)

using namespace lumbra;

// The palette in a window, used by keys and pointer.
class tst_paletteview : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Look::prepareApplication(); }
    void init();
    void cleanup();

    void lettersGoToTheFieldFromTheMomentThatItOpens();
    void whatLiesBehindCanNotTakeTheKeys();
    void theKeysGoBackToWhoHadThem();
    void arrowsAndReturnGoToARow();
    void controlAndReturnPlay();
    void escapeClosesWhateverIsTyped();
    void tabStaysInTheField();
    void aClickOnARowOpensIt();
    void aClickOutsideClosesAndReachesNothingElse();
    void aClickInsideBesideTheRowsChangesNothing();
    void theHighlightedRowIsScrolledIntoView();
    void sectionsBearTheirTitles();
    void theFieldAndTheFootSayWhatTheKeysDo();
    void onlyTheHighlightedRowSaysWhatTheKeysDo();
    void withoutResultsItSaysSo();
    void itStaysWithinASmallWindow();
    void namesInAnyScriptAreShownAsTheyAre();
    void assistiveTechnologyReadsTheFieldAndTheRows();
    void assistiveTechnologyOpensARow();
    void withReducedMotionItIsThereAtOnce();

private:
    void open(const QSize& size = QSize(900, 640));
    void type(const char* letters) {
        for (; *letters; ++letters)
            QTest::keyClick(m_window->window(), *letters);
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) { m_window->press(key, modifiers); }
    QQuickItem* rowOf(const char* title);
    QQuickItem* itemOf(const PaletteResult& row);
    QPoint middle(const QQuickItem* item) const {
        return item->mapToScene({item->width() / 2, item->height() - 10}).toPoint();
    }
    void click(const QPoint& point) {
        QTest::mouseMove(m_window->window(), point);
        QTest::mouseClick(m_window->window(), Qt::LeftButton, {}, point);
    }
    bool isOpen() const { return m_library->paletteOpen(); }
    bool hasFocus(const char* name) { return m_window->value(name, "activeFocus").toBool(); }
    // The texts that are to be seen on an item and below it.
    static QStringList texts(const QQuickItem* item);
    Location at(const char* relative) const { return m_library->root().child(std::string_view(relative)); }

    std::unique_ptr<TestHome> m_home;
    std::unique_ptr<Library> m_library;
    std::unique_ptr<Palette> m_palette;
    std::unique_ptr<QmlWindow> m_window;
};

void tst_paletteview::init() {
    m_home = std::make_unique<TestHome>();
    m_home->file("Library/film/takes/demo.mp4");
    m_home->file("Library/site/still.png");
    m_home->folder("Library/alps");
}

void tst_paletteview::cleanup() {
    m_window.reset();
    m_palette.reset();
    m_library.reset();
    m_home.reset();
}

void tst_paletteview::open(const QSize& size) {
    m_library = std::make_unique<Library>(m_home->path().child("Library"), true);
    QTRY_VERIFY(!m_library->indexing());
    m_palette = std::make_unique<Palette>(m_library.get());
    m_window = std::make_unique<QmlWindow>(
        "required property Palette controller\n"
        "property int clicks: 0\n"
        "TextField { objectName: 'other'; x: 5; y: 5 }\n"
        "TextField { objectName: 'third'; x: 5; y: 45 }\n"
        "Button { objectName: 'button'; x: 5; y: 85; text: 'Behind'; onClicked: ++parent.clicks }\n"
        "PaletteView { controller: parent.controller }",
        "import Lumbra.Browsing\n", QVariantMap{{QStringLiteral("controller"), QVariant::fromValue(m_palette.get())}},
        size);
    m_window->find<QQuickItem>("other")->forceActiveFocus();
    m_library->setPaletteOpen(true);
    QTRY_COMPARE(m_window->find<QQuickItem>("palette")->opacity(), 1.0);
    QTRY_COMPARE(m_window->find<QQuickItem>("palette")->scale(), 1.0);
}

QQuickItem* tst_paletteview::rowOf(const char* title) {
    for (const PaletteResult& row : m_palette->results()->results())
        if (row.title == QString::fromUtf8(title))
            return itemOf(row);
    qFatal("no row %s", title);
}

QQuickItem* tst_paletteview::itemOf(const PaletteResult& row) {
    QQuickItem* item = nullptr;
    const auto isThere = [&] {
        item = QmlWindow::itemBelow(m_window->root(), QStringLiteral("paletteRow") + row.id());
        return item != nullptr;
    };
    if (!QTest::qWaitFor(isThere, patience)) // rows come with the next frame
        qFatal("%s is not shown", qPrintable(row.id()));
    return item;
}

QStringList tst_paletteview::texts(const QQuickItem* item) {
    QStringList all;
    if (!item->isVisible())
        return all;
    if (item->inherits("QQuickText") && !item->property("text").toString().isEmpty())
        all.append(item->property("text").toString());
    for (const QQuickItem* child : item->childItems())
        all += texts(child);
    return all;
}

void tst_paletteview::lettersGoToTheFieldFromTheMomentThatItOpens() {
    open();
    QVERIFY(hasFocus("paletteField"));
    type("film");
    QCOMPARE(m_palette->query(), QStringLiteral("film"));
    QTRY_VERIFY(rowOf("film"));
}

void tst_paletteview::whatLiesBehindCanNotTakeTheKeys() {
    open();
    m_window->find<QQuickItem>("other")->forceActiveFocus(); // as a page does whose content comes
    QVERIFY(hasFocus("paletteField"));
}

void tst_paletteview::theKeysGoBackToWhoHadThem() {
    open();
    press(Qt::Key_Escape);
    QVERIFY(hasFocus("other"));
    m_window->find<QQuickItem>("third")->forceActiveFocus();
    m_library->setPaletteOpen(true);
    QVERIFY(hasFocus("paletteField"));
    m_library->setPaletteOpen(false);
    QVERIFY(hasFocus("third"));
}

void tst_paletteview::arrowsAndReturnGoToARow() {
    open();
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    press(Qt::Key_Up);
    press(Qt::Key_Return);
    QVERIFY(!isOpen());
    QCOMPARE(m_library->place(), Place::folder(at("film")));
}

void tst_paletteview::controlAndReturnPlay() {
    open();
    type("demo");
    QTRY_COMPARE(m_palette->results()->rowCount(), 1);
    press(Qt::Key_Return, Qt::ControlModifier);
    QVERIFY(!isOpen());
    QVERIFY(m_library->playing());
    QCOMPARE(m_library->playing()->asset.url, at("film/takes/demo.mp4"));
}

void tst_paletteview::escapeClosesWhateverIsTyped() {
    open();
    type("film");
    press(Qt::Key_Escape);
    QVERIFY(!isOpen());
    QTRY_VERIFY(!m_window->value("palette", "visible").toBool());
    m_library->setPaletteOpen(true);
    QCOMPARE(m_window->value("paletteField", "text").toString(), QString());
}

void tst_paletteview::tabStaysInTheField() {
    open();
    press(Qt::Key_Tab);
    QVERIFY(hasFocus("paletteField"));
    press(Qt::Key_Backtab, Qt::ShiftModifier);
    QVERIFY(hasFocus("paletteField"));
    QCOMPARE(m_palette->query(), QString());
}

void tst_paletteview::aClickOnARowOpensIt() {
    open();
    click(middle(rowOf("site")));
    QVERIFY(!isOpen());
    QCOMPARE(m_library->place(), Place::folder(at("site")));
}

void tst_paletteview::aClickOutsideClosesAndReachesNothingElse() {
    open();
    click(m_window->centreOf("button"));
    QVERIFY(!isOpen());
    QCOMPARE(m_window->root()->property("clicks").toInt(), 0);
    QTRY_VERIFY(!m_window->value("palette", "visible").toBool());
    click(m_window->centreOf("button"));
    QCOMPARE(m_window->root()->property("clicks").toInt(), 1);
}

void tst_paletteview::aClickInsideBesideTheRowsChangesNothing() {
    open();
    const QQuickItem* const panel = m_window->find<QQuickItem>("palette");
    click(panel->mapToScene({panel->width() / 2, panel->height() - 5}).toPoint());
    QVERIFY(isOpen());
    QVERIFY(hasFocus("paletteField"));
}

void tst_paletteview::theHighlightedRowIsScrolledIntoView() {
    for (int number = 0; number < 8; ++number)
        m_home->folder("Library/project-" + std::to_string(number));
    open(QSize(900, 540));
    type("o");
    const auto* const list = m_window->find<QQuickItem>("paletteRows");
    QTRY_VERIFY(m_palette->results()->rowCount() >= 9);
    QTRY_VERIFY(list->property("contentHeight").toDouble() > list->height());
    const auto isInView = [&] {
        const auto* const item = itemOf(m_palette->results()->results()[m_palette->highlighted()]);
        const double top = item->mapToItem(list, {}).y();
        return top >= 0 && top + item->height() <= list->height();
    };
    for (int presses = 0; presses < 12; ++presses) {
        press(Qt::Key_Down);
        QVERIFY(isInView());
    }
    for (int presses = 0; presses < 12; ++presses) {
        press(Qt::Key_Up);
        QVERIFY(isInView());
    }
}

void tst_paletteview::sectionsBearTheirTitles() {
    open();
    QVERIFY(texts(rowOf("alps")).contains(QStringLiteral("Projects")));
    QVERIFY(!texts(rowOf("film")).contains(QStringLiteral("Projects")));
    QVERIFY(texts(rowOf("Go to Recent")).contains(QStringLiteral("Actions")));
    type("e");
    QTRY_COMPARE(m_palette->results()->rowCount(), 6);
    QVERIFY(texts(rowOf("takes")).contains(QStringLiteral("Folders")));
    QVERIFY(texts(rowOf("demo.mp4")).contains(QStringLiteral("Files")));
}

void tst_paletteview::theFieldAndTheFootSayWhatTheKeysDo() {
    open();
    const QStringList all = texts(m_window->find<QQuickItem>("palette"));
    for (const char* text : {"Jump to a project, folder or file", "esc", "↑↓ to move", "↩ to open", "⌘↩ to play"})
        QVERIFY2(all.contains(QString::fromUtf8(text)), text);
}

void tst_paletteview::onlyTheHighlightedRowSaysWhatTheKeysDo() {
    open();
    type("demo");
    QTRY_COMPARE(m_palette->results()->rowCount(), 1);
    QVERIFY(texts(rowOf("demo.mp4")).contains(QStringLiteral("↩ open  ⌘↩ play")));
    press(Qt::Key_Escape);
    m_library->setPaletteOpen(true);
    QVERIFY(texts(rowOf("alps")).contains(QStringLiteral("↩")));
    QVERIFY(!texts(rowOf("film")).contains(QStringLiteral("↩")));
    press(Qt::Key_Down);
    QVERIFY(!texts(rowOf("alps")).contains(QStringLiteral("↩")));
    QVERIFY(texts(rowOf("film")).contains(QStringLiteral("↩")));
}

void tst_paletteview::withoutResultsItSaysSo() {
    open();
    type("zebra");
    QTRY_COMPARE(m_window->value("paletteEmpty", "text").toString(), QStringLiteral("Nothing matches “zebra”."));
    QVERIFY(m_window->value("paletteEmpty", "visible").toBool());
    press(Qt::Key_Return);
    QVERIFY(isOpen());
}

void tst_paletteview::itStaysWithinASmallWindow() {
    for (int number = 0; number < 8; ++number)
        m_home->folder("Library/project-" + std::to_string(number));
    open(QSize(900, 540));
    type("o");
    const QQuickItem* const panel = m_window->find<QQuickItem>("palette");
    QTRY_VERIFY(panel->height() > 400);
    QVERIFY(panel->y() + panel->height() <= 540);
    QVERIFY(panel->x() >= 0 && panel->x() + panel->width() <= 900);
}

void tst_paletteview::namesInAnyScriptAreShownAsTheyAre() {
    const auto names = strings({"שלום עולם.png", "مرحبا.png", "夜景照片.png", "🚀🎉.png"});
    for (const QString& name : names)
        m_home->file("Library/site/" + name.toStdString());
    open();
    for (const QString& name : names) {
        m_palette->setQuery(name.left(2));
        QTRY_COMPARE(m_palette->results()->rowCount(), 1);
        QVERIFY2(texts(rowOf(qUtf8Printable(name))).contains(name), qUtf8Printable(name));
    }
}

void tst_paletteview::assistiveTechnologyReadsTheFieldAndTheRows() {
    QAccessible::setActive(true);
    open();
    const auto of = [&](const char* name) { return QAccessible::queryAccessibleInterface(m_window->find(name)); };
    QCOMPARE(of("palette")->role(), QAccessible::Dialog);
    QCOMPARE(of("palette")->text(QAccessible::Name), QStringLiteral("Jump to anything"));
    QCOMPARE(of("paletteField")->role(), QAccessible::EditableText);
    QCOMPARE(of("paletteField")->text(QAccessible::Name), QStringLiteral("Jump to a project, folder or file"));
    QVERIFY(of("paletteField")->state().focused);
    QCOMPARE(of("paletteRows")->role(), QAccessible::List);
    QCOMPARE(of("paletteRows")->text(QAccessible::Name), QStringLiteral("Results"));
    const auto row = [&](const char* title) { return QAccessible::queryAccessibleInterface(rowOf(title)); };
    QCOMPARE(row("film")->role(), QAccessible::ListItem);
    QCOMPARE(row("film")->text(QAccessible::Name), QStringLiteral("film"));
    QCOMPARE(row("film")->text(QAccessible::Description), QStringLiteral("Project"));
    QVERIFY(row("film")->state().selectable);
    QVERIFY(row("alps")->state().selected);
    QVERIFY(!row("film")->state().selected);
    press(Qt::Key_Down);
    QVERIFY(!row("alps")->state().selected);
    QVERIFY(row("film")->state().selected);
}

void tst_paletteview::assistiveTechnologyOpensARow() {
    QAccessible::setActive(true);
    open();
    QAccessibleInterface* const row = QAccessible::queryAccessibleInterface(rowOf("site"));
    QVERIFY(row->actionInterface());
    row->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(m_library->place(), Place::folder(at("site")));
}

void tst_paletteview::withReducedMotionItIsThereAtOnce() {
    open();
    Look::setAppearance(m_window->engine(), false, true);
    m_library->setPaletteOpen(false);
    QVERIFY(!m_window->value("palette", "visible").toBool());
    m_library->setPaletteOpen(true);
    QCOMPARE(m_window->value("palette", "opacity").toDouble(), 1.0);
    QCOMPARE(m_window->value("palette", "scale").toDouble(), 1.0);
}

QTEST_MAIN(tst_paletteview)
#include "tst_paletteview.moc"
