// SPDX-License-Identifier: GPL-3.0-or-later
#include "AppFiles.h"
#include "AppHarness.h"

#include <QtTest>

#include <algorithm>

using namespace lumbra;

// The first look at a library that is full already.
class TestRecent : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void showsRecentWithThePicturesOfEachKind();
    void aClickInTheSidebarTurnsThePage();
    void everyPictureIsThatOfItsFile();
    void closingTheWindowEndsTheProgram();

private:
    static constexpr int pictures = 24;
    AppDisplay m_display;
    AppHarness m_app{m_display};
};

void TestRecent::initTestCase() {
    const Location root = m_app.library();
    for (int number = 0; number < pictures; ++number) {
        const QString suffix = number % 2 ? QStringLiteral("jpg") : QStringLiteral("png");
        AppFiles::picture(root.child(QStringLiteral("site/heroes/hero-%1.%2").arg(number).arg(suffix)),
                          AppFiles::colour(number));
    }
    AppFiles::clip(root.child("film/renders/shot-01.mp4"), AppFiles::colour(100));
    AppFiles::clip(root.child("film/renders/shot-02.mkv"), AppFiles::colour(101));
    AppFiles::sound(root.child("film/voice/take-1.wav"));
    AppFiles::text(root.child("notes/plan.md"), "# Plan\n\nEverything by Friday.\n");
    AppFiles::text(root.child("notes/counts.csv"), "day,count\n1,12\n2,14\n");
    AppFiles::text(root.child("notes/logo.svg"),
                   "<svg xmlns='http://www.w3.org/2000/svg' width='200' height='150'><rect width='200' height='150' "
                   "fill='#e4572e'/></svg>");
    m_app.start();
    APP_WAIT(m_app, m_app.state().complete());
}

void TestRecent::showsRecentWithThePicturesOfEachKind() {
    // What is summed up a moment after the first walk loads the page once more.
    AppState state;
    const auto hasPicture = [](const auto& tile) { return tile.hasPicture; };
    APP_WAIT(m_app, (state = m_app.state()).complete() && std::ranges::any_of(state.tiles(), hasPicture));
    QCOMPARE(state.text("place"), QStringLiteral("recent"));
    QCOMPARE(int(state.number("indexed")), pictures + 6);
    QVERIFY(!state.flag("onboarding"));
    QCOMPARE(state.text("error"), QString());
    m_app.keepScreenshot(QStringLiteral("recent"));
}

void TestRecent::aClickInTheSidebarTurnsThePage() {
    for (const char* project : {"film", "notes", "site"}) {
        const auto name = QString::fromLatin1(project);
        APP_WAIT(m_app, m_app.state().sidebarRow(name).isThere());
        m_app.click(m_app.settled().sidebarRow(name));
        const QString place = QStringLiteral("folder:") + m_app.library().child(project).toString();
        APP_WAIT(m_app, m_app.state().text("place") == place);
        APP_WAIT(m_app, m_app.state().sidebarRow(name).selected && m_app.state().complete());
        QCOMPARE(m_app.state().text("title"), name);
    }
    m_app.keepScreenshot(QStringLiteral("project"));
}

void TestRecent::everyPictureIsThatOfItsFile() {
    APP_WAIT(m_app, m_app.state().sidebarRow(QStringLiteral("site")).isThere());
    m_app.click(m_app.settled().sidebarRow(QStringLiteral("site")));
    // The folder below the project is a tile of its own.
    APP_WAIT(m_app, m_app.state().tile(QStringLiteral("site/heroes")).isThere());
    m_app.click(m_app.settled().tile(QStringLiteral("site/heroes")));
    // The newest stand first, and not all find room.
    APP_WAIT(m_app,
             m_app.state().tile(QStringLiteral("site/heroes/hero-23.jpg")).isThere() && m_app.state().complete());

    int looked = 0;
    for (const auto& tile : m_app.settled().tiles()) {
        const QString name = tile.path.section(u'/', -1).section(u'.', 0, 0);
        if (!name.startsWith(QStringLiteral("hero-")) || tile.rect.height() < tile.rect.width() / 2)
            continue; // a tile cut off by the page's edge shows too little to tell
        const QColor expected = AppFiles::colour(name.section(u'-', 1).toInt());
        APP_WAIT(m_app, AppFiles::alike(m_app.colourAt(tile), expected));
        ++looked;
    }
    QVERIFY2(looked >= 6, m_app.report().constData());
}

void TestRecent::closingTheWindowEndsTheProgram() {
    QVERIFY2(m_app.close(), m_app.report().constData());
}

QTEST_GUILESS_MAIN(TestRecent)
#include "tst_recent.moc"
