// SPDX-License-Identifier: GPL-3.0-or-later
#include "AppFiles.h"
#include "AppHarness.h"
#include "support/PrivateBus.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QtTest>

using namespace lumbra;

// What is opened from outside reaches the one application that runs. It runs through all of these tests where they
// allow it: each says where it goes from.
class TestInstances : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void aLocationGivenAtTheStartIsShownOnceTheWindowIsThere();
    void aSecondStartHandsOverItsLocationAndEnds_data();
    void aSecondStartHandsOverItsLocationAndEnds();
    void ofSeveralLocationsOnlyTheFirstIsHandled();
    void theDesktopOpensWithoutASecondStart();
    void aLocationOutsideTheLibraryIsRefusedInTheWindow_data();
    void aLocationOutsideTheLibraryIsRefusedInTheWindow();
    void aLinkWithNothingBringsTheWindowAlone();
    void aSecondStartWithNothingBringsTheWindowBack();
    void oneThatWasClosedMakesRoomForTheNext();
    void ofTwoStartedAtOnceOneStays();

private:
    QString path(const char* relative) const { return m_app.library().child(relative).toString(); }
    void start(const QStringList& arguments = {}) {
        if (!m_app.isRunning())
            m_app.start(AppHarness::Root::environment, arguments);
        APP_WAIT(m_app, m_app.state().complete());
    }
    QString folder(const char* relative) const { return QStringLiteral("folder:") + path(relative); }
    QString place() { return m_app.state().text("place"); }

    AppDisplay m_display;
    PrivateBus m_bus;
    AppHarness m_app{m_display};
};

void TestInstances::initTestCase() {
    m_app.setBus(m_bus.address());
    AppFiles::picture(m_app.library().child("site/first.png"), AppFiles::colour(1));
    AppFiles::picture(m_app.library().child("film/a b.png"), AppFiles::colour(2));
}

void TestInstances::aLocationGivenAtTheStartIsShownOnceTheWindowIsThere() {
    start({path("film/a b.png")});
    APP_WAIT(m_app, place() == folder("film"));
    APP_WAIT(m_app, m_app.state().tile(QStringLiteral("film/a b.png")).selected);
}

// Each leads elsewhere than the one before.
void TestInstances::aSecondStartHandsOverItsLocationAndEnds_data() {
    QTest::addColumn<QString>("location"); // %1 stands for the library
    QTest::addColumn<QString>("place");
    QTest::newRow("a link") << QStringLiteral("lumbra://tidy") << QStringLiteral("tidy");
    QTest::newRow("a file") << QStringLiteral("%1/film/a b.png") << QStringLiteral("folder:%1/film");
    QTest::newRow("a link by the older name of the scheme")
        << QStringLiteral("folia-app://reveal?path=%1/site") << QStringLiteral("folder:%1/site");
    QTest::newRow("a file's address") << QStringLiteral("file://%1/film/a%20b.png") << QStringLiteral("folder:%1/film");
    QTest::newRow("up and down again") << QStringLiteral("%1/film/../site") << QStringLiteral("folder:%1/site");
}

void TestInstances::aSecondStartHandsOverItsLocationAndEnds() {
    QFETCH(QString, location);
    QFETCH(QString, place);
    start();
    const QString library = m_app.library().toString();
    place.replace(QStringLiteral("%1"), library);
    QVERIFY(this->place() != place);
    QVERIFY2(m_app.startAnother({location.replace(QStringLiteral("%1"), library)}), m_app.report().constData());
    APP_WAIT(m_app, this->place() == place);
    QCOMPARE(m_app.state().text("error"), QString());
}

void TestInstances::ofSeveralLocationsOnlyTheFirstIsHandled() {
    start();
    QVERIFY(m_app.startAnother({path("film"), path("site"), QStringLiteral("lumbra://tidy")}));
    APP_WAIT(m_app, place() == folder("film"));
}

void TestInstances::theDesktopOpensWithoutASecondStart() {
    start();
    auto bus = QDBusConnection::connectToBus(m_bus.address(), QStringLiteral("the desktop"));
    auto call =
        QDBusMessage::createMethodCall(QStringLiteral("com.lumbra.Lumbra"), QStringLiteral("/com/lumbra/Lumbra"),
                                       QStringLiteral("org.freedesktop.Application"), QStringLiteral("Open"));
    call << QStringList{QStringLiteral("lumbra://reveal?path=") + path("site")} << QVariantMap();
    QCOMPARE(bus.call(call).type(), QDBusMessage::ReplyMessage);
    APP_WAIT(m_app, place() == folder("site"));
    QDBusConnection::disconnectFromBus(QStringLiteral("the desktop"));
}

void TestInstances::aLocationOutsideTheLibraryIsRefusedInTheWindow_data() {
    QTest::addColumn<QString>("location");
    QTest::addColumn<QString>("refused");
    QTest::newRow("outside") << QStringLiteral("lumbra://reveal?path=/etc/passwd") << QStringLiteral("/etc/passwd");
    QTest::newRow("by way of the library")
        << QStringLiteral("lumbra://reveal?path=%1/../../etc/passwd") << QStringLiteral("%1/../../etc/passwd");
    QTest::newRow("a file") << QStringLiteral("/etc/../etc/passwd") << QStringLiteral("/etc/passwd");
}

void TestInstances::aLocationOutsideTheLibraryIsRefusedInTheWindow() {
    QFETCH(QString, location);
    QFETCH(QString, refused);
    start();
    const QString before = place();
    const QString library = m_app.library().toString();
    refused.replace(QStringLiteral("%1"), library);
    QVERIFY(m_app.startAnother({location.replace(QStringLiteral("%1"), library)}));
    APP_WAIT(m_app, m_app.state().text("error").startsWith(refused + QStringLiteral(" is outside the library (")));
    QCOMPARE(place(), before);
    m_app.settled();
    m_app.keepScreenshot(QStringLiteral("outside"));
    m_app.press("Return");
    APP_WAIT(m_app, m_app.state().isThere() && m_app.state().text("error").isEmpty());
}

void TestInstances::aLinkWithNothingBringsTheWindowAlone() {
    start();
    const QString before = place();
    QVERIFY(m_app.startAnother({QStringLiteral("lumbra://reveal")}));
    // Handled by the time that one ends.
    QCOMPARE(m_app.state().text("error"), QString());
    QCOMPARE(place(), before);
}

void TestInstances::aSecondStartWithNothingBringsTheWindowBack() {
    start();
    const quint64 window = m_app.window();
    m_display.minimize(window);
    APP_WAIT(m_app, m_display.windowOf(m_app.process()) == 0);
    QVERIFY(m_app.startAnother());
    APP_WAIT(m_app, m_display.windowOf(m_app.process()) == window);
}

void TestInstances::oneThatWasClosedMakesRoomForTheNext() {
    start();
    m_app.window();
    QVERIFY2(m_app.close(), m_app.report().constData());
    start({QStringLiteral("lumbra://tidy")});
    APP_WAIT(m_app, place() == QStringLiteral("tidy"));
}

void TestInstances::ofTwoStartedAtOnceOneStays() {
    m_app.stop();
    m_app.start();
    const bool otherEnded = m_app.startAnother({path("site")});
    if (otherEnded) { // the usual case: the first was first
        APP_WAIT(m_app, place() == folder("site"));
        QVERIFY(m_app.isRunning());
    } else {
        QTRY_VERIFY(!m_app.isRunning());
    }
}

QTEST_GUILESS_MAIN(TestInstances)
#include "tst_instances.moc"
