// The whole window for who has only a keyboard, or only hears it: wherever Tab leads there is something with a role and
// a name, in the order in which one reads, and it is to be seen that the keys are there.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Config.h"
#include "core/PreferenceKeys.h"
#include "look/Look.h"
#include "platform/Preferences.h"
#include "shell/App.h"
#include "support/TestHome.h"

#include <QAccessible>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>
#include <QtQml/QQmlExtensionPlugin>

#include <functional>
#include <tuple>

Q_IMPORT_QML_PLUGIN(Lumbra_LookPlugin)
Q_IMPORT_QML_PLUGIN(Lumbra_MediaPlugin)
Q_IMPORT_QML_PLUGIN(Lumbra_BrowsingPlugin)
Q_IMPORT_QML_PLUGIN(Lumbra_ShellPlugin)

using namespace lumbra;

namespace {

// Where the keys were, and how it looked there.
struct Stop {
    QQuickItem* item = nullptr;
    QString name;
    QAccessible::Role role = QAccessible::NoRole;
    QRectF rect;  // of the window
    QRectF place; // where one reads it: the rows of a tree are one place, whichever of them has the keys
    QImage picture;

    QString text() const {
        return QStringLiteral("%1 “%2” at %3,%4 %5x%6")
            .arg(QString::fromLatin1(item->metaObject()->className()).section(u'_', 0, 0), name)
            .arg(rect.x())
            .arg(rect.y())
            .arg(rect.width())
            .arg(rect.height());
    }
};

// After it in the order in which one reads: in the same line further right, or in a line below, or within it.
bool isReadAfter(const QRectF& next, const QRectF& before) {
    if (before.contains(next.center()))
        return true;
    const bool sameLine = next.top() < before.center().y() && before.top() < next.center().y();
    return sameLine ? next.left() >= before.left() : next.top() >= before.top();
}

QRectF onWindow(const QQuickItem* item) {
    return item->mapRectToScene(QRectF(0, 0, item->width(), item->height()));
}

bool isBelow(const QQuickItem* item, const QQuickItem* ancestor) {
    while (item && item != ancestor)
        item = item->parentItem();
    return item != nullptr;
}

} // namespace

class tst_keyboard : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        Look::prepareApplication();
        QAccessible::setActive(true);
    }
    void init();
    void cleanup() {
        m_window = nullptr;
        m_app.reset();
    }

    void tabWalksThroughEachPage_data();
    void tabWalksThroughEachPage();
    void tabWalksThroughWhatAsks_data();
    void tabWalksThroughWhatAsks();
    void tabGoesBackTheSameWay();
    void theKeysAreNotLostWhenThePageTurns();
    void thePaletteIsUsedByItsFieldAlone();
    void theEntriesOfMenusAreReadAndSeen_data();
    void theEntriesOfMenusAreReadAndSeen();

private:
    Library& library() const { return m_app->library(); }
    Location folder(const char* path) const { return m_home->path().child(std::string("library/") + path); }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) { QTest::keyClick(m_window, key, modifiers); }
    QQuickItem* named(const char* name) const {
        return first(m_window->contentItem(),
                     [name](const QQuickItem* item) { return item->objectName() == QLatin1String(name); });
    }
    QQuickItem* ofType(const char* type) const { return ofType(m_window->contentItem(), type); }
    static QQuickItem* ofType(QQuickItem* parent, const char* type) {
        return first(parent, [type](const QQuickItem* item) {
            return item->isVisible() && QByteArray(item->metaObject()->className()).startsWith(type);
        });
    }
    static QQuickItem* first(QQuickItem* parent, const std::function<bool(const QQuickItem*)>& isIt);
    void openFolder(const char* path);
    void goToProject(const QString& name);
    QImage picture() { return m_window->grabWindow(); }
    void settle();
    Stop stop();
    QList<Stop> walk(Qt::Key key = Qt::Key_Tab);
    void check(const QList<Stop>& stops);
    void checkOne(const Stop& stop, const Stop& other);

    std::unique_ptr<TestHome> m_home = std::make_unique<TestHome>(); // one for all: the preferences are the program's
    std::unique_ptr<App> m_app;
    QQuickWindow* m_window = nullptr;
};

