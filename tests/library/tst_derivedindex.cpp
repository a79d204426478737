// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/DerivedIndex.h"

#include <QRandomGenerator>
#include <QtTest>

#include <algorithm>

using namespace lumbra;

class DerivedIndexTest : public QObject {
    Q_OBJECT

    const Date now{1700000000};
    const Location root{QByteArray("/l")};

    static Location at(const char* path) { return Location(QByteArray(path)); }

    static Asset asset(const char* path, double modified, AssetKind kind = AssetKind::image,
                       std::optional<Date> starred = std::nullopt) {
        return {at(path), kind, 1, Date{modified}, starred};
    }

    static Project project(const char* name, const char* path = nullptr) {
        return {QString::fromUtf8(name), path ? at(path) : Location("/l/" + QByteArray(name)), std::nullopt};
    }

    DerivedIndex compute(const Assets& assets, const QList<Project>& projects, const QSet<QString>& hidden = {}) const {
        return DerivedIndex::compute(AssetIndex().applying({{}, assets}), projects, hidden, root, now);
    }

    // What is summed up of every folder, asset by asset.
    static QHash<Location, FolderStats> plainStats(const Assets& assets, const QList<Project>& projects) {
        QHash<Location, FolderStats> stats;
        for (const Asset& entry : assets)
            for (const Project& holder : projects)
                for (Location folder = entry.url.parent(); folder.isAtOrBelow(holder.url); folder = folder.parent()) {
                    FolderStats& sums = stats[folder];
                    ++sums.count;
                    if (entry.kind == AssetKind::image || entry.kind == AssetKind::video)
                        sums.insert(entry);
                }
        return stats;
    }

    // Files in folders that lie in each other, some with names that sort between a folder's and what it holds. No two
    // have one date.
    static Assets manyAssets(int count) {
        QRandomGenerator random(7);
        const QByteArrayList names{"a", "a-b", "a.b", "a b", "ab", "A", "a0", "z"};
        Assets assets;
        for (int i = 0; i < count; ++i) {
            QByteArray path = "/l/" + names[random.bounded(names.size())];
            for (int depth = random.bounded(5); depth > 0; --depth)
                path += '/' + names[random.bounded(names.size())];
            path += '/' + QByteArray::number(i) + ".png";
            assets.append({Location(path), allAssetKinds[random.bounded(4u)], i, Date{double(i * 7919 % count)}, {}});
        }
        return assets;
    }

    static QList<Project> projectsOf(const Assets& assets) {
        QList<Project> projects;
        QSet<QByteArray> names;
        for (const Asset& entry : assets)
            names.insert(entry.url.path().split('/')[2]);
        for (const QByteArray& name : names)
            projects.append(project(name.constData()));
        return projects;
    }

    static QByteArrayList paths(const Assets& assets) {
        QByteArrayList list;
        for (const Asset& entry : assets)
            list.append(entry.url.path());
        return list;
    }

private Q_SLOTS:
    void insertKeepsThreeNewestFirst() {
        FolderStats stats;
        for (const double date : {1.0, 2.0, 3.0, 4.0})
            stats.insert(asset(qPrintable(QStringLiteral("/l/p/%1.png").arg(date)), date));
        QCOMPARE(paths(stats.newest), (QByteArrayList{"/l/p/4.png", "/l/p/3.png", "/l/p/2.png"}));
    }

    void amongEqualDatesTheEarlierArrivalStaysAhead() {
        FolderStats stats;
        for (const char* path : {"/l/a.png", "/l/b.png", "/l/c.png", "/l/d.png"})
            stats.insert(asset(path, 7));
        QCOMPARE(paths(stats.newest), (QByteArrayList{"/l/a.png", "/l/b.png", "/l/c.png"}));
    }

    void fourImagesLeaveTheNewestThree() {
        const auto derived =
            compute({asset("/l/p/1.png", 1), asset("/l/p/2.png", 2), asset("/l/p/3.png", 3), asset("/l/p/4.png", 4)},
                    {project("p")});
        QCOMPARE(paths(derived.stats[at("/l/p")].newest), (QByteArrayList{"/l/p/4.png", "/l/p/3.png", "/l/p/2.png"}));
        QCOMPARE(derived.stats[at("/l/p")].count, 4);
        QCOMPARE(derived.activity[at("/l/p")].seconds, 4.0);
    }

