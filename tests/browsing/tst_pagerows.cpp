// SPDX-License-Identifier: GPL-3.0-or-later
#include "browsing/browser/PageRows.h"
#include "support/Strings.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

using namespace lumbra;

namespace {

Asset file(const QByteArray& name, double modified = 0) {
    const Location url("/p/" + name);
    return {url, *assetKindOf(url), 1, Date{modified}, {}};
}

PageList files(int from, int to) {
    Assets assets;
    for (int n = from; n <= to; ++n)
        assets.append(file(QByteArray::number(n) + ".png"));
    return PageList(assets);
}

QList<RecentEntry> entries(int from, int to) {
    QList<RecentEntry> entries;
    for (const Asset& asset : files(from, to).assets())
        entries.append(asset);
    return entries;
}

PageRows::Facts facts() {
    return {[](const Location&) { return QStringLiteral("project"); },
            [](const Location& folder) { return QStringLiteral("in ") + folder.name(); },
            [](const Location&) {
                return FolderStats{3, {file("newest.png")}};
            }};
}

// Three columns of 200 points each with their spacing, whatever the test puts in.
struct Page {
    PageRows rows{facts()};
    QAbstractItemModelTester tester{&rows};

    Page() {
        rows.setZoom(200);
        rows.setWidth(3 * 200 + 2 * PageRows::spacing + 2 * PageRows::margin);
    }

    PageRow row(int position) const { return rows.data(rows.index(position), PageRows::rowRole).value<PageRow>(); }

    // "1.png 2.png 3.png", or the label of a button.
    QStringList shown() const {
        QStringList shown;
        for (int position = 0; position < rows.rowCount(); ++position) {
            const PageRow made = row(position);
            QStringList names;
            for (const PageCell& cell : made.cells)
                names << cell.name;
            shown << (made.more.isEmpty() ? names.join(u' ') : made.more);
        }
        return shown;
    }
};

// What a model told, in words: "insert 1-2", "remove 0-0", "change 3-3".
class Told {
public:
    explicit Told(const PageRows& rows) {
        QObject::connect(&rows, &QAbstractItemModel::rowsInserted, &m_context,
                         [this](const QModelIndex&, int first, int last) { tell("insert", first, last); });
        QObject::connect(&rows, &QAbstractItemModel::rowsRemoved, &m_context,
                         [this](const QModelIndex&, int first, int last) { tell("remove", first, last); });
        QObject::connect(
            &rows, &QAbstractItemModel::dataChanged, &m_context,
            [this](const QModelIndex& first, const QModelIndex& last) { tell("change", first.row(), last.row()); });
        QObject::connect(&rows, &QAbstractItemModel::modelReset, &m_context,
                         [this] { words << QStringLiteral("reset"); });
    }
    QStringList words;

private:
    void tell(const char* what, int first, int last) {
        words << QStringLiteral("%1 %2-%3").arg(QLatin1String(what)).arg(first).arg(last);
    }
    QObject m_context;
};

} // namespace

