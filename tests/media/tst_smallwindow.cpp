// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/player/SmallWindow.h"

#include <QGuiApplication>
#include <QQuickItem>
#include <QScreen>
#include <QSignalSpy>
#include <QtTest>

using namespace lumbra;

namespace {

constexpr QSizeF wide(1600, 900);

// The sides differ by what rounding to whole points takes.
bool isInShape(QSize size, QSizeF shape) {
    return std::abs(size.width() - size.height() * shape.width() / shape.height()) <= 2;
}

} // namespace

// The window of picture in picture, without a film: where it stands, how it is pulled, and its buttons.
class tst_SmallWindow : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aCornerPulledTakesTheWindowAlongInItsShape_data() {
        QTest::addColumn<Qt::Edges>("corner");
        QTest::addColumn<QPoint>("by");
        QTest::addColumn<QRect>("to");
        const Qt::Edges right = Qt::RightEdge, left = Qt::LeftEdge;
        QTest::newRow("down to the right") << (right | Qt::BottomEdge) << QPoint(160, 90) << QRect(100, 100, 480, 270);
        QTest::newRow("only to the right") << (right | Qt::BottomEdge) << QPoint(160, 0) << QRect(100, 100, 480, 270);
        QTest::newRow("only down") << (right | Qt::BottomEdge) << QPoint(0, 90) << QRect(100, 100, 480, 270);
        QTest::newRow("up to the left") << (left | Qt::TopEdge) << QPoint(-160, -90) << QRect(-60, 10, 480, 270);
        QTest::newRow("up to the right") << (right | Qt::TopEdge) << QPoint(160, 0) << QRect(100, 10, 480, 270);
        QTest::newRow("down to the left") << (left | Qt::BottomEdge) << QPoint(-160, 0) << QRect(-60, 100, 480, 270);
        QTest::newRow("smaller") << (right | Qt::BottomEdge) << QPoint(-80, -45) << QRect(100, 100, 240, 135);
        QTest::newRow("smaller than may be") << (right | Qt::BottomEdge) << QPoint(-900, 0) << QRect(100, 100, 160, 90);
        QTest::newRow("larger than may be") << (left | Qt::TopEdge) << QPoint(-9000, 0) << QRect(-380, -170, 800, 450);
    }
    void aCornerPulledTakesTheWindowAlongInItsShape() {
        QFETCH(Qt::Edges, corner);
        QFETCH(QPoint, by);
        QTEST(SmallWindow::pulled(QRect(100, 100, 320, 180), corner, by, wide, 160, 800), "to");
    }

    void itStandsInTheLowerRightCorner() {
        SmallWindow window;
        window.placeOn(QGuiApplication::primaryScreen(), wide);
        QCOMPARE(window.geometry().size(), QSize(400, 225));
        QCOMPARE(window.geometry().bottomRight(),
                 QGuiApplication::primaryScreen()->availableGeometry().bottomRight() - QPoint(24, 24));
    }

    void overAFilmItLeavesTheControlsFree() {
        SmallWindow window;
        const QRect film(10, 20, 700, 500);
        window.placeOver(film, wide);
        QCOMPARE(window.geometry(), QRect(10 + 700 - 24 - 400, 20 + 72, 400, 225));
        window.setShape(QSizeF(900, 1600));
        QCOMPARE(window.geometry(), QRect(10 + 700 - 24 - 225, 20 + 72, 225, 400)); // and grows downward there
    }

    void anotherFilmKeepsItsCornerAndItsLongerSide() {
        SmallWindow window;
        window.placeOn(QGuiApplication::primaryScreen(), wide);
        const QPoint corner = window.geometry().bottomRight();
        window.setShape(QSizeF(900, 1600));
        QCOMPARE(window.geometry().size(), QSize(225, 400));
        QCOMPARE(window.geometry().bottomRight(), corner);
    }

    void itsContentFillsIt() {
        SmallWindow window;
        auto* const content = new QQuickItem(window.contentItem());
        window.setContent(content);
        show(window);
        QTRY_COMPARE(content->size(), QSizeF(400, 225));
        window.resize(320, 180);
        QTRY_COMPARE(content->size(), QSizeF(320, 180));
    }

    void aCornerIsPulledByTheMouse() {
        SmallWindow window;
        show(window);
        const QPoint opposite = window.geometry().topLeft();
        const QPoint corner(398, 223);
        QTest::mousePress(&window, Qt::LeftButton, {}, corner);
        QTest::mouseMove(&window, corner - QPoint(80, 45));
        QTRY_COMPARE(window.geometry().size(), QSize(320, 180));
        QTest::mouseRelease(&window, Qt::LeftButton, {}, QPoint(318, 178));
        QVERIFY(isInShape(window.geometry().size(), wide));
        QCOMPARE(window.geometry().topLeft(), opposite);
    }

    void itsButtonsStandWhileThePointerIsThere() {
        SmallWindow window;
        show(window);
        QVERIFY(!window.showsButtons());
        QEnterEvent entered(QPointF(9, 9), QPointF(9, 9), QPointF(9, 9));
        QCoreApplication::sendEvent(&window, &entered);
        QVERIFY(window.showsButtons());
        QEvent left(QEvent::Leave);
        QCoreApplication::sendEvent(&window, &left);
        QVERIFY(!window.showsButtons());
    }

    void theMiddlePlaysAndTheCrossEnds() {
        SmallWindow window;
        show(window);
        QSignalSpy plays(&window, &SmallWindow::playWanted), ends(&window, &SmallWindow::endWanted);
        QTest::mouseClick(&window, Qt::LeftButton, {}, window.playButton().toPoint());
        QCOMPARE(plays.size(), 1);
        QTest::mouseClick(&window, Qt::LeftButton, {}, QPoint(60, 60));
        QCOMPARE(plays.size(), 1);
        QCOMPARE(ends.size(), 0);
        QTest::mouseClick(&window, Qt::LeftButton, {}, window.endButton().toPoint());
        QCOMPARE(ends.size(), 1);
    }

    void whatLeavesAButtonBeforeItIsLetGoIsNoClick() {
        SmallWindow window;
        show(window);
        QSignalSpy plays(&window, &SmallWindow::playWanted);
        QTest::mousePress(&window, Qt::LeftButton, {}, window.playButton().toPoint());
        QTest::mouseRelease(&window, Qt::LeftButton, {}, QPoint(60, 60));
        QCOMPARE(plays.size(), 0);
    }

    void spacePlaysAndEscapeEnds() {
        SmallWindow window;
        show(window);
        QSignalSpy plays(&window, &SmallWindow::playWanted), ends(&window, &SmallWindow::endWanted);
        QTest::keyClick(&window, Qt::Key_Space);
        QCOMPARE(plays.size(), 1);
        QTest::keyClick(&window, Qt::Key_Escape);
        QCOMPARE(ends.size(), 1);
    }

    void aDoubleClickAndTheDesktopsCloseEndIt() {
        SmallWindow window;
        show(window);
        QSignalSpy ends(&window, &SmallWindow::endWanted);
        QTest::mouseDClick(&window, Qt::LeftButton, {}, QPoint(60, 60));
        QCOMPARE(ends.size(), 1);
        window.close();
        QCOMPARE(ends.size(), 2);
        QVERIFY(window.isVisible()); // whoever shows it hides it
    }

private:
    static void show(SmallWindow& window) {
        window.placeOn(QGuiApplication::primaryScreen(), wide);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window, lumbra::patience));
    }
};

QTEST_MAIN(tst_SmallWindow)
#include "tst_smallwindow.moc"
