// Where pages stand, and which of them are rows.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/quicklook/DocumentPages.h"

#include <QAbstractItemModelTester>
#include <QtTest>

using namespace lumbra;

namespace {

constexpr QSizeF a4(595, 842);
constexpr QSizeF slide(960, 540);

} // namespace

class tst_PageLayout : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aPageFitsTheWidth() {
        const PageLayout layout({a4}, 600, 1);
        QCOMPARE(layout.placeOf(0), QRectF(16, 16, 568, 804));
        QCOMPARE(layout.extent(), QSizeF(600, 836));
    }

    void aPageIsNoMoreThanAQuarterLargerThanOnPaper() {
        const PageLayout layout({a4}, 2000, 1);
        QCOMPARE(layout.placeOf(0).size(), QSizeF(992, 1403));
        QCOMPARE(layout.placeOf(0).left(), 504.0); // in the middle
    }

    void eachPageHasItsOwnProportions() {
        const PageLayout layout({a4, slide, a4}, 632, 1);
        QCOMPARE(layout.placeOf(1).width(), 600.0);
        QCOMPARE(layout.placeOf(1).height(), 338.0);
        QCOMPARE(layout.placeOf(1).top(), layout.placeOf(0).bottom() + PageLayout::gap);
    }

    void enlargedPagesAreScrolledSideways() {
        const PageLayout layout({a4, slide}, 632, 2);
        QCOMPARE(layout.placeOf(0).width(), 1200.0);
        QCOMPARE(layout.extent().width(), 1232.0);
        QCOMPARE(layout.placeOf(1).left(), 16.0);
    }

    void senselessSizesHavePlaces() {
        const PageLayout layout({QSizeF(1, 100'000), QSizeF(100'000, 1)}, 800, 1);
        QVERIFY(layout.placeOf(0).width() >= 1);
        QVERIFY(layout.placeOf(1).height() >= 1);
        QCOMPARE(PageLayout({a4}, 0, 1).count(), 0);
        QVERIFY(PageLayout({a4}, 10, 1).placeOf(0).width() >= 1);
        QVERIFY(PageLayout({}, 100, 1).extent().isEmpty());
    }

    void theSpotUnderTheEyeStays_data() {
        QTest::addColumn<QPointF>("point");
        QTest::newRow("on the first page") << QPointF(100, 200);
        QTest::newRow("on the third") << QPointF(300, 2000);
        QTest::newRow("above all") << QPointF(300, 0);
        QTest::newRow("between two") << QPointF(300, 870);
        QTest::newRow("below all") << QPointF(300, 1e6);
    }
    void theSpotUnderTheEyeStays() {
        QFETCH(QPointF, point);
        const PageLayout layout(QList<QSizeF>(5, a4), 632, 1);
        const PageLayout::Spot spot = layout.spotAt(point);
        const QPointF back = layout.pointOf(spot);
        QVERIFY(QLineF(back, point).length() < 0.01);
        if (spot.part.y() < 0 || spot.part.y() > 1)
            return; // what lies between pages does not grow with them
        const PageLayout larger(QList<QSizeF>(5, a4), 632, 3);
        const PageLayout::Spot there = larger.spotAt(larger.pointOf(spot));
        QCOMPARE(there.page, spot.page);
        QVERIFY(QLineF(there.part, spot.part).length() < 1e-6);
    }

    void onlyPagesNearTheViewAreRows() {
        DocumentPages pages;
        const QAbstractItemModelTester tester(&pages);
        pages.setWidth(632);
        pages.setPages(Location(u"/a.pdf"), QStringLiteral("1"), QList<QSizeF>(500, a4));
        pages.look(0, 900);
        QCOMPARE(pages.pageCount(), 500);
        QCOMPARE(pages.currentPage(), 1);
        QVERIFY(pages.rowCount() <= 4);
        pages.look(pages.extent().height() / 2, 900);
        QVERIFY(pages.rowCount() <= 5);
        QCOMPARE(pages.currentPage(), 251);
        pages.look(pages.extent().height() - 900, 900);
        QCOMPARE(pages.currentPage(), 500);
        QCOMPARE(pages.data(pages.index(pages.rowCount() - 1), DocumentPages::page).toInt(), 499);
    }

    void pagesThatStayAreNotMadeAnew() {
        DocumentPages pages;
        pages.setWidth(632);
        pages.setPages(Location(u"/a.pdf"), QStringLiteral("1"), QList<QSizeF>(100, a4));
        pages.look(5000, 900);
        int made = 0, gone = 0;
        connect(&pages, &QAbstractItemModel::rowsInserted, &pages,
                [&made](const QModelIndex&, int first, int last) { made += last - first + 1; });
        connect(&pages, &QAbstractItemModel::rowsRemoved, &pages,
                [&gone](const QModelIndex&, int first, int last) { gone += last - first + 1; });
        for (double top = 5000; top < 10'000; top += 50)
            pages.look(top, 900);
        QVERIFY2(made >= 5 && made <= 7, QByteArray::number(made));
        QVERIFY(gone >= 4 && gone <= 7);
        pages.look(0, 900); // far away: all of them
        pages.look(50'000, 900);
        QVERIFY(pages.rowCount() > 0);
    }

    void anotherEditionKeepsTheZoomAndAnotherFileDoesNot() {
        DocumentPages pages;
        const QAbstractItemModelTester tester(&pages);
        pages.setWidth(632);
        pages.setPages(Location(u"/a.pdf"), QStringLiteral("1"), QList<QSizeF>(10, a4));
        pages.look(4000, 900);
        pages.setZoom(2);
        pages.setPages(Location(u"/a.pdf"), QStringLiteral("2"), QList<QSizeF>(2, a4)); // fewer than are shown
        QCOMPARE(pages.zoom(), 2.0);
        QCOMPARE(pages.edition(), QStringLiteral("2"));
        QCOMPARE(pages.pageCount(), 2);
        pages.setPages(Location(u"/b.pdf"), QStringLiteral("1"), QList<QSizeF>(2, a4));
        QCOMPARE(pages.zoom(), 1.0);
        pages.setZoom(1000);
        QCOMPARE(pages.zoom(), PageLayout::mostZoom);
        pages.setZoom(0);
        QCOMPARE(pages.zoom(), PageLayout::leastZoom);
        pages.clear();
        QCOMPARE(pages.rowCount(), 0);
        QCOMPARE(pages.currentPage(), 0);
    }
};

QTEST_GUILESS_MAIN(tst_PageLayout)
#include "tst_pagelayout.moc"
