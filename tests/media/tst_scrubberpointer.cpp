// The pointer over the scrubber: what it stands on, and the frame that is looked for there.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ScrubberFixture.h"
#include "support/FilmClips.h"

#include <QSignalSpy>
#include <QtTest>

using namespace lumbra;

class tst_ScrubberPointer : public QObject, private FilmClips {
    Q_OBJECT

private Q_SLOTS:
    void theHoverIsClampedAndCleared() {
        Scrubbed on("long.mp4");
        QVERIFY(!on.scrubber.isHovered());
        on.scrubber.hover(-3);
        QCOMPARE(on.scrubber.hoverX(), std::optional(0.0));
        on.scrubber.hover(1000);
        QCOMPARE(on.scrubber.hoverX(), std::optional(400.0));
        QCOMPARE(on.scrubber.hoverTime(), on.player.engine.duration());
        on.scrubber.leave();
        QVERIFY(!on.scrubber.isHovered());
    }

    void aFastSweepAsksOnlyWhereThePointerRests() {
        Scrubbed on("long.mp4");
        QSignalSpy asked(&on.scrubber, &Scrubber::previewAsked);
        for (int x = 0; x <= 320; ++x)
            on.scrubber.hover(x);
        QTRY_COMPARE(asked.size(), 1);
        QVERIFY(isNear(asked.first().first().toDouble(), on.timeAt(0.8)));
    }

    void withinAQuarterOfASecondNoOtherFrameIsSought() {
        Scrubbed on("long.mp4"); // ten seconds: a quarter of one is ten points
        QSignalSpy asked(&on.scrubber, &Scrubber::previewAsked);
        on.scrubber.hover(121);
        QTRY_COMPARE(asked.size(), 1);
        on.scrubber.hover(128);
        on.scrubber.hover(124);
        QTest::qWait(100);
        QCOMPARE(asked.size(), 1);
        on.scrubber.hover(131);
        QTRY_COMPARE(asked.size(), 2);
        on.scrubber.hover(121);
        QTRY_COMPARE(asked.size(), 3);
    }

    void aPointerThatLeavesAsksForNothing() {
        Scrubbed on("long.mp4");
        QSignalSpy asked(&on.scrubber, &Scrubber::previewAsked);
        on.scrubber.hover(100);
        on.scrubber.leave();
        QTest::qWait(100);
        QVERIFY(asked.isEmpty());
    }

    void aSoundHasNoPreview() {
        Scrubbed on("tone.wav");
        QSignalSpy asked(&on.scrubber, &Scrubber::previewAsked);
        on.scrubber.hover(100);
        QTest::qWait(100);
        QVERIFY(asked.isEmpty());
    }

    void thePreviewIsTheFrameUnderThePointer() {
        Scrubbed on(make("counted.mp4", counting(20, 10) + QStringLiteral(" -c:v libx264 -g 20")));
        on.scrubber.hover(200);
        QTRY_VERIFY(!on.scrubber.preview().isNull());
        QVERIFY(std::abs(numberIn(on.scrubber.preview()) - 100) <= 2);
        on.scrubber.hover(100);
        QTRY_VERIFY(std::abs(numberIn(on.scrubber.preview()) - 50) <= 2);
        on.scrubber.leave();
        QVERIFY(on.scrubber.preview().isNull());
    }

    void untilThePreviewIsThereTheCardShowsTheNearestFrameOfTheStrip() {
        Scrubbed on("long.mp4");
        QTRY_COMPARE(on.scrubber.strip().size(), 12);
        on.scrubber.hover(0);
        QCOMPARE(on.scrubber.cardFrame().cacheKey(), on.scrubber.strip().first().cacheKey());
        on.scrubber.hover(201);
        QCOMPARE(on.scrubber.cardFrame().cacheKey(), on.scrubber.strip().at(6).cacheKey());
        on.scrubber.hover(400);
        QCOMPARE(on.scrubber.cardFrame().cacheKey(), on.scrubber.strip().last().cacheKey());
        QTRY_VERIFY(!on.scrubber.preview().isNull());
        QCOMPARE(on.scrubber.cardFrame().cacheKey(), on.scrubber.preview().cacheKey());
    }

    void thePreviewOfTheFileBeforeGoesWithIt() {
        Scrubbed on("long.mp4");
        on.scrubber.hover(200);
        QTRY_VERIFY(!on.scrubber.preview().isNull());
        on.scrubber.setAsset(assetOf(Clips::clip("h264.mp4")));
        QVERIFY(on.scrubber.preview().isNull());
    }
};

QTEST_MAIN(tst_ScrubberPointer)
#include "tst_scrubberpointer.moc"
