// SPDX-License-Identifier: GPL-3.0-or-later
#include "browsing/NamePrompt.h"
#include "core/Config.h"
#include "core/PreferenceKeys.h"
#include "look/Look.h"
#include "support/AppWindow.h"
#include "support/TestHome.h"

#include <QAccessible>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>
#include <QtQml/QQmlExtensionPlugin>

Q_IMPORT_QML_PLUGIN(Lumbra_LookPlugin)
Q_IMPORT_QML_PLUGIN(Lumbra_MediaPlugin)
Q_IMPORT_QML_PLUGIN(Lumbra_BrowsingPlugin)
Q_IMPORT_QML_PLUGIN(Lumbra_ShellPlugin)

using namespace lumbra;

// The one window, with everything in it, used by key and pointer.
class tst_mainwindow : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Look::prepareApplication(); }
    void init();
    void cleanup();

    void itIsNoSmallerThanItsLeastSize();
    void jumpToFlipsThePalette();
    void theButtonInTheSidebarOpensThePalette();
    void theButtonInTheSidebarSaysWhatItDoes();
    void lettersInThePaletteDoNothingToThePage();
    void theKeysOfTheMenusRestBehindThePalette();
    void jumpToRestsBehindASheet();
    void whatTakesTheWindowOverLiesInItsOrder();
    void thePaletteLiesOverTheRoomAndIsClosedFirst();
    void anErrorShowsOverTheRoom();
    void anErrorShowsOverThePaletteWhichHasTheKeysAgainAfterwards();
    void whatWasRefusedBeforeTheWindowWasThereIsAcknowledgedByKey();
    void theSidebarIsWidenedByItsEdgeAndKeepsItsWidth();
    void theSidebarStaysWithinItsBounds_data();
    void theSidebarStaysWithinItsBounds();
    void openedAgainItComesBackFromTheBar();
    void theMenusHoldTheirRows_data();
    void theMenusHoldTheirRows();
    void withoutAFeedThereIsNothingToCheck();
    void welcomeShowsTheFirstRun();

private:
    void show(const QList<QUrl>& opened = {});
    void type(const char* letters) {
        for (; *letters; ++letters)
            QTest::keyClick(m_window, *letters);
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) { QTest::keyClick(m_window, key, modifiers); }
    void jump() { press(Qt::Key_K, Qt::ControlModifier); }
    QQuickItem* item(const char* name) const { return below(m_window->contentItem(), name); }
    static QQuickItem* below(QQuickItem* parent, const char* name);
    QQuickItem* ofType(QQuickItem* parent, const char* type) const;
    bool isShown(const char* name) const { return item(name) && item(name)->isVisible(); }
    bool hasFocus(const char* name) const { return item(name) && item(name)->hasActiveFocus(); }
    static QPoint middle(const QQuickItem* item) {
        return item->mapToScene({item->width() / 2, item->height() / 2}).toPoint();
    }
    void play() {
        const auto asset = Asset::read(m_still);
        QVERIFY(asset);
        library().setPlaying(PlayRequest{*asset, {*asset}});
    }
    void select() {
        library().reveal(m_still);
        QTRY_VERIFY(!library().pendingReveal());
    }
    Library& library() const { return m_app->library(); }

    std::unique_ptr<TestHome> m_home = std::make_unique<TestHome>(); // one for all: the preferences are the program's
    std::unique_ptr<App> m_app;
    QQuickWindow* m_window = nullptr;
    Location m_still;
};

void tst_mainwindow::init() {
    LumbraConfig::setLibrary(m_home->folder("library"));
    QImage still(64, 48, QImage::Format_RGB32);
    still.fill(Qt::darkCyan);
    m_home->folder("library/site");
    m_still = m_home->path().child("library/site/still.png");
    QVERIFY(still.save(m_still.toString()));
    show();
}

void tst_mainwindow::cleanup() {
    m_window = nullptr;
    m_app.reset();
}

void tst_mainwindow::show(const QList<QUrl>& opened) {
    m_window = nullptr;
    m_app.reset();
    m_app = std::make_unique<App>(QElapsedTimer());
    m_app->open(opened);
    m_window = shownWindow(*m_app);
    QVERIFY(m_window);
    QTRY_VERIFY(!library().indexing());
}

QQuickItem* tst_mainwindow::below(QQuickItem* parent, const char* name) {
    const QList<QQuickItem*> children = parent->childItems();
    for (QQuickItem* child : children) {
        if (child->objectName() == QLatin1String(name))
            return child;
        if (QQuickItem* const found = below(child, name))
            return found;
    }
    return nullptr;
}

