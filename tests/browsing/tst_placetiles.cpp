// What the tiles of folders and stacks show and do, each by itself in a window.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "TileWindow.h"
#include "support/TestHome.h"

#include <QSignalSpy>
#include <QtTest>

using namespace lumbra;

class TestPlaceTiles : public QObject {
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
        tile.point(100, 80);
        QTRY_COMPARE(fan->property("spread").toDouble(), 1.25);
        QCOMPARE(tile.all("FanCard").last()->rotation(), 10.0);
        tile.pointElsewhere();
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

    void aFanOfTwoHasOneCardToTheLeft() {
        Tile tile("FolderTile", folderCell(2, Assets(2, image("/library/renders/1.png"))));
        const QQuickItem* const fan = tile.all("Fan").first();
        const QQuickItem* const lower = tile.all("FanCard").last();
        QCOMPARE(lower->rotation(), -8.0);
        QVERIFY(qAbs(lower->x() + lower->width() / 2 - 0.3 * fan->width()) < 0.01);
    }

    void allCardsShareOnePictureWhateverTheZoom_data() {
        QTest::addColumn<int>("zoom");
        QTest::newRow("least") << 100;
        QTest::newRow("at first") << 170;
        QTest::newRow("most") << 360;
    }
    void allCardsShareOnePictureWhateverTheZoom() {
        QFETCH(int, zoom);
        const TestHome home;
        const Asset nothing{.url = home.file("nothing.png"), .kind = AssetKind::image, .starred = {}};
        Tile tile("FolderTile", folderCell(1, {nothing}), zoom);
        const QQuickItem* const card = tile.all("FanCard").first();
        QCOMPARE(card->property("radius").toInt(), 8);
        QQuickItem* const picture = tile.all("ThumbnailView").first();
        QCOMPARE(picture->property("size").toInt(), 240);
        QCOMPARE(picture->property("cornerRadius").toInt(), 8);
        // What stands in for a picture that there isn't keeps within its card.
        QTRY_VERIFY(picture->property("failed").toBool());
        QVERIFY(picture->childItems().first()->height() < card->height() / 2);
    }

    void manyFilesAreCountedInPlainDigits() {
        Tile tile("FolderTile", folderCell(12345, {image("/library/renders/1.png")}));
        QCOMPARE(tile.all("Badge").first()->property("text").toString(), QStringLiteral("12345"));
    }

    void theTipOfAStackTellsItsFolderAndThatOfAFolderItsName() {
        Tile stack("StackTile", stackCell(2));
        stack.point(100, 80);
        QTRY_COMPARE(stack.tips(), QStringList{QStringLiteral("Open film › renders")});
        PageCell cell = folderCell(0, {});
        Tile plain("FolderTile", cell);
        plain.point(100, 80);
        QTRY_VERIFY(plain.item()->property("hovering").toBool());
        QCOMPARE(plain.tips(), QStringList());
        cell.name = QString(60, u'm');
        Tile folder("FolderTile", cell);
        folder.point(100, 80);
        QTRY_COMPARE(folder.tips(), QStringList{cell.name});
    }
};

QTEST_MAIN(TestPlaceTiles)
#include "tst_placetiles.moc"
