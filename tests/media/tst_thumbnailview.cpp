// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/ThumbnailPicture.h"
#include "support/QmlWindow.h"
#include "support/TestHome.h"

#include <QtTest>

Q_IMPORT_QML_PLUGIN(Lumbra_MediaPlugin)

using namespace lumbra;

namespace {

bool isNear(const QColor& a, const QColor& b, int tolerance = 12) {
    return std::abs(a.red() - b.red()) <= tolerance && std::abs(a.green() - b.green()) <= tolerance
           && std::abs(a.blue() - b.blue()) <= tolerance;
}

constexpr char imports[] = "import Lumbra.Media\n";

// One view of 200 by 150 in the window's upper left corner, on green.
constexpr char oneView[] = R"(
    property var asset
    Rectangle { anchors.fill: parent; color: "#00ff00" }
    ThumbnailView {
        objectName: "view"
        width: 200; height: 150; size: 200; cornerRadius: 20
        asset: parent ? parent.asset : undefined
    })";

} // namespace

class tst_ThumbnailView : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void thePictureStandsWholeInItsFrame() {
        QmlWindow window(oneView, imports, {{QStringLiteral("asset"), wide("whole.png", Qt::red)}});
        QTRY_VERIFY(window.value("view", "hasImage").toBool());
        const QColor red(Qt::red), green(Qt::green);
        QTRY_VERIFY(isNear(pixel(window, 100, 75), red));
        QVERIFY(isNear(pixel(window, 100, 30), red)); // 200 by 100, in the middle of the frame
        QVERIFY(isNear(pixel(window, 100, 20), green));
        QVERIFY(isNear(pixel(window, 100, 130), green));
        QVERIFY(!window.value("view", "failed").toBool());
    }

    void theCornersAreRound() {
        QmlWindow window(oneView, imports, {{QStringLiteral("asset"), picture("round.png", {800, 600}, Qt::red)}});
        QTRY_VERIFY(isNear(pixel(window, 100, 75), Qt::red));
        for (const QPoint& corner : {QPoint(1, 1), QPoint(198, 1), QPoint(1, 148), QPoint(198, 148)})
            QVERIFY(isNear(pixel(window, corner.x(), corner.y()), Qt::green));
        // The arc's middle is 5.86 from both edges.
        QVERIFY(isNear(pixel(window, 8, 8), Qt::red));
        QVERIFY(isNear(pixel(window, 3, 3), Qt::green));
        QVERIFY(isNear(pixel(window, 100, 1), Qt::red));
    }

    void theGlowFillsTheFrameBehindThePicture() {
        QmlWindow window(oneView, imports, {{QStringLiteral("asset"), wide("glow.png", QColor(200, 60, 60))}});
        QTRY_VERIFY(isNear(pixel(window, 100, 75), QColor(200, 60, 60)));
        QVERIFY(isNear(pixel(window, 100, 10), Qt::green));
        window.find("view")->setProperty("backdrop", true);
        QTRY_VERIFY(!isNear(pixel(window, 100, 10), Qt::green, 60));
        QVERIFY(pixel(window, 100, 10).red() > 200); // more colourful than the picture
        QVERIFY(isNear(pixel(window, 100, 75), QColor(200, 60, 60)));
        QVERIFY(isNear(pixel(window, 1, 1), Qt::green));
        window.find("view")->setProperty("backdrop", false);
        QTRY_VERIFY(isNear(pixel(window, 100, 10), Qt::green));
    }

    void whatIsOpaqueAndFillsItsFrameCovers() {
        const auto covers = [](const QVariant& asset) {
            QmlWindow window(oneView, imports, {{QStringLiteral("asset"), asset}});
            return QTest::qWaitFor([&] { return window.value("view", "hasImage").toBool(); }, patience)
                   && window.value("view", "covering").toBool();
        };
        QVERIFY(covers(picture("filling.png", {800, 600}, Qt::red)));
        QVERIFY(covers(picture("nearly.png", {803, 600}, Qt::red))); // but for a part of a pixel
        QVERIFY(!covers(wide("beside.png", Qt::red)));
        QVERIFY(!covers(picture("clear.png", {800, 600}, QColor(255, 0, 0, 128))));
    }

    void whatCoversHasAGlowOnlyOnceItDoesNot() {
        QmlWindow window(oneView, imports, {{QStringLiteral("asset"), picture("fills.png", {800, 600}, Qt::red)}});
        auto* const view = window.find<QQuickItem>("view");
        view->setProperty("backdrop", true);
        auto* const picture = window.find<ThumbnailPicture>("");
        QTRY_VERIFY(picture->isCovering());
        QVERIFY(picture->glow().isNull());
        QTRY_VERIFY(isNear(pixel(window, 100, 1), Qt::red));
        view->setHeight(view->height() / 2);
        QVERIFY(!picture->isCovering());
        QTRY_VERIFY(!picture->glow().isNull());
        QTRY_VERIFY(pixel(window, 10, 40).red() > 200); // beside the picture
        view->setHeight(view->height() * 2);
        QVERIFY(picture->isCovering());
        QTRY_VERIFY(isNear(pixel(window, 100, 1), Qt::red));
    }

    void picturesThatChangePlacesShowInTheirNewOnes() {
        const QVariant red = picture("left.png", {800, 600}, Qt::red),
                       blue = picture("right.png", {800, 600}, Qt::blue);
        QmlWindow window(R"(
            property var first
            property var second
            ThumbnailView { width: 100; height: 75; size: 100; asset: parent ? parent.first : undefined }
            ThumbnailView { x: 100; width: 100; height: 75; size: 100; asset: parent ? parent.second : undefined })",
                         imports, {{QStringLiteral("first"), red}, {QStringLiteral("second"), blue}});
        const auto show = [&](QColor left, QColor right) {
            return QTest::qWaitFor(
                [&] { return isNear(pixel(window, 50, 40), left) && isNear(pixel(window, 150, 40), right); }, patience);
        };
        QVERIFY(show(Qt::red, Qt::blue));
        window.root()->setProperty("first", blue);
        window.root()->setProperty("second", red);
        QVERIFY(show(Qt::blue, Qt::red));
        window.root()->setProperty("first", red);
        QVERIFY(show(Qt::red, Qt::red));
        window.root()->setProperty("second", blue);
        QVERIFY(show(Qt::red, Qt::blue));
    }

    void aCachedPictureIsThereAtOnce() {
        const QVariant asset = wide("cached.png", Qt::red);
        {
            QmlWindow first(oneView, imports, {{QStringLiteral("asset"), asset}});
            first.find("view")->setProperty("backdrop", true);
            QTRY_VERIFY(!first.find<ThumbnailPicture>("")->glow().isNull());
        }
        QFile::remove(asset.value<Asset>().url.toString());
        ThumbnailPicture picture;
        picture.setSize(180); // another size of the same bucket
        picture.setBackdrop(true);
        picture.setAsset(asset.value<Asset>());
        QVERIFY(picture.hasImage());
        completeFor(picture);
        QVERIFY(!picture.glow().isNull());
        picture.setSize(100);
        QVERIFY(picture.hasImage()); // kept until the other bucket's is there
    }

    void withoutAPictureTheKindsSymbolStands_data() {
        QTest::addColumn<AssetKind>("kind");
        QTest::addColumn<QString>("symbol");
        QTest::newRow("image") << AssetKind::image << QStringLiteral("photo");
        QTest::newRow("video") << AssetKind::video << QStringLiteral("film");
        QTest::newRow("audio") << AssetKind::audio << QStringLiteral("waveform");
        QTest::newRow("document") << AssetKind::document << QStringLiteral("doc");
    }

    void withoutAPictureTheKindsSymbolStands() {
        QFETCH(AssetKind, kind);
        const Asset asset{.url = m_home.file("nothing"), .kind = kind, .starred = {}};
        QmlWindow window(oneView, imports, {{QStringLiteral("asset"), QVariant::fromValue(asset)}});
        QTRY_VERIFY(window.value("view", "failed").toBool());
        QVERIFY(!window.value("view", "hasImage").toBool());
        auto* const symbol = symbolOf(window);
        QVERIFY(symbol->isVisible());
        QTEST(symbol->property("name").toString(), "symbol");
        QCOMPARE(symbol->property("size").toInt(), 44); // 0.22 of the size
    }

    void aFileThatFailedIsAskedForAgainByTheNextView() {
        const QVariant asset = picture("late.png", {400, 400}, Qt::red);
        m_home.file("late.png", "half of it");
        {
            QmlWindow window(oneView, imports, {{QStringLiteral("asset"), asset}});
            QTRY_VERIFY(window.value("view", "failed").toBool());
        }
        picture("late.png", {400, 400}, Qt::red);
        QmlWindow window(oneView, imports, {{QStringLiteral("asset"), asset}});
        QTRY_VERIFY(window.value("view", "hasImage").toBool());
        QVERIFY(!window.value("view", "failed").toBool());
        QVERIFY(!symbolOf(window)->isVisible());
    }

    void aRewrittenFileKeepsItsOldPictureUntilTheNewOneIsThere() {
        Asset asset = picture("rewritten.png", {800, 600}, Qt::red).value<Asset>();
        QmlWindow window(oneView, imports, {{QStringLiteral("asset"), QVariant::fromValue(asset)}});
        QTRY_VERIFY(isNear(pixel(window, 100, 75), Qt::red));
        picture("rewritten.png", {800, 600}, Qt::blue);
        asset.modified = asset.modified + 1;
        window.root()->setProperty("asset", QVariant::fromValue(asset));
        QVERIFY(window.value("view", "hasImage").toBool());
        QTRY_VERIFY(isNear(pixel(window, 100, 75), Qt::blue));
    }

    void aRewrittenFileThatIsNoPictureAnyMoreShowsItsSymbol() {
        Asset asset = wide("broken.png", Qt::red).value<Asset>();
        QmlWindow window(oneView, imports, {{QStringLiteral("asset"), QVariant::fromValue(asset)}});
        window.find("view")->setProperty("backdrop", true);
        auto* const picture = window.find<ThumbnailPicture>("");
        QTRY_VERIFY(!picture->glow().isNull());
        m_home.file("broken.png", "no picture any more");
        asset.modified = asset.modified + 1;
        window.root()->setProperty("asset", QVariant::fromValue(asset));
        QTRY_VERIFY(window.value("view", "failed").toBool());
        QVERIFY(!picture->hasImage());
        QVERIFY(picture->glow().isNull());
        QVERIFY(symbolOf(window)->isVisible());
    }

    void anotherFileDoesNotShowThePicturesOfTheOneBefore() {
        QmlWindow window(oneView, imports, {{QStringLiteral("asset"), wide("one.png", Qt::red)}});
        QTRY_VERIFY(window.value("view", "hasImage").toBool());
        window.root()->setProperty("asset", wide("other.png", Qt::blue));
        QVERIFY(!window.value("view", "hasImage").toBool());
        QTRY_VERIFY(isNear(pixel(window, 100, 75), Qt::blue));
    }

    void noAssetIsNoPicture() {
        QmlWindow window(oneView, imports, {{QStringLiteral("asset"), wide("gone.png", Qt::red)}});
        QTRY_VERIFY(window.value("view", "hasImage").toBool());
        window.root()->setProperty("asset", QVariant());
        QTRY_VERIFY(!window.value("view", "hasImage").toBool());
    }

    void whatIsHeldShowsWhatIsAtHandAndAsksForNothing() {
        const QVariant known = wide("held-known.png", Qt::red), unknown = wide("held-unknown.png", Qt::blue);
        QmlWindow window(oneView, imports, {{QStringLiteral("asset"), known}});
        QTRY_VERIFY(window.value("view", "hasImage").toBool());
        window.find("view")->setProperty("held", true);
        window.root()->setProperty("asset", unknown);
        QTest::qWait(300); // as long as it would take
        QVERIFY(!window.value("view", "hasImage").toBool());
        window.root()->setProperty("asset", known);
        QVERIFY(window.value("view", "hasImage").toBool());
        window.root()->setProperty("asset", unknown);
        window.find("view")->setProperty("held", false);
        QTRY_VERIFY(window.value("view", "hasImage").toBool());
    }

    void whatIsHiddenAsksForNothing() {
        const QVariant hidden = wide("hidden.png", Qt::red), shown = wide("shown.png", Qt::red);
        QmlWindow window(R"(
            property var hiddenAsset
            property var shownAsset
            ThumbnailView { objectName: "hidden"; width: 200; height: 150; size: 200; asset: parent.hiddenAsset; visible: false }
            ThumbnailView { objectName: "shown"; width: 200; height: 150; size: 200; asset: parent.shownAsset })",
                         imports, {{QStringLiteral("hiddenAsset"), hidden}, {QStringLiteral("shownAsset"), shown}});
        QTRY_VERIFY(window.value("shown", "hasImage").toBool());
        QVERIFY(isUnknown(hidden));
        window.find("hidden")->setProperty("visible", true);
        QTRY_VERIFY(window.value("hidden", "hasImage").toBool());
    }

    // 30 rows of 150 in a window of 400: what is far below waits until it is scrolled to.
    void whatIsFarAwayAsksWhenItIsScrolledTo() {
        QVariantList assets;
        for (int i = 0; i < 30; ++i)
            assets.append(wide(("row" + QByteArray::number(i) + ".png").constData(), Qt::red));
        QmlWindow window(R"(
            property var assets
            Flickable {
                objectName: "flickable"
                anchors.fill: parent
                contentHeight: 30 * 150
                Repeater {
                    model: 30
                    ThumbnailView {
                        y: index * 150; width: 200; height: 150; size: 200; asset: parent.parent.parent.assets[index]
                    }
                }
            })",
                         imports, {{QStringLiteral("assets"), assets}});
        for (int i = 0; i < 3; ++i)
            QTRY_VERIFY(!isUnknown(assets[i]));
        QTRY_VERIFY(!isUnknown(assets[4])); // one window further
        QVERIFY(isUnknown(assets[29]));
        window.find("flickable")->setProperty("contentY", 29 * 150 - 250);
        QTRY_VERIFY(!isUnknown(assets[29]));
        QVERIFY(isUnknown(assets[15])); // passed by without a stop
    }

    void whatIsTakenOutOfItsWindowAsksForNothing() {
        const QVariant asset = wide("taken.png", Qt::red);
        QmlWindow window(oneView, imports, {{QStringLiteral("asset"), wide("held.png", Qt::red)}});
        auto* const item = window.find<QQuickItem>("view");
        item->setParentItem(nullptr);
        item->setProperty("asset", asset);
        QmlWindow other(oneView, imports, {{QStringLiteral("asset"), wide("elsewhere.png", Qt::red)}});
        QTRY_VERIFY(other.value("view", "hasImage").toBool());
        QVERIFY(isUnknown(asset));
        item->setParentItem(window.root());
        QTRY_VERIFY(window.value("view", "hasImage").toBool());
    }

