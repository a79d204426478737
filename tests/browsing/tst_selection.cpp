// SPDX-License-Identifier: GPL-3.0-or-later
#include "browsing/browser/Selection.h"
#include "support/TestHome.h"

#include <QDir>
#include <QFile>
#include <QTest>

using namespace lumbra;

namespace {

Location at(const char* name) {
    return Location(QByteArray("/p/") + name);
}

Asset asset(const char* name) {
    Asset made;
    made.url = at(name);
    made.kind = AssetKind::image;
    return made;
}

PageList list(std::initializer_list<const char*> names) {
    Assets assets;
    for (const char* name : names)
        assets.append(asset(name));
    return PageList(assets);
}

PathSet paths(std::initializer_list<const char*> names) {
    PathSet paths;
    for (const char* name : names)
        paths.insert(at(name));
    return paths;
}

const PageList abcd = list({"a", "b", "c", "d"});

} // namespace

class TestSelection : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aPlainClickSelectsTheTileAlone() {
        const Selection before{paths({"a", "b"}), at("a")};
        QCOMPARE(before.clicked(at("c"), abcd, Qt::NoModifier), Selection::just(at("c")));
    }

    void ctrlClickAddsAndRemovesAndMovesTheAnchor() {
        const Selection added = Selection::just(at("a")).clicked(at("c"), abcd, Qt::ControlModifier);
        QCOMPARE(added, (Selection{paths({"a", "c"}), at("c")}));
        QCOMPARE(added.clicked(at("a"), abcd, Qt::ControlModifier), (Selection{paths({"c"}), at("a")}));
    }

    void ctrlClickOnTheOnlySelectedTileLeavesItsAnchor() {
        QCOMPARE(Selection::just(at("b")).clicked(at("b"), abcd, Qt::ControlModifier), (Selection{{}, at("b")}));
    }

    void ctrlWinsOverShift() {
        QCOMPARE(Selection::just(at("a")).clicked(at("c"), abcd, Qt::ControlModifier | Qt::ShiftModifier),
                 (Selection{paths({"a", "c"}), at("c")}));
    }

    void shiftClickReplacesTheSelectionByTheRangeAndKeepsTheAnchor() {
        const Selection before{paths({"a", "d"}), at("b")};
        const Selection range = before.clicked(at("d"), abcd, Qt::ShiftModifier);
        QCOMPARE(range, (Selection{paths({"b", "c", "d"}), at("b")}));
        QCOMPARE(range.clicked(at("a"), abcd, Qt::ShiftModifier), (Selection{paths({"a", "b"}), at("b")}));
    }

    void shiftClickWithoutAnAnchorIsAPlainClick() {
        QCOMPARE(Selection{}.clicked(at("c"), abcd, Qt::ShiftModifier), Selection::just(at("c")));
    }

    void shiftClickWithTheAnchorInAnotherListIsAPlainClick() {
        QCOMPARE(Selection::just(at("a")).clicked(at("y"), list({"x", "y"}), Qt::ShiftModifier),
                 Selection::just(at("y")));
    }

    void aStepGoesToTheNextTile() {
        QCOMPARE(Selection::just(at("b")).stepped(1, abcd), Selection::just(at("c")));
        QCOMPARE(Selection::just(at("b")).stepped(-1, abcd), Selection::just(at("a")));
    }

    void aStepStaysAtEitherEnd() {
        QCOMPARE(Selection::just(at("a")).stepped(-1, abcd), Selection::just(at("a")));
        QCOMPARE(Selection::just(at("d")).stepped(1, abcd), Selection::just(at("d")));
    }

    void theFirstStepSelectsTheFirstTileWhateverItsDirection() {
        QCOMPARE(Selection{}.stepped(-1, abcd), Selection::just(at("a")));
        QCOMPARE(Selection{}.stepped(1, abcd), Selection::just(at("a")));
        QCOMPARE(Selection::just(at("gone")).stepped(1, abcd), Selection::just(at("a")));
    }

    void withNothingSelectedAStepGoesFromTheAnchorLeftBehind() {
        QCOMPARE((Selection{{}, at("b")}).stepped(1, abcd), Selection::just(at("c")));
    }

    void aStepOnAnEmptyPageDoesNothing() {
        const Selection before{paths({"a"}), at("a")};
        QCOMPARE(before.stepped(1, {}), before);
    }

    void anUnselectedTileIsTheOnlyTarget() {
        QCOMPARE(Selection::just(at("a")).targets(at("b"), abcd).paths(), QList<Location>{at("b")});
    }

    void aSelectedTileStandsForAllSelectedInPageOrder() {
        const Selection selection{paths({"d", "a", "gone"}), at("a")};
        QCOMPARE(selection.targets(at("d"), abcd).paths(), (QList<Location>{at("a"), at("d")}));
    }

    void aListKnowsItsSizeAndPositions() {
        Assets assets{asset("a"), asset("b"), asset("a")};
        assets[0].size = 3;
        assets[1].size = 4;
        const PageList made(assets);
        QCOMPARE(made.bytes(), 7);
        QCOMPARE(made.positionOf(at("a")), std::optional<qsizetype>(0));
        QCOMPARE(made.positionOf(at("b")), std::optional<qsizetype>(1));
        QVERIFY(!made.positionOf(at("c")));
        QVERIFY(made.repeats());
        QVERIFY(!abcd.repeats());
        QVERIFY(!PageList().contains(at("a")));
    }

    void aLongListFindsEachOfItsPaths() {
        Assets assets;
        for (int n = 0; n < 30'000; ++n)
            assets.append(asset(QByteArray::number(n).constData()));
        const PageList made(assets);
        for (int n = 0; n < 30'000; n += 97)
            QCOMPARE(made.positionOf(assets[n].url), std::optional<qsizetype>(n));
        QCOMPARE(made.positionOf(assets[7].url, 7), std::optional<qsizetype>(7));
        QCOMPARE(made.positionOf(assets[7].url, 29'999), std::optional<qsizetype>(7));
        QCOMPARE(made.positionOf(assets[7].url, 30'000), std::optional<qsizetype>(7));
    }

    void aListThatHoldsTheSameIsTheSame() {
        const PageList before = list({"a", "b"});
        QVERIFY(PageList::replacing(before, {asset("a"), asset("b")}) == before);
        QVERIFY(!(PageList::replacing(before, {asset("b"), asset("a")}) == before));
        QVERIFY(PageList::replacing({}, {}) == PageList());
    }

    void aPendingRevealIsFoundByItsCanonicalPath() {
        const TestHome home;
        const Location file = home.file("real/x.png");
        QVERIFY(QFile::link(home.path().child("real").toString(), home.path().child("link").toString()));
        Asset there;
        there.url = file;
        const auto found = revealed(home.path().child("link").child("x.png"), PageList({there}));
        QVERIFY(found);
        QCOMPARE(found->url, file);
        QVERIFY(!revealed(home.path().child("y.png"), PageList({there})));
        QVERIFY(!revealed({}, PageList({there})));
    }
};

QTEST_GUILESS_MAIN(TestSelection)
#include "tst_selection.moc"
