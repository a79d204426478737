// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/Waveform.h"
#include "support/FilmClips.h"
#include "support/HostileReader.h"

#include <QtTest>

using namespace lumbra;

class tst_Waveform : public QObject, private FilmClips {
    Q_OBJECT

private Q_SLOTS:
    void barsArePartsOfTheLoudest() { QCOMPARE(Waveform::barsOf({100, 50, 200}), (QList<float>{0.5F, 0.25F, 1})); }

    void quietBarsAreNeverTooThinToSee() {
        QCOMPARE(Waveform::barsOf({100, 6, 5, 0}), (QList<float>{1, 0.06F, 0.06F, 0.06F}));
    }

    void silenceIsThinBars() { QCOMPARE(Waveform::barsOf({0, 0, 0}), (QList<float>{0.06F, 0.06F, 0.06F})); }

    void nothingIsNoBars() { QVERIFY(Waveform::barsOf({}).isEmpty()); }

    void aSoundGetsSoManyBars() {
        const Location file =
            make("sound.m4a", QStringLiteral("-f lavfi -i aevalsrc=exprs=0.5*sin(2*PI*440*t)*gte(t\\,1):s=44100:d=2"));
        const QList<float> bars = barsOf(file, 140);
        QCOMPARE(bars.size(), 140);
        QCOMPARE(*std::max_element(bars.begin(), bars.end()), 1.0F);
        QCOMPARE(bars[10], 0.06F);
        QVERIFY(bars[100] > 0.9F);
    }

    void tenSamplesGet140Bars() {
        const Location file = make("ten.wav", QStringLiteral("-f lavfi -i aevalsrc=exprs=0.1*(n+1):s=8000:d=0.00125"));
        const QList<float> bars = barsOf(file, 140);
        QCOMPARE(bars.size(), 140);
        QVERIFY(std::abs(bars[0] - 0.1F) < 0.001F);
        QVERIFY(std::abs(bars[4] - 0.5F) < 0.001F);
        for (int i = 9; i < 140; ++i)
            QCOMPARE(bars[i], 1.0F);
    }

    void silenceGetsThinBars() {
        const QList<float> bars = barsOf(make("silence.wav", QStringLiteral("-f lavfi -i anullsrc=d=1")), 140);
        QCOMPARE(bars, QList<float>(140, 0.06F));
    }

    void aFilmWithoutSoundGetsNone() { QVERIFY(barsOf(counted("silent.mp4", 1, "-c:v libx264"), 140).isEmpty()); }

    void whatIsNoSoundGetsNone() {
        QVERIFY(barsOf(home().file("no.mp3", "no sound"), 140).isEmpty());
        QVERIFY(barsOf(home().file("empty.mp3", ""), 140).isEmpty());
        QVERIFY(barsOf(home().path().child("missing.mp3"), 140).isEmpty());
    }

    void aReaderThatStallsYieldsNone() {
        Reader stalling({.children = 1, .limit = 0.2, .program = hostileProgram()});
        QFuture<QList<float>> bars = Waveform::bars(stalling, home().file("stall.mp3", "stall"), 140);
        bars.waitForFinished();
        QVERIFY(bars.result().isEmpty());
    }

    void barsReachTheirContext() {
        const Location file = make("told.wav", QStringLiteral("-f lavfi -i sine=d=1"));
        QList<float> bars;
        Waveform::bars(m_reader, file, 20).then(this, [&bars](const QList<float>& told) {
            QCOMPARE(QThread::currentThread(), QCoreApplication::instance()->thread());
            bars = told;
        });
        QTRY_COMPARE(bars.size(), 20);
    }

    void barsThatAreTakenBackReachNobody() {
        const Location file = make("back.wav", QStringLiteral("-f lavfi -i sine=d=600"));
        std::stop_source stop;
        bool isTold = false;
        Waveform::bars(m_reader, file, 20, stop.get_token()).then(this, [&isTold](const QList<float>&) {
            isTold = true;
        });
        stop.request_stop();
        QCOMPARE(barsOf(file, 10).size(), 10);
        QVERIFY(!isTold);
    }

private:
    QList<float> barsOf(const Location& file, int count) {
        QFuture<QList<float>> bars = Waveform::bars(m_reader, file, count);
        bars.waitForFinished();
        return bars.result();
    }

    Reader m_reader{{.children = 1}};
};

QTEST_GUILESS_MAIN(tst_Waveform)
#include "tst_waveform.moc"