    void exactlyADayOldCountsAsNew() {
        const auto derived = compute({asset("/l/p/1.png", now.seconds - 86400),
                                      asset("/l/p/2.png", now.seconds - 86400.5), asset("/l/p/3.png", now.seconds + 5)},
                                     {project("p")});
        QCOMPARE(derived.newToday, 2);
    }

    void aHiddenProjectHasActivityAndStatsOnly() {
        const auto derived = compute({asset("/l/p/1.png", now.seconds, AssetKind::image, Date{3})}, {project("p")},
                                     {QStringLiteral("p")});
        QCOMPARE(derived.newToday, 0);
        QVERIFY(derived.starred.isEmpty());
        QCOMPARE(derived.activity.size(), 1);
        QCOMPARE(derived.stats[at("/l/p")].count, 1);
    }

    void audioIsCountedAndNeverShown() {
        const auto derived = compute(
            {asset("/l/p/1.wav", 1, AssetKind::audio), asset("/l/p/2.pdf", 1, AssetKind::document)}, {project("p")});
        QCOMPARE(derived.stats[at("/l/p")].count, 2);
        QVERIFY(derived.stats[at("/l/p")].newest.isEmpty());
    }

    void everyFolderUpToTheProjectIsSummed() {
        const auto derived =
            compute({asset("/l/p/a/b/1.png", 1), asset("/l/p/a/2.png", 2), asset("/l/p/c/3.png", 3)}, {project("p")});
        QCOMPARE(derived.stats[at("/l/p")].count, 3);
        QCOMPARE(derived.stats[at("/l/p/a")].count, 2);
        QCOMPARE(derived.stats[at("/l/p/a/b")].count, 1);
        QCOMPARE(paths(derived.stats[at("/l/p/a")].newest), (QByteArrayList{"/l/p/a/2.png", "/l/p/a/b/1.png"}));
        QVERIFY(!derived.stats.contains(root));
    }

    void aFolderThatAnotherSortsIntoIsSummedOnce() {
        const auto derived = compute({asset("/l/p/a/1.png", 1), asset("/l/p/a-b/2.png", 2), asset("/l/p/a/c/3.png", 3),
                                      asset("/l/p-q/4.png", 4), asset("/l/p/a/d/5.png", 5)},
                                     {project("p"), project("p-q")});
        QCOMPARE(derived.stats.size(), size_t(6));
        QCOMPARE(derived.stats[at("/l/p")].count, 4);
        QCOMPARE(paths(derived.stats[at("/l/p")].newest),
                 (QByteArrayList{"/l/p/a/d/5.png", "/l/p/a/c/3.png", "/l/p/a-b/2.png"}));
        QCOMPARE(derived.stats[at("/l/p/a")].count, 3);
        QCOMPARE(derived.stats[at("/l/p-q")].count, 1);
    }

    void everyFolderOfMany_data() {
        QTest::addColumn<int>("count");
        QTest::newRow("some") << 3'000;
        QTest::newRow("so many that two threads share them") << 60'000;
    }
    void everyFolderOfMany() {
        QFETCH(const int, count);
        const Assets assets = manyAssets(count);
        const auto projects = projectsOf(assets);
        const auto derived = compute(assets, projects);
        const auto expected = plainStats(assets, projects);
        QCOMPARE(derived.stats.size(), size_t(expected.size()));
        for (auto folder = expected.cbegin(); folder != expected.cend(); ++folder)
            QVERIFY2(derived.stats[folder.key()] == *folder, folder.key().path().constData());
    }

