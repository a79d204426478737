// The tiles of the pane as the zoom slider makes them grow and shrink.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "Pane.h"
#include "support/Strings.h"

#include <QtTest>

using namespace lumbra;

class TestBrowserZoom : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Look::prepareApplication(); }

    void aColumnThatComesIsFilledWhenThereIsTime() {
        Pane pane;
        for (int n = 0; n < 12; ++n)
            pane.file("p/" + std::to_string(n) + ".txt", 10 + n);
        pane.open(Place::folder(pane.folder("p")), 800);
        pane.engine.setIncubationController(pane.view->incubationController());
        pane.browser->settings()->setZoom(200);
        QTRY_COMPARE(pane.items("AssetTile").size(), 12);
        const int columns = pane.browser->rows()->columns();
        const QList<QQuickItem*> before = pane.items("AssetTile");
        pane.browser->settings()->setZoom(160);
        QCOMPARE(pane.browser->rows()->columns(), columns + 1);
        // The columns that there were stay.
        QCOMPARE(pane.items("AssetTile").first(), before.first());
        QVERIFY(pane.items("AssetTile").size() < 12);
        QTRY_COMPARE(pane.items("AssetTile").size(), 12);
        for (int n = 0; n < 12; ++n)
            QVERIFY(pane.tile("AssetTile", QString::number(n) + u".txt"_qs));
        QCOMPARE(pane.items("AssetTile").first(), before.first());
    }

    // Row by row, and each step goes on from wherever they are.
    void everyTileShowsItsFileOnceTheZoomRests() {
        Pane pane;
        for (int n = 0; n < 200; ++n)
            pane.file("p/" + std::to_string(n) + ".txt", 10 + n);
        pane.open(Place::folder(pane.folder("p")), 900);
        pane.engine.setIncubationController(pane.view->incubationController());
        PageRows& rows = *pane.browser->rows();
        const auto inOrder = [&] {
            const QList<QQuickItem*> tiles = pane.items("AssetTile");
            for (int n = 0; n < int(tiles.size()); ++n)
                if (tiles.at(n)->property("cell").value<PageCell>().name != QString::number(n) + u".txt"_qs)
                    return false;
            // As many as there is room for, and a little more.
            return tiles.size() > rows.columns() * 2 && tiles.size() % rows.columns() == 0;
        };
        QTRY_VERIFY(inOrder());
        for (const int end : {360, 100, 240}) {
            const int begin = int(pane.browser->settings()->zoom());
            for (int step = 1; step <= 20; ++step) {
                pane.browser->settings()->setZoom(begin + (end - begin) * step / 20.0);
                if (step % 3 == 0)
                    pane.settle();
            }
            QVERIFY(rows.isResizing());
            QTRY_VERIFY(inOrder());
            QTRY_VERIFY(!rows.isResizing());
            QTRY_VERIFY(inOrder());
        }
    }

    void theZoomKeepsThePlaceInAScrolledFolder() {
        Pane pane;
        for (int n = 0; n < 600; ++n)
            pane.file("p/" + std::to_string(n) + ".txt", 10 + n);
        pane.open(Place::folder(pane.folder("p")), 900);
        QTRY_COMPARE(pane.browser->order().size(), 600);
        pane.browser->settings()->setZoom(150);
        QTRY_VERIFY(!pane.browser->rows()->isResizing());
        QQuickItem* const list = pane.items("QQuickListView").last();
        list->setProperty("contentY", list->property("contentHeight").toDouble() / 2);
        pane.settle();
        const int columns = pane.browser->rows()->columns();
        const auto firstInView = [&] {
            for (const QQuickItem* tile : pane.items("AssetTile"))
                if (tile->mapToItem(list, {0, tile->height() / 2}).y() > 0)
                    return tile->property("cell").value<PageCell>().name.section(u'.', 0, 0).toInt();
            return -1;
        };
        const int before = firstInView();
        QVERIFY(before > 200);
        for (const int zoom : {200, 360, 100, 150}) {
            pane.browser->settings()->setZoom(zoom);
            QTRY_VERIFY(!pane.browser->rows()->isResizing());
            pane.settle();
            // It may stand anywhere in the first row.
            QVERIFY2(std::abs(firstInView() - before) < 2 * columns,
                     qPrintable(u"%1 at %2, once %3"_qs.arg(firstInView()).arg(zoom).arg(before)));
        }
        // Unless one has scrolled since.
        pane.browser->settings()->setZoom(200);
        QVERIFY(pane.browser->rows()->isResizing());
        Q_EMIT pane.browser->scrollRequested(0, false);
        QTRY_VERIFY(!pane.browser->rows()->isResizing());
        QTRY_COMPARE(firstInView(), 0);
    }

    void theSliderChangesTheTiles() {
        Pane pane;
        pane.file("p/1.txt");
        pane.open(Place::folder(pane.folder("p")));
        QTRY_COMPARE(pane.items("AssetTile").size(), 1);
        const QQuickItem* const slider = pane.control("Slider", u"Thumbnail size"_qs);
        QVERIFY(slider);
        QTest::mouseClick(pane.view.get(), Qt::LeftButton, Qt::NoModifier,
                          slider->mapToScene({slider->width() - 1, slider->height() / 2}).toPoint());
        QCOMPARE(pane.browser->settings()->zoom(), 360.0);
        QTRY_COMPARE(pane.items("AssetTile").first()->width(), 366.0);
    }
};

QTEST_MAIN(TestBrowserZoom)
#include "tst_browserzoom.moc"