void tst_keyboard::init() {
    LumbraConfig::setLibrary(m_home->folder("library"));
    Preferences::shared().setValue(PreferenceKeys::inspector, true);
    QImage still(64, 48, QImage::Format_RGB32);
    still.fill(Qt::darkCyan);
    for (const char* path : {"site/drafts/old", "film", "empty"})
        m_home->folder("library/" + std::string(path));
    for (const char* path : {"site/hero.png", "site/logo.png", "site/drafts/first.png", "film/scene.png"})
        QVERIFY(still.save(folder(path).toString()));
    m_app = std::make_unique<App>(QElapsedTimer());
    QVERIFY(m_app->show());
    const QWindowList windows = QGuiApplication::topLevelWindows();
    for (QWindow* window : windows)
        if (auto* const quick = qobject_cast<QQuickWindow*>(window); quick && quick->isVisible())
            m_window = quick;
    QVERIFY(m_window);
    m_window->resize(1440, 900);
    m_window->requestActivate();
    QVERIFY(QTest::qWaitForWindowActive(m_window));
    QTRY_VERIFY(!library().indexing());
    Look::setAppearance(*qmlEngine(ofType("SidebarView")), false, true);
}

QQuickItem* tst_keyboard::first(QQuickItem* parent, const std::function<bool(const QQuickItem*)>& isIt) {
    const QList<QQuickItem*> children = parent->childItems();
    for (QQuickItem* child : children) {
        if (isIt(child))
            return child;
        if (QQuickItem* const found = first(child, isIt))
            return found;
    }
    return nullptr;
}

void tst_keyboard::openFolder(const char* path) {
    library().setPlace(Place::folder(folder(path)));
    QTRY_VERIFY(ofType("PathBarView"));
    settle();
}

// Along the rows of the sidebar, by key.
void tst_keyboard::goToProject(const QString& name) {
    QQuickItem* const rows = named("rows");
    rows->forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_Home);
    const auto isThere = [&] {
        auto* const cell = rows->property("currentItem").value<QQuickItem*>();
        const QAccessibleInterface* const read = cell ? QAccessible::queryAccessibleInterface(cell) : nullptr;
        return read && read->text(QAccessible::Name) == name;
    };
    for (int step = 0; step < 20 && !isThere(); ++step)
        press(Qt::Key_Down);
    QVERIFY(isThere());
}