QQuickItem* tst_mainwindow::ofType(QQuickItem* parent, const char* type) const {
    const QList<QQuickItem*> children = parent->childItems();
    for (QQuickItem* child : children) {
        if (QByteArray(child->metaObject()->className()).startsWith(type))
            return child;
        if (QQuickItem* const found = ofType(child, type))
            return found;
    }
    return nullptr;
}

void tst_mainwindow::itIsNoSmallerThanItsLeastSize() {
    QCOMPARE(m_window->minimumSize(), QSize(900, 540));
    QVERIFY(m_window->width() >= 900 && m_window->height() >= 540);
}

void tst_mainwindow::jumpToFlipsThePalette() {
    jump();
    QVERIFY(library().paletteOpen());
    QVERIFY(hasFocus("paletteField"));
    type("still"); // also with letters in the field, where the key has a meaning of its own elsewhere
    jump();
    QVERIFY(!library().paletteOpen());
    jump();
    QVERIFY(library().paletteOpen());
}

void tst_mainwindow::theButtonInTheSidebarOpensThePalette() {
    QTest::mouseClick(m_window, Qt::LeftButton, {}, middle(item("jump")));
    QVERIFY(library().paletteOpen());
    press(Qt::Key_Escape);
    item("jump")->forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_Return);
    QVERIFY(library().paletteOpen());
}

void tst_mainwindow::theButtonInTheSidebarSaysWhatItDoes() {
    const QAccessibleInterface* const button = QAccessible::queryAccessibleInterface(item("jump"));
    QCOMPARE(button->role(), QAccessible::Button);
    QCOMPARE(button->text(QAccessible::Name), QStringLiteral("Jump to anything"));
    QCOMPARE(button->text(QAccessible::Description), QStringLiteral("Jump to anything (⌘K)"));
}

void tst_mainwindow::lettersInThePaletteDoNothingToThePage() {
    select();
    jump();
    type("s s"); // the letter that stars, and the blank that plays
    QVERIFY(!library().playing());
    QVERIFY(!library().isStarred(m_still));
    press(Qt::Key_Escape);
    QVERIFY(!library().paletteOpen());
}

void tst_mainwindow::theKeysOfTheMenusRestBehindThePalette() {
    select();
    jump();
    type("word");
    press(Qt::Key_Delete, Qt::ControlModifier); // to the field it means a word
    press(Qt::Key_N, Qt::ControlModifier | Qt::ShiftModifier);
    QCoreApplication::processEvents();
    QVERIFY(m_still.exists());
    QVERIFY(!isShown("nameField"));
    press(Qt::Key_Escape);
    press(Qt::Key_N, Qt::ControlModifier | Qt::ShiftModifier);
    QTRY_VERIFY(isShown("nameField"));
}

void tst_mainwindow::jumpToRestsBehindASheet() {
    select();
    press(Qt::Key_N, Qt::ControlModifier | Qt::ShiftModifier);
    QTRY_VERIFY(isShown("nameField"));
    jump();
    QVERIFY(!library().paletteOpen());
    QVERIFY(hasFocus("nameField"));
}

void tst_mainwindow::whatTakesTheWindowOverLiesInItsOrder() {
    play();
    jump();
    library().setToast(Toast{.text = QStringLiteral("Copied")});
    QQuickItem* const content = m_window->contentItem();
    QTRY_VERIFY(ofType(content, "ScreeningRoomView"));
    const auto place = [&](QQuickItem* part) { // in the layer that lies over the page and its menus
        QQuickItem* const layer = ofType(content, "PaletteView")->parentItem();
        while (part->parentItem() != layer)
            part = part->parentItem();
        return layer->childItems().indexOf(part);
    };
    QQuickItem* const palette = ofType(content, "PaletteView");
    QVERIFY(place(ofType(content, "ScreeningRoomView")) < place(palette));
    QVERIFY(place(palette) < place(ofType(content, "ToastView")));
    QCOMPARE(palette->parentItem()->parentItem(), content);
    QCOMPARE(palette->parentItem()->size(), QSizeF(m_window->size()));
    QVERIFY(palette->parentItem()->z() > ofType(content, "SidebarView")->z());
    library().setLastError(QStringLiteral("The disk is full."));
    QTRY_VERIFY(ofType(content, "QQuickOverlay"));
    QVERIFY(ofType(content, "QQuickOverlay")->z() > palette->parentItem()->z());
}

