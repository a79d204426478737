// SPDX-License-Identifier: GPL-3.0-or-later
#include "AppFiles.h"
#include "AppHarness.h"

#include <QtTest>

using namespace lumbra;

// Anything is reached by a few letters, with the keyboard alone.
class TestPalette : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void itOpensAndClosesByItsKey();
    void aFileIsRevealedByAFewLetters();
    void aFolderIsReached();
    void aFileIsFoundByItsContentAndPlayed();
    void anActionRuns();
    void aLandingFileIsFoundTheNextTime();

private:
    bool isOpen() { return m_app.state().control(QStringLiteral("paletteField")).isThere(); }
    void open() {
        m_app.press("ctrl+k");
        APP_WAIT(m_app, isOpen());
        m_app.settled();
    }
    // Until the first row is the one with this title.
    void findFirst(const char* title) {
        const auto first = [this] {
            for (const auto& item : m_app.state().controls())
                if (item.type.startsWith(QStringLiteral("paletteRow")) && item.type.endsWith(QStringLiteral("|0")))
                    return item.text;
            return QString();
        };
        APP_WAIT(m_app, first() == QLatin1String(title));
    }
    QString folder(const char* relative) const {
        return QStringLiteral("folder:") + m_app.library().child(relative).toString();
    }

    AppDisplay m_display;
    AppHarness m_app{m_display};
};

void TestPalette::initTestCase() {
    const Location root = m_app.library();
    for (int number = 0; number < 4; ++number)
        AppFiles::picture(root.child(QStringLiteral("site/heroes/hero-%1.png").arg(number)), AppFiles::colour(number));
    AppFiles::picture(root.child("film/poster.png"), AppFiles::colour(10));
    AppFiles::clip(root.child("film/renders/shot-01.mp4"), AppFiles::colour(100));
    m_app.start();
    APP_WAIT(m_app, m_app.state().complete());

    // The database is there by now; another process adds to it what it has understood.
    APP_WAIT(m_app, root.child(".lumbra/insights.sqlite").exists());
    AppFiles::insight(root, {"film/renders/shot-01.mp4"}, "Évening lighthouse");
    m_app.window();
}

void TestPalette::itOpensAndClosesByItsKey() {
    open();
    m_app.keepScreenshot(QStringLiteral("palette"));
    m_app.press("ctrl+k");
    APP_WAIT(m_app, !isOpen());
    open();
    m_app.press("Escape");
    APP_WAIT(m_app, !isOpen());
}

void TestPalette::aFileIsRevealedByAFewLetters() {
    open();
    m_app.type(QStringLiteral("2 hero"));
    findFirst("hero-2.png");
    m_app.settled();
    m_app.keepScreenshot(QStringLiteral("palette-file"));
    m_app.press("Return");
    APP_WAIT(m_app, m_app.state().text("place") == folder("site/heroes"));
    APP_WAIT(m_app, m_app.state().tile(QStringLiteral("site/heroes/hero-2.png")).selected);
    APP_WAIT(m_app, !isOpen());
    // The keys are the page's again, and the letters that were typed have done nothing to it.
    m_app.press("Right");
    APP_WAIT(m_app, m_app.state().tile(QStringLiteral("site/heroes/hero-3.png")).selected
                        || m_app.state().tile(QStringLiteral("site/heroes/hero-1.png")).selected);
}

void TestPalette::aFolderIsReached() {
    open();
    m_app.type(QStringLiteral("film/ren"));
    findFirst("renders");
    m_app.press("Return");
    APP_WAIT(m_app, m_app.state().text("place") == folder("film/renders"));
}

void TestPalette::aFileIsFoundByItsContentAndPlayed() {
    open();
    m_app.type(QStringLiteral("Light even"));
    findFirst("shot-01.mp4");
    m_app.settled();
    m_app.keepScreenshot(QStringLiteral("palette-content"));
    m_app.press("ctrl+Return");
    APP_WAIT(m_app, m_app.state().flag("playing") && !isOpen());
    m_app.press("Escape");
    APP_WAIT(m_app, !m_app.state().flag("playing"));
}

void TestPalette::anActionRuns() {
    open();
    m_app.type(QStringLiteral("starred"));
    findFirst("Go to Starred");
    m_app.press("Return");
    APP_WAIT(m_app, m_app.state().text("place") == QStringLiteral("starred"));
}

void TestPalette::aLandingFileIsFoundTheNextTime() {
    AppFiles::picture(m_app.library().child("film/zeppelin.png"), AppFiles::colour(20));
    APP_WAIT(m_app, int(m_app.state().number("indexed")) == 7);
    open();
    m_app.type(QStringLiteral("zepp"));
    findFirst("zeppelin.png");
    m_app.press("Escape");
    APP_WAIT(m_app, !isOpen());
}

QTEST_GUILESS_MAIN(TestPalette)
#include "tst_palette.moc"
