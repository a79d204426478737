// What tiles show and do, each by itself in a window.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "browsing/browser/PageRow.h"
#include "browsing/tiles/Skimmer.h"
#include "browsing/tiles/TileDuration.h"
#include "support/Clips.h"
#include "support/QmlWindow.h"
#include "support/TestHome.h"

#include <QSignalSpy>
#include <QtTest>

Q_IMPORT_QML_PLUGIN(Lumbra_MediaPlugin)
Q_IMPORT_QML_PLUGIN(Lumbra_BrowsingPlugin)

using namespace lumbra;

namespace {

constexpr char imports[] = "import Lumbra.Browsing\n";

Asset image(const char* path) {
    return {.url = Location(QByteArray(path)), .kind = AssetKind::image, .starred = {}};
}

PageCell folderCell(qint64 count, const Assets& newest) {
    PageCell cell;
    cell.kind = PageCell::Kind::folder;
    cell.url = Location(QByteArray("/library/renders"));
    cell.name = cell.url.name();
    cell.count = count;
    for (const Asset& asset : newest)
        cell.newest.append(QVariant::fromValue(asset));
    return cell;
}

PageCell stackCell(qint64 count) {
    PageCell cell;
    cell.kind = PageCell::Kind::stack;
    cell.url = Location(QByteArray("/library/renders"));
    cell.asset = image("/library/renders/5.png");
    cell.caption = QStringLiteral("film › renders");
    cell.count = count;
    return cell;
}

PageCell assetCell(bool selected = false, std::optional<Date> starred = {}) {
    PageCell cell;
    cell.kind = PageCell::Kind::asset;
    cell.asset = image("/library/a.png");
    cell.asset.starred = starred;
    cell.url = cell.asset.url;
    cell.name = cell.url.name();
    cell.selected = selected;
    return cell;
}

PageCell fileCell(const Location& file, AssetKind kind) {
    PageCell cell = assetCell();
    cell.asset = {.url = file, .kind = kind, .modified = Date{1}, .starred = {}};
    cell.url = file;
    cell.name = file.name();
    return cell;
}

// One tile of 200 points, the pointer elsewhere.
class Tile {
public:
    Tile(const char* type, const PageCell& cell)
        : m_window((QByteArray("property var cell\n") + type
                    + " { objectName: 'tile'; cell: parent ? parent.cell : null; metrics: TileMetrics { size: 200 } }")
                       .constData(),
                   imports, {{QStringLiteral("cell"), QVariant::fromValue(cell)}}) {
        QTest::mouseMove(m_window.window(), QPoint(590, 390));
    }

    void setCell(const PageCell& cell) { m_window.root()->setProperty("cell", QVariant::fromValue(cell)); }

    QmlWindow& window() { return m_window; }
    QQuickItem* item() { return m_window.find<QQuickItem>("tile"); }

    // What is seen of a type of ours.
    QList<QQuickItem*> all(const QByteArray& type) {
        QList<QQuickItem*> found;
        collect(item(), type, found);
        return found;
    }

    QStringList texts() {
        QStringList texts;
        for (const QQuickItem* label : all("Label"))
            texts << label->property("text").toString();
        return texts;
    }

    QStringList symbols() {
        QStringList names;
        for (const QQuickItem* symbol : all("Symbol"))
            names << symbol->property("name").toString();
        return names;
    }

private:
    static void collect(QQuickItem* item, const QByteArray& type, QList<QQuickItem*>& found) {
        if (!item->isVisible())
            return;
        QByteArray name = item->metaObject()->className();
        name.replace("lumbra::", "");
        if (name == type || name.startsWith(type + "_QML"))
            found.append(item);
        for (QQuickItem* child : item->childItems())
            collect(child, type, found);
    }

    QmlWindow m_window;
};

} // namespace

