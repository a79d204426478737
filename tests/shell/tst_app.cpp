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
    void whatIsOpenedLeadsSomewhereOrIsRefused_data();
    void whatIsOpenedLeadsSomewhereOrIsRefused();

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

void tst_app::whatIsOpenedLeadsSomewhereOrIsRefused_data() {
    QTest::addColumn<QString>("url");   // %1 stands for the library's root
    QTest::addColumn<QString>("place"); // below the root; "recent" and "tidy" are the pages
    QTest::addColumn<QString>("error"); // %1 as above
    const auto row = [](const char* name, const char* url, const char* place, const char* error = "") {
        QTest::newRow(name) << QString::fromUtf8(url) << QString::fromUtf8(place) << QString::fromUtf8(error);
    };
    row("a link to a file", "lumbra://reveal?path=%1/site/still.png", "site");
    row("by the older name of the scheme", "folia-app://reveal?path=%1/site/still.png", "site");
    row("a scheme in capitals", "LUMBRA://reveal?path=%1/site", "site");
    row("a link to a page", "lumbra://tidy", "tidy");
    row("a link with nothing", "lumbra://reveal", "recent");
    row("a link with nothing at all", "lumbra:", "recent");
    row("a link outside", "lumbra://reveal?path=/etc/passwd", "recent", "/etc/passwd is outside the library (%1).");
    row("a link that climbs out", "lumbra://reveal?path=%1/site/../../elsewhere", "recent",
        "%1/site/../../elsewhere is outside the library (%1).");
    row("a link that climbs and comes back", "lumbra://reveal?path=%1/site/../site", "site");
    row("a file outside", "file:///etc/passwd", "recent", "/etc/passwd is outside the library (%1).");
    row("a file that climbs out", "file://%1/../elsewhere", "recent", "%1/../elsewhere is outside the library (%1).");
    row("a folder", "file://%1/site", "site");
    row("a path without a scheme", "%1/site", "site");
    row("a file that does not exist", "file://%1/site/gone.png", "site");
    row("another scheme", "https://example.org/index.html", "recent", "/index.html is outside the library (%1).");
    row("nothing", "", "recent", " is outside the library (%1).");
}

void tst_app::whatIsOpenedLeadsSomewhereOrIsRefused() {
    QFETCH(QString, url);
    QFETCH(QString, place);
    QFETCH(QString, error);
    const Location root = m_app->library().root();
    m_app->open({QUrl(url.contains(u"%1") ? url.arg(root.toString()) : url)});
    const Place expected = place == u"recent" ? Place::recent()
                           : place == u"tidy" ? Place::tidy()
                                              : Place::folder(root.child(place));
    QCOMPARE(m_app->library().place(), expected);
    error.replace(QStringLiteral("(%1)"), u'(' + root.abbreviated() + u')')
        .replace(QStringLiteral("%1"), root.toString());
    QCOMPARE(m_app->library().lastError().value_or(QString()), error);
}

QTEST_MAIN(tst_app)
#include "tst_app.moc"
