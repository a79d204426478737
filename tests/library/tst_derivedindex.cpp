// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/DerivedIndex.h"

#include <QtTest>

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
