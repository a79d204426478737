// SPDX-License-Identifier: GPL-3.0-or-later
#include "browsing/browser/PageText.h"
#include "support/TestHome.h"

#include <QTest>

using namespace lumbra;

namespace {

Location at(const char* path) {
    return Location(QByteArray(path));
}

Project project(const char* name, const char* url, std::optional<Location> repo = {}) {
    return {QString::fromUtf8(name), at(url), repo};
}

PageText::EmptyFacts loadedPage(const Place& place) {
    PageText::EmptyFacts facts;
    facts.place = place;
    facts.loaded = true;
    facts.recentDays = 7;
    return facts;
}

} // namespace

class TestPageText : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void titles_data() {
        QTest::addColumn<Place>("place");
        QTest::addColumn<bool>("inGroup");
        QTest::addColumn<bool>("inProject");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("subtitle");
        const Place group = Place::group(QUuid::createUuid());
        QTest::newRow("starred") << Place::starred() << false << false << "Starred"
                                 << "12 kept";
        QTest::newRow("tidy") << Place::tidy() << false << false << "Tidy"
                              << "";
        QTest::newRow("recent") << Place::recent() << false << false << "Recent"
                                << "Every project, newest first";
        QTest::newRow("group") << group << true << false << "Acme"
                               << "";
        QTest::newRow("a group that is gone") << group << false << false << "Group"
                                              << "";
        QTest::newRow("project") << Place::folder(at("/l/p")) << false << true << "Pro"
                                 << "Not linked to a repository";
        QTest::newRow("below a project") << Place::folder(at("/l/p/a/b")) << false << true << "Pro"
                                         << "a/b";
        QTest::newRow("in no project") << Place::folder(at("/x/y")) << false << false << "y"
                                       << "";
    }
    void titles() {
        QFETCH(Place, place);
        QFETCH(bool, inGroup);
        QFETCH(bool, inProject);
        std::optional<ProjectGroup> group;
        if (inGroup)
            group = ProjectGroup{{}, QStringLiteral("Acme"), {}, {}, false};
        const auto inside = inProject ? std::optional(project("Pro", "/l/p")) : std::nullopt;
        QTEST(PageText::title(place, group, inside), "title");
        QTEST(PageText::subtitle(place, 12, inside), "subtitle");
    }

    void aLinkedProjectNamesItsRepository() {
        const TestHome home;
        const Project linked = project("Pro", "/l/p", home.path().child("code/pro"));
        QCOMPARE(PageText::subtitle(Place::folder(linked.url), 0, linked), QStringLiteral("Linked to ~/code/pro"));
        const Project elsewhere = project("Pro", "/l/p", at("/srv/pro"));
        QCOMPARE(PageText::subtitle(Place::folder(linked.url), 0, elsewhere), QStringLiteral("Linked to /srv/pro"));
    }

    void stacksAreCaptionedByTheWayToTheirFolder_data() {
        QTest::addColumn<QString>("folder");
        QTest::addColumn<QString>("caption");
        QTest::newRow("project") << "/l/p"
                                 << "Pro";
        QTest::newRow("below") << "/l/p/renders/final"
                               << "Pro › renders › final";
    }
    void stacksAreCaptionedByTheWayToTheirFolder() {
        QFETCH(QString, folder);
        QTEST(PageText::displayPath(Location(QStringView(folder)), project("Pro", "/l/p")), "caption");
    }

    void aStackInNoProjectIsCaptionedByItsFolder() {
        QCOMPARE(PageText::displayPath(at("/x/y"), {}), QStringLiteral("y"));
    }

    void status_data() {
        QTest::addColumn<PageText::StatusFacts>("facts");
        QTest::addColumn<QString>("text");
        const Place folder = Place::folder(at("/p"));
        const Place group = Place::group(QUuid::createUuid());
        QTest::newRow("no items") << PageText::StatusFacts{folder} << "0 items · Zero KB";
        QTest::newRow("one item") << PageText::StatusFacts{folder, 0, 0, 1, 512} << "1 item · 512 bytes";
        QTest::newRow("one folder") << PageText::StatusFacts{folder, 0, 1, 2, 2'000'000} << "2 items, 1 folder · 2 MB";
        QTest::newRow("folders") << PageText::StatusFacts{folder, 0, 3, 0, 0} << "0 items, 3 folders · Zero KB";
        QTest::newRow("folders of another page")
            << PageText::StatusFacts{Place::recent(), 0, 3, 2, 1000} << "2 items · 1 KB";
        QTest::newRow("selection") << PageText::StatusFacts{folder, 0, 3, 9, 9000, 2, 3000} << "2 selected · 3 KB";
        QTest::newRow("selection of what is gone")
            << PageText::StatusFacts{folder, 0, 0, 0, 0, 1, 0} << "1 selected · Zero KB";
        QTest::newRow("a group of one") << PageText::StatusFacts{group, 1, 0, 5, 5} << "1 project";
        QTest::newRow("a group of several") << PageText::StatusFacts{group, 2, 0, 5, 5, 3, 3} << "2 projects";
    }
    void status() {
        QFETCH(PageText::StatusFacts, facts);
        QTEST(PageText::status(facts), "text");
    }

    void sectionHeads() {
        const SectionHeader shelf = PageText::shelfHeader(7);
        QCOMPARE(shelf.title, QStringLiteral("Starred"));
        QCOMPARE(shelf.detail, QStringLiteral("7 kept"));
        QCOMPARE(shelf.button, QStringLiteral("Show All"));
        const SectionHeader audio = PageText::sectionHeader(AssetKind::audio, 12);
        QCOMPARE(audio.title, QStringLiteral("Audio"));
        QCOMPARE(audio.detail, QStringLiteral("12 new"));
        QVERIFY(audio.button.isEmpty());
        QCOMPARE(PageText::showMore(AssetKind::video), QStringLiteral("Show More Videos"));
    }

    void aFolderThatIsIndexedShowsProgressOnlyWhenItIsRecursive() {
        PageText::EmptyFacts facts = loadedPage(Place::folder(at("/p")));
        facts.indexing = true;
        facts.hasAssets = true;
        QVERIFY(!PageText::emptyState(facts).shown);
        facts.recursive = true;
        const EmptyState state = PageText::emptyState(facts);
        QVERIFY(state.busy);
        QCOMPARE(state.title, QStringLiteral("Indexing the library…"));
        QCOMPARE(state.offset, 120);
    }

    void anEmptyFolder() {
        const EmptyState state = PageText::emptyState(loadedPage(Place::folder(at("/p"))));
        QVERIFY(state.shown && !state.busy);
        QCOMPARE(state.symbol, QStringLiteral("tray"));
        QCOMPARE(state.title, QStringLiteral("Nothing here yet"));
        QCOMPARE(state.text, QStringLiteral("Files agents save to this folder appear here as soon as they land."));
        QVERIFY(state.button.isEmpty());
    }

    void aFilteredFolder_data() {
        QTest::addColumn<std::optional<AssetKind>>("kind");
        QTest::addColumn<QString>("search");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("text");
        const QString hidden = QStringLiteral("A filter is hiding the rest of this folder.");
        using Kind = std::optional<AssetKind>;
        QTest::newRow("images") << Kind(AssetKind::image) << ""
                                << "No images here" << hidden;
        QTest::newRow("videos") << Kind(AssetKind::video) << ""
                                << "No videos here" << hidden;
        QTest::newRow("audio") << Kind(AssetKind::audio) << ""
                               << "No audio here" << hidden;
        QTest::newRow("documents") << Kind(AssetKind::document) << ""
                                   << "No documents here" << hidden;
        QTest::newRow("search") << Kind() << "Cat %1"
                                << "No matches"
                                << "Nothing matches “Cat %1”.";
        QTest::newRow("search in a kind") << Kind(AssetKind::image) << "x"
                                          << "No matches"
                                          << "Nothing matches “x”.";
    }
    void aFilteredFolder() {
        PageText::EmptyFacts facts = loadedPage(Place::folder(at("/p")));
        QFETCH(std::optional<AssetKind>, kind);
        QFETCH(QString, search);
        facts.kind = kind;
        facts.search = search;
        const EmptyState state = PageText::emptyState(facts);
        QTEST(state.title, "title");
        QTEST(state.text, "text");
        QCOMPARE(state.symbol, QStringLiteral("line.3.horizontal.decrease.circle"));
        QCOMPARE(state.button, QStringLiteral("Show Everything"));
    }

    void aFolderWithAnythingInItIsNotEmpty() {
        PageText::EmptyFacts facts = loadedPage(Place::folder(at("/p")));
        facts.hasFolders = true;
        QVERIFY(!PageText::emptyState(facts).shown);
    }

    void aPageThatIsNotLoadedShowsNoEmptyState() {
        for (const Place& place : {Place::folder(at("/p")), Place::starred(), Place::recent()}) {
            PageText::EmptyFacts facts = loadedPage(place);
            facts.loaded = false;
            QVERIFY(!PageText::emptyState(facts).shown);
        }
    }

    void nothingStarred() {
        PageText::EmptyFacts facts = loadedPage(Place::starred());
        facts.search = QStringLiteral("x"); // its empty state does not mention filters
        const EmptyState state = PageText::emptyState(facts);
        QCOMPARE(state.symbol, QStringLiteral("star"));
        QCOMPARE(state.title, QStringLiteral("Nothing starred yet"));
        QCOMPARE(state.text,
                 QStringLiteral("Hover anything and click its star, or select it and press S. Starred things "
                                "stay here and at the top of Recent."));
        QCOMPARE(state.offset, 80);
    }

    void nothingRecent_data() {
        QTest::addColumn<int>("days");
        QTest::addColumn<QString>("text");
        QTest::newRow("a day") << 1 << "Nothing new was saved in the last day.";
        QTest::newRow("two days") << 2 << "Nothing new was saved in the last 2 days.";
        QTest::newRow("a month") << 30 << "Nothing new was saved in the last 30 days.";
    }
    void nothingRecent() {
        QFETCH(int, days);
        PageText::EmptyFacts facts = loadedPage(Place::recent());
        facts.recentDays = days;
        const EmptyState state = PageText::emptyState(facts);
        QTEST(state.text, "text");
        QCOMPARE(state.title, QStringLiteral("Nothing new"));
        QCOMPARE(state.symbol, QStringLiteral("clock"));
        QCOMPARE(state.offset, 80);
        facts.hasFeed = true;
        QVERIFY(!PageText::emptyState(facts).shown);
    }

    void theFeedWaitsForTheFirstWalk() {
        PageText::EmptyFacts facts = loadedPage(Place::recent());
        facts.indexing = true;
        facts.hasFeed = true;
        QVERIFY(PageText::emptyState(facts).busy);
    }

    void groupAndTidyPagesHaveNoEmptyState() {
        QVERIFY(!PageText::emptyState(loadedPage(Place::tidy())).shown);
        QVERIFY(!PageText::emptyState(loadedPage(Place::group(QUuid::createUuid()))).shown);
    }
};

QTEST_GUILESS_MAIN(TestPageText)
#include "tst_pagetext.moc"