class TestTiles : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aFolderWithoutFilesIsCalledEmptyAndHasNoBadge() {
        Tile tile("FolderTile", folderCell(0, {}));
        QCOMPARE(tile.texts(), (QStringList{QStringLiteral("Empty"), QStringLiteral("renders")}));
        QVERIFY(tile.all("Badge").isEmpty());
        QVERIFY(tile.all("Fan").isEmpty());
        QCOMPARE(tile.symbols(), (QStringList{QStringLiteral("folder"), QStringLiteral("folder.fill")}));
        QCOMPARE(tile.all("Symbol").first()->property("size").toInt(), 40); // 0.2 of the tile
    }

    void aFolderWithFilesIsAFanWithTheirNumber() {
        Tile tile("FolderTile", folderCell(12, {image("/library/renders/1.png"), image("/library/renders/2.png")}));
        QCOMPARE(tile.all("Badge").size(), 1);
        QCOMPARE(tile.all("Badge").first()->property("text").toString(), QStringLiteral("12"));
        QCOMPARE(tile.all("FanCard").size(), 2);
        QVERIFY(!tile.texts().contains(QStringLiteral("Empty")));
    }

    void aFolderWhoseFilesHaveNoPicturesIsNotCalledEmpty() {
        Tile tile("FolderTile", folderCell(3, {}));
        QVERIFY(!tile.texts().contains(QStringLiteral("Empty")));
        QVERIFY(tile.symbols().contains(QStringLiteral("folder")));
        QCOMPARE(tile.all("Badge").size(), 1);
    }

    void aStackOfOneShowsAPlusAndOne() {
        Tile tile("StackTile", stackCell(1));
        QCOMPARE(tile.all("FanCard").size(), 1);
        QCOMPARE(tile.all("Badge").size(), 1);
        QCOMPARE(tile.all("Badge").first()->property("symbol").toString(), QStringLiteral("plus"));
        QCOMPARE(tile.all("Badge").first()->property("text").toString(), QStringLiteral("1"));
        QVERIFY(tile.texts().contains(QStringLiteral("film › renders")));
        QVERIFY(tile.texts().contains(QStringLiteral("more in this folder")));
        QCOMPARE(tile.item()->property("help").toString(), QStringLiteral("Open film › renders"));
    }

    void aFanIsAHandOfUpToThree_data() {
        QTest::addColumn<int>("assets");
        QTest::addColumn<int>("cards");
        QTest::newRow("one") << 1 << 1;
        QTest::newRow("two") << 2 << 2;
        QTest::newRow("three") << 3 << 3;
        QTest::newRow("four") << 4 << 3;
    }
    void aFanIsAHandOfUpToThree() {
        QFETCH(int, assets);
        Tile tile("FolderTile", folderCell(assets, Assets(assets, image("/library/renders/1.png"))));
        QTEST(int(tile.all("FanCard").size()), "cards");
    }

    void theCardsOfAFanLeanToEitherSide() {
        Tile tile("FolderTile", folderCell(9, Assets(3, image("/library/renders/1.png"))));
        const QQuickItem* const fan = tile.all("Fan").first();
        const QList<QQuickItem*> cards = tile.all("FanCard");
        const double width = fan->width(), height = fan->height();
        const auto shift = [&](int card) { return cards[card]->x() + cards[card]->width() / 2 - width / 2; };
        const auto drop = [&](int card) { return cards[card]->y() + cards[card]->height() / 2 - height / 2; };
        for (int card = 0; card < 3; ++card) {
            QCOMPARE(cards[card]->width(), 0.92 * width);
            QCOMPARE(cards[card]->height(), 0.92 * height);
            QVERIFY(card == 0 || cards[card]->z() < cards[card - 1]->z());
        }
        QCOMPARE(cards[0]->rotation(), 0.0);
        QCOMPARE(cards[1]->rotation(), -8.0);
        QCOMPARE(cards[2]->rotation(), 8.0);
        QVERIFY(qAbs(shift(0)) < 0.01 && qAbs(shift(1) + 0.2 * width) < 0.01 && qAbs(shift(2) - 0.2 * width) < 0.01);
        QVERIFY(qAbs(drop(0) + 0.02 * height) < 0.01 && qAbs(drop(2) - 0.02 * height) < 0.01);
        QVERIFY(qAbs(drop(1)) < 0.01);
    }

    void aFanOpensUnderThePointer() {
        Tile tile("FolderTile", folderCell(9, Assets(3, image("/library/renders/1.png"))));
        const QQuickItem* const fan = tile.all("Fan").first();
        QCOMPARE(fan->property("spread").toDouble(), 1.0);
        QTest::mouseMove(tile.window().window(), QPoint(100, 80));
        QTRY_COMPARE(fan->property("spread").toDouble(), 1.25);
        QCOMPARE(tile.all("FanCard").last()->rotation(), 10.0);
        QTest::mouseMove(tile.window().window(), QPoint(590, 390));
        QTRY_COMPARE(fan->property("spread").toDouble(), 1.0);
    }

    void cardsWithoutAPictureArePlainUntilThatIsKnown() {
        const TestHome home;
        const Asset nothing{.url = home.file("nothing.wav"), .kind = AssetKind::audio, .starred = {}};
        Tile tile("FolderTile", folderCell(1, {nothing}));
        const auto isKnown = [&] { return tile.all("ThumbnailView").first()->property("failed").toBool(); };
        const auto isMarked = [&] { return tile.symbols().contains(QStringLiteral("waveform")); };
        QCOMPARE(isMarked(), isKnown());
        QTRY_VERIFY(isKnown());
        QVERIFY(isMarked());
    }

    void aFolderAndAStackOpenByClickAndKey_data() {
        QTest::addColumn<QByteArray>("type");
        QTest::newRow("folder") << QByteArray("FolderTile");
        QTest::newRow("stack") << QByteArray("StackTile");
    }
    void aFolderAndAStackOpenByClickAndKey() {
        QFETCH(QByteArray, type);
        Tile tile(type.constData(), type == "FolderTile" ? folderCell(0, {}) : stackCell(2));
        QSignalSpy opened(tile.item(), SIGNAL(opened()));
        QVERIFY(tile.all("FocusRing").isEmpty());
        tile.window().click("tile");
        QCOMPARE(opened.size(), 1);
        tile.window().press(Qt::Key_Tab);
        QVERIFY(tile.item()->hasActiveFocus());
        QCOMPARE(tile.all("FocusRing").size(), 1);
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space})
            tile.window().press(key);
        QCOMPARE(opened.size(), 4);
    }

    void aStarredFileWearsItsMark() {
        Tile tile("AssetTile", assetCell(false, Date{1}));
        QCOMPARE(tile.all("StarButton").size(), 1);
        QVERIFY(tile.symbols().contains(QStringLiteral("star.fill")));
        QVERIFY(!tile.all("StarButton").first()->isEnabled());
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
        QTest::mouseMove(tile.window().window(), QPoint(100, 80));
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
        QTest::mouseMove(tile.window().window(), QPoint(590, 390));
        QTRY_COMPARE(tile.all("StarButton").size(), starred ? 1 : 0);
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
        const auto point = [&](int x) { QTest::mouseMove(tile.window().window(), QPoint(x, 80)); };
        point(103); // the middle of the picture
        QTRY_COMPARE_WITH_TIMEOUT(tile.all("FramePicture").size(), 1, 20'000);
        QCOMPARE(badge(), QStringLiteral("0:05"));
        const auto frame = [&] {
            return tile.all("FramePicture").first()->property("image").value<QImage>().cacheKey();
        };
        const auto middle = frame();
        point(203);
        QTRY_COMPARE(badge(), QStringLiteral("0:10"));
        QVERIFY(frame() != middle);
        point(3);
        QTRY_COMPARE(badge(), QStringLiteral("0:00"));
        // It lies just where the picture does.
        const QQuickItem* const skim = tile.all("FramePicture").first();
        const QQuickItem* const picture = tile.all("ThumbnailView").first();
        QCOMPARE(skim->mapRectToScene(skim->boundingRect()), picture->mapRectToScene(picture->boundingRect()));
        QTest::mouseMove(tile.window().window(), QPoint(590, 390));
        QTRY_VERIFY(tile.all("FramePicture").isEmpty());
        QCOMPARE(badge(), QStringLiteral("0:10"));
    }

    void aSoundIsNotSkimmed() {
        Tile tile("AssetTile", fileCell(Clips::clip("tone.mp3"), AssetKind::audio));
        QTest::mouseMove(tile.window().window(), QPoint(100, 80));
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