    void ofManyFoldersEachCountsOnceInAllElse() {
        Assets assets = manyAssets(60'000);
        for (qsizetype i = 0; i < assets.size(); i += 100)
            assets[i].starred = Date{double(i)};
        const auto projects = projectsOf(assets);
        const auto derived =
            DerivedIndex::compute(AssetIndex().applying({{}, assets}), projects, {}, root, Date{90'000});
        QCOMPARE(derived.newToday, 60'000 - 3'600);
        QCOMPARE(derived.starred.size(), 600);
        QVERIFY(std::ranges::is_sorted(derived.starred, std::greater<>(),
                                       [](const Asset& entry) { return *entry.starred; }));
        QCOMPARE(derived.activity.size(), projects.size());
        for (const Project& holder : projects) {
            Date newest = Date::distantPast();
            for (const Asset& entry : std::as_const(assets))
                if (entry.url.isAtOrBelow(holder.url))
                    newest = std::max(newest, entry.modified);
            QCOMPARE(derived.activity[holder.url], newest);
        }
    }

    void sumsOverTwoIndexesAreEqualWhenTheirFilesAre() {
        const Assets assets{asset("/l/p/a/1.png", 1), asset("/l/p/2.png", 2)};
        const auto derived = compute(assets, {project("p")});
        QVERIFY(derived == compute(assets, {project("p")}));
        QVERIFY(derived != compute({assets[0], asset("/l/p/2.png", 3)}, {project("p")}));
        QVERIFY(derived != compute({assets[0], asset("/l/p/3.png", 2)}, {project("p")}));
        QVERIFY(derived != compute({assets[0], asset("/l/p/2.png", 2, AssetKind::video)}, {project("p")}));
        QVERIFY(derived != compute({assets[0]}, {project("p")}));
    }

    void sumsOutliveTheIndexThatTheyWereMadeOf() {
        AssetIndex index = AssetIndex().applying({{}, {asset("/l/p/1.png", 1)}});
        const auto derived = DerivedIndex::compute(index, {project("p")}, {}, root, now);
        index = AssetIndex();
        QCOMPARE(paths(derived.stats[at("/l/p")].newest), QByteArrayList{"/l/p/1.png"});
    }

    void aProjectOutsideTheRootIsSummedUpToItself() {
        const auto derived = compute({asset("/far/away/target/x/1.png", 1)}, {project("p", "/far/away/target")});
        QCOMPARE(derived.stats[at("/far/away/target")].count, 1);
        QCOMPARE(derived.stats[at("/far/away/target/x")].count, 1);
        QVERIFY(!derived.stats.contains(at("/far/away")));
        QCOMPARE(derived.activity[at("/far/away/target")].seconds, 1.0);
    }

    void filesOfNoProjectArePassedOver() {
        const auto derived = compute({asset("/l/loose.png", now.seconds), asset("/l/unknown/a.png", now.seconds),
                                      asset("/elsewhere/a.png", now.seconds), asset("/l/p-2/a.png", now.seconds)},
                                     {project("p")});
        QVERIFY(derived == DerivedIndex());
    }

    void aFileInTheRootBelongsToNoProjectThatHoldsTheRoot() {
        const auto index = AssetIndex().applying({{}, {asset("/h/l/loose.png", now.seconds), asset("/h/x/a.png", 1)}});
        const auto derived = DerivedIndex::compute(index, {project("all", "/h")}, {}, at("/h/l"), now);
        QCOMPARE(derived.newToday, 0);
        QCOMPARE(derived.stats[at("/h")].count, 1);
    }

    void theMostRecentlyStarredComesFirst() {
        const auto derived = compute({asset("/l/p/1.png", 1, AssetKind::image, Date{10}),
                                      asset("/l/p/2.png", 2, AssetKind::audio, Date{30}),
                                      asset("/l/q/3.png", 3, AssetKind::image, Date{20})},
                                     {project("p"), project("q")});
        QCOMPARE(paths(derived.starred), (QByteArrayList{"/l/p/2.png", "/l/q/3.png", "/l/p/1.png"}));
    }

    void anEmptyIndexGivesNothing() { QVERIFY(compute({}, {project("p")}) == DerivedIndex()); }

    void aDateBeforeTheEpochIsStillActivity() {
        const auto derived =
            compute({{at("/l/p/a.png"), AssetKind::image, 0, Date::distantPast(), {}}}, {project("p")});
        QCOMPARE(derived.activity[at("/l/p")], Date::distantPast());
    }
};

QTEST_GUILESS_MAIN(DerivedIndexTest)
#include "tst_derivedindex.moc"
