// What the tiles of files show and do, each by itself in a window.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "TileWindow.h"
#include "browsing/tiles/Skimmer.h"
#include "browsing/tiles/TileDuration.h"
#include "support/Clips.h"

#include <QSignalSpy>
#include <QtTest>

using namespace lumbra;

class TestTiles : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aStarredFileWearsItsMark() {
        Tile tile("AssetTile", assetCell(false, Date{1}));
        QCOMPARE(tile.all("StarButton").size(), 1);
        QVERIFY(tile.symbols().contains(QStringLiteral("star.fill")));
        QVERIFY(!tile.all("StarButton").first()->isEnabled());
        QCOMPARE(tile.all("StarButton").first()->opacity(), 1.0);
        QCOMPARE(tile.all("Symbol").last()->property("color").value<QColor>().rgb(), qRgb(255, 159, 67));
        tile.setCell(assetCell());
        QVERIFY(tile.all("StarButton").isEmpty());
    }

    void underThePointerTheStarIsAButton_data() {
        QTest::addColumn<bool>("starred");
        QTest::addColumn<QString>("symbol");
        QTest::addColumn<QString>("help");
        QTest::newRow("plain") << false << QStringLiteral("star") << QStringLiteral("Star (S)");
        QTest::newRow("starred") << true << QStringLiteral("star.fill") << QStringLiteral("Unstar (S)");
    }
    void underThePointerTheStarIsAButton() {
        QFETCH(bool, starred);
        Tile tile("AssetTile", assetCell(false, starred ? std::optional(Date{1}) : std::nullopt));
        QSignalSpy toggled(tile.item(), SIGNAL(starToggled()));
        QSignalSpy clicked(tile.item(), SIGNAL(clicked(int)));
        tile.point(100, 80);
        QTRY_COMPARE(tile.all("StarButton").size(), 1);
        QQuickItem* const button = tile.all("StarButton").first();
        QTRY_VERIFY(button->isEnabled());
        QTEST(tile.symbols().last(), "symbol");
        QTEST(button->property("text").toString(), "help");
        const QPoint centre = button->mapToScene({button->width() / 2, button->height() / 2}).toPoint();
        QTest::mouseMove(tile.window().window(), centre);
        QTest::mouseClick(tile.window().window(), Qt::LeftButton, Qt::NoModifier, centre);
        QCOMPARE(toggled.size(), 1);
        QCOMPARE(clicked.size(), 0);
        QVERIFY(tile.item()->property("hovering").toBool()); // the tile's, though the button has the pointer
        tile.pointElsewhere();
        QTRY_COMPARE(tile.all("StarButton").size(), starred ? 1 : 0);
    }

    void theStarComesAndGoesWithThePointer() {
        Tile tile("AssetTile", assetCell());
        bool between = false;
        const auto watch = [&](QQuickItem* star) {
            connect(star, &QQuickItem::opacityChanged, this,
                    [&between, star] { between |= star->opacity() > 0 && star->opacity() < 1; });
        };
        tile.point(100, 80);
        QTRY_COMPARE(tile.all("StarButton").size(), 1);
        QQuickItem* const star = tile.all("StarButton").first();
        QTRY_COMPARE(star->opacity(), 1.0);
        watch(star);
        // A busy machine may leave out all frames of one movement.
        for (int attempt = 0; attempt < 10 && !between; ++attempt) {
            tile.pointElsewhere();
            QTRY_COMPARE(star->opacity(), 0.0);
            QVERIFY(tile.all("StarButton").isEmpty());
            tile.point(100, 80);
            QTRY_COMPARE(star->opacity(), 1.0);
        }
        QVERIFY(between);
        // A starred file that gets the tile wears its star at once.
        tile.pointElsewhere();
        QTRY_COMPARE(star->opacity(), 0.0);
        tile.setCell(assetCell(false, Date{1}));
        QCOMPARE(star->opacity(), 1.0);
    }

    void theTipOfALongNameMakesWayForTheStars() {
        PageCell cell = assetCell();
        cell.name = QString(60, u'm');
        Tile tile("AssetTile", cell);
        tile.point(100, 80);
        QTRY_COMPARE(tile.tips(), QStringList{cell.name});
        const QQuickItem* const star = tile.all("StarButton").first();
        const QPoint centre = star->mapToScene({star->width() / 2, star->height() / 2}).toPoint();
        tile.point(centre.x(), centre.y());
        QTRY_COMPARE(tile.tips(), QStringList{QStringLiteral("Star (S)")});
        QVERIFY(tile.item()->property("hovering").toBool());
        tile.point(100, 80);
        QTRY_COMPARE(tile.tips(), QStringList{cell.name});
    }

    void theProjectStandsBelowTheName() {
        PageCell cell = assetCell();
        const auto tall = [](const PageCell& shown) { return Tile("AssetTile", shown).item()->implicitHeight(); };
        const double plain = tall(cell);
        cell.caption = QStringLiteral("film");
        QVERIFY(tall(cell) > plain);
        Tile tile("AssetTile", cell);
        QCOMPARE(tile.texts(), (QStringList{QStringLiteral("a.png"), QStringLiteral("film")}));
        const QQuickItem* const name = tile.all("Label").first();
        const QQuickItem* const caption = tile.all("Label").last();
        QVERIFY(caption->mapToScene({}).y() >= name->mapToScene({0, name->height()}).y());
        QVERIFY(caption->property("font").value<QFont>().pixelSize()
                < name->property("font").value<QFont>().pixelSize());
        QVERIFY(caption->property("color").value<QColor>().alphaF() < name->property("color").value<QColor>().alphaF());
    }

    void filmsAndSoundsTellTheirLength_data() {
        QTest::addColumn<QByteArray>("clip");
        QTest::addColumn<AssetKind>("kind");
        QTest::addColumn<QString>("length");
        QTest::newRow("film") << QByteArray("long.mp4") << AssetKind::video << QStringLiteral("0:10");
        QTest::newRow("sound") << QByteArray("tone.mp3") << AssetKind::audio << QStringLiteral("0:02");
    }
    void filmsAndSoundsTellTheirLength() {
        QFETCH(QByteArray, clip);
        QFETCH(AssetKind, kind);
        QFETCH(QString, length);
        Tile tile("AssetTile", fileCell(Clips::clip(clip), kind));
        const auto badge = [&] {
            const QList<QQuickItem*> badges = tile.all("Badge");
            return badges.isEmpty() ? QString() : badges.first()->property("text").toString();
        };
        QTRY_COMPARE(badge(), length);
        // The tile is used again for a picture, which has none.
        tile.setCell(assetCell());
        QTRY_COMPARE(badge(), QString());
    }

    void aPictureAndADocumentHaveNoLength_data() {
        QTest::addColumn<AssetKind>("kind");
        QTest::newRow("image") << AssetKind::image;
        QTest::newRow("document") << AssetKind::document;
    }
    void aPictureAndADocumentHaveNoLength() {
        QFETCH(AssetKind, kind);
        Tile tile("AssetTile", fileCell(Location(QByteArray("/library/a")), kind));
        QVERIFY(tile.all("Badge").isEmpty());
        QVERIFY(!tile.item()->findChild<TileDuration*>());
    }

    void aFilmIsSkimmedUnderThePointer() {
        Tile tile("AssetTile", fileCell(Clips::clip("long.mp4"), AssetKind::video));
        const auto badge = [&] {
            const QList<QQuickItem*> badges = tile.all("Badge");
            return badges.isEmpty() ? QString() : badges.first()->property("text").toString();
        };
        QTRY_COMPARE(badge(), QStringLiteral("0:10"));
        QVERIFY(tile.all("FramePicture").isEmpty());
        tile.point(103, 80); // the middle of the picture
        QTRY_COMPARE(tile.all("FramePicture").size(), 1);
        QCOMPARE(badge(), QStringLiteral("0:05"));
        const auto frame = [&] {
            return tile.all("FramePicture").first()->property("image").value<QImage>().cacheKey();
        };
        const auto middle = frame();
        tile.point(203, 80);
        QTRY_COMPARE(badge(), QStringLiteral("0:10"));
        QVERIFY(frame() != middle);
        tile.point(3, 80);
        QTRY_COMPARE(badge(), QStringLiteral("0:00"));
        // It lies just where the picture does.
        const QQuickItem* const skim = tile.all("FramePicture").first();
        const QQuickItem* const picture = tile.all("ThumbnailView").first();
        QCOMPARE(skim->mapRectToScene(skim->boundingRect()), picture->mapRectToScene(picture->boundingRect()));
        tile.pointElsewhere();
        QTRY_VERIFY(tile.all("FramePicture").isEmpty());
        QCOMPARE(badge(), QStringLiteral("0:10"));
    }

    void aSoundIsNotSkimmed() {
        Tile tile("AssetTile", fileCell(Clips::clip("tone.mp3"), AssetKind::audio));
        tile.point(100, 80);
        QTRY_VERIFY(tile.item()->property("hovering").toBool());
        QVERIFY(!tile.item()->findChild<Skimmer*>());
    }

    void aSelectedFileIsRingedInItsMargin() {
        Tile tile("AssetTile", assetCell(true));
        const QQuickItem* const picture = tile.all("ThumbnailView").first();
        const QRectF well = picture->mapRectToItem(tile.item(), QRectF(0, 0, picture->width(), picture->height()));
        QCOMPARE(well.topLeft(), QPointF(3, 3));
        QCOMPARE(well.size(), QSizeF(200, 150)); // four to three
        const QColor amber(255, 159, 67), window = tile.window()->color();
        const auto pixel = [&](double x) { return tile.window()->grabWindow().pixelColor(int(x), 80); };
        QTRY_COMPARE(pixel(0.5), amber); // two points of ring, one of gap
        QCOMPARE(pixel(1.5), amber);
        QCOMPARE(pixel(2.5), window);
    }
};

QTEST_MAIN(TestTiles)
#include "tst_tiles.moc"
