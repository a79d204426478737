// SPDX-License-Identifier: GPL-3.0-or-later
#include "AppFiles.h"
#include "AppHarness.h"

#include <QtTest>

using namespace lumbra;

// Files are found by what is in them, as far as that is known.
class TestContentSearch : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void aWordThatNoNameHoldsFindsTheFile();
    void aFolderPageFindsOnlyWhatIsBelowIt();

private:
    AppDisplay m_display;
    AppHarness m_app{m_display};
};

void TestContentSearch::initTestCase() {
    const Location root = m_app.library();
    for (int number = 0; number < 6; ++number)
        AppFiles::picture(root.child(QStringLiteral("site/hero-%1.png").arg(number)), AppFiles::colour(number));
    AppFiles::picture(root.child("film/poster.png"), AppFiles::colour(10));
    m_app.start();
    APP_WAIT(m_app, m_app.state().complete());

    // The database is there by now; another process adds to it what it has understood.
    APP_WAIT(m_app, root.child(".lumbra/insights.sqlite").exists());
    AppFiles::insight(root, {"site/hero-3.png", "film/poster.png"}, "Évening lighthouse");
}

void TestContentSearch::aWordThatNoNameHoldsFindsTheFile() {
    APP_WAIT(m_app, m_app.settled().control(QStringLiteral("search")).isThere());
    m_app.click(m_app.state().control(QStringLiteral("search")));
    m_app.type(QStringLiteral("light even"));
    const QStringList both{QStringLiteral("film/poster.png"), QStringLiteral("site/hero-3.png")};
    const auto shown = [this] {
        QStringList paths = m_app.state().pagePaths();
        paths.sort();
        return paths;
    };
    APP_WAIT(m_app, shown() == both && m_app.state().complete());
    m_app.keepScreenshot(QStringLiteral("content-search"));
}

void TestContentSearch::aFolderPageFindsOnlyWhatIsBelowIt() {
    const auto name = QStringLiteral("site");
    m_app.click(m_app.settled().sidebarRow(name));
    APP_WAIT(m_app, m_app.state().text("title") == name && m_app.state().complete());
    APP_WAIT(m_app, m_app.state().pagePaths() == QStringList{QStringLiteral("site/hero-3.png")});
}

QTEST_GUILESS_MAIN(TestContentSearch)
#include "tst_contentsearch.moc"
