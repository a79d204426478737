// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/Blur.h"

#include <QtTest>

using namespace lumbra;

namespace {

QImage filled(QSize size, const QColor& colour) {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(colour);
    return image;
}

bool isNear(const QColor& a, const QColor& b, int tolerance) {
    return std::abs(a.red() - b.red()) <= tolerance && std::abs(a.green() - b.green()) <= tolerance
           && std::abs(a.blue() - b.blue()) <= tolerance && std::abs(a.alpha() - b.alpha()) <= tolerance;
}

} // namespace

class tst_Blur : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theLongestSideIs24_data() {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QSize>("expected");
        QTest::newRow("wide") << QSize(240, 120) << QSize(24, 12);
        QTest::newRow("tall") << QSize(90, 240) << QSize(9, 24);
        QTest::newRow("square") << QSize(240, 240) << QSize(24, 24);
        QTest::newRow("a line") << QSize(240, 1) << QSize(24, 1);
        QTest::newRow("smaller than that") << QSize(12, 6) << QSize(24, 12);
    }

    void theLongestSideIs24() {
        QFETCH(QSize, size);
        QTEST(blurredBackdrop(filled(size, Qt::red)).size(), "expected");
    }

    void nothingStaysNothing() { QVERIFY(blurredBackdrop(QImage()).isNull()); }

    // A transparent border that was pulled in would show here first.
    void theEdgesAreAsFullAsTheMiddle() {
        const QImage blurred = blurredBackdrop(filled({240, 160}, QColor(128, 128, 128)));
        for (const QPoint& point : {QPoint(0, 0), QPoint(23, 15), QPoint(12, 8)})
            QVERIFY(isNear(blurred.pixelColor(point), QColor(128, 128, 128), 1));
    }

    void greysStayAndColoursGrow() {
        const QColor before(150, 100, 100);
        const QColor after = blurredBackdrop(filled({24, 24}, before)).pixelColor(12, 12);
        // The luminance is kept; the distance from it grows by three tenths.
        const double luminance = 0.2126 * 150 + 0.7152 * 100 + 0.0722 * 100;
        QVERIFY(std::abs(after.red() - (luminance + 1.3 * (150 - luminance))) <= 1);
        QVERIFY(std::abs(after.green() - (luminance + 1.3 * (100 - luminance))) <= 1);
    }

    // Half black, half white: on a line across the edge, a Gaussian of 2.5 pixels is at 16% one deviation away.
    void theBlurIsTwoAndAHalfPixelsWide() {
        QImage image = filled({24, 24}, Qt::black);
        for (int y = 0; y < 24; ++y) {
            for (int x = 12; x < 24; ++x)
                image.setPixelColor(x, y, Qt::white);
        }
        const QImage blurred = blurredBackdrop(image);
        QVERIFY(isNear(blurred.pixelColor(0, 12), Qt::black, 2));
        QVERIFY(isNear(blurred.pixelColor(23, 12), Qt::white, 2));
        QVERIFY(std::abs(blurred.pixelColor(9, 12).red() - int(255 * 0.159)) <= 6);
        QVERIFY(std::abs(blurred.pixelColor(14, 12).red() - int(255 * 0.841)) <= 6);
    }

    void transparencyIsBlurredAlong() {
        QImage image = filled({24, 24}, Qt::transparent);
        for (int y = 0; y < 24; ++y) {
            for (int x = 12; x < 24; ++x)
                image.setPixelColor(x, y, Qt::red);
        }
        const QImage blurred = blurredBackdrop(image);
        QVERIFY(blurred.pixelColor(0, 12).alpha() <= 2);
        QVERIFY(blurred.pixelColor(23, 12).alpha() >= 253);
        QVERIFY(isNear(blurred.pixelColor(13, 12), QColor(255, 0, 0, blurred.pixelColor(13, 12).alpha()), 3));
    }
};

QTEST_GUILESS_MAIN(tst_Blur)
#include "tst_blur.moc"
