// SPDX-License-Identifier: GPL-3.0-or-later
#include "browsing/browser/PageLoad.h"
#include "support/Strings.h"

#include <QTest>

using namespace lumbra;

namespace {

const Date now{1'000'000};
constexpr double day = 86400;

Asset file(const QByteArray& path, double modified = 0, qint64 size = 1, std::optional<Date> starred = {}) {
    const Location url(path);
    return {url, *assetKindOf(url), size, Date{modified}, starred};
}

AssetIndex indexOf(const Assets& assets) {
    return AssetIndex().applying({{}, assets});
}

QStringList names(const Assets& assets) {
    QStringList names;
    for (const Asset& asset : assets)
        names << asset.url.name();
    return names;
}

QStringList names(const QList<RecentSection>& sections) {
    QStringList names;
    for (const RecentSection& section : sections)
        for (const RecentEntry& entry : section.entries)
            names << identity(entry);
    return names;
}

PageFilter all() {
    return PageFilter({}, {});
}

PageFilter searching(const char* text, QSet<Location> hits = {}) {
    return PageFilter({}, QString::fromUtf8(text), std::move(hits));
}

QList<qsizetype> counts(const KindCounts& counts) {
    QList<qsizetype> list;
    for (const AssetKind kind : allAssetKinds)
        list << counts[kind];
    return list;
}

} // namespace