void tst_mainwindow::thePaletteLiesOverTheRoomAndIsClosedFirst() {
    play();
    QTRY_VERIFY(ofType(m_window->contentItem(), "ScreeningRoomView"));
    QTRY_VERIFY(ofType(m_window->contentItem(), "ScreeningRoomView")->hasActiveFocus());
    jump();
    QVERIFY(hasFocus("paletteField"));
    press(Qt::Key_Escape);
    QVERIFY(!library().paletteOpen());
    QVERIFY(library().playing());
    QTRY_VERIFY(ofType(m_window->contentItem(), "ScreeningRoomView")->hasActiveFocus());
    press(Qt::Key_Escape);
    QTRY_VERIFY(!library().playing());
}

void tst_mainwindow::anErrorShowsOverTheRoom() {
    play();
    QTRY_VERIFY(ofType(m_window->contentItem(), "ScreeningRoomView"));
    library().setLastError(QStringLiteral("The disk is full."));
    QCoreApplication::processEvents();
    press(Qt::Key_Return);
    QTRY_VERIFY(!library().lastError());
    QVERIFY(library().playing());
}

void tst_mainwindow::anErrorShowsOverThePaletteWhichHasTheKeysAgainAfterwards() {
    jump();
    library().setLastError(QStringLiteral("The disk is full."));
    QTRY_VERIFY(!hasFocus("paletteField"));
    press(Qt::Key_Return);
    QTRY_VERIFY(!library().lastError());
    QVERIFY(library().paletteOpen());
    QTRY_VERIFY(hasFocus("paletteField"));
}

void tst_mainwindow::whatWasRefusedBeforeTheWindowWasThereIsAcknowledgedByKey() {
    show({QUrl(QStringLiteral("lumbra://reveal?path=/etc/passwd"))});
    QVERIFY(library().lastError());
    QTRY_VERIFY(ofType(m_window->contentItem(), "QQuickPopupItem")); // the alert, which opens once there is a window
    press(Qt::Key_Return);
    QTRY_VERIFY(!library().lastError());
}

void tst_mainwindow::theSidebarIsWidenedByItsEdgeAndKeepsItsWidth() {
    Preferences::shared().remove(PreferenceKeys::sidebarWidth.key);
    Preferences::shared().setValue(PreferenceKeys::inspector, false); // in a small window the page has to be small, too
    show();
    QQuickItem* const sidebar = ofType(m_window->contentItem(), "SidebarView");
    QTRY_COMPARE(sidebar->width(), 264.0);
    const QPoint edge = sidebar->mapToScene({264, 300}).toPoint();
    QTest::mouseMove(m_window, edge);
    QTest::mousePress(m_window, Qt::LeftButton, {}, edge);
    for (int step = 1; step <= 6; ++step)
        QTest::mouseMove(m_window, edge + QPoint(6 * step, 0));
    QTest::mouseRelease(m_window, Qt::LeftButton, {}, edge + QPoint(36, 0));
    QTRY_COMPARE(sidebar->width(), 300.0);
    QCOMPARE(Preferences::shared().value(PreferenceKeys::sidebarWidth), 300);
    show();
    QTRY_COMPARE(ofType(m_window->contentItem(), "SidebarView")->width(), 300.0);
}

void tst_mainwindow::theSidebarStaysWithinItsBounds_data() {
    QTest::addColumn<int>("by");
    QTest::addColumn<int>("width");
    QTest::newRow("narrower than the least") << -200 << 220;
    QTest::newRow("wider than the most") << 400 << 380;
}

void tst_mainwindow::theSidebarStaysWithinItsBounds() {
    QFETCH(int, by);
    Preferences::shared().remove(PreferenceKeys::sidebarWidth.key);
    Preferences::shared().setValue(PreferenceKeys::inspector, false); // in a small window the page has to be small, too
    show();
    QQuickItem* const sidebar = ofType(m_window->contentItem(), "SidebarView");
    QTRY_COMPARE(sidebar->width(), 264.0);
    const QPoint edge = sidebar->mapToScene({264, 300}).toPoint();
    QTest::mouseMove(m_window, edge);
    QTest::mousePress(m_window, Qt::LeftButton, {}, edge);
    for (int step = 1; step <= 6; ++step)
        QTest::mouseMove(m_window, edge + QPoint(by * step / 6, 0));
    QTest::mouseRelease(m_window, Qt::LeftButton, {}, edge + QPoint(by, 0));
    QFETCH(int, width);
    QTRY_COMPARE(int(sidebar->width()), width);
}

