// The pane on screen: real clicks and keys on real tiles over a real library.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "browsing/browser/Browser.h"
#include "look/Look.h"
#include "support/Strings.h"
#include "support/TestHome.h"

#include <QClipboard>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QtTest>

using namespace lumbra;

namespace {

struct Pane {
    TestHome home;
    std::unique_ptr<Preferences> preferences;
    std::unique_ptr<Library> library;
    std::unique_ptr<Browser> browser;
    QQmlEngine engine;
    std::unique_ptr<QQuickWindow> view; // its items hold what stands above, so it dies first

    Location folder(std::string_view relative = {}) const {
        const Location root = home.path().child("Library");
        return relative.empty() ? root : root.child(relative);
    }

    Location file(std::string_view relative, double age = 60) const {
        const Location made = home.file("Library/" + std::string(relative));
        TestHome::touch(made, Date::now().seconds - age);
        return made;
    }

    void open(const Place& place, int width = 1000) {
        home.folder("Library");
        preferences = std::make_unique<Preferences>(home.path().child("settings.ini"));
        library = std::make_unique<Library>(folder(), true);
        library->setPlace(place);
        browser = std::make_unique<Browser>(library.get(), nullptr, *preferences);
        Look::prepareEngine(engine);
        QQmlComponent component(&engine);
        component.setData("import QtQuick\n"
                          "import QtQuick.Controls.Basic\n"
                          "import Lumbra.Browsing\n"
                          "ApplicationWindow {\n"
                          "    property Browser browser\n"
                          "    BrowserView { anchors.fill: parent; browser: parent.Window.window.browser }\n"
                          "}",
                          QUrl(QStringLiteral("qrc:/test.qml")));
        QObject* const root =
            component.createWithInitialProperties({{QStringLiteral("browser"), QVariant::fromValue(browser.get())}});
        QVERIFY2(root, qPrintable(component.errorString()));
        view.reset(qobject_cast<QQuickWindow*>(root));
        view->resize(width, 700);
        view->show();
        view->requestActivate();
        QVERIFY(QTest::qWaitForWindowActive(view.get()));
        QTRY_VERIFY(browser->loaded() && !library->indexing());
    }

    // Items of a type of ours that are on screen, from the top left.
    QList<QQuickItem*> items(const char* type) const {
        QList<QQuickItem*> found;
        // With what floats above the pane.
        collect(view->contentItem(), QByteArray(type), found);
        std::sort(found.begin(), found.end(), [](const QQuickItem* a, const QQuickItem* b) {
            const QPointF left = a->mapToScene({});
            const QPointF right = b->mapToScene({});
            return left.y() != right.y() ? left.y() < right.y() : left.x() < right.x();
        });
        return found;
    }

    QQuickItem* tile(const char* type, const QString& name) const {
        for (QQuickItem* item : items(type))
            if (item->property("cell").value<PageCell>().name == name)
                return item;
        return nullptr;
    }

    // A control by the text that it shows.
    QQuickItem* control(const char* type, const QString& text) const {
        for (QQuickItem* item : items(type))
            if (item->property("text").toString() == text)
                return item;
        return nullptr;
    }

