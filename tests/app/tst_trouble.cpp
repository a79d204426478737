// SPDX-License-Identifier: GPL-3.0-or-later
#include "AppFiles.h"
#include "AppHarness.h"

#include <QDir>
#include <QFile>
#include <QtTest>

#include <sys/stat.h>

#include <functional>

using namespace lumbra;

using Setup = std::function<void(AppHarness&)>;
Q_DECLARE_METATYPE(Setup)

// Whatever stands in the library or in the records about it, the window comes up, stays, and shows what there is.
class TestTrouble : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theWindowStaysUp_data();
    void theWindowStaysUp();

private:
    AppDisplay m_display;
};

void TestTrouble::theWindowStaysUp_data() {
    QTest::addColumn<Setup>("setUp");
    QTest::addColumn<bool>("configured");
    QTest::addColumn<bool>("hasProject");

    const auto project = [](AppHarness& app) {
        AppFiles::picture(app.library().child("site/first.png"), AppFiles::colour(1));
    };
    QTest::newRow("a broken state file") << Setup([=](AppHarness& app) {
        project(app);
        AppFiles::text(app.library().child(".lumbra/library.json"), "{ \"pins\": [ \n");
    }) << false << true;
    QTest::newRow("a state file of wrong types") << Setup([=](AppHarness& app) {
        project(app);
        AppFiles::text(app.library().child(".lumbra/library.json"), "{ \"pins\": 7, \"groups\": \"none\" }");
    }) << false << true;
    QTest::newRow("a folder that can't be read") << Setup([=](AppHarness& app) {
        project(app);
        AppFiles::picture(app.library().child("site/secret/second.png"), AppFiles::colour(2));
        ::chmod(app.library().child("site/secret").path().constData(), 0);
    }) << false << true;
    QTest::newRow("pictures that are none") << Setup([=](AppHarness& app) {
        project(app);
        AppFiles::text(app.library().child("site/empty.png"), "");
        AppFiles::text(app.library().child("site/words.jpg"), "this is no picture");
        AppFiles::text(app.library().child("site/cut.mp4"), QByteArray("\0\0\0\x18"
                                                                       "ftypmp42",
                                                                       12));
    }) << false << true;
    QTest::newRow("a link that leads to itself") << Setup([=](AppHarness& app) {
        project(app);
        QFile::link(app.library().toString(), app.library().child("site/round").toString());
        QFile::link(QStringLiteral("nowhere"), app.library().child("dead").toString());
    }) << false << true;
    QTest::newRow("a root that is a file")
        << Setup([](AppHarness& app) { AppFiles::text(app.library(), "not a folder"); }) << false << false;
    QTest::newRow("a root that can't be made") << Setup([](AppHarness& app) {
        AppFiles::text(app.home().path().child(".config/lumbra/config.json"), "{ \"library\": \"/proc/lumbra\" }");
    }) << true << false;
    QTest::newRow("a broken configuration") << Setup([=](AppHarness& app) {
        project(app);
        AppFiles::text(app.home().path().child(".config/lumbra/config.json"), "[ 1, 2");
    }) << true << true; // the default root stands in, which is this library
}

void TestTrouble::theWindowStaysUp() {
    QFETCH(Setup, setUp);
    QFETCH(bool, configured);
    QFETCH(bool, hasProject);
    AppHarness app(m_display);
    setUp(app);
    app.start(configured ? AppHarness::Root::configuration : AppHarness::Root::environment);
    APP_WAIT(app, app.state().complete());
    QVERIFY(!app.state().flag("onboarding"));
    QCOMPARE(app.state().text("error"), QString());
    QCOMPARE(app.state().sidebarRow(QStringLiteral("site")).isThere(), hasProject);
    if (hasProject) {
        app.click(app.settled().sidebarRow(QStringLiteral("site")));
        APP_WAIT(app, app.state().tile(QStringLiteral("site/first.png")).hasPicture && app.state().complete());
    }
    QVERIFY2(app.close(), app.report().constData());
}

QTEST_GUILESS_MAIN(TestTrouble)
#include "tst_trouble.moc"
