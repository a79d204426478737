// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/QmlWindow.h"

#include <QImage>

using namespace lumbra;

// The ring around what has the keys, as it is seen.
class tst_focusring : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Look::prepareApplication(); }

    void itIsSeenBesideASurfaceOfItsOwnColour_data();
    void itIsSeenBesideASurfaceOfItsOwnColour();
};

void tst_focusring::itIsSeenBesideASurfaceOfItsOwnColour_data() {
    QTest::addColumn<QString>("control");
    QTest::newRow("default button") << QStringLiteral("Button { text: 'One'; kind: Button.Default");
    QTest::newRow("chip that is on") << QStringLiteral("Chip { label: 'One'; on: true");
    QTest::newRow("ticked box") << QStringLiteral("CheckBox { text: 'One'; checked: true");
}

void tst_focusring::itIsSeenBesideASurfaceOfItsOwnColour() {
    QFETCH(QString, control);
    QmlWindow window(qPrintable(QStringLiteral("Rectangle { anchors.fill: parent; color: Theme.window }\n") + control
                                + QStringLiteral("; objectName: 'control'; x: 20; y: 20 }")));
    auto* const item = window.find<QQuickItem>("control");
    const QColor amber = QColor::fromRgbF(1.0F, 0.624F, 0.263F);
    // From beside the control to just inside it: how often amber begins.
    const auto edges = [&] {
        const QImage picture = window->grabWindow();
        const int y = int(item->y() + item->height() / 2);
        int count = 0;
        bool before = false;
        for (int x = 10; x < 22; ++x) {
            const QColor pixel = picture.pixelColor(x, y);
            const bool isAmber = std::abs(pixel.red() - amber.red()) < 24 && std::abs(pixel.blue() - amber.blue()) < 24;
            count += isAmber && !before ? 1 : 0;
            before = isAmber;
        }
        return count;
    };
    QTRY_COMPARE(edges(), 1);
    item->forceActiveFocus(Qt::TabFocusReason);
    QTRY_COMPARE(edges(), 2);
}

QTEST_MAIN(tst_focusring)
#include "tst_focusring.moc"
