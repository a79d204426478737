// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Config.h"
#include "shell/App.h"
#include "support/TestHome.h"

#include <QTest>

using namespace lumbra;

class tst_app : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        m_home = std::make_unique<TestHome>();
        LumbraConfig::setLibrary(m_home->folder("library"));
        m_still = m_home->file("library/site/still.png");
        m_app = std::make_unique<App>(QElapsedTimer());
    }
    void cleanup() {
        m_app.reset();
        m_home.reset();
    }

    void aFileOpenedBeforeTheWindowExistsIsRevealedOnceItDoes();
    void ofSeveralLocationsOnlyTheFirstCounts();
    void nothingOpenedGoesNowhere();
    void aFileOutsideTheLibraryIsRefused();

private:
    static QUrl url(const Location& location) { return QUrl::fromLocalFile(location.toString()); }

    std::unique_ptr<TestHome> m_home;
    std::unique_ptr<App> m_app;
    Location m_still;
};

void tst_app::aFileOpenedBeforeTheWindowExistsIsRevealedOnceItDoes() {
    m_app->open({url(m_still)});
    QCOMPARE(m_app->library().place(), Place::folder(m_still.canonical().parent()));
    QCOMPARE(m_app->library().pendingReveal(), std::optional(m_still.canonical()));
}

void tst_app::ofSeveralLocationsOnlyTheFirstCounts() {
    const Location folder = m_home->folder("library/other");
    m_app->open({url(folder), url(m_still)});
    QCOMPARE(m_app->library().place(), Place::folder(folder.canonical()));
    QVERIFY(!m_app->library().pendingReveal());
}

void tst_app::nothingOpenedGoesNowhere() {
    m_app->open({});
    QCOMPARE(m_app->library().place(), Place::recent());
}

void tst_app::aFileOutsideTheLibraryIsRefused() {
    m_app->open({url(m_home->file("elsewhere.png"))});
    QCOMPARE(m_app->library().place(), Place::recent());
    QVERIFY(m_app->library().lastError());
}

QTEST_MAIN(tst_app)
#include "tst_app.moc"