    void click(const QQuickItem* item, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const {
        QVERIFY(item);
        settle();
        QTest::mouseClick(view.get(), Qt::LeftButton, modifiers, centre(item));
    }

    // Items that have just come stand where they belong once they have been drawn.
    void settle() const {
        QSignalSpy frames(view.get(), &QQuickWindow::frameSwapped);
        view->update();
        QTRY_VERIFY(frames.size() >= 1);
    }

    static QPoint centre(const QQuickItem* item) {
        return item->mapToScene({item->width() / 2, item->height() / 2}).toPoint();
    }

    QStringList selected() const {
        QStringList names;
        for (const Asset& asset : browser->selected())
            names << asset.url.name();
        return names;
    }

private:
    static void collect(QQuickItem* item, const QByteArray& type, QList<QQuickItem*>& found) {
        if (!item->isVisible())
            return;
        const QByteArray name = item->metaObject()->className();
        if (name == type || name.startsWith(type + "_QML"))
            found.append(item);
        const auto live = liveRows(item);
        for (QQuickItem* child : item->childItems())
            if (!live || live->contains(child) || child->metaObject()->indexOfProperty("row") < 0)
                collect(child, type, found);
    }

    // A list keeps rows to use them again, and only it knows which of them stand for something.
    static std::optional<QSet<QQuickItem*>> liveRows(const QQuickItem* content) {
        QQuickItem* const list = content->parentItem();
        if (!list || !list->inherits("QQuickItemView"))
            return {};
        QSet<QQuickItem*> rows;
        for (int index = 0; index < list->property("count").toInt(); ++index) {
            QQuickItem* row = nullptr;
            QMetaObject::invokeMethod(list, "itemAtIndex", Q_RETURN_ARG(QQuickItem*, row), Q_ARG(int, index));
            rows.insert(row);
        }
        return rows;
    }
};

} // namespace

class TestBrowserView : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Look::prepareApplication(); }

    void clicksSelectAndKeysStep() {
        Pane pane;
        for (int n = 1; n <= 4; ++n)
            pane.file("p/" + std::to_string(n) + ".txt", 10 * n);
        pane.open(Place::folder(pane.folder("p")));
        QTRY_COMPARE(pane.items("AssetTile").size(), 4);
        pane.click(pane.tile("AssetTile", u"2.txt"_qs));
        QCOMPARE(pane.selected(), strings({"2.txt"}));
        pane.click(pane.tile("AssetTile", u"4.txt"_qs), Qt::ShiftModifier);
        QCOMPARE(pane.selected(), strings({"2.txt", "3.txt", "4.txt"}));
        pane.click(pane.tile("AssetTile", u"3.txt"_qs), Qt::ControlModifier);
        QCOMPARE(pane.selected(), strings({"2.txt", "4.txt"}));
        QTest::keyClick(pane.view.get(), Qt::Key_Left);
        QCOMPARE(pane.selected(), strings({"2.txt"}));
        QTest::keyClick(pane.view.get(), Qt::Key_Escape);
        QVERIFY(pane.selected().isEmpty());
        QTest::keyClick(pane.view.get(), Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(pane.selected().size(), 4);
        QTest::mouseClick(pane.view.get(), Qt::LeftButton, Qt::NoModifier, {500, 500});
        QVERIFY(pane.selected().isEmpty());
    }

    void aDoubleClickPlays() {
        Pane pane;
        const Location file = pane.file("p/1.txt");
        pane.open(Place::folder(pane.folder("p")));
        QTRY_COMPARE(pane.items("AssetTile").size(), 1);
        QTest::mouseDClick(pane.view.get(), Qt::LeftButton, Qt::NoModifier,
                           Pane::centre(pane.items("AssetTile").first()));
        QTRY_VERIFY(pane.library->playing());
        QCOMPARE(pane.library->playing()->asset.url, file);
    }

    void aFolderAndAStackLeadToTheirFolder() {
        Pane pane;
        for (int n = 1; n <= 6; ++n)
            pane.file("p/sub/" + std::to_string(n) + ".txt", n);
        pane.open(Place::folder(pane.folder("p")));
        QTRY_COMPARE(pane.items("FolderTile").size(), 1);
        pane.click(pane.items("FolderTile").first());
        QCOMPARE(pane.library->place(), Place::folder(pane.folder("p/sub")));
        pane.library->setPlace(Place::recent());
        QTRY_COMPARE(pane.items("StackTile").size(), 1);
        QCOMPARE(pane.items("StackTile").first()->property("help").toString(), QStringLiteral("Open p › sub"));
        pane.click(pane.items("StackTile").first());
        QCOMPARE(pane.library->place(), Place::folder(pane.folder("p/sub")));
    }

    void aReloadKeepsEveryTile() {
        Pane pane;
        pane.file("p/1.txt", 10);
        pane.file("p/2.txt", 20);
        pane.open(Place::folder(pane.folder("p")));
        QTRY_COMPARE(pane.items("AssetTile").size(), 2);
        const QList<QQuickItem*> before = pane.items("AssetTile");
        pane.file("p/3.txt", 30);
        QTRY_COMPARE(pane.items("AssetTile").size(), 3);
        QCOMPARE(pane.items("AssetTile").first(2), before);
        // A new width moves the third tile and makes none of the two that stay in their columns anew.
        pane.view->resize(420, 700);
        QTRY_COMPARE(pane.browser->rows()->columns(), 2);
        QCOMPARE(pane.items("AssetTile").first(2), before);
    }

    void typingFiltersAndEscapeShowsAllAgain() {
        Pane pane;
        pane.file("p/cat.txt");
        pane.file("p/dog.txt");
        pane.open(Place::folder(pane.folder("p")));
        QTRY_COMPARE(pane.items("AssetTile").size(), 2);
        pane.click(pane.items("SearchField").first());
        for (const Qt::Key key : {Qt::Key_D, Qt::Key_O, Qt::Key_G})
            QTest::keyClick(pane.view.get(), key);
        QTRY_COMPARE(pane.items("AssetTile").size(), 1);
        QVERIFY(pane.tile("AssetTile", u"dog.txt"_qs));
        QVERIFY(!pane.browser->gridFocused());
        QTest::keyClick(pane.view.get(), Qt::Key_Escape);
        QTRY_COMPARE(pane.items("AssetTile").size(), 2);
    }

    void whatAFilterHidesIsShownAgainByTheButton() {
        Pane pane;
        pane.file("p/cat.txt");
        pane.open(Place::folder(pane.folder("p")));
        QTRY_VERIFY(pane.control("Chip", u"Videos"_qs));
        pane.click(pane.control("Chip", u"Videos"_qs));
        QTRY_VERIFY(pane.control("Button", u"Show Everything"_qs));
        QVERIFY(pane.items("AssetTile").isEmpty());
        pane.click(pane.control("Button", u"Show Everything"_qs));
        QTRY_COMPARE(pane.items("AssetTile").size(), 1);
        QVERIFY(pane.control("Chip", u"All"_qs)->property("on").toBool());
    }

    void theKindsTakeTheWidestFormThatFits() {
        Pane pane;
        for (const char* name : {"a.png", "b.mp4", "c.mp3", "d.txt"})
            pane.file(std::string("p/") + name);
        pane.open(Place::folder(pane.folder("p")));
        const auto form = [&] {
            const QQuickItem* const chip = pane.control("Chip", u"Documents"_qs);
            return !chip ? u"menu"_qs : chip->property("count").toString().isEmpty() ? u"chips"_qs : u"counts"_qs;
        };
        QTRY_COMPARE(form(), u"counts"_qs);
        QStringList forms;
        for (int width = 1000; width >= 300; width -= 10) {
            pane.view->resize(width, 700);
            QTRY_COMPARE(pane.items("BrowserView").first()->width(), width);
            const QQuickItem* const kinds = pane.items("KindChips").first();
            QVERIFY(form() == u"menu"_qs || kinds->width() <= kinds->property("available").toReal());
            if (forms.isEmpty() || forms.last() != form())
                forms << form();
        }
        QCOMPARE(forms, strings({"counts", "chips", "menu"}));
        QVERIFY(pane.control("ChoiceButton", u"Kind"_qs));
    }

    void aKindWithoutFilesIsDim() {
        Pane pane;
        pane.file("p/cat.txt");
        pane.open(Place::folder(pane.folder("p")));
        QTRY_VERIFY(pane.control("Chip", u"Images"_qs));
        QTRY_VERIFY(!pane.control("Chip", u"Documents"_qs)->property("dim").toBool());
        QVERIFY(pane.control("Chip", u"Images"_qs)->property("dim").toBool());
    }

    void theFeedHasItsHeadsAndRevealsMore() {
        Pane pane;
        for (int folder = 0; folder < 7; ++folder)
            for (int n = 0; n < 4; ++n)
                pane.file("p/" + std::to_string(folder) + "/" + std::to_string(n) + ".txt");
        pane.open(Place::recent());
        QTRY_VERIFY(pane.control("Label", u"28 new"_qs));
        PageRows& rows = *pane.browser->rows();
        const int last = rows.rowCount() - 1;
        Q_EMIT pane.browser->scrollRequested(last, false);
        QTRY_VERIFY(pane.control("Button", u"Show More Documents"_qs));
        QTRY_VERIFY(pane.items("QQuickListView").last()->property("atYEnd").toBool());
        pane.click(pane.control("Button", u"Show More Documents"_qs));
        QTRY_VERIFY(!pane.control("Button", u"Show More Documents"_qs));
        QCOMPARE(pane.browser->order().size(), 28);
    }

    void steppingKeepsTheSelectedTileInView() {
        Pane pane;
        for (int n = 1; n <= 60; ++n)
            pane.file("p/" + std::to_string(n) + ".txt", n);
        pane.open(Place::folder(pane.folder("p")));
        QTRY_COMPARE(pane.browser->order().size(), 60);
        for (int n = 0; n < 45; ++n)
            QTest::keyClick(pane.view.get(), Qt::Key_Down);
        QCOMPARE(pane.selected(), strings({"45.txt"}));
        QTRY_VERIFY(pane.tile("AssetTile", u"45.txt"_qs));
        QTRY_VERIFY(Pane::centre(pane.tile("AssetTile", u"45.txt"_qs)).y() < 668);
    }

    void aCardOpensItsProject() {
        Pane pane;
        pane.file("one/1.txt");
        pane.file("two/1.txt");
        pane.open(Place::recent());
        const ProjectGroup group = pane.library->newGroup(u"Both"_qs, strings({"one", "two"}));
        pane.library->setPlace(Place::group(group.id));
        QTRY_COMPARE(pane.items("ProjectCard").size(), 2);
        QVERIFY(pane.items("Header").isEmpty());
        QVERIFY(pane.control("Label", u"2 projects"_qs));
        pane.click(pane.items("ProjectCard").last());
        QCOMPARE(pane.library->place(), Place::folder(pane.folder("two")));
    }

    void aStepOfThePathLeadsThereAndTheLastOneToItsSiblings() {
        Pane pane;
        pane.file("p/a/1.txt");
        pane.file("p/b/1.txt");
        pane.open(Place::folder(pane.folder("p/a")));
        QTRY_COMPARE(pane.items("StepButton").size(), 2);
        QTRY_COMPARE(pane.browser->path()->siblings().size(), 2);
        pane.click(pane.items("StepButton").last());
        QTRY_VERIFY(pane.control("MenuItem", u"b"_qs));
        pane.click(pane.control("MenuItem", u"b"_qs));
        QTRY_COMPARE(pane.library->place(), Place::folder(pane.folder("p/b")));
        QTRY_VERIFY(!pane.control("MenuItem", u"a"_qs));
        pane.click(pane.items("StepButton").first());
        QCOMPARE(pane.library->place(), Place::folder(pane.folder("p")));
    }

    void aRightClickActsOnItsTileAndTheMenuKeyOnTheSelectedOne() {
        Pane pane;
        pane.file("p/1.txt", 10);
        pane.file("p/2.txt", 20);
        pane.open(Place::folder(pane.folder("p")));
        QTRY_COMPARE(pane.items("AssetTile").size(), 2);
        pane.click(pane.tile("AssetTile", u"1.txt"_qs));
        QTest::mouseClick(pane.view.get(), Qt::RightButton, Qt::NoModifier,
                          Pane::centre(pane.tile("AssetTile", u"2.txt"_qs)));
        QTRY_VERIFY(pane.control("MenuItem", u"Copy Path"_qs));
        QCOMPARE(pane.selected(), strings({"1.txt"}));
        pane.click(pane.control("MenuItem", u"Copy Path"_qs));
        QTRY_COMPARE(QGuiApplication::clipboard()->text(), pane.folder("p/2.txt").toString());
        QTRY_VERIFY(!pane.control("MenuItem", u"Copy Path"_qs));
        QTRY_VERIFY(pane.browser->gridFocused());
        QTest::keyClick(pane.view.get(), Qt::Key_Menu);
        QTRY_VERIFY(pane.control("MenuItem", u"Copy Path"_qs));
        pane.click(pane.control("MenuItem", u"Copy Path"_qs));
        QTRY_COMPARE(QGuiApplication::clipboard()->text(), pane.folder("p/1.txt").toString());
    }

    void theSliderChangesTheTiles() {
        Pane pane;
        pane.file("p/1.txt");
        pane.open(Place::folder(pane.folder("p")));
        QTRY_COMPARE(pane.items("AssetTile").size(), 1);
        const QQuickItem* const slider = pane.control("Slider", u"Thumbnail size"_qs);
        QVERIFY(slider);
        QTest::mouseClick(pane.view.get(), Qt::LeftButton, Qt::NoModifier,
                          slider->mapToScene({slider->width() - 1, slider->height() / 2}).toPoint());
        QCOMPARE(pane.browser->settings()->zoom(), 360.0);
        QTRY_COMPARE(pane.items("AssetTile").first()->width(), 366.0);
    }
};

QTEST_MAIN(TestBrowserView)
#include "tst_browserview.moc"
