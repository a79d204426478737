// SPDX-License-Identifier: GPL-3.0-or-later
#include "AppFiles.h"
#include "AppHarness.h"
#include "platform/ExtendedAttributes.h"

#include <QFile>
#include <QtTest>

using namespace lumbra;

// What the user does to files by the keys and menus of the window, as it lands on disk.
class TestOperations : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void theSKeyStarsAndUndoTakesItBack();
    void theMenuRenames();
    void nothingIsTrashedBehindASheet();
    void theTrashIsReachedByKey();
    void aFolderIsMadeByKey();
    void filesAreAddedThroughThePanel();
    void aProjectIsTrashedOnlyOnceTheUserAgrees();
    void closingEndsTheProgramCleanly();

private:
    Location at(const char* relative) const { return m_app.library().child(std::string_view(relative)); }
    void select(const char* path) {
        APP_WAIT(m_app, m_app.state().tile(QString::fromLatin1(path)).isThere());
        m_app.click(m_app.settled().tile(QString::fromLatin1(path)));
        APP_WAIT(m_app, m_app.state().tile(QString::fromLatin1(path)).selected);
    }
    // Chooses an entry of the menu "Asset".
    void chooseAsset(int entry) {
        m_app.press("F10");
        m_app.press("Right"); // past the menu of the application
        m_app.press("Right"); // and that of the view
        m_app.press("Down");
        for (int i = 0; i < entry; ++i)
            m_app.press("Down");
        m_app.press("Return");
    }
    bool isStarred(const char* path) const {
        return ExtendedAttributes::read(at(path), AttributeName("com.lumbra.starred")).has_value();
    }
    Location inTrash(const char* name) {
        return m_app.home().path().child(".local/share/Trash/files").child(std::string_view(name));
    }
    void shows(const char* control) {
        APP_WAIT(m_app, m_app.state().control(QString::fromLatin1(control)).isThere());
        m_app.settled();
    }

    void isGone(const char* control) {
        APP_WAIT(m_app, m_app.state().isThere() && !m_app.state().control(QString::fromLatin1(control)).isThere());
        m_app.settled();
    }

    AppDisplay m_display;
    AppHarness m_app{m_display};
};

void TestOperations::initTestCase() {
    for (const auto& [name, number] : {std::pair{"a", 1}, {"b", 2}, {"c", 3}})
        AppFiles::picture(m_app.library().child("site").child(std::string(name) + ".png"), AppFiles::colour(number));
    AppFiles::picture(m_app.home().path().child("desk/brought.png"), AppFiles::colour(4));
    AppFiles::text(at("old/plan.md"), "# Plan\n");
    m_app.start();
    APP_WAIT(m_app, m_app.state().sidebarRow(QStringLiteral("site")).isThere());
    m_app.click(m_app.settled().sidebarRow(QStringLiteral("site")));
    APP_WAIT(m_app, m_app.state().tile(QStringLiteral("site/c.png")).hasPicture);
}

void TestOperations::theSKeyStarsAndUndoTakesItBack() {
    select("site/a.png");
    m_app.press("s");
    APP_WAIT(m_app, isStarred("site/a.png"));
    APP_WAIT(m_app, m_app.state().text("toast") == QStringLiteral("Added to Starred"));
    m_app.press("s");
    APP_WAIT(m_app, !isStarred("site/a.png"));
    m_app.press("s");
    APP_WAIT(m_app, isStarred("site/a.png"));
    m_app.keepScreenshot(QStringLiteral("starred"));
}

void TestOperations::theMenuRenames() {
    select("site/a.png");
    chooseAsset(5);
    shows("nameField");
    m_app.type(QStringLiteral("renamed.png"));
    m_app.press("Return");
    isGone("nameField");
    APP_WAIT(m_app, m_app.state().tile(QStringLiteral("site/renamed.png")).selected);
    QVERIFY(!at("site/a.png").exists());
    QVERIFY(isStarred("site/renamed.png"));
    m_app.settled();
    m_app.keepScreenshot(QStringLiteral("renamed"));
}

void TestOperations::nothingIsTrashedBehindASheet() {
    select("site/b.png");
    chooseAsset(5);
    shows("nameField");
    m_app.press("Tab");
    m_app.press("ctrl+Delete");
    m_app.press("Escape");
    isGone("nameField");
    QVERIFY(at("site/b.png").exists());
}

void TestOperations::theTrashIsReachedByKey() {
    select("site/b.png");
    m_app.press("ctrl+Delete");
    APP_WAIT(m_app, !at("site/b.png").exists() && inTrash("b.png").exists());
    APP_WAIT(m_app, m_app.state().isThere() && !m_app.state().tile(QStringLiteral("site/b.png")).isThere());
    select("site/c.png");
    m_app.press("Delete");
    APP_WAIT(m_app, !at("site/c.png").exists() && inTrash("c.png").exists());
    QCOMPARE(m_app.state().text("error"), QString());
}

void TestOperations::aFolderIsMadeByKey() {
    m_app.press("ctrl+shift+n");
    shows("nameField");
    m_app.type(QStringLiteral("shots"));
    m_app.press("Return");
    APP_WAIT(m_app, at("site/shots").isFolder());
    isGone("nameField");
    QVERIFY(isStarred("site/renamed.png")); // no letter of the name has reached the page
}

void TestOperations::filesAreAddedThroughThePanel() {
    m_app.press("ctrl+shift+i");
    shows("panelPath");
    m_app.press("ctrl+a");
    m_app.type(m_app.home().path().child("desk/brought.png").toString());
    m_app.settled();
    m_app.keepScreenshot(QStringLiteral("panel"));
    m_app.press("Return");
    APP_WAIT(m_app, at("site/brought.png").exists());
    APP_WAIT(m_app, m_app.state().tile(QStringLiteral("site/brought.png")).hasPicture);
    QVERIFY(m_app.home().path().child("desk/brought.png").exists());
}

void TestOperations::aProjectIsTrashedOnlyOnceTheUserAgrees() {
    const auto ask = [this] {
        m_app.click(m_app.settled().sidebarRow(QStringLiteral("old")), 3);
        m_app.settled();
        for (int entry = 0; entry < 10; ++entry)
            m_app.press("Down");
        m_app.press("Return");
        shows("confirmAlert");
    };
    ask();
    m_app.keepScreenshot(QStringLiteral("confirm-trash"));
    m_app.press("Escape");
    isGone("confirmAlert");
    QVERIFY(at("old").exists());
    ask();
    m_app.press("Tab"); // from Cancel, where it starts, to what destroys
    m_app.press("space");
    APP_WAIT(m_app, !at("old").exists() && inTrash("old").exists());
    APP_WAIT(m_app, m_app.state().isThere() && !m_app.state().sidebarRow(QStringLiteral("old")).isThere());
}

void TestOperations::closingEndsTheProgramCleanly() {
    QVERIFY2(m_app.close(), m_app.report().constData());
}

QTEST_GUILESS_MAIN(TestOperations)
#include "tst_operations.moc"
