// What the browser keeps of its page from one start to the next.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "BrowserWindow.h"
#include "support/Strings.h"

#include <QTest>

using namespace lumbra;

class TestBrowserSettings : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void settingsSurviveTheBrowser() {
        Window window;
        window.open();
        BrowserSettings& settings = *window.browser->settings();
        QCOMPARE(settings.zoom(), 170.0);
        QCOMPARE(settings.recentDays(), 7);
        QVERIFY(settings.showInspector());
        settings.setZoom(240);
        settings.setSort(SortOrder::name);
        settings.setKindRaw(QStringLiteral("video"));
        settings.setRecursive(true);
        settings.setRecentDays(14);
        settings.setShowInspector(false);
        window.preferences->sync();
        Preferences read(window.home.path().child("settings.ini"));
        const BrowserSettings later(read);
        QCOMPARE(later.zoom(), 240.0);
        QCOMPARE(later.sort(), SortOrder::name);
        QCOMPARE(later.kindRaw(), QStringLiteral("video"));
        QVERIFY(later.recursive());
        QCOMPARE(later.recentDays(), 14);
        QVERIFY(!later.showInspector());
    }

    void aZoomBeyondItsSliderIsTheNearestOnIt_data() {
        QTest::addColumn<double>("kept");
        QTest::addColumn<double>("zoom");
        QTest::newRow("least") << 100.0 << 100.0;
        QTest::newRow("most") << 360.0 << 360.0;
        QTest::newRow("small") << 99.0 << 100.0;
        QTest::newRow("nothing") << 0.0 << 100.0;
        QTest::newRow("as wide as no gap") << -14.0 << 100.0;
        QTest::newRow("huge") << 1e300 << 360.0;
    }
    void aZoomBeyondItsSliderIsTheNearestOnIt() {
        QFETCH(double, kept);
        TestHome home;
        Preferences preferences(home.path().child("settings.ini"));
        preferences.setValue(PreferenceKeys::zoom, kept);
        const BrowserSettings settings(preferences);
        QTEST(settings.zoom(), "zoom");
    }

    void theZoomLoadsNothing() {
        Window window;
        window.file("p/a.png");
        window.open(Place::folder(window.folder("p")));
        QTRY_VERIFY(window.browser->loaded());
        QTRY_VERIFY(!window.library->indexing());
        // What the end of the first walk caused has loaded once the derived index is there.
        QTRY_VERIFY(window.library->statsFor(window.folder("p")).count == 1);
        int searches = 0;
        window.browser->setSearch(QStringLiteral("a"));
        QTRY_COMPARE(names(window.browser->assets()), strings({"a.png"}));
        window.browser->setContentSearch([&](const QString&, const std::optional<QString>&, int) {
            ++searches;
            return QStringList();
        });
        window.browser->settings()->setZoom(300);
        window.browser->settings()->setShowInspector(false);
        window.browser->settings()->setSort(SortOrder::oldest);
        QTRY_VERIFY(searches > 0);
        QTest::qWait(0);
        QCOMPARE(searches, 1);
        QCOMPARE(window.browser->rows()->zoom(), 300.0);
    }
};

QTEST_GUILESS_MAIN(TestBrowserSettings)
#include "tst_browsersettings.moc"
