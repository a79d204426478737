// SPDX-License-Identifier: GPL-3.0-or-later
#include "AppFiles.h"
#include "AppHarness.h"
#include "support/PrivateBus.h"

#include <QtTest>

using namespace lumbra;

// What is opened from outside reaches the one application that runs.
class TestInstances : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void aLocationGivenAtTheStartIsShownOnceTheWindowIsThere();
    void aSecondStartHandsOverItsLocationAndEnds_data();
    void aSecondStartHandsOverItsLocationAndEnds();
    void ofSeveralLocationsOnlyTheFirstIsHandled();
    void aLocationOutsideTheLibraryIsRefusedInTheWindow();
    void aSecondStartWithNothingBringsTheWindowBack();
    void ofTwoStartedAtOnceOneStays();
    void oneThatWasClosedMakesRoomForTheNext();

private:
    QString path(const char* relative) const { return m_app->library().child(relative).toString(); }
    void start(const QStringList& arguments = {}) {
        m_app->start(AppHarness::Root::environment, arguments);
        APP_WAIT(*m_app, m_app->state().complete());
    }
    QString folder(const char* relative) const { return QStringLiteral("folder:") + path(relative); }

    AppDisplay m_display;
    PrivateBus m_bus;
    std::unique_ptr<AppHarness> m_app;
};

void TestInstances::init() {
    m_app = std::make_unique<AppHarness>(m_display);
    m_app->setBus(m_bus.address());
    AppFiles::picture(m_app->library().child("site/first.png"), AppFiles::colour(1));
    AppFiles::picture(m_app->library().child("film/a b.png"), AppFiles::colour(2));
}

void TestInstances::cleanup() {
    m_app.reset();
}

void TestInstances::aLocationGivenAtTheStartIsShownOnceTheWindowIsThere() {
    start({path("film/a b.png")});
    APP_WAIT(*m_app, m_app->state().text("place") == folder("film"));
    APP_WAIT(*m_app, m_app->state().tile(QStringLiteral("film/a b.png")).selected);
}

void TestInstances::aSecondStartHandsOverItsLocationAndEnds_data() {
    QTest::addColumn<QString>("location"); // %1 stands for the library
    QTest::addColumn<QString>("place");
    QTest::newRow("a file") << QStringLiteral("%1/film/a b.png") << QStringLiteral("folder:%1/film");
    QTest::newRow("a file's address") << QStringLiteral("file://%1/film/a%20b.png") << QStringLiteral("folder:%1/film");
    QTest::newRow("a link") << QStringLiteral("lumbra://tidy") << QStringLiteral("tidy");
    QTest::newRow("a link by the older name of the scheme")
        << QStringLiteral("folia-app://reveal?path=%1/site") << QStringLiteral("folder:%1/site");
    QTest::newRow("up and down again") << QStringLiteral("%1/film/../site") << QStringLiteral("folder:%1/site");
}

void TestInstances::aSecondStartHandsOverItsLocationAndEnds() {
    QFETCH(QString, location);
    QFETCH(QString, place);
    start();
    const QString library = m_app->library().toString();
    QVERIFY2(m_app->startAnother({location.replace(QStringLiteral("%1"), library)}), m_app->report().constData());
    place.replace(QStringLiteral("%1"), library);
    APP_WAIT(*m_app, m_app->state().text("place") == place);
    QCOMPARE(m_app->state().text("error"), QString());
}

void TestInstances::ofSeveralLocationsOnlyTheFirstIsHandled() {
    start();
    QVERIFY(m_app->startAnother({path("site"), path("film"), QStringLiteral("lumbra://tidy")}));
    APP_WAIT(*m_app, m_app->state().text("place") == folder("site"));
}

void TestInstances::aLocationOutsideTheLibraryIsRefusedInTheWindow() {
    start();
    QVERIFY(m_app->startAnother({QStringLiteral("lumbra://reveal?path=/etc/../etc/passwd")}));
    APP_WAIT(*m_app,
             m_app->state().text("error").startsWith(QStringLiteral("/etc/../etc/passwd is outside the library (")));
    QCOMPARE(m_app->state().text("place"), QStringLiteral("recent"));
    m_app->settled();
    m_app->keepScreenshot(QStringLiteral("outside"));
    m_app->press("Return");
    APP_WAIT(*m_app, m_app->state().text("error").isEmpty());
}

void TestInstances::aSecondStartWithNothingBringsTheWindowBack() {
    start();
    const quint64 window = m_app->window();
    m_display.minimize(window);
    APP_WAIT(*m_app, m_display.windowOf(m_app->process()) == 0);
    QVERIFY(m_app->startAnother());
    APP_WAIT(*m_app, m_display.windowOf(m_app->process()) == window);
}

void TestInstances::ofTwoStartedAtOnceOneStays() {
    m_app->start();
    const bool otherEnded = m_app->startAnother({path("site")});
    if (otherEnded) { // the usual case: the first was first
        APP_WAIT(*m_app, m_app->state().text("place") == folder("site"));
        QVERIFY(m_app->isRunning());
    } else {
        QTRY_VERIFY(!m_app->isRunning());
    }
}

void TestInstances::oneThatWasClosedMakesRoomForTheNext() {
    start();
    m_app->window();
    QVERIFY2(m_app->close(), m_app->report().constData());
    start({QStringLiteral("lumbra://tidy")});
    APP_WAIT(*m_app, m_app->state().text("place") == QStringLiteral("tidy"));
}

QTEST_GUILESS_MAIN(TestInstances)
#include "tst_instances.moc"
