// The line along a film or a sound, used as a person does, and by assistive technology.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "RoomPiece.h"

#include <QtTest>

using namespace lumbra;

namespace {

constexpr char capsule[] =
    "ControlCapsule { objectName: 'capsule'; y: 400; width: 1100; room: parent ? parent.room : null }";

} // namespace

class tst_ScrubberView : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        Look::prepareApplication();
        QAccessible::setActive(true);
    }

    void aDragAlongTheTrackMovesThePlayer() {
        OpenRoom in(m_home);
        RoomPiece shown = film(in, capsule);
        in.engine().play();
        const QQuickItem* const track = shown.item("track");
        const auto at = [&](double part) {
            return track->mapToScene(QPointF(track->width() * part, track->height() / 2)).toPoint();
        };
        QTest::mousePress(shown->window(), Qt::LeftButton, {}, at(0.25));
        QVERIFY(!in.engine().isPlaying());
        const auto playhead = [&] { return (shown.item("playhead")->x() + 2) / track->width(); };
        QVERIFY(std::abs(playhead() - 0.25) < 0.002);
        QTest::mouseMove(shown->window(), at(0.5));
        QTRY_VERIFY(std::abs(playhead() - 0.5) < 0.002);
        QTest::mouseMove(shown->window(), at(1.05)); // beyond the end of the track
        QTRY_VERIFY(playhead() > 0.99);
        QTest::mouseMove(shown->window(), at(0.3));
        QTest::mouseRelease(shown->window(), Qt::LeftButton, {}, at(0.3));
        QVERIFY(in.engine().isPlaying());
        QTRY_VERIFY(in.engine().time() > 3.05 && in.engine().time() < 6);
    }

    void theCardStandsOverThePointer() {
        OpenRoom in(m_home);
        RoomPiece shown = film(in, capsule);
        const QQuickItem* const track = shown.item("track");
        QVERIFY(!shown.sees("card"));
        QTest::mouseMove(shown->window(), track->mapToScene(QPointF(track->width() / 2, 20)).toPoint());
        QTRY_VERIFY(shown.sees("card"));
        const QQuickItem* const card = shown.item("card");
        QCOMPARE(card->width(), 192.0);
        QVERIFY(std::abs(card->x() + 96 - track->width() / 2) <= 1);
        QCOMPARE(card->y(), -(192.0 * 9 / 16 + 44));
        QCOMPARE(shown->value("hoverTime", "text").toString().left(3), QStringLiteral("0:0"));
        QTRY_VERIFY(!shown->value("preview", "image").value<QImage>().isNull());
        QTest::mouseMove(shown->window(), QPoint(5, 5));
        QTRY_VERIFY(!shown.sees("card"));
    }

    void aSoundHasNoCard() {
        OpenRoom in(m_home);
        in.open(in.clip("tone.wav"));
        in.settle();
        RoomPiece shown(in, capsule);
        QTest::mouseMove(shown->window(), shown->centreOf("track"));
        QTest::qWait(50);
        QVERIFY(!shown.sees("card"));
    }

    void assistiveTechnologyMovesTheScrubber() {
        OpenRoom in(m_home);
        RoomPiece shown = film(in, capsule);
        QAccessibleInterface* const accessible = shown.accessible("scrubber");
        QVERIFY(accessible->actionInterface());
        accessible->actionInterface()->doAction(QAccessibleActionInterface::increaseAction());
        QVERIFY(std::abs(in.engine().time() - 5) < 0.01);
        accessible->actionInterface()->doAction(QAccessibleActionInterface::decreaseAction());
        QCOMPARE(in.engine().time(), 0.0);
    }

private:
    TestHome m_home;
};

int main(int argc, char** argv) {
    return runWithPlayer<tst_ScrubberView>(argc, argv);
}
#include "tst_scrubberview.moc"
