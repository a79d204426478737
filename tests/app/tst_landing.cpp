// SPDX-License-Identifier: GPL-3.0-or-later
#include "AppFiles.h"
#include "AppHarness.h"

#include <QFile>
#include <QtTest>

using namespace lumbra;

// What another process does to the folder that is on screen.
class TestLanding : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void aNewFileAppearsWithItsPicture();
    void aFileWrittenAnewShowsItsNewPicture();
    void aFileThatLeavesIsGoneFromThePage();
    void aNewProjectStandsInTheSidebar();

private:
    AppDisplay m_display;
    AppHarness m_app{m_display};
};

void TestLanding::initTestCase() {
    AppFiles::picture(m_app.library().child("site/first.png"), AppFiles::colour(1));
    m_app.start();
    APP_WAIT(m_app, m_app.state().sidebarRow(QStringLiteral("site")).isThere());
    m_app.click(m_app.settled().sidebarRow(QStringLiteral("site")));
    APP_WAIT(m_app, m_app.state().tile(QStringLiteral("site/first.png")).hasPicture);
}

void TestLanding::aNewFileAppearsWithItsPicture() {
    AppFiles::picture(m_app.library().child("site/second.png"), AppFiles::colour(2));
    APP_WAIT(m_app, m_app.state().tile(QStringLiteral("site/second.png")).hasPicture);
    const auto tile = m_app.state().tile(QStringLiteral("site/second.png"));
    APP_WAIT(m_app, AppFiles::alike(m_app.colourAt(tile), AppFiles::colour(2)));
    QVERIFY(m_app.state().tile(QStringLiteral("site/first.png")).hasPicture);
    m_app.keepScreenshot(QStringLiteral("landed"));
}

void TestLanding::aFileWrittenAnewShowsItsNewPicture() {
    AppFiles::picture(m_app.library().child("site/second.png"), AppFiles::colour(5), {800, 600});
    APP_WAIT(m_app, AppFiles::alike(m_app.colourAt(m_app.state().tile(QStringLiteral("site/second.png"))),
                                    AppFiles::colour(5)));
}

void TestLanding::aFileThatLeavesIsGoneFromThePage() {
    QVERIFY(QFile::remove(m_app.library().child("site/second.png").toString()));
    APP_WAIT(m_app, !m_app.state().tile(QStringLiteral("site/second.png")).isThere());
    QVERIFY(m_app.state().tile(QStringLiteral("site/first.png")).isThere());
}

void TestLanding::aNewProjectStandsInTheSidebar() {
    AppFiles::picture(m_app.library().child("brand/logo.png"), AppFiles::colour(3));
    APP_WAIT(m_app, m_app.state().sidebarRow(QStringLiteral("brand")).isThere());
    m_app.click(m_app.settled().sidebarRow(QStringLiteral("brand")));
    APP_WAIT(m_app, m_app.state().tile(QStringLiteral("brand/logo.png")).hasPicture);
}

QTEST_GUILESS_MAIN(TestLanding)
#include "tst_landing.moc"
