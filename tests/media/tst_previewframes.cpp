// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/PreviewFrames.h"
#include "support/FilmClips.h"
#include "support/HostileReader.h"

#include <QtTest>

using namespace lumbra;

namespace {

// What one request yielded, if it has.
struct Outcome {
    int calls = 0;
    QImage frame = {};

    PreviewFrames::Ready ready() {
        return [this](const QImage& made) {
            ++calls;
            frame = made;
        };
    }
};

} // namespace

class tst_PreviewFrames : public QObject, private FilmClips {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        m_film =
            make("film.mp4", counting(20, 10, "1280:720") + QStringLiteral(" -c:v libx264 -preset ultrafast -g 200"));
    }

    void aFrameIsFromItsMomentAndInsideItsBox() {
        PreviewFrames previews;
        for (const double time : {12.35, 3.05, 3.15, 19.95}) {
            const QImage frame = frameAt(previews, m_film, time);
            QCOMPARE(frame.size(), QSize(400, 225));
            const double shown = numberIn(frame) / 10.0;
            QVERIFY2(shown + 0.1 >= time - 0.15 && shown <= time + 0.15,
                     qPrintable(QStringLiteral("%1 for %2").arg(shown).arg(time)));
        }
    }

    void anotherFileIsOpenedInItsTurn() {
        PreviewFrames previews;
        const Location other = make("other.mp4", counting(2, 10, "160:90"));
        QCOMPARE(frameAt(previews, m_film, 1).size(), QSize(400, 225));
        QCOMPARE(frameAt(previews, other, 1).size(), QSize(160, 90));
        QCOMPARE(frameAt(previews, m_film, 1).size(), QSize(400, 225));
    }

    void theFrameOfATurnedFilmIsUpright() {
        PreviewFrames previews;
        const Location file = make("turned.mp4", QStringLiteral("-i film.mp4 -t 2 -c copy -metadata:s:v rotate=90"));
        QCOMPARE(frameAt(previews, file, 1).size(), QSize(225, 400));
    }

    void whereThereIsNoFrameThereIsNothing_data() {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<double>("time");
        home().file("no.mp4", "no film");
        make("sound.mp3", QStringLiteral("-f lavfi -i sine=d=2"));
        QTest::newRow("beyond the end") << QByteArray("film.mp4") << 25.0;
        QTest::newRow("sound") << QByteArray("sound.mp3") << 1.0;
        QTest::newRow("no film") << QByteArray("no.mp4") << 1.0;
        QTest::newRow("missing") << QByteArray("missing.mp4") << 1.0;
    }

    void whereThereIsNoFrameThereIsNothing() {
        QFETCH(QByteArray, name);
        QFETCH(double, time);
        PreviewFrames previews;
        QVERIFY(frameAt(previews, home().path().child(name.toStdString()), time).isNull());
        QVERIFY(!frameAt(previews, m_film, 1).isNull());
    }

    void beforeTheStartIsTheStart() {
        PreviewFrames previews;
        QVERIFY(numberIn(frameAt(previews, m_film, -3)) <= 1);
    }

    void ofManyRequestsOnlyTheLastIsAnswered() {
        PreviewFrames previews;
        Outcome outcomes[20];
        for (int i = 0; i < 20; ++i)
            previews.imageFor(m_film, 19.95 - i * 0.5, this, outcomes[i].ready());
        QTRY_COMPARE(outcomes[19].calls, 1);
        QVERIFY(std::abs(numberIn(outcomes[19].frame) - 104) <= 2);
        for (int i = 0; i < 19; ++i)
            QCOMPARE(outcomes[i].calls, 0);
    }

    // What keeps the reader busy makes room at once when the pointer has moved on.
    void aRequestAtWorkIsStoppedForTheNext() {
        PreviewFrames previews(nullptr, hostileProgram());
        const Location busy = home().file("busy", "obey"), fine = home().file("fine", "fine");
        QCOMPARE(frameAt(previews, fine, 1).size(), QSize(1, 1));
        Outcome first, second;
        previews.imageFor(busy, 1, this, first.ready());
        previews.imageFor(fine, 1, this, second.ready());
        QTRY_COMPARE_WITH_TIMEOUT(second.calls, 1, 4'000);
        QCOMPARE(second.frame.size(), QSize(1, 1));
        QCOMPARE(first.calls, 0);
    }

    void aContextThatHasGoneIsNotCalled() {
        PreviewFrames previews;
        Outcome gone;
        auto context = std::make_unique<QObject>();
        previews.imageFor(m_film, 1, context.get(), gone.ready());
        context.reset();
        QTest::qWait(0);
        QVERIFY(!frameAt(previews, m_film, 2).isNull());
        QCOMPARE(gone.calls, 0);
    }

private:
    QImage frameAt(PreviewFrames& previews, const Location& file, double time) {
        Outcome outcome;
        previews.imageFor(file, time, this, outcome.ready());
        [&] { QTRY_COMPARE(outcome.calls, 1); }();
        return outcome.frame;
    }

    Location m_film;
};

QTEST_GUILESS_MAIN(tst_PreviewFrames)
#include "tst_previewframes.moc"
