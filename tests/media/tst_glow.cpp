// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/room/Glow.h"

#include <QPainter>
#include <QTest>

using namespace lumbra;

namespace {

QImage filled(const QSize& size, const QColor& colour, QImage::Format format = QImage::Format_RGB32) {
    QImage image(size, format);
    image.fill(colour);
    return image;
}

int saturationOf(const QColor& colour) {
    return std::max({colour.red(), colour.green(), colour.blue()})
           - std::min({colour.red(), colour.green(), colour.blue()});
}

} // namespace

class tst_Glow : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void nothingGlowsNot() { QVERIFY(Glow::ofPicture({}).isNull()); }

    void itIsAsLargeAsTheCanvasWhateverThePicture() {
        for (const QSize& size : {QSize(1, 1), QSize(96, 54), QSize(54, 960), QSize(6000, 4000)})
            QCOMPARE(Glow::ofPicture(filled(size, Qt::darkCyan)).size(), Glow::canvas);
    }

    void onePlainColourStaysPlainToTheEdgesAndGrowsMoreColourful() {
        const QColor colour(120, 90, 80);
        const QImage glow = Glow::ofPicture(filled({300, 200}, colour));
        const QColor middle = glow.pixelColor(80, 50);
        QCOMPARE(glow.pixelColor(0, 0), middle);
        QCOMPARE(glow.pixelColor(159, 99), middle);
        QVERIFY(saturationOf(middle) > saturationOf(colour) * 1.4);
        QVERIFY(saturationOf(middle) < saturationOf(colour) * 1.6);
        QCOMPARE(middle.alpha(), 255);
    }

    void greyStaysGrey() {
        const QColor grey = Glow::ofPicture(filled({300, 200}, QColor(77, 77, 77))).pixelColor(40, 40);
        QCOMPARE(grey, QColor(77, 77, 77));
    }

    void itIsBlurredByItsRadius() {
        QImage halves = filled({160, 100}, Qt::black);
        QPainter(&halves).fillRect(80, 0, 80, 100, Qt::white);
        const QImage glow = Glow::ofPicture(halves);
        // A Gaussian of 9 has come up to 16% one radius before the edge, and to 84% one behind it.
        const auto lightness = [&](int x) { return glow.pixelColor(x, 50).lightnessF(); };
        QVERIFY2(std::abs(lightness(71) - 0.16) < 0.03, qPrintable(QString::number(lightness(71))));
        QVERIFY(std::abs(lightness(80) - 0.5) < 0.04);
        QVERIFY(std::abs(lightness(89) - 0.84) < 0.03);
        QVERIFY(lightness(20) < 0.01);
    }

    void thePictureIsStretchedOverTheCanvas() {
        QImage portrait = filled({100, 400}, Qt::red);
        QPainter(&portrait).fillRect(0, 200, 100, 200, Qt::blue);
        const QImage glow = Glow::ofPicture(portrait);
        QVERIFY(glow.pixelColor(2, 5).red() > 240);
        QVERIFY(glow.pixelColor(157, 5).red() > 240);
        QVERIFY(glow.pixelColor(2, 95).blue() > 240);
    }

    void whatIsClearStaysClear() {
        const QImage glow = Glow::ofPicture(filled({50, 50}, Qt::transparent, QImage::Format_ARGB32_Premultiplied));
        QCOMPARE(glow.pixelColor(80, 50).alpha(), 0);
    }

    void aSoundGlowsInTheMiddle() {
        const QImage glow = Glow::ofSound(QColor(255, 159, 67));
        QCOMPARE(glow.size(), Glow::canvas);
        const QColor middle = glow.pixelColor(80, 50);
        QVERIFY(middle.alphaF() > 0.3 && middle.alphaF() <= 0.5);
        QVERIFY(glow.pixelColor(0, 0).alphaF() < 0.02F);
        QVERIFY(glow.pixelColor(40, 50).alphaF() < middle.alphaF());
    }

    void aSoundGlowsWhereItsStageIs() {
        const QImage glow = Glow::ofSound(QColor(255, 159, 67), 0.25);
        QCOMPARE(glow.pixelColor(40, 50), Glow::ofSound(QColor(255, 159, 67)).pixelColor(80, 50));
        QVERIFY(glow.pixelColor(40, 50).alphaF() > glow.pixelColor(80, 50).alphaF());
    }

    void theRoomStaysDarkWhateverThePicture() {
        for (const int light : {0, 20, 80, 128, 200, 255}) {
            const QImage glow = Glow::ofPicture(filled({9, 9}, QColor(light, light, light)));
            const double seen = light * Glow::strengthOf(glow);
            QVERIFY(seen <= 255 * 0.27);
            QVERIFY(seen >= std::min(light * 0.49, 255 * 0.25));
        }
    }

    void whatLiesBetweenTwo() {
        const QImage black = Glow::ofPicture(filled({9, 9}, Qt::black));
        const QImage white = Glow::ofPicture(filled({9, 9}, Qt::white));
        QCOMPARE(Glow::between(black, white, 0).pixelColor(3, 3), QColor(Qt::black));
        QCOMPARE(Glow::between(black, white, 1).pixelColor(3, 3), QColor(Qt::white));
        QCOMPARE(Glow::between(black, white, 0.5).pixelColor(3, 3).red(), 128);
        QCOMPARE(Glow::between({}, white, 0.5).pixelColor(3, 3).alpha(), 128);
        QVERIFY(Glow::between({}, {}, 0.5).isNull());
    }
};

QTEST_GUILESS_MAIN(tst_Glow)
#include "tst_glow.moc"