// Until two pictures in a row are the same: with reduced motion only what shows that work goes on still moves.
void tst_keyboard::settle() {
    QImage before = picture();
    const auto isStill = [&] {
        QImage now = picture();
        const bool same = now == before;
        before = std::move(now);
        return same;
    };
    std::ignore = QTest::qWaitFor(isStill, 2'000);
}

Stop tst_keyboard::stop() {
    QQuickItem* const item = m_window->activeFocusItem();
    if (!item)
        return {};
    const QAccessibleInterface* const read = QAccessible::queryAccessibleInterface(item);
    const QAccessible::Role role = read ? read->role() : QAccessible::NoRole;
    return {item,
            read ? read->text(QAccessible::Name) : QString(),
            role,
            onWindow(item),
            onWindow(role == QAccessible::TreeItem ? named("rows") : item),
            picture()};
}

// All stops, each once, beginning with the next.
QList<Stop> tst_keyboard::walk(Qt::Key key) {
    constexpr int most = 200;
    QList<Stop> stops;
    for (int i = 0; i < most; ++i) {
        press(key);
        settle();
        const Stop next = stop();
        if (!next.item || (!stops.isEmpty() && next.item == stops.first().item))
            break;
        if (stops.isEmpty() || next.item != stops.last().item) // Tab may first complete what is typed
            stops.append(next);
    }
    return stops;
}

// It says what it is, and looks otherwise than when the keys were elsewhere.
void tst_keyboard::checkOne(const Stop& stop, const Stop& other) {
    QVERIFY2(!stop.name.isEmpty(), qPrintable(stop.text()));
    QVERIFY2(stop.role != QAccessible::NoRole && stop.role != QAccessible::Client, qPrintable(stop.text()));
    const QRect around = stop.rect.toAlignedRect().adjusted(-4, -4, 4, 4) & QRect(QPoint(), m_window->size());
    QVERIFY2(!around.isEmpty(), qPrintable(stop.text()));
    QVERIFY2(stop.picture.copy(around) != other.picture.copy(around), qPrintable(stop.text()));
}

void tst_keyboard::check(const QList<Stop>& stops) {
    QVERIFY(stops.size() > 1);
    const QQuickItem* const sidebar = ofType("SidebarView");
    int lines = 0; // how often the reading starts again at the top
    for (qsizetype i = 0; i < stops.size(); ++i) {
        const Stop& next = stops[(i + 1) % stops.size()];
        checkOne(stops[i], next);
        if (QTest::currentTestFailed())
            return;
        const bool isLeft = isBelow(stops[i].item, sidebar);
        const bool staysLeft = isBelow(next.item, sidebar);
        if (isLeft != staysLeft ? staysLeft : !isReadAfter(next.place, stops[i].place)) {
            ++lines;
            QVERIFY2(lines == 1, qPrintable(stops[i].text() + QStringLiteral(" is before ") + next.text()));
        }
    }
}

void tst_keyboard::tabWalksThroughEachPage_data() {
    QTest::addColumn<QString>("page");
    for (const char* page : {"recent", "starred", "folder", "empty folder", "no matches", "group", "tidy"})
        QTest::newRow(page) << QString::fromLatin1(page);
}

void tst_keyboard::tabWalksThroughEachPage() {
    QFETCH(QString, page);
    // Beside the details there is no room for chips on a screen of 800 pixels.
    Preferences::shared().setValue(PreferenceKeys::inspector, page == u"folder");
    if (page == u"recent")
        library().setPlace(Place::recent());
    else if (page == u"starred")
        library().setPlace(Place::starred());
    else if (page == u"folder")
        openFolder("site");
    else if (page == u"empty folder")
        openFolder("empty");
    else if (page == u"tidy")
        library().setPlace(Place::tidy());
    else if (page == u"group")
        library().setPlace(Place::group(
            library().newGroup(QStringLiteral("Work"), {QStringLiteral("site"), QStringLiteral("film")}).id));
    else {
        openFolder("site");
        named("search")->setProperty("text", page);
        QTRY_VERIFY(!ofType("AssetTile"));
    }
    settle();
    check(walk());
}

void tst_keyboard::tabWalksThroughWhatAsks_data() {
    QTest::addColumn<QString>("what");
    for (const char* what : {"a name", "an error", "a question", "files", "the first run"})
        QTest::newRow(what) << QString::fromLatin1(what);
}

void tst_keyboard::tabWalksThroughWhatAsks() {
    QFETCH(QString, what);
    openFolder("site");
    if (what == u"a name") {
        press(Qt::Key_N, Qt::ControlModifier | Qt::ShiftModifier);
    } else if (what == u"an error") {
        library().setLastError(QStringLiteral("The disk is full."));
    } else if (what == u"a question") {
        goToProject(QStringLiteral("film"));
        press(Qt::Key_Menu);
        settle();
        press(Qt::Key_Up); // the last entry is the one that destroys
        press(Qt::Key_Return);
    } else if (what == u"files") {
        press(Qt::Key_I, Qt::ControlModifier | Qt::ShiftModifier);
    } else {
        library().setOnboarding(true);
    }
    QTRY_VERIFY(ofType("QQuickOverlay"));
    settle();
    QQuickItem* const overlay = ofType("QQuickOverlay");
    QVERIFY(isBelow(m_window->activeFocusItem(), overlay));
    // It is to be seen what Return will do, before any key is pressed.
    if (const QVariant shown = m_window->activeFocusItem()->property("visualFocus"); shown.isValid())
        QTRY_VERIFY(m_window->activeFocusItem()->property("visualFocus").toBool());
    const QList<Stop> stops = walk();
    for (const Stop& stop : stops)
        QVERIFY2(isBelow(stop.item, overlay), qPrintable(stop.text()));
    if (stops.size() != 1) // a single button keeps the keys
        check(stops);
    else
        QVERIFY(!stops.first().name.isEmpty());
}

void tst_keyboard::tabGoesBackTheSameWay() {
    openFolder("site");
    const auto names = [](const QList<Stop>& stops) {
        QStringList all;
        for (const Stop& stop : stops)
            all << stop.name;
        return all;
    };
    QStringList there = names(walk());
    const QStringList back = names(walk(Qt::Key_Backtab));
    std::reverse(there.begin(), there.end());
    QCOMPARE(back, there);
}

void tst_keyboard::theKeysAreNotLostWhenThePageTurns() {
    openFolder("site");
    QTRY_VERIFY(ofType("AssetTile"));
    const auto isAt = [this](const char* type) {
        return QByteArray(m_window->activeFocusItem()->metaObject()->className()).startsWith(type);
    };
    const auto tabLeadsTo = [&](const char* type) {
        settle();
        press(Qt::Key_Tab);
        return isAt(type);
    };
    QVERIFY(isAt("lumbra::KeyFocus"));
    openFolder("empty");
    QTRY_VERIFY(!ofType("AssetTile"));
    QVERIFY(tabLeadsTo("Slider"));
    openFolder("site");
    QTRY_VERIFY(ofType("AssetTile"));
    settle();
    press(Qt::Key_Backtab); // to the folder among the files
    press(Qt::Key_Backtab);
    QVERIFY(isAt("lumbra::KeyFocus"));
    const ProjectGroup group = library().newGroup(QStringLiteral("Work"), {QStringLiteral("site")});
    library().setPlace(Place::group(group.id));
    QTRY_VERIFY(ofType("ProjectCard"));
    QVERIFY(tabLeadsTo("ProjectCard"));
    press(Qt::Key_Return);
    QTRY_VERIFY(ofType("AssetTile"));
    QTRY_VERIFY(isAt("lumbra::KeyFocus"));
}

void tst_keyboard::thePaletteIsUsedByItsFieldAlone() {
    press(Qt::Key_K, Qt::ControlModifier);
    settle();
    const Stop field = stop();
    QCOMPARE(field.name, QStringLiteral("Jump to a project, folder or file"));
    QCOMPARE(field.role, QAccessible::EditableText);
    for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Backtab}) {
        press(key);
        QCOMPARE(m_window->activeFocusItem(), field.item);
    }
    // The row that the keys act on is another after each step, is said to be so, and looks so.
    for (int step = 0; step < 3; ++step) {
        const QImage before = picture();
        press(Qt::Key_Down);
        settle();
        QQuickItem* row = nullptr;
        const QList<QQuickItem*> rows = ofType("PaletteRow")->parentItem()->childItems();
        for (QQuickItem* other : rows)
            if (const auto* read = QAccessible::queryAccessibleInterface(other);
                read && read->role() == QAccessible::ListItem && read->state().selected) {
                QVERIFY(!row);
                row = other;
            }
        QVERIFY(row);
        const QRect around = row->mapRectToScene(QRectF(0, 0, row->width(), row->height())).toRect();
        QVERIFY(picture().copy(around) != before.copy(around));
        QVERIFY(!QAccessible::queryAccessibleInterface(row)->text(QAccessible::Name).isEmpty());
    }
}

