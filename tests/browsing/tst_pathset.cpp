// SPDX-License-Identifier: GPL-3.0-or-later
#include "browsing/browser/PathSet.h"

#include <QTest>

#include <random>

using namespace lumbra;

namespace {

Asset asset(int n) {
    Asset made;
    made.url = Location("/p/" + QByteArray::number(n));
    made.kind = AssetKind::image;
    return made;
}

Location path(int n) {
    return asset(n).url;
}

// Those from one number to another.
Assets assets(int first, int last) {
    Assets made;
    for (int n = first; n <= last; ++n)
        made.append(asset(n));
    return made;
}

QSet<Location> found(const std::optional<QList<Location>>& differences) {
    const QList<Location> paths = differences.value_or(QList<Location>());
    return {paths.begin(), paths.end()};
}

} // namespace

class TestPathSet : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aRangeHoldsBothItsEnds() {
        const PageList list(assets(0, 9));
        const PathSet set = PathSet::range(list, 3, 5);
        QCOMPARE(set.size(), 3);
        QVERIFY(!set.contains(path(2)));
        QVERIFY(set.contains(path(3)));
        QVERIFY(set.contains(path(5)));
        QVERIFY(!set.contains(path(6)));
        QCOMPARE(set, (PathSet{path(3), path(4), path(5)}));
        QVERIFY(PathSet::all({}).isEmpty());
    }

    void allOfAListIsThatListWithoutACopy() {
        const PageList list(assets(0, 9));
        QCOMPARE(PathSet::all(list).among(list).constData(), list.assets().constData());
    }

    void whatAListHoldsOfASetIsAskedForItsFilesItsFirstAndItsSize() {
        Assets files = assets(0, 9);
        for (Asset& file : files)
            file.size = 10;
        const PageList list(files);
        PathSet set = PathSet::range(PageList(assets(8, 30)), 0, 5);
        set.insert(path(4));
        set.insert(path(99));
        const PathSet on = set.on(list);
        QCOMPARE(on.size(), 3);
        QCOMPARE(urlsOf(on.assets()), (QList{path(4), path(8), path(9)}));
        QCOMPARE(on.first(), std::optional(files[4]));
        QCOMPARE(on.bytes(), 30);
        QVERIFY(!PathSet().on(list).first());
        QCOMPARE(PathSet::all(list).bytes(), 100);
    }

    // However the page is sorted or filtered, and whatever comes and goes.
    void aSetFollowsTheListThatReplacesItsOwn() {
        const PageList before(assets(0, 9'999));
        const PathSet set = PathSet::range(before, 1'000, 8'999);
        Assets shuffled = assets(500, 10'500);
        std::shuffle(shuffled.begin(), shuffled.end(), std::mt19937(3));
        const PageList after = PageList::replacing(before, shuffled);
        const PathSet kept = set.on(after);
        QCOMPARE(kept.size(), 8'000);
        QCOMPARE(kept, set);
        for (const Asset& found : kept.assets())
            QVERIFY(set.contains(found.url));
        // Likewise of a list that has nothing to do with it.
        QCOMPARE(set.on(PageList(shuffled)), kept);
    }

    void aPathThatStandsTwiceCountsOnce() {
        const PageList list(assets(0, 4) + assets(2, 6));
        PathSet set = PathSet::all(list);
        QCOMPARE(set.size(), 7);
        QCOMPARE(set.among(list), assets(0, 6));
        QVERIFY(set.remove(path(2)));
        QVERIFY(!set.contains(path(2)));
        QCOMPARE(set.among(list).size(), 6);
        QCOMPARE(PathSet::all(PageList(assets(0, 6))).among(list), assets(0, 6));
        QCOMPARE((PathSet{path(3)}).among(list), Assets{asset(3)});
    }

    void aPathThatWentAwayStays() {
        const PathSet set = PathSet::all(PageList(assets(0, 9)));
        const PageList after(assets(5, 14));
        QCOMPARE(set.size(), 10);
        QCOMPARE(set.among(after), assets(5, 9));
    }

    void pathsOfNoListAreHeldBesideIt() {
        PathSet set = PathSet::range(PageList(assets(0, 9)), 0, 4);
        set.insert(path(40));
        set.insert(path(7));
        set.insert(path(7));
        QCOMPARE(set.size(), 7);
        QCOMPARE(set.among(PageList(assets(6, 50))), (Assets{asset(7), asset(40)}));
        QVERIFY(set.remove(path(40)));
        QVERIFY(!set.remove(path(40)));
        set.remove(QList{path(7), path(8), path(0)});
        QCOMPARE(set, PathSet::range(PageList(assets(1, 4)), 0, 3));
    }

    void itsPathsStandInTheOrderOfTheListAndThenTheOthers() {
        PathSet set = PathSet::range(PageList(assets(0, 9)), 2, 5);
        set.remove(path(4));
        set.insert(path(40));
        set.insert(path(8));
        QCOMPARE(set.paths(), (QList{path(2), path(3), path(5), path(8), path(40)}));
        QVERIFY(PathSet().paths().isEmpty());
    }

    void whatHoldsForAllIsAskedUpToTheFirstForWhichItDoesNot() {
        PathSet set = PathSet::range(PageList(assets(0, 9)), 2, 5);
        set.insert(path(40));
        QList<Location> asked;
        const auto allBut = [&asked, &set](const Location& path) {
            asked.clear();
            return set.holdsForAll([&asked, path](const Asset& asset) {
                asked.append(asset.url);
                return asset.url != path;
            });
        };
        QVERIFY(allBut(path(9)));
        QCOMPARE(asked, (QList{path(2), path(3), path(4), path(5), path(40)}));
        QVERIFY(!allBut(path(3)));
        QCOMPARE(asked, (QList{path(2), path(3)}));
        QVERIFY(!allBut(path(40)));
        QVERIFY(PathSet().holdsForAll([](const Asset&) { return false; }));
    }

    void twoSetsOfTheSamePathsAreEqualHoweverMade() {
        const PageList upwards(assets(0, 99));
        Assets reversed = assets(0, 99);
        std::reverse(reversed.begin(), reversed.end());
        const PageList downwards(reversed);
        QCOMPARE(PathSet::all(upwards), PathSet::all(downwards));
        QVERIFY(!(PathSet::range(upwards, 0, 49) == PathSet::range(downwards, 0, 49)));
        QVERIFY(!(PathSet::all(upwards) == PathSet()));
    }

    void whereTwoSetsDifferIsToldUnlessItIsMuch() {
        const PageList list(assets(0, 99));
        const PathSet most = PathSet::range(list, 1, 98);
        PathSet other = PathSet::range(list, 1, 97);
        other.insert(path(200));
        QCOMPARE(found(most.differences(other, 10)), (QSet{path(98), path(200)}));
        QCOMPARE(found(other.differences(most, 10)), (QSet{path(98), path(200)}));
        QVERIFY(!most.differences(other, 1));
        QCOMPARE(most.differences(most, 0), std::optional(QList<Location>()));
        // Of one list and no list.
        QCOMPARE(found((PathSet{path(3)}).differences(PathSet::range(list, 3, 5), 10)), (QSet{path(4), path(5)}));
        QVERIFY(!(PathSet{path(3)}).differences(most, 10));
    }

    // Against a set that is nothing but its paths.
    void whateverIsDoneItIsASet() {
        std::mt19937 random(7);
        const QList<PageList> lists{PageList(assets(0, 59)), PageList(assets(30, 89)),
                                    PageList(assets(0, 19) + assets(10, 29))};
        PathSet set;
        QSet<Location> expected;
        for (int step = 0; step < 20'000; ++step) {
            const PageList& list = lists[qsizetype(random() % 3)];
            const Location some = path(int(random() % 100));
            switch (random() % 8) {
            case 0: {
                const auto first = qsizetype(random()) % list.size();
                const auto last = qsizetype(random()) % list.size();
                set = PathSet::range(list, first, last);
                expected.clear();
                for (qsizetype position = first; position <= last; ++position)
                    expected.insert(list.at(position).url);
                break;
            }
            case 1: {
                const QList<Location> gone{some, path(int(random() % 100)), path(int(random() % 100))};
                set.remove(gone);
                for (const Location& one : gone)
                    expected.remove(one);
                break;
            }
            case 2:
            case 3:
                QCOMPARE(set.remove(some), expected.remove(some));
                break;
            default:
                set.insert(some);
                expected.insert(some);
            }
            QCOMPARE(set.size(), expected.size());
            QCOMPARE(set.contains(some), expected.contains(some));
            QList<Location> wanted;
            for (qsizetype position = 0; position < list.size(); ++position)
                if (const Location& url = list.at(position).url; expected.contains(url) && !wanted.contains(url))
                    wanted.append(url);
            QCOMPARE(urlsOf(set.among(list)), wanted);
        }
    }
};

QTEST_GUILESS_MAIN(TestPathSet)
#include "tst_pathset.moc"