private:
    QVariant picture(const char* name, QSize size, const QColor& colour) const {
        QImage image(size, colour.alpha() < 255 ? QImage::Format_ARGB32 : QImage::Format_RGB32);
        image.fill(colour);
        const Location file = m_home.path().child(std::string_view(name));
        if (!image.save(file.toString()))
            qFatal("cannot save %s", name);
        return QVariant::fromValue(
            Asset{.url = file, .kind = AssetKind::image, .modified = {1700000000.5}, .starred = {}});
    }

    QVariant wide(const char* name, const QColor& colour) const { return picture(name, {800, 400}, colour); }

    static QColor pixel(QmlWindow& window, int x, int y) {
        const QImage image = window->grabWindow();
        const double scale = window->effectiveDevicePixelRatio();
        return image.pixelColor(int(x * scale), int(y * scale));
    }

    static bool isUnknown(const QVariant& asset) {
        return Thumbnails::shared().peek(asset.value<Asset>(), 240).isNull();
    }

    static QQuickItem* symbolOf(QmlWindow& window) {
        for (QQuickItem* child : window.find<QQuickItem>("view")->childItems()) {
            if (!qobject_cast<ThumbnailPicture*>(child))
                return child;
        }
        qFatal("there is no symbol");
    }

    // What the engine does to an item once all its properties are set.
    static void completeFor(QQuickItem& item) {
        static_cast<QQmlParserStatus&>(item).classBegin();
        static_cast<QQmlParserStatus&>(item).componentComplete();
    }

    TestHome m_home;
};

QTEST_MAIN(tst_ThumbnailView)
#include "tst_thumbnailview.moc"
