// SPDX-License-Identifier: GPL-3.0-or-later
#include "AppFiles.h"
#include "AppHarness.h"

#include <QSettings>
#include <QtTest>

using namespace lumbra;

// The window comes back where it stood.
class TestRestart : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void theFirstWindowHasTheUsualSize();
    void placeAndSizeAreKept();
    void aWindowThatNoScreenHoldsComesBackIntoView();

private:
    void start() {
        m_app.start();
        APP_WAIT(m_app, m_app.state().complete());
    }
    QRect place() { return m_display.placeOf(m_app.window()); }
    Location settings() { return m_app.home().path().child(".config/lumbra/Lumbra.ini"); }
    // The place that the next start will read.
    QRect kept() {
        const QSettings file(settings().toString(), QSettings::IniFormat);
        const QStringList numbers = file.value(QStringLiteral("windowPlace")).toString().split(u' ');
        return numbers.size() == 4
                   ? QRect(numbers[0].toInt(), numbers[1].toInt(), numbers[2].toInt(), numbers[3].toInt())
                   : QRect();
    }

    AppDisplay m_display{AppDisplay::Windows::free};
    AppHarness m_app{m_display};
};

void TestRestart::initTestCase() {
    AppFiles::picture(m_app.library().child("site/first.png"), AppFiles::colour(1));
    start();
}

void TestRestart::theFirstWindowHasTheUsualSize() {
    // As large as the display: there is no room for more, and the frame is the window manager's business.
    APP_WAIT(m_app, place().size() == QSize(1440, 900));
}

void TestRestart::placeAndSizeAreKept() {
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

void TestRestart::aWindowThatNoScreenHoldsComesBackIntoView() {
    QVERIFY2(m_app.close(), m_app.report().constData());
    QVERIFY(settings().exists());
    AppFiles::text(settings(), "[General]\nwindowPlace=5000 4000 1000 640\n");
    start();
    APP_WAIT(m_app, QRect(QPoint(), AppDisplay::size).contains(place()));
    QCOMPARE(place().size(), QSize(1000, 640));
}

QTEST_GUILESS_MAIN(TestRestart)
#include "tst_restart.moc"
