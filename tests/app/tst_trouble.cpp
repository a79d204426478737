// SPDX-License-Identifier: GPL-3.0-or-later
#include "AppFiles.h"
#include "AppHarness.h"
#include "reader/MadeFiles.h"
#include "support/ReaderProcesses.h"

#include <QDir>
#include <QFile>
#include <QtTest>

#include <sys/stat.h>

#include <cstdio>
#include <filesystem>
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
    void picturesThatAreTooMuchTakeNoMoreThanTheirShare();
    void aPictureThatGrowsIsWholeInTheEnd();
    void filesThatVanishWhileTheyAreReadLeaveThePage();

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
    QTest::newRow("names that are no text") << Setup([=](AppHarness& app) {
        project(app);
        for (const char* name : {"site/\xff\xfe.png", "site/two\nlines.png", "site/-rf \"$HOME\".png"}) {
            const Location made = app.library().child("site/made.png");
            AppFiles::picture(made, AppFiles::colour(3));
            QCOMPARE(std::rename(made.path().constData(), app.library().child(name).path().constData()), 0);
        }
    }) << false << true;
    QTest::newRow("folders 500 deep") << Setup([=](AppHarness& app) {
        project(app);
        AppFiles::picture(app.library().child(QString(QStringLiteral("site/") + QStringLiteral("deep/").repeated(500)
                                                      + QStringLiteral("last.png"))),
                          AppFiles::colour(4));
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
    std::error_code ignored; // what is not there; QTemporaryDir leaves names that are no text
    std::filesystem::remove_all(app.library().child("site").view(), ignored);
}

// Whatever their headers promise. Each has its tile, with its picture or its symbol, and its turn in the room.
void TestTrouble::picturesThatAreTooMuchTakeNoMoreThanTheirShare() {
    constexpr qint64 mostOfTheWindow =
        500LL * 1024 * 1024; // bytes of its own, the drawing of a display without a driver included
    constexpr qint64 mostOfAReader = 700LL * 1024 * 1024;
    AppHarness app(m_display);
    const Location site = app.library().child("site");
    AppFiles::picture(site.child("plain.png"), AppFiles::colour(1));
    QImage photograph(640, 480, QImage::Format_RGB32);
    photograph.fill(AppFiles::colour(2));
    const QByteArray plain = made::encoded(photograph, "PNG");
    const QByteArray large = made::blackPng({40'000, 40'000}, {40'000, 40'000});
    AppFiles::text(site.child("large.png"), large);
    AppFiles::text(site.child("large-cut.png"), large.first(large.size() / 2));
    AppFiles::text(site.child("promise.png"), made::blackPng({100, 100}, {40'000, 40'000}));
    AppFiles::text(site.child("tall.png"), made::blackPng({1, 30'000}, {1, 30'000}));
    AppFiles::text(site.child("cut.png"), plain.first(plain.size() / 2));
    AppFiles::text(site.child("empty.png"), {});
    AppFiles::text(site.child("photograph.png"), made::encoded(photograph, "JPEG"));
    const QStringList names = QDir(site.toString()).entryList(QDir::Files);
    app.start();
    APP_WAIT(app, app.state().sidebarRow(QStringLiteral("site")).isThere());
    app.click(app.settled().sidebarRow(QStringLiteral("site")));

    qint64 window = 0;
    qint64 reader = 0;
    const auto weigh = [&] {
        window = std::max(window, ownMemory(pid_t(app.process())));
        for (const pid_t child : childProcesses(app.process()))
            reader = std::max(reader, ownMemory(child));
    };
    APP_WAIT(app, (weigh(), app.state().pagePaths().size() == names.size() && app.state().complete()));
    const AppState page = app.settled();
    for (const QString& name : names)
        QVERIFY2(page.tile(QStringLiteral("site/") + name).isThere(), qPrintable(name));
    for (const char* name : {"site/plain.png", "site/photograph.png"})
        QVERIFY2(page.tile(QLatin1String(name)).hasPicture, name);
    QVERIFY(!page.tile(QStringLiteral("site/empty.png")).hasPicture);
    QVERIFY(AppFiles::alike(app.colourAt(page.tile(QStringLiteral("site/photograph.png"))), AppFiles::colour(2)));

    app.click(page.tiles().first());
    app.press("space");
    APP_WAIT(app, app.state().flag("playing"));
    for (const QString& name : names) {
        APP_WAIT(app, (weigh(), app.state().flag("playing")));
        app.press("Right");
        Q_UNUSED(name)
    }
    app.press("Escape");
    APP_WAIT(app, (weigh(), !app.state().flag("playing")));
    APP_WAIT(app, (weigh(), app.state().complete()));
    QVERIFY2(window < mostOfTheWindow, qPrintable(QString::number(window)));
    QVERIFY2(reader < mostOfAReader, qPrintable(QString::number(reader)));
    QCOMPARE(QDir(site.toString()).entryList(QDir::Files), names);
    QVERIFY2(app.close(), app.report().constData());
}

void TestTrouble::aPictureThatGrowsIsWholeInTheEnd() {
    constexpr int pieces = 6;
    AppHarness app(m_display);
    const Location growing = app.library().child("site/growing.png");
    AppFiles::picture(app.library().child("site/first.png"), AppFiles::colour(1));
    app.start();
    APP_WAIT(app, app.state().sidebarRow(QStringLiteral("site")).isThere());
    app.click(app.settled().sidebarRow(QStringLiteral("site")));
    APP_WAIT(app, app.state().tile(QStringLiteral("site/first.png")).hasPicture);

    QImage image(1600, 1200, QImage::Format_RGB32);
    image.fill(AppFiles::colour(2));
    const QByteArray whole = made::encoded(image, "PNG");
    QFile file(growing.toString());
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    for (int piece = 0; piece < pieces; ++piece) {
        const qsizetype from = whole.size() * piece / pieces;
        const qsizetype to = whole.size() * (piece + 1) / pieces;
        QCOMPARE(file.write(whole.sliced(from, to - from)), to - from);
        // Each state of it is seen and read, or this would be no file that grows.
        APP_WAIT(app, app.state().tile(QStringLiteral("site/growing.png")).isThere() && app.state().complete());
    }
    file.close();
    APP_WAIT(app, app.state().tile(QStringLiteral("site/growing.png")).hasPicture);
    QTRY_VERIFY(
        AppFiles::alike(app.colourAt(app.settled().tile(QStringLiteral("site/growing.png"))), AppFiles::colour(2)));
    QFile after(growing.toString());
    QVERIFY(after.open(QIODevice::ReadOnly));
    QCOMPARE(after.readAll(), whole);
    QVERIFY2(app.close(), app.report().constData());
}

void TestTrouble::filesThatVanishWhileTheyAreReadLeaveThePage() {
    constexpr int files = 200;
    AppHarness app(m_display);
    const auto file = [&](int number) { return app.library().child(QStringLiteral("site/%1.png").arg(number)); };
    for (int number = 0; number < files; ++number)
        AppFiles::picture(file(number), AppFiles::colour(number), {1200, 900});
    AppFiles::picture(app.library().child("site/stays.png"), AppFiles::colour(0));
    app.start();
    // The window is not waited for: they go while they are listed, indexed and read.
    for (int number = 0; number < files / 2; ++number) {
        QVERIFY(QFile::remove(file(number).toString()));
        QTest::qWait(1);
    }
    APP_WAIT(app, app.state().sidebarRow(QStringLiteral("site")).isThere());
    app.click(app.settled().sidebarRow(QStringLiteral("site")));
    for (int number = files / 2; number < files; ++number)
        QVERIFY(QFile::remove(file(number).toString()));
    APP_WAIT(app, app.state().pagePaths() == QStringList{QStringLiteral("site/stays.png")});
    APP_WAIT(app, app.state().complete() && app.state().tile(QStringLiteral("site/stays.png")).hasPicture);
    QCOMPARE(app.state().text("error"), QString());
    APP_WAIT(app, app.state().number("indexed") == 1); // which is told of each one apart
    QVERIFY2(app.close(), app.report().constData());
}

QTEST_GUILESS_MAIN(TestTrouble)
#include "tst_trouble.moc"
