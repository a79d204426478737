// SPDX-License-Identifier: GPL-3.0-or-later
#include "browsing/tiles/TileMenus.h"
#include "core/Stars.h"
#include "library/Actions.h"
#include "support/Strings.h"
#include "support/TestHome.h"
#include "support/TestPanels.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QTest>

using namespace lumbra;

namespace {

QStringList titles(const QList<MenuEntry>& entries) {
    QStringList titles;
    for (const MenuEntry& entry : entries)
        titles << (entry.isDivider() ? u"-"_qs : entry.title);
    return titles;
}

void run(const QList<MenuEntry>& entries, const QString& title) {
    for (const MenuEntry& entry : entries)
        if (entry.title == title)
            return entry.run();
    QFAIL("no such entry");
}

// What a submenu holds once all of it is known.
QList<MenuEntry> filled(const MenuEntry& menu) {
    QObject context;
    std::optional<QList<MenuEntry>> entries;
    menu.later(&context, [&](const QList<MenuEntry>& all) { entries = all; });
    if (!QTest::qWaitFor([&] { return entries.has_value(); }, patience))
        qFatal("the menu stays empty");
    return *entries;
}

// As a page that shows these files has them all selected.
PathSet selected(const QList<Location>& files) {
    Assets assets;
    for (const Location& file : files)
        assets.append({.url = file, .starred = Stars::read(file)});
    return PathSet::all(PageList(assets));
}

struct Home {
    TestHome home;
    Library library{home.folder("Library"), true};
    Location url = home.file("Library/p/a.png");
    int played = 0;
    QList<Location> renamed;
    QList<Location> trashed;
    std::optional<NamePrompt> prompt;

    TileMenus::Page page() {
        return {
            .play = [this] { ++played; },
            .rename = [this](const Location& file) { renamed.append(file); },
            .trash = [this](const QList<Location>& files) { trashed += files; },
            .ask = [this](const NamePrompt& asked) { prompt = asked; },
        };
    }
};

} // namespace

