// SPDX-License-Identifier: GPL-3.0-or-later
#include "AppFiles.h"
#include "AppHarness.h"

#include <QFile>
#include <QJsonDocument>
#include <QtTest>

using namespace lumbra;

// A machine on which no library was ever chosen.
class TestFirstRun : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void welcomesAndTouchesNothing();
    void openLibraryKeepsTheChoice();
    void theOpenedLibraryIsLive();
    void theNextStartDoesNotWelcome();

private:
    Location configuration() { return m_app.home().path().child(".config/lumbra/config.json"); }

    AppDisplay m_display;
    AppHarness m_app{m_display};
};

void TestFirstRun::welcomesAndTouchesNothing() {
    m_app.start(AppHarness::Root::configuration);
    APP_WAIT(m_app,
             m_app.state().flag("onboarding") && m_app.state().control(QStringLiteral("onboardingOpen")).isThere());
    QVERIFY(!m_app.library().exists());
    QVERIFY(!configuration().exists());
    m_app.keepScreenshot(QStringLiteral("first-run"));
}

void TestFirstRun::openLibraryKeepsTheChoice() {
    m_app.click(m_app.settled().control(QStringLiteral("onboardingOpen")));
    APP_WAIT(m_app, m_app.state().isThere() && !m_app.state().flag("onboarding"));
    QTRY_VERIFY(m_app.library().isFolder());
    QFile file(configuration().toString());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(QJsonDocument::fromJson(file.readAll()).object().value(QStringLiteral("library")).toString(),
             m_app.library().toString());
}

void TestFirstRun::theOpenedLibraryIsLive() {
    AppFiles::picture(m_app.library().child("site/first.png"), AppFiles::colour(1));
    APP_WAIT(m_app, m_app.state().sidebarRow(QStringLiteral("site")).isThere());
    APP_WAIT(m_app, m_app.state().tile(QStringLiteral("site/first.png")).hasPicture);
    m_app.keepScreenshot(QStringLiteral("first-file"));
}

void TestFirstRun::theNextStartDoesNotWelcome() {
    QVERIFY2(m_app.close(), m_app.report().constData());
    m_app.start(AppHarness::Root::configuration);
    APP_WAIT(m_app, m_app.state().complete());
    QVERIFY(!m_app.state().flag("onboarding"));
    QVERIFY(m_app.state().sidebarRow(QStringLiteral("site")).isThere());
}

QTEST_GUILESS_MAIN(TestFirstRun)
#include "tst_firstrun.moc"