class TestPageLoad : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void namesMatch_data() {
        QTest::addColumn<QString>("search");
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("matches");
        QTest::newRow("nothing matches all") << ""
                                             << "a.png" << true;
        QTest::newRow("part") << "enu"
                              << "Genua.png" << true;
        QTest::newRow("whatever the case") << "GeNU"
                                           << "genua.PNG" << true;
        QTest::newRow("extension") << ".png"
                                   << "a.PNG" << true;
        QTest::newRow("absent") << "b"
                                << "a.png" << false;
        QTest::newRow("longer than the name") << "a.png.png"
                                              << "a.png" << false;
        QTest::newRow("blanks are part of it") << " a"
                                               << "a.png" << false;
        QTest::newRow("inner blank") << "y day"
                                     << "My Day.png" << true;
        QTest::newRow("umlaut in lower case") << "ÜBER"
                                              << "über.png" << true;
        QTest::newRow("umlaut in upper case") << "über"
                                              << "ÜBER.png" << true;
        QTest::newRow("umlaut against plain name") << "ü"
                                                   << "uber.png" << false;
        QTest::newRow("plain text in a name with umlauts") << "BER"
                                                           << "über.png" << true;
        QTest::newRow("a letter whose lower form is plain") << "k" << QStringLiteral("\u212A.png") << true;
    }
    void namesMatch() {
        QFETCH(QString, search);
        QFETCH(QString, name);
        QTEST(PageFilter({}, search).matchesName(name.toStdString()), "matches");
    }

    void aFileWhoseContentWasFoundMatches() {
        const PageFilter filter = searching("sunset", {Location(QByteArray("/p/a.png"))});
        QVERIFY(filter.matches(file("/p/a.png")));
        QVERIFY(!filter.matches(file("/p/b.png")));
        QVERIFY(filter.matches(file("/p/Sunset.png")));
    }

    void aKindFilterPassesItsKindOnly() {
        const PageFilter filter(AssetKind::video, {});
        QVERIFY(filter.passes(file("/p/a.mp4")));
        QVERIFY(!filter.passes(file("/p/a.png")));
        QVERIFY(filter.matches(file("/p/a.png")));
    }

    void starredKeepsItsOrderAndCountsWhatTheKindFilterHides() {
        const Assets starred{file("/p/c.png", 1), file("/p/a.mp4", 3), file("/p/b.png", 2)};
        const ListPage page = PageLoad::starred(starred, PageFilter(AssetKind::image, {}), {});
        QCOMPARE(names(page.assets.assets()), (strings({"c.png", "b.png"})));
        QCOMPARE(counts(page.kindCounts), (QList<qsizetype>{2, 1, 0, 0}));
        QVERIFY(page.folders.isEmpty());
    }

    void folderSortsAndFilters_data() {
        QTest::addColumn<SortOrder>("sort");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("newest") << SortOrder::newest << strings({"file10.png", "file9.png", "File1.png"});
        QTest::newRow("oldest") << SortOrder::oldest << strings({"File1.png", "file9.png", "file10.png"});
        QTest::newRow("name") << SortOrder::name << strings({"File1.png", "file9.png", "file10.png"});
        QTest::newRow("size") << SortOrder::size << strings({"File1.png", "file10.png", "file9.png"});
    }
    void folderSortsAndFilters() {
        QFETCH(SortOrder, sort);
        const Scanner::Listing listing{{},
                                       {file("/p/file9.png", 2, 5), file("/p/file10.png", 3, 6),
                                        file("/p/File1.png", 1, 7), file("/p/x.mp3", 9, 9)}};
        const ListPage page = PageLoad::folder(listing, PageFilter(AssetKind::image, {}), sort, {});
        QTEST(names(page.assets.assets()), "expected");
        QCOMPARE(counts(page.kindCounts), (QList<qsizetype>{3, 0, 1, 0}));
    }

    void withASearchOnlyFoldersWhoseNameMatchesShow() {
        const Location found(QByteArray("/p/Sunsets")), other(QByteArray("/p/other"));
        const Scanner::Listing listing{{found, other}, {file("/p/sunset.png"), file("/p/b.png"), file("/p/c.png")}};
        // Content hits play no part for folders.
        const ListPage page = PageLoad::folder(listing, searching("SUNSET", {other, Location(QByteArray("/p/b.png"))}),
                                               SortOrder::name, {});
        QCOMPARE(page.folders, QList<Location>{found});
        QCOMPARE(names(page.assets.assets()), (strings({"b.png", "sunset.png"})));
    }

    void aKindFilterLeavesFolders() {
        const Scanner::Listing listing{{Location(QByteArray("/p/a"))}, {}};
        QCOMPARE(PageLoad::folder(listing, PageFilter(AssetKind::video, {}), SortOrder::name, {}).folders.size(), 1);
    }

    void filesAreAsIndexedIfAllAndOnlyTheyAreThere() {
        const Asset a = file("/p/a.png");
        const Asset b = file("/p/b.png", 5, 7, Date{3});
        const AssetIndex both = indexOf({a, b, file("/p/below/c.png")});
        const AssetIndex::Folder* const folder = both.folder("/p").get();
        QVERIFY(PageLoad::isAsIndexed({b, a}, folder));
        QVERIFY(!PageLoad::isAsIndexed({a}, folder));
        QVERIFY(!PageLoad::isAsIndexed({}, folder));
        QVERIFY(!PageLoad::isAsIndexed({a, b, file("/p/c.png")}, folder));
        QVERIFY(!PageLoad::isAsIndexed({a, file("/p/c.png")}, folder));
        for (const Asset& other :
             {file("/p/b.png", 6, 7, Date{3}), file("/p/b.png", 5, 8, Date{3}), file("/p/b.png", 5, 7)})
            QVERIFY(!PageLoad::isAsIndexed({a, other}, folder));
        QVERIFY(PageLoad::isAsIndexed({}, nullptr));
        QVERIFY(!PageLoad::isAsIndexed({a}, nullptr));
    }

    void recursiveShowsEverythingBelowAndNoFolders() {
        const AssetIndex index = indexOf({file("/p/a/1.png", 1), file("/p/a/b/2.png", 2), file("/p/a/b/3.mp4", 3),
                                          file("/p/ab/4.png", 4), file("/p/5.png", 5)});
        const Location folder(QByteArray("/p/a"));
        const ListPage page = PageLoad::recursive(index, folder, all(), SortOrder::newest, {});
        QCOMPARE(names(page.assets.assets()), (strings({"3.mp4", "2.png", "1.png"})));
        QVERIFY(page.folders.isEmpty());
        QCOMPARE(counts(page.kindCounts), (QList<qsizetype>{2, 1, 0, 0}));
        QCOMPARE(names(PageLoad::recursive(index, folder, PageFilter(AssetKind::video, {}), SortOrder::newest, {})
                           .assets.assets()),
                 strings({"3.mp4"}));
        // Also where the search would find a folder's name.
        QVERIFY(PageLoad::recursive(index, folder, searching("b"), SortOrder::newest, {}).folders.isEmpty());
        QCOMPARE(names(PageLoad::recursive(index, folder, searching("zz", {Location(QByteArray("/p/a/1.png"))}),
                                           SortOrder::newest, {})
                           .assets.assets()),
                 strings({"1.png"}));
    }

    void aReloadThatFindsTheSameYieldsTheListThatIsShown() {
        const AssetIndex index = indexOf({file("/p/a/1.png", 1), file("/p/a/2.png", 2)});
        const Location folder(QByteArray("/p/a"));
        const ListPage first = PageLoad::recursive(index, folder, all(), SortOrder::newest, {});
        QVERIFY(PageLoad::recursive(index, folder, all(), SortOrder::newest, first.assets).assets == first.assets);
        QVERIFY(!(PageLoad::recursive(index, folder, all(), SortOrder::oldest, first.assets).assets == first.assets));
    }

    void theShelfHoldsTheFirstSixHoweverOld() {
        Assets starred;
        for (int n = 1; n <= 8; ++n)
            starred.append(file("/p/" + QByteArray::number(n) + ".png", 0, 1, Date{100.0 - n}));
        QCOMPARE(names(PageLoad::shelf(starred.first(6), all())).size(), 6);
        QCOMPARE(PageLoad::shelf(starred, all()), starred.first(6));
        QCOMPARE(names(PageLoad::shelf(starred, searching("8"))), strings({"8.png"}));
        QVERIFY(PageLoad::shelf(starred, PageFilter(AssetKind::audio, {})).isEmpty());
    }

    void aFileOfTheCutoffItselfIsInTheFeed() {
        const Date cutoff = now - 7 * day;
        const AssetIndex index =
            indexOf({file("/p/on.png", cutoff.seconds), file("/p/before.png", cutoff.seconds - 0.001)});
        const RecentPage page = PageLoad::recent(index, {}, cutoff, all(), {});
        QCOMPARE(names(page.sections), strings({"/p/on.png"}));
        QCOMPARE(counts(page.kindCounts), (QList<qsizetype>{1, 0, 0, 0}));
    }

    void hiddenProjectsAreAbsentFromTheFeedAndItsCounts() {
        const AssetIndex index =
            indexOf({file("/l/secret/a.png", 5), file("/l/secret/deep/b.png", 5), file("/l/secrets/c.png", 5)});
        const RecentPage page = PageLoad::recent(index, {Location(QByteArray("/l/secret"))}, Date{0}, all(), {});
        QCOMPARE(names(page.sections), strings({"/l/secrets/c.png"}));
        QCOMPARE(counts(page.kindCounts), (QList<qsizetype>{1, 0, 0, 0}));
    }

    void withAKindFilterTheOtherKindsAreStillCounted() {
        const AssetIndex index = indexOf({file("/p/a.png", 5), file("/p/b.mp4", 5), file("/p/c.mp3", 5)});
        const RecentPage page = PageLoad::recent(index, {}, Date{0}, PageFilter(AssetKind::video, {}), {});
        QCOMPARE(names(page.sections), strings({"/p/b.mp4"}));
        QCOMPARE(counts(page.kindCounts), (QList<qsizetype>{1, 1, 1, 0}));
    }

    void aSearchFindsInTheFeedByNameAndContent() {
        const AssetIndex index = indexOf({file("/p/cat.png", 5), file("/p/dog.png", 4), file("/p/x.png", 3)});
        const PageFilter filter = searching("CAT", {Location(QByteArray("/p/x.png"))});
        const RecentPage page = PageLoad::recent(index, {}, Date{0}, filter, {});
        QCOMPARE(names(page.sections), (strings({"/p/cat.png", "/p/x.png"})));
        QCOMPARE(counts(page.kindCounts), (QList<qsizetype>{2, 0, 0, 0}));
    }

    void theFeedIsThatOfTheAssetsThatPass() {
        Assets assets;
        for (int folder = 0; folder < 7; ++folder)
            for (int n = 0; n < 9; ++n) {
                const QByteArray path = "/p/f" + QByteArray::number(folder) + '/' + QByteArray::number(n);
                assets.append(file(path + ".png", (n * 7 + folder * 3) % 20));
                assets.append(file(path + ".mp4", (n * 5 + folder) % 11));
            }
        const AssetIndex index = indexOf(assets);
        Assets kept;
        for (const Asset& asset : index.assetsUnder(Location(QByteArray("/p"))))
            if (asset.modified.seconds >= 4)
                kept.append(asset);
        QCOMPARE(names(PageLoad::recent(index, {}, Date{4}, all(), {}).sections), names(recentSections(kept)));
        QCOMPARE(PageLoad::recent(index, {}, Date{4}, all(), {}).sections, recentSections(kept));
    }
};

QTEST_GUILESS_MAIN(TestPageLoad)
#include "tst_pageload.moc"