void tst_mainwindow::openedAgainItComesBackFromTheBar() {
    m_window->setWindowStates(Qt::WindowMinimized);
    m_app->open({QUrl(QStringLiteral("lumbra://tidy"))});
    QVERIFY(!(m_window->windowStates() & Qt::WindowMinimized));
    QCOMPARE(library().place(), Place::tidy());
}

void tst_mainwindow::theMenusHoldTheirRows_data() {
    QTest::addColumn<int>("menu");
    QTest::addColumn<QStringList>("rows"); // "Title|shortcut", with a plus if it can be chosen
    QTest::addColumn<bool>("selected");
    const auto rows = [](const char* text) { return QString::fromUtf8(text).split(u'\n'); };
    QTest::newRow("application") << 0 << rows("Check for Updates…|\nWelcome to Lumbra…|+\n-\nQuit Lumbra|Ctrl+Q+")
                                 << false;
    QTest::newRow("view") << 1 << rows("Jump To…|Ctrl+K+") << false;
    QTest::newRow("asset, with nothing selected and no folder")
        << 2
        << rows("Open in Default App|Ctrl+O\nShow in Finder|Ctrl+Shift+R\nCopy Path|Ctrl+Alt+C\nSave a Copy…|Ctrl+E\n"
                "Star or Unstar|\nRename|\nMove to Trash|Ctrl+Del\n-\nNew Folder|Ctrl+Shift+N\n"
                "Add Files…|Ctrl+Shift+I\n-\nToggle Preview Panel|Ctrl+Alt+I+")
        << false;
    QTest::newRow("asset, with a file selected in a folder")
        << 2
        << rows("Open in Default App|Ctrl+O+\nShow in Finder|Ctrl+Shift+R+\nCopy Path|Ctrl+Alt+C+\n"
                "Save a Copy…|Ctrl+E+\nStar or Unstar|+\nRename|+\nMove to Trash|Ctrl+Del+\n-\n"
                "New Folder|Ctrl+Shift+N+\nAdd Files…|Ctrl+Shift+I+\n-\nToggle Preview Panel|Ctrl+Alt+I+")
        << true;
}

void tst_mainwindow::theMenusHoldTheirRows() {
    QFETCH(int, menu);
    QFETCH(bool, selected);
    if (selected)
        select();
    QTRY_COMPARE(library().place().is(Place::Case::folder), selected);
    press(Qt::Key_F10);
    for (int step = 0; step < menu; ++step)
        press(Qt::Key_Right);
    QList<QQuickItem*> entries;
    const auto opened = [&] {
        QQuickItem* const overlay = ofType(m_window->contentItem(), "QQuickOverlay");
        QQuickItem* const list = overlay ? ofType(overlay, "QQuickListView") : nullptr;
        if (!list || !list->isVisible())
            return false;
        entries.fill(nullptr, list->property("count").toInt());
        // A list knows how many rows it has before it has laid them out.
        for (int row = 0; row < int(entries.size()); ++row)
            QMetaObject::invokeMethod(list, "itemAtIndex", Q_RETURN_ARG(QQuickItem*, entries[row]), Q_ARG(int, row));
        return !entries.isEmpty() && !entries.contains(nullptr);
    };
    QTRY_VERIFY(opened());
    QStringList rows;
    for (QQuickItem* const entry : entries) {
        if (!entry->property("text").isValid()) {
            rows.append(QStringLiteral("-"));
            continue;
        }
        const QAccessibleInterface* const read = QAccessible::queryAccessibleInterface(entry);
        QCOMPARE(read->role(), QAccessible::MenuItem);
        rows.append(read->text(QAccessible::Name) + u'|' + read->text(QAccessible::Description)
                    + (read->state().disabled ? QString() : QStringLiteral("+")));
    }
    QTEST(rows, "rows");
    press(Qt::Key_Escape);
}

void tst_mainwindow::withoutAFeedThereIsNothingToCheck() {
    press(Qt::Key_F10);
    press(Qt::Key_Down);
    press(Qt::Key_Return); // the first that can be chosen is the next one
    QTRY_VERIFY(library().onboarding());
    QVERIFY(!isShown("updateAlert"));
}

void tst_mainwindow::welcomeShowsTheFirstRun() {
    library().setOnboarding(true);
    QTRY_VERIFY(isShown("onboardingOpen"));
    jump();
    QVERIFY(!library().paletteOpen());
}

QTEST_MAIN(tst_mainwindow)
#include "tst_mainwindow.moc"
