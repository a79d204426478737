// SPDX-License-Identifier: GPL-3.0-or-later
#include "browsing/tiles/TileMenus.h"
#include "support/Strings.h"
#include "support/TestHome.h"

#include <QClipboard>
#include <QGuiApplication>
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

struct Home {
    TestHome home;
    Library library{home.folder("Library"), true};
    Location url = home.file("Library/p/a.png");
};

} // namespace

class TestTileMenus : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aFileOfAFolderPageHasNoWayToItsFolder() {
        Home home;
        home.library.setPlace(Place::folder(home.url.parent()));
        QCOMPARE(titles(TileMenus::asset(&home.library, home.url, {home.url})),
                 strings({"Open", "Show in Finder", "-", "Copy Path"}));
    }

    void aFileOfAnotherPageLeadsToItsFolder() {
        Home home;
        const auto menu = TileMenus::asset(&home.library, home.url, {home.url});
        QCOMPARE(titles(menu), strings({"Open", "Show in Finder", "Go to Folder", "-", "Copy Path"}));
        run(menu, u"Go to Folder"_qs);
        QCOMPARE(home.library.place(), Place::folder(home.url.parent()));
        QCOMPARE(home.library.pendingReveal(), std::optional(home.url));
    }

    void pathsAreCopiedALineEach() {
        Home home;
        const Location other = home.url.parent().child("b.png");
        const auto menu = TileMenus::asset(&home.library, home.url, {home.url, other});
        QCOMPARE(titles(menu).last(), u"Copy Paths"_qs);
        run(menu, u"Copy Paths"_qs);
        QCOMPARE(QGuiApplication::clipboard()->text(), home.url.toString() + u'\n' + other.toString());
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
