// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/QmlWindow.h"

#include <cmath>
#include <limits>
#include <numbers>

using namespace lumbra;

// A ring of 40 points with a stroke of 8, red on blue, in a white window.
class tst_ring : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void thePartIsColouredFromTheTopClockwise_data() {
        QTest::addColumn<double>("part");
        QTest::addColumn<QByteArray>("expected"); // an eighth each, from the top clockwise, in the middle of each
        QTest::newRow("nothing") << 0.0 << QByteArray("tttttttt");
        QTest::newRow("a quarter") << 0.25 << QByteArray("cctttttt");
        QTest::newRow("a half") << 0.5 << QByteArray("cccctttt");
        QTest::newRow("all") << 1.0 << QByteArray("cccccccc");
        QTest::newRow("more than all") << 7.0 << QByteArray("cccccccc");
        QTest::newRow("less than nothing") << -1.0 << QByteArray("tttttttt");
        QTest::newRow("no number") << std::numeric_limits<double>::quiet_NaN() << QByteArray("tttttttt");
    }
    void thePartIsColouredFromTheTopClockwise() {
        QFETCH(double, part);
        QFETCH(QByteArray, expected);
        QmlWindow window(ring, "", {{QStringLiteral("part"), part}});
        QTRY_COMPARE(seen(window), expected);
        QCOMPARE(colourAt(window, 0, 0), QColor(Qt::white)); // the middle is open
        QCOMPARE(colourAt(window, 0, 22), QColor(Qt::white));
    }

    void itIsPaintedAnewAsItFills() {
        QmlWindow window(ring, "", {{QStringLiteral("part"), 0.25}});
        QTRY_COMPARE(seen(window), QByteArray("cctttttt"));
        window.root()->setProperty("part", 0.5);
        QTRY_COMPARE(seen(window), QByteArray("cccctttt"));
        window.find<QQuickItem>("ring")->setRotation(90);
        QTRY_COMPARE(seen(window), QByteArray("ttcccctt"));
        window.find<QQuickItem>("ring")->setSize(QSizeF(4, 4)); // less than its stroke
        QTRY_COMPARE(seen(window), QByteArray("--------"));
        window.find<QQuickItem>("ring")->setSize(QSizeF(40, 40));
        QTRY_COMPARE(seen(window), QByteArray("ttcccctt"));
    }

private:
    static constexpr char ring[] = "property real part\n"
                                   "Rectangle { anchors.fill: parent; color: 'white' }\n"
                                   "Ring { objectName: 'ring'; x: 20; y: 20; width: 40; height: 40; stroke: 8\n"
                                   "color: 'red'; track: 'blue'; part: parent.part }";

    // Points to the right of the ring's middle and down.
    static QColor colourAt(QmlWindow& window, double x, double y) {
        const QImage picture = window->grabWindow();
        const double scale = double(picture.width()) / window->width();
        return picture.pixelColor(int((40 + x) * scale), int((40 + y) * scale));
    }

    static QByteArray seen(QmlWindow& window) {
        QByteArray seen;
        for (int eighth = 0; eighth < 8; ++eighth) {
            const double angle = (eighth + 0.5) / 4 * std::numbers::pi;
            const QColor colour = colourAt(window, 16 * std::sin(angle), -16 * std::cos(angle));
            seen += colour == QColor(Qt::red) ? 'c' : colour == QColor(Qt::blue) ? 't' : '-';
        }
        return seen;
    }
};

QTEST_MAIN(tst_ring)
#include "tst_ring.moc"