class TestTileMenus : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aFileOfAFolderPageHasNoWayToItsFolder() {
        Home home;
        home.library.setPlace(Place::folder(home.url.parent()));
        QCOMPARE(titles(TileMenus::asset(&home.library, home.page(), home.url, {home.url})),
                 strings({"Play", "Star", "Open", "Show in Finder", "-", "Copy", "Copy Path", "Export…", "Move To", "-",
                          "Rename…", "Move to Trash"}));
    }

    void aFileOfAnotherPageLeadsToItsFolder() {
        Home home;
        const auto menu = TileMenus::asset(&home.library, home.page(), home.url, {home.url});
        QCOMPARE(titles(menu), strings({"Play", "Star", "Open", "Show in Finder", "Go to Folder", "-", "Copy",
                                        "Copy Path", "Export…", "Move To", "-", "Rename…", "Move to Trash"}));
        run(menu, u"Go to Folder"_qs);
        QCOMPARE(home.library.place(), Place::folder(home.url.parent()));
        QCOMPARE(home.library.pendingReveal(), std::optional(home.url));
    }

    void pathsAreCopiedALineEach() {
        Home home;
        const Location other = home.url.parent().child("b.png");
        const auto menu = TileMenus::asset(&home.library, home.page(), home.url, selected({home.url, other}));
        QVERIFY(titles(menu).contains(u"Copy Paths"_qs));
        run(menu, u"Copy Paths"_qs);
        QCOMPARE(QGuiApplication::clipboard()->text(), home.url.toString() + u'\n' + other.toString());
    }

    void starIsOfferedUnlessAllAreStarred() {
        Home home;
        const Location other = home.home.file("Library/p/b.png");
        const PathSet both = selected({home.url, other}); // which stays as it is while stars come and go
        run(TileMenus::asset(&home.library, home.page(), home.url, {home.url}), u"Star"_qs);
        QVERIFY(Stars::read(home.url));
        QCOMPARE(titles(TileMenus::asset(&home.library, home.page(), home.url, {home.url})).at(1), u"Unstar"_qs);
        const auto mixed = TileMenus::asset(&home.library, home.page(), home.url, both);
        run(mixed, u"Star"_qs);
        QVERIFY(Stars::read(home.url) && Stars::read(other));
        QCOMPARE(titles(TileMenus::asset(&home.library, home.page(), home.url, both)).at(1), u"Unstar"_qs);
        run(TileMenus::asset(&home.library, home.page(), home.url, selected({home.url, other})), u"Unstar"_qs);
        QVERIFY(!Stars::read(home.url) && !Stars::read(other));
    }

    void onlyOneFileIsRenamed() {
        Home home;
        const Location other = home.url.parent().child("b.png");
        const auto several = TileMenus::asset(&home.library, home.page(), home.url, selected({home.url, other}));
        QVERIFY(!titles(several).contains(u"Rename…"_qs));
        run(TileMenus::asset(&home.library, home.page(), home.url, {home.url}), u"Rename…"_qs);
        QCOMPARE(home.renamed, QList{home.url});
        run(several, u"Move to Trash"_qs);
        QCOMPARE(home.trashed, (QList{home.url, other}));
        QVERIFY(several.last().destructive);
    }

    void playOpensTheScreeningRoom() {
        Home home;
        run(TileMenus::asset(&home.library, home.page(), home.url, {home.url}), u"Play"_qs);
        QCOMPARE(home.played, 1);
    }

    void aFileIsMovedToAFolderOfItsProject() {
        Home home;
        const Location shots = home.home.folder("Library/p/shots");
        home.home.folder("Library/p/.hidden");
        home.home.folder("Library/p/shots/deeper");
        home.library.reloadProjects();
        const MenuEntry menu = TileMenus::move(&home.library, home.page(), home.url, {home.url});
        QCOMPARE(menu.title, u"Move To"_qs);
        QCOMPARE(titles(menu.children), strings({"p", "-", "Other Folder…", "New Folder Here…"}));
        const QList<MenuEntry> entries = filled(menu);
        QCOMPARE(titles(entries), strings({"p", "   shots", "-", "Other Folder…", "New Folder Here…"}));
        run(entries, u"   shots"_qs);
        const Location moved = shots.child("a.png");
        QTRY_VERIFY(moved.exists() && !home.url.exists());
        run(filled(TileMenus::move(&home.library, home.page(), moved, {moved})), u"p"_qs);
        QTRY_VERIFY(home.url.exists());
    }

    void aFileOfNoProjectIsMovedToAnyFolder() {
        Home home;
        const Location loose = home.home.file("desk/b.png");
        const MenuEntry menu = TileMenus::move(&home.library, home.page(), loose, {loose});
        QCOMPARE(titles(menu.children), strings({"Other Folder…", "New Folder Here…"}));
        QVERIFY(!menu.later);
    }

    void anyOtherFolderIsChosenInAPanel() {
        Home home;
        TestPanels panels;
        Actions::usePanels(&panels);
        run(TileMenus::move(&home.library, home.page(), home.url, {home.url}).children, u"Other Folder…"_qs);
        QCOMPARE(panels.button, u"Move Here"_qs);
        panels.answerFolder({});
        QVERIFY(home.url.exists());
        const Location target = home.home.folder("Library/q");
        panels.answerFolder(target);
        QTRY_VERIFY(target.child("a.png").exists());
        Actions::usePanels(nullptr);
    }

    void aNewFolderIsMadeBesideTheFileAndTakesIt() {
        Home home;
        run(TileMenus::move(&home.library, home.page(), home.url, {home.url}).children, u"New Folder Here…"_qs);
        QVERIFY(home.prompt);
        QCOMPARE(home.prompt->title, u"New Folder"_qs);
        QCOMPARE(home.prompt->initial, u"untitled folder"_qs);
        QCOMPARE(home.prompt->confirm, u"Create"_qs);
        home.prompt->action(u"finals"_qs);
        QTRY_VERIFY(home.url.parent().child("finals").child("a.png").exists());
        // A folder that is there already is not made, and takes nothing.
        const Location other = home.home.file("Library/p/b.png");
        home.prompt.reset();
        run(TileMenus::move(&home.library, home.page(), other, {other}).children, u"New Folder Here…"_qs);
        home.prompt->action(u"a/b"_qs);
        QVERIFY(home.library.lastError());
        QVERIFY(other.exists());
    }

    void filesAreCopied() {
        Home home;
        run(TileMenus::asset(&home.library, home.page(), home.url, {home.url}), u"Copy"_qs);
        QCOMPARE(QGuiApplication::clipboard()->mimeData()->urls(), QList{home.url.toUrl()});
        QCOMPARE(home.library.toast()->text, u"Copied a.png. Paste it anywhere."_qs);
    }

    void filesAreExported() {
        Home home;
        TestPanels panels;
        Actions::usePanels(&panels);
        run(TileMenus::asset(&home.library, home.page(), home.url, {home.url}), u"Export…"_qs);
        Actions::usePanels(nullptr);
        QCOMPARE(panels.asked, u"save"_qs);
        QCOMPARE(panels.name, u"a.png"_qs);
    }

    void aFolderOpensAndIsPinnedAndUnpinned() {
        Home home;
        home.library.reloadProjects();
        const Location folder = home.url.parent();
        const auto menu = TileMenus::folder(&home.library, folder);
        QCOMPARE(titles(menu), strings({"Open", "Pin to Top", "Show in Finder", "Copy Path"}));
        run(menu, u"Pin to Top"_qs);
        const auto pinned = TileMenus::folder(&home.library, folder);
        QCOMPARE(titles(pinned), strings({"Open", "Unpin", "Show in Finder", "Copy Path"}));
        run(pinned, u"Unpin"_qs);
        QVERIFY(home.library.pinnedURLs().isEmpty());
        run(menu, u"Open"_qs);
        QCOMPARE(home.library.place(), Place::folder(folder));
    }
};

QTEST_MAIN(TestTileMenus)
#include "tst_tilemenus.moc"