void tst_keyboard::theEntriesOfMenusAreReadAndSeen_data() {
    QTest::addColumn<QString>("menu");
    for (const char* menu : {"bar", "file", "project", "new", "path", "order"})
        QTest::newRow(menu) << QString::fromLatin1(menu);
}

void tst_keyboard::theEntriesOfMenusAreReadAndSeen() {
    QFETCH(QString, menu);
    openFolder("site/drafts");
    QTRY_VERIFY(ofType("AssetTile"));
    Qt::Key opens = Qt::Key_Menu;
    if (menu == u"bar") {
        opens = Qt::Key_F10;
    } else if (menu == u"file") {
        library().reveal(folder("site/drafts/first.png"));
        QTRY_VERIFY(!library().pendingReveal());
        QTRY_VERIFY(m_window->activeFocusItem());
    } else if (menu == u"project") {
        goToProject(QStringLiteral("film"));
    } else {
        opens = Qt::Key_Return;
        QQuickItem* item = ofType(menu == u"new" ? "MenuIconButton" : "SortMenu");
        if (menu == u"path") { // the last of its steps
            const QList<QQuickItem*> steps = ofType("StepButton")->parentItem()->parentItem()->childItems();
            for (QQuickItem* step : steps)
                if (QQuickItem* const button = ofType(step, "StepButton"))
                    item = button;
        }
        item->forceActiveFocus(Qt::BacktabFocusReason);
    }
    settle();
    QQuickItem* const before = m_window->activeFocusItem();
    press(opens);
    settle();
    QVERIFY(m_window->activeFocusItem() != before);
    QList<Stop> entries;
    do {
        press(Qt::Key_Down);
        settle();
        entries.append(stop());
        QVERIFY(entries.size() < 30);
    } while (entries.size() == 1 || entries.last().item != entries.first().item); // it goes round
    QVERIFY(entries.size() > 2);
    for (qsizetype i = 0; i + 1 < entries.size(); ++i) {
        checkOne(entries[i], entries[i + 1]);
        if (QTest::currentTestFailed())
            return;
        QVERIFY(entries[i].role == QAccessible::MenuItem || entries[i].role == QAccessible::CheckBox);
    }
    press(Qt::Key_Escape);
    QTRY_COMPARE(m_window->activeFocusItem(), before);
}

QTEST_MAIN(tst_keyboard)
#include "tst_keyboard.moc"
