// SPDX-License-Identifier: GPL-3.0-or-later
#include "AppFiles.h"
#include "AppHarness.h"
#include "platform/ExtendedAttributes.h"

#include <QtTest>

using namespace lumbra;

// The screening room over the page of the real program, by key and pointer.
class TestRoom : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();
    void spaceOpensItOverTheWholeWindow();
    void theSelectionFollowsAndThePageHasTheKeysAgain();
    void aFilmPlaysAndItsControlsHide();
    void aStarIsToldOverTheRoomAndCanBeTakenBack();
    void aFileThatIsTrashedLeavesTheRoomOpen();
    void theDoorOpensAgainWhileItCloses();
    void closingTheWindowEndsTheProgramCleanly();

private:
    static QString text(const char* words) { return QString::fromUtf8(words); }
    Location at(const char* relative) const { return m_app.library().child(std::string_view(relative)); }
    bool isOpen() { return m_app.state().flag("playing"); }
    bool shows(const char* control) { return m_app.state().control(text(control)).isThere(); }
    bool isGone(const char* control) { return m_app.state().isThere() && !shows(control); }
    void select(const char* path) {
        APP_WAIT(m_app, m_app.state().tile(text(path)).isThere());
        m_app.click(m_app.settled().tile(text(path)));
        APP_WAIT(m_app, m_app.state().tile(text(path)).selected);
    }
    void open(const char* path) {
        select(path);
        m_app.press("space");
        APP_WAIT(m_app, isOpen() && m_app.state().tiles().isEmpty());
    }
    QColor pixel(int x, int y) { return m_display.screenshot().pixelColor(x, y); }

    AppDisplay m_display;
    AppHarness m_app{m_display};
};

void TestRoom::initTestCase() {
    for (const auto& [name, number] : {std::pair{"a", 1}, {"b", 2}, {"c", 3}})
        AppFiles::picture(m_app.library().child("site").child(std::string(name) + ".png"), AppFiles::colour(number));
    AppFiles::clip(at("site/film.mp4"), AppFiles::colour(4), 60);
    AppFiles::text(at("site/notes.md"), "# Notes\n");
    m_app.start();
    APP_WAIT(m_app, m_app.state().sidebarRow(text("site")).isThere());
    m_app.click(m_app.settled().sidebarRow(text("site")));
    APP_WAIT(m_app, m_app.state().tile(text("site/c.png")).hasPicture);
}

void TestRoom::cleanup() {
    if (!m_app.isRunning())
        return;
    if (isOpen())
        m_app.press("Escape");
    APP_WAIT(m_app, m_app.state().isThere() && !isOpen() && isGone("roomBack"));
}

void TestRoom::spaceOpensItOverTheWholeWindow() {
    open("site/a.png");
    QVERIFY(m_app.state().control(text("roomBreadcrumb")).text == text("site"));
    const auto isThere = [this] { return AppFiles::alike(pixel(560, 450), AppFiles::colour(1)); };
    APP_WAIT(m_app, isThere());
    // Where the menus and the page were there is nothing but the room.
    const QColor corner = pixel(720, 4);
    QVERIFY2(corner.lightness() < 90, qPrintable(corner.name()));
    m_app.keepScreenshot(text("room-image"));
}

void TestRoom::theSelectionFollowsAndThePageHasTheKeysAgain() {
    open("site/a.png");
    const QString before = m_app.state().control(text("roomMeta")).text;
    m_app.press("Up"); // it is the oldest of them
    APP_WAIT(m_app, m_app.state().control(text("roomMeta")).text != before);
    m_app.press("Escape");
    APP_WAIT(m_app, isGone("roomBack"));
    const auto selectedNow = [this] {
        QStringList selected;
        for (const AppState::Item& tile : m_app.state().tiles())
            if (tile.selected)
                selected += tile.path;
        return selected;
    };
    APP_WAIT(m_app, selectedNow().size() == 1 && selectedNow().first() != text("site/a.png"));
    const QString walked = selectedNow().first();
    m_app.press("space"); // the page has the keys
    APP_WAIT(m_app, isOpen() && shows("roomBack"));
    m_app.press("Escape");
    APP_WAIT(m_app, isGone("roomBack"));
    QCOMPARE(selectedNow(), QStringList{walked});
}

void TestRoom::aFilmPlaysAndItsControlsHide() {
    open("site/film.mp4");
    APP_WAIT(m_app, isGone("roomBack")); // in two and a half seconds
    APP_WAIT(m_app, AppFiles::alike(pixel(720, 450), AppFiles::colour(4)));
    m_app.keepScreenshot(text("room-film-alone"));
    m_app.press("space");
    APP_WAIT(m_app, shows("play") && m_app.state().control(text("play")).text == text("Play"));
    m_app.settled();
    m_app.keepScreenshot(text("room-film"));
    m_app.press("f");
    m_app.press("Right");
    m_app.settled();
    m_app.press("f");
    m_app.settled();
    QVERIFY(isOpen());
    m_app.press("space");
    APP_WAIT(m_app, isGone("roomBack"));
}

void TestRoom::aStarIsToldOverTheRoomAndCanBeTakenBack() {
    open("site/b.png");
    const auto isStarred = [this] {
        return ExtendedAttributes::read(at("site/b.png"), AttributeName("com.lumbra.starred")).has_value();
    };
    m_app.press("s");
    APP_WAIT(m_app, isStarred() && m_app.state().text("toast") == text("Added to Starred"));
    APP_WAIT(m_app, m_app.state().control(text("roomStar")).text == text("Starred"));
    m_app.keepScreenshot(text("room-toast"));
    m_app.press("s");
    APP_WAIT(m_app, !isStarred());
    QVERIFY(isOpen());
}

void TestRoom::aFileThatIsTrashedLeavesTheRoomOpen() {
    open("site/c.png");
    QVERIFY(QFile::remove(at("site/c.png").toString()));
    APP_WAIT(m_app, !m_app.state().pagePaths().contains(text("site/c.png")));
    QVERIFY(isOpen());
    QVERIFY(shows("roomBack"));
    m_app.press("Up");
    APP_WAIT(m_app, isOpen());
}

void TestRoom::theDoorOpensAgainWhileItCloses() {
    open("site/a.png");
    for (int i = 0; i < 6; ++i)
        m_app.press(i % 2 == 0 ? "Escape" : "space");
    APP_WAIT(m_app, isOpen() && shows("roomBack"));
}

void TestRoom::closingTheWindowEndsTheProgramCleanly() {
    open("site/film.mp4");
    QVERIFY2(m_app.close(), m_app.report().constData());
}

QTEST_GUILESS_MAIN(TestRoom)
#include "tst_room.moc"