class TestPageRows : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void columnsFitTheWidth_data() {
        QTest::addColumn<double>("available");
        QTest::addColumn<int>("count");
        QTest::addColumn<double>("width");
        QTest::newRow("exactly one") << 170.0 << 1 << 170.0;
        QTest::newRow("narrower than one") << 100.0 << 1 << 100.0;
        QTest::newRow("just short of two") << 353.0 << 1 << 229.5;
        QTest::newRow("exactly two") << 354.0 << 2 << 170.0;
        QTest::newRow("the rest is shared") << 454.0 << 2 << 220.0;
        QTest::newRow("nothing") << 0.0 << 1 << 0.0;
        QTest::newRow("less than nothing") << -32.0 << 1 << 0.0;
    }
    void columnsFitTheWidth() {
        QFETCH(double, available);
        const AdaptiveColumns columns = AdaptiveColumns::fitting(available, 170, 170 * 1.35, 14);
        QTEST(columns.count, "count");
        QTEST(columns.width, "width");
    }

    void tilesStandInRowsFoldersFirst() {
        Page page;
        page.rows.setBlocks(
            {{.folders = {Location(QByteArray("/p/a")), Location(QByteArray("/p/b"))}, .assets = files(1, 5)}});
        QCOMPARE(page.shown(), (strings({"a b 1.png", "2.png 3.png 4.png", "5.png"})));
        const PageRow row = page.row(0);
        QVERIFY(row.cells[0].isFolder() && row.cells[2].isAsset());
        QCOMPARE(row.cells[0].count, 3);
        QCOMPARE(row.cells[0].newest.size(), 1);
        QVERIFY(row.cells[2].caption.isEmpty());
        QVERIFY(!page.row(2).cell(1).isAsset());
    }

    void aFeedHasItsShelfItsSectionsAndTheirButtons() {
        Page page;
        QList<RecentEntry> images = entries(1, 3);
        images.append(RecentStack{Location(QByteArray("/p/frames")), file("cover.png"), 8});
        page.rows.setBlocks(
            {{.section = u"starred"_qs, .assets = files(7, 7), .captioned = true, .onShelf = true, .gap = 26},
             {.section = u"image"_qs, .entries = images, .captioned = true, .more = u"Show More Images"_qs}});
        QCOMPARE(page.shown(), (strings({"7.png", "1.png 2.png 3.png", "frames", "Show More Images"})));
        QCOMPARE(page.rows.data(page.rows.index(0), PageRows::sectionRole).toString(), QStringLiteral("starred"));
        QCOMPARE(page.rows.data(page.rows.index(3), PageRows::sectionRole).toString(), QStringLiteral("image"));
        QCOMPARE(page.row(0).gap, 26);
        QVERIFY(page.row(0).cells[0].onShelf);
        QCOMPARE(page.row(0).cells[0].caption, QStringLiteral("project"));
        const PageCell stack = page.row(2).cells[0];
        QVERIFY(stack.isStack());
        QCOMPARE(stack.caption, QStringLiteral("in frames"));
        QCOMPARE(stack.count, 8);
        QCOMPARE(stack.asset, file("cover.png"));
    }

    void theSameContentTellsNothing() {
        Page page;
        page.rows.setBlocks({{.assets = files(1, 5)}});
        const Told told(page.rows);
        page.rows.setBlocks({{.assets = files(1, 5)}});
        QCOMPARE(told.words, QStringList());
    }

    void onlyRowsWhoseTilesDifferAreTold() {
        Page page;
        page.rows.setBlocks({{.assets = files(1, 12)}});
        Assets next = files(1, 12).assets();
        next[4] = file("5.png", 9);
        const Told told(page.rows);
        page.rows.setBlocks({{.assets = PageList(next)}});
        QCOMPARE(told.words, strings({"change 1-1"}));
    }

    void moreTilesAddRowsAtTheEnd() {
        Page page;
        page.rows.setBlocks({{.assets = files(1, 4)}});
        const Told told(page.rows);
        page.rows.setBlocks({{.assets = files(1, 9)}});
        QCOMPARE(told.words, (strings({"insert 2-2", "change 1-1"})));
        QCOMPARE(page.shown(), (strings({"1.png 2.png 3.png", "4.png 5.png 6.png", "7.png 8.png 9.png"})));
    }

    void fewerTilesRemoveRowsAtTheEndOfTheirBlock() {
        Page page;
        page.rows.setBlocks(
            {{.section = u"image"_qs, .entries = entries(1, 9), .more = u"Show More Images"_qs, .gap = 26},
             {.section = u"video"_qs, .entries = entries(20, 21)}});
        const Told told(page.rows);
        page.rows.setBlocks({{.section = u"image"_qs, .entries = entries(1, 3), .gap = 26},
                             {.section = u"video"_qs, .entries = entries(20, 21)}});
        QCOMPARE(told.words, (strings({"remove 1-2", "remove 1-1", "change 0-0"})));
        QCOMPARE(page.shown(), (strings({"1.png 2.png 3.png", "20.png 21.png"})));
    }

    void aSectionComesAndGoesBetweenOthers() {
        Page page;
        const PageBlock image{.section = u"image"_qs, .entries = entries(1, 2)};
        const PageBlock video{.section = u"video"_qs, .entries = entries(3, 4)};
        const PageBlock audio{.section = u"audio"_qs, .entries = entries(5, 6)};
        page.rows.setBlocks({image, audio});
        const Told told(page.rows);
        page.rows.setBlocks({image, video, audio});
        page.rows.setBlocks({video, audio});
        QCOMPARE(told.words, (strings({"insert 1-1", "remove 0-0"})));
        QCOMPARE(page.shown(), (strings({"3.png 4.png", "5.png 6.png"})));
        page.rows.setBlocks({});
        QCOMPARE(page.rows.rowCount(), 0);
    }

    void aNewWidthMovesTilesAndKeepsRows() {
        Page page;
        page.rows.setBlocks({{.assets = files(1, 6)}});
        const Told told(page.rows);
        page.rows.setWidth(2 * 200 + PageRows::spacing + 2 * PageRows::margin);
        QCOMPARE(page.rows.columns(), 2);
        QCOMPARE(told.words, (strings({"insert 2-2", "change 0-1"})));
        QCOMPARE(page.shown(), (strings({"1.png 2.png", "3.png 4.png", "5.png 6.png"})));
    }

    void aWidthThatHoldsAsManyColumnsMovesNothing() {
        Page page;
        page.rows.setBlocks({{.assets = files(1, 6)}});
        const Told told(page.rows);
        const QSignalSpy measures(&page.rows, &PageRows::measuresChanged);
        page.rows.setWidth(page.rows.width() + 30);
        QCOMPARE(told.words, QStringList());
        QCOMPARE(measures.size(), 1);
        QCOMPARE(page.rows.cellWidth(), 210.0);
    }

    void columnsStandInTheMiddle() {
        Page page;
        page.rows.setZoom(200);
        page.rows.setWidth(32 + 414); // two of 200
        QCOMPARE(page.rows.inset(), 16.0);
        page.rows.setWidth(32 + 300); // one, at most 270 wide
        QCOMPARE(page.rows.inset(), 31.0);
    }

    void tilesStandInTheMiddleOfTheirColumns() {
        Page page;
        page.rows.setZoom(200);
        page.rows.setWidth(32 + 2 * 220 + 14);          // two of 220
        QCOMPARE(page.rows.firstTile(), 16.0 + 10 - 3); // the margin of the tile lies outside its picture
        QCOMPARE(page.rows.tileStep(), 234.0);
    }

    void aTileIsNoWiderThanThePage() {
        Page page;
        page.rows.setZoom(360);
        page.rows.setWidth(32 + 360);
        QCOMPARE(page.rows.tileSize(), 360.0);
        page.rows.setWidth(32 + 304);
        QCOMPARE(page.rows.tileSize(), 304.0);
        QCOMPARE(page.rows.firstTile(), 16.0 - 3);
        page.rows.setWidth(0); // before the view is there
        QCOMPARE(page.rows.tileSize(), 360.0);
    }

    void theZoomIsOnItsWayUntilItRests() {
        Page page;
        QTRY_VERIFY(!page.rows.isResizing());
        QStringList told;
        connect(&page.rows, &PageRows::resizingChanged, this,
                [&] { told << (page.rows.isResizing() ? u"begins"_qs : u"rests"_qs); });
        connect(&page.rows, &PageRows::measuresChanged, this, [&] { told << u"step"_qs; });
        page.rows.setZoom(210);
        page.rows.setZoom(210);
        page.rows.setZoom(220);
        page.rows.setWidth(1000);
        QTRY_COMPARE(told, strings({"begins", "step", "step", "step", "rests"}));
    }

    void selectionTellsTheRowsItTouches() {
        Page page;
        page.rows.setBlocks({{.section = u"starred"_qs, .assets = files(2, 2), .onShelf = true},
                             {.section = u"image"_qs, .entries = entries(1, 9)}});
        const Told told(page.rows);
        page.rows.setSelection({file("2.png").url});
        page.rows.setSelection({file("9.png").url});
        QCOMPARE(told.words, (strings({"change 0-0", "change 1-1", "change 0-0", "change 1-1", "change 3-3"})));
        QVERIFY(page.row(3).cells[2].selected);
        QVERIFY(!page.row(0).cells[0].selected);
    }

    void aTileIsFoundByItsPath() {
        Page page;
        page.rows.setBlocks({{.section = u"starred"_qs, .assets = files(2, 2), .onShelf = true},
                             {.section = u"image"_qs, .entries = entries(1, 9)}});
        QCOMPARE(page.rows.rowOf(file("2.png").url), 0);
        QCOMPARE(page.rows.rowOf(file("4.png").url), 2);
        QCOMPARE(page.rows.rowOf(file("x.png").url), -1);
    }

    void newCountsTellTheRowsWithFolders() {
        Page page;
        page.rows.setBlocks({{.folders = {Location(QByteArray("/p/a"))}, .assets = files(1, 9)}});
        const Told told(page.rows);
        page.rows.refreshFolders();
        QCOMPARE(told.words, strings({"change 0-0"}));
    }
};

QTEST_GUILESS_MAIN(TestPageRows)
#include "tst_pagerows.moc"
