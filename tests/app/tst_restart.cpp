// SPDX-License-Identifier: GPL-3.0-or-later
#include "AppFiles.h"
#include "AppHarness.h"

#include <QSettings>
#include <QtTest>

using namespace lumbra;

// The window comes back where it stood, and with its frame on the screen.
class TestRestart : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void aFirstWindowFillsAScreenThatHasNoMoreRoom();
    void placeAndSizeAreKept();
    void aPlaceGivesWayToItsFrame_data();
    void aPlaceGivesWayToItsFrame();
    void aWindowThatNoScreenHoldsComesBackIntoView();
    void aFirstWindowHasTheUsualSizeWhereThereIsRoom();
    void aWindowMayBeClosedAtAnyMomentOfItsStart_data();
    void aWindowMayBeClosedAtAnyMomentOfItsStart();

private:
    void start() {
        m_app.start();
        APP_WAIT(m_app, m_app.state().complete());
    }
    QRect place() { return m_display.placeOf(m_app.window()); }
    QRect placeWithFrame() { return place() + m_display.frameOf(m_app.window()); }
    Location settings() { return m_app.home().path().child(".config/lumbra/Lumbra.ini"); }
    void keep(const char* place) { AppFiles::text(settings(), QByteArray("[General]\nwindowPlace=") + place + '\n'); }
    // The place that the next start will read.
    QRect kept() {
        const QSettings file(settings().toString(), QSettings::IniFormat);
        const QStringList numbers = file.value(QStringLiteral("windowPlace")).toString().split(u' ');
        return numbers.size() == 4
                   ? QRect(numbers[0].toInt(), numbers[1].toInt(), numbers[2].toInt(), numbers[3].toInt())
                   : QRect();
    }

    static constexpr QRect screen{QPoint(), AppDisplay::usualSize};

    AppDisplay m_display{AppDisplay::Windows::free};
    AppHarness m_app{m_display};
};

void TestRestart::initTestCase() {
    AppFiles::picture(m_app.library().child("site/first.png"), AppFiles::colour(1));
}

void TestRestart::init() {
    m_app.stop();
    QFile::remove(settings().toString());
}

void TestRestart::aFirstWindowFillsAScreenThatHasNoMoreRoom() {
    start();
    APP_WAIT(m_app, !m_display.frameOf(m_app.window()).isNull());
    APP_WAIT(m_app, placeWithFrame() == screen);
}

void TestRestart::placeAndSizeAreKept() {
    keep("60 70 1100 700");
    start();
    const QRect wanted(120, 80, 1000, 640);
    m_display.place(m_app.window(), wanted);
    APP_WAIT(m_app, kept() == wanted);
    const QRect stood = place();
    QVERIFY2(m_app.close(), m_app.report().constData());
    start();
    APP_WAIT(m_app, place() == stood);
    // And again: it does not wander by its frame.
    QVERIFY2(m_app.close(), m_app.report().constData());
    start();
    APP_WAIT(m_app, place() == stood);
}

void TestRestart::aPlaceGivesWayToItsFrame_data() {
    QTest::addColumn<QByteArray>("kept");
    QTest::addColumn<QSize>("least"); // that the window still has
    QTest::newRow("as large as the screen") << QByteArray("0 0 1440 900") << QSize(1400, 860);
    QTest::newRow("at the upper edge") << QByteArray("100 0 1000 640") << QSize(1000, 640);
    QTest::newRow("at the lower edge") << QByteArray("100 300 1000 600") << QSize(1000, 600);
}

void TestRestart::aPlaceGivesWayToItsFrame() {
    QFETCH(QByteArray, kept);
    QFETCH(QSize, least);
    keep(kept.constData());
    start();
    APP_WAIT(m_app, !m_display.frameOf(m_app.window()).isNull());
    APP_WAIT(m_app, screen.contains(placeWithFrame()));
    QVERIFY(place().size().expandedTo(least) == place().size());
}

void TestRestart::aWindowThatNoScreenHoldsComesBackIntoView() {
    keep("5000 4000 1000 640");
    start();
    APP_WAIT(m_app, screen.contains(placeWithFrame()));
    QCOMPARE(place().size(), QSize(1000, 640));
}

void TestRestart::aFirstWindowHasTheUsualSizeWhereThereIsRoom() {
    AppDisplay wide(AppDisplay::Windows::free, QSize(1920, 1080));
    AppHarness app(wide);
    app.start();
    APP_WAIT(app, wide.placeOf(app.window()).size() == QSize(1440, 900));
    APP_WAIT(app, QRect(0, 0, 1920, 1080).contains(wide.placeOf(app.window()) + wide.frameOf(app.window())));
}

void TestRestart::aWindowMayBeClosedAtAnyMomentOfItsStart_data() {
    QTest::addColumn<int>("moment"); // ms after the window has come up
    for (int moment = 0; moment <= 600; moment += 40)
        QTest::addRow("%d ms", moment) << moment;
}

// While its views are loaded, while they are made, and in the midst of the pictures.
void TestRestart::aWindowMayBeClosedAtAnyMomentOfItsStart() {
    QFETCH(int, moment);
    m_app.start();
    QVERIFY(m_app.window());
    QTest::qWait(moment);
    QVERIFY2(m_app.close(), m_app.report().constData());
}

QTEST_GUILESS_MAIN(TestRestart)
#include "tst_restart.moc"
