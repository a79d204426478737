// What a page holds, and when it loads.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "BrowserWindow.h"
#include "core/Stars.h"
#include "support/Strings.h"

#include <QSignalSpy>
#include <QTest>

#include <atomic>

using namespace lumbra;

namespace {

constexpr double day = 86400;

} // namespace

class TestBrowser : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aFolderPageIsReadFromDisk() {
        Window window;
        window.file("p/b.png", 20);
        window.file("p/a.png", 10);
        window.file("p/sub/c.png");
        window.open(Place::folder(window.folder("p")));
        Browser& browser = *window.browser;
        QTRY_VERIFY(browser.loaded());
        QCOMPARE(browser.assets().size(), 2);
        QCOMPARE(browser.assets().first().url.name(), QStringLiteral("a.png"));
        QCOMPARE(browser.folders(), QList<Location>{window.folder("p/sub")});
        QCOMPARE(browser.order().assets(), browser.assets());
        QCOMPARE(browser.rows()->rowCount() > 0, true);
        QCOMPARE(browser.title(), QStringLiteral("p"));
        QCOMPARE(browser.status(), QStringLiteral("2 items, 1 folder · 2 bytes"));
    }

    void aRecursivePageShowsWhatLiesBelow() {
        Window window;
        window.file("p/a.png");
        window.file("p/sub/b.png");
        window.file("q/c.png");
        window.open(Place::folder(window.folder("p")));
        window.browser->settings()->setRecursive(true);
        QTRY_COMPARE(names(window.browser->assets()), (strings({"a.png", "b.png"})));
        QVERIFY(window.browser->folders().isEmpty());
    }

    void thePageFollowsTheFiles() {
        Window window;
        window.file("p/a.png");
        window.open(Place::folder(window.folder("p")));
        QTRY_COMPARE(names(window.browser->assets()), strings({"a.png"}));
        QTRY_VERIFY(!window.library->indexing());
        window.file("p/b.png");
        QTRY_COMPARE(names(window.browser->assets()), (strings({"a.png", "b.png"})));
    }

    void thePageFollowsWhatBecomesOfItsFiles() {
        Window window;
        const Location changed = window.file("p/a.png");
        window.file("p/b.png");
        const Location gone = window.file("p/c.png");
        window.open(Place::folder(window.folder("p")));
        QTRY_VERIFY(!window.library->indexing());
        QTRY_COMPARE(names(window.browser->assets()), (strings({"a.png", "b.png", "c.png"})));
        for (int time = 1; time < 3; ++time) { // the facts come from the disk first, then from the index
            (void)window.home.file("Library/p/a.png", QByteArray(time, 'x'));
            const auto sizeOfA = [&] {
                for (const Asset& asset : window.browser->assets())
                    if (asset.url == changed)
                        return asset.size;
                return qint64(-1);
            };
            QTRY_COMPARE(sizeOfA(), qint64(time));
        }
        QVERIFY(Stars::write(changed, true));
        QTRY_VERIFY(window.browser->assets().contains(Asset::read(changed)));
        QVERIFY(QFile::remove(gone.toString()));
        QTRY_COMPARE(window.browser->assets().size(), 2);
        QVERIFY(QFile::rename(changed.toString(), gone.toString()));
        QTRY_VERIFY(window.browser->assets().contains(Asset::read(gone)));
        QTRY_COMPARE(window.browser->assets().size(), 2);
    }

    void theFeedHoldsWhatIsNewOutsideHiddenProjects() {
        Window window;
        window.file("p/new.png");
        window.file("p/old.png", 8 * day);
        window.file("secret/a.png");
        window.file("secret/b.mp4");
        window.open();
        QTRY_COMPARE(totalOf(*window.browser), 3);
        const auto hidden = window.library->projectContaining(window.folder("secret"));
        QVERIFY(hidden);
        window.library->hide(*hidden);
        QTRY_COMPARE(totalOf(*window.browser), 1);
        QCOMPARE(window.browser->kindCounts()[AssetKind::image], 1);
        QCOMPARE(window.browser->kindCounts()[AssetKind::video], 0);
        window.browser->settings()->setRecentDays(30);
        QTRY_COMPARE(totalOf(*window.browser), 2);
    }

    void anOldStarredFileIsOnTheShelfAndNotInTheFeed() {
        Window window;
        const Location file = window.file("p/a.png", 100 * day);
        star(file, 1000);
        window.open();
        QTRY_COMPARE(names(window.browser->shelf()), strings({"a.png"}));
        QVERIFY(window.browser->sections().isEmpty());
        QCOMPARE(window.browser->order().size(), 1);
    }

    void aHiddenProjectTakesItsStarsAlongAndBringsThemBack() {
        Window window;
        star(window.file("secret/a.png"), 1000);
        window.file("secret/b.png");
        window.open();
        QTRY_COMPARE(names(window.browser->shelf()), strings({"a.png"}));
        const Project secret = *window.library->projectContaining(window.folder("secret"));
        window.library->hide(secret);
        QTRY_VERIFY(window.browser->shelf().isEmpty() && window.browser->sections().isEmpty());
        QCOMPARE(window.browser->kindCounts(), KindCounts());
        window.library->setPlace(Place::starred());
        QTRY_VERIFY(window.browser->loaded());
        QVERIFY(window.browser->assets().isEmpty());
        window.library->unhide(secret);
        QTRY_COMPARE(names(window.browser->assets()), strings({"a.png"}));
    }

    void sixStarsFillTheShelfAndASeventhOnlyCounts() {
        Window window;
        for (int n = 1; n <= 7; ++n)
            star(window.file("p/" + std::to_string(n) + ".png", 100 * day), 1000.0 - n);
        window.open();
        QTRY_COMPARE(names(window.browser->shelf()), (strings({"1.png", "2.png", "3.png", "4.png", "5.png", "6.png"})));
        QTRY_COMPARE(window.browser->headers().value(QStringLiteral("starred")).value<SectionHeader>().detail,
                     QStringLiteral("7 kept"));
    }

    void theStarredPageKeepsTheOrderOfStarring() {
        Window window;
        star(window.file("p/first.png", 10), 1);
        star(window.file("p/last.png", 99), 2);
        window.open(Place::starred());
        window.browser->settings()->setSort(SortOrder::newest);
        QTRY_COMPARE(window.browser->assets().size(), 2);
        QCOMPARE(window.browser->assets().first().url.name(), QStringLiteral("last.png"));
        QCOMPARE(window.browser->subtitle(), QStringLiteral("2 kept"));
    }

    void aSectionRevealsMoreByFortyEightAndForgetsItOnAnotherPlace() {
        Window window;
        // Four of each folder stand alone, so seven folders give 28 entries.
        for (int folder = 0; folder < 7; ++folder)
            for (int n = 0; n < 4; ++n)
                window.file("p/" + std::to_string(folder) + "/" + std::to_string(n) + ".png");
        window.open();
        Browser& browser = *window.browser;
        QTRY_COMPARE(totalOf(browser), 28);
        QCOMPARE(browser.visibleEntries(browser.sections().first()).size(), 24);
        QCOMPARE(browser.order().size(), 24);
        browser.showMore(QStringLiteral("image"));
        QCOMPARE(browser.sectionLimits().of(AssetKind::image), 72);
        QCOMPARE(browser.order().size(), 28);
        browser.setSearch(QStringLiteral("png"));
        browser.settings()->setKindRaw(QStringLiteral("image"));
        QTRY_VERIFY(browser.loaded());
        QCOMPARE(browser.sectionLimits().of(AssetKind::image), 72);
        window.library->setPlace(Place::starred());
        QCOMPARE(browser.sectionLimits().of(AssetKind::image), 24);
    }

    void theButtonShowsFromTheTwentyFifthEntryOn() {
        Window window;
        for (int folder = 0; folder < 6; ++folder)
            for (int n = 0; n < 4; ++n)
                window.file("p/" + std::to_string(folder) + "/" + std::to_string(n) + ".png");
        window.open();
        PageRows& rows = *window.browser->rows();
        const auto button = [&] {
            return rows.data(rows.index(rows.rowCount() - 1), PageRows::rowRole).value<PageRow>().more;
        };
        QTRY_COMPARE(totalOf(*window.browser), 24);
        QVERIFY(button().isEmpty());
        window.file("p/6/x.png");
        QTRY_COMPARE(totalOf(*window.browser), 25);
        QCOMPARE(button(), QStringLiteral("Show More Images"));
    }

    void anUnknownKindIsNoFilter() {
        Window window;
        window.file("p/a.png");
        window.file("p/b.mp4");
        window.home.folder("Library/empty");
        window.open(Place::folder(window.folder("p")));
        window.browser->settings()->setKindRaw(QStringLiteral("sculpture"));
        QTRY_COMPARE(names(window.browser->assets()), (strings({"a.png", "b.mp4"})));
        window.library->setPlace(Place::folder(window.folder("empty")));
        QTRY_COMPARE(window.browser->emptyState().title, QStringLiteral("Nothing here yet"));
    }

    void showEverythingTakesTheFiltersAway() {
        Window window;
        window.file("p/a.png");
        window.open(Place::folder(window.folder("p")));
        window.browser->settings()->setKindRaw(QStringLiteral("video"));
        window.browser->setSearch(QStringLiteral("zz"));
        QTRY_COMPARE(window.browser->emptyState().title, QStringLiteral("No matches"));
        window.browser->showEverything();
        QTRY_COMPARE(names(window.browser->assets()), strings({"a.png"}));
        QCOMPARE(window.browser->settings()->kindRaw(), QStringLiteral("all"));
    }

    void withoutAContentSearchNothingWaitsForOneAndNamesDecide() {
        for (const bool onRecent : {false, true}) {
            Window window;
            window.file("p/cat.png");
            window.file("p/dog.png");
            window.open(onRecent ? Place::recent() : Place::folder(window.folder("p")));
            window.browser->setSearch(QStringLiteral("cat"));
            QTRY_VERIFY(window.browser->loaded());
            QTRY_COMPARE(names(window.browser->order().assets()), strings({"cat.png"}));
        }
    }

    void contentIsSearchedBelowTheFolderAndOffTheMainThread() {
        Window window;
        const Location found = window.file("p/a.png");
        window.file("p/b.png");
        window.open(Place::folder(window.folder("p")));
        std::atomic<bool> onMainThread = true;
        QString asked;
        window.browser->setContentSearch([&, main = QThread::currentThread()](
                                             const QString& query, const std::optional<QString>& prefix, int limit) {
            onMainThread = QThread::currentThread() == main;
            asked = QStringLiteral("%1 below %2, %3").arg(query, prefix.value_or(QString())).arg(limit);
            return QStringList{found.toString()};
        });
        window.browser->setSearch(QStringLiteral("Sunset"));
        QTRY_COMPARE(names(window.browser->assets()), strings({"a.png"}));
        QVERIFY(!onMainThread);
        QCOMPARE(asked, QStringLiteral("sunset below %1/, 2000").arg(window.folder("p").toString()));
    }

    void aLoadThatEndsAfterANewerOneIsMadeUpFor() {
        Window window;
        window.file("p/slow.png");
        window.file("p/quick.png");
        window.open(Place::folder(window.folder("p")));
        QTRY_COMPARE(window.browser->assets().size(), 2);
        std::atomic<bool> held = true;
        std::atomic<bool> ended = false;
        window.browser->setContentSearch([&](const QString& query, const std::optional<QString>&, int) {
            while (query == QStringLiteral("slow") && held)
                QThread::msleep(1);
            ended = ended || query == QStringLiteral("slow");
            return QStringList();
        });
        window.browser->setSearch(QStringLiteral("slow"));
        QTest::qWait(0);
        window.browser->setSearch(QStringLiteral("quick"));
        QTRY_COMPARE(names(window.browser->assets()), strings({"quick.png"}));
        const QSignalSpy stale(window.browser->rows(), &QAbstractItemModel::dataChanged);
        held = false;
        QTRY_VERIFY(ended && stale.size() >= 2); // the older result, and the newer one again
        QTRY_COMPARE(names(window.browser->assets()), strings({"quick.png"}));
    }

    void aLoadOfThePlaceBeforeDoesNotTurnThePageBack() {
        Window window;
        for (int n = 1; n <= 6; ++n)
            window.file("p/" + std::to_string(n) + ".png");
        window.open();
        QTRY_COMPARE(totalOf(*window.browser), 6);
        const int feedRows = window.browser->rows()->rowCount();
        std::atomic<bool> held = true;
        std::atomic<int> searches = 0;
        window.browser->setContentSearch([&](const QString&, const std::optional<QString>& prefix, int) {
            while (prefix && held)
                QThread::msleep(1);
            ++searches;
            return QStringList();
        });
        window.library->setPlace(Place::folder(window.folder("p")));
        window.browser->setSearch(QStringLiteral("p"));
        QTest::qWait(0);
        window.library->setPlace(Place::recent());
        QTRY_VERIFY(window.browser->loaded());
        held = false;
        QTRY_VERIFY(searches >= 3); // the folder's, the feed's, and the feed's once more
        QTRY_COMPARE(totalOf(*window.browser), 6);
        QCOMPARE(window.browser->rows()->rowCount(), feedRows);
        QCOMPARE(window.browser->rows()->data(window.browser->rows()->index(0), PageRows::sectionRole).toString(),
                 QStringLiteral("image"));
    }

    void contentIsSearchedEverywhereOnOtherPages() {
        Window window;
        window.file("p/a.png");
        window.open();
        QTRY_COMPARE(totalOf(*window.browser), 1);
        std::atomic<bool> everywhere = false;
        window.browser->setContentSearch([&](const QString&, const std::optional<QString>& prefix, int) {
            everywhere = !prefix.has_value();
            return QStringList();
        });
        window.browser->setSearch(QStringLiteral("zz"));
        QTRY_COMPARE(totalOf(*window.browser), 0);
        QVERIFY(everywhere);
    }

    void groupAndTidyPagesLeaveEveryListAlone_data() {
        QTest::addColumn<Place>("place");
        QTest::newRow("group") << Place::group(QUuid::createUuid());
        QTest::newRow("tidy") << Place::tidy();
    }
    void groupAndTidyPagesLeaveEveryListAlone() {
        QFETCH(Place, place);
        Window window;
        window.file("p/a.png");
        window.open(Place::folder(window.folder("p")));
        QTRY_COMPARE(window.browser->assets().size(), 1);
        window.library->setPlace(place);
        QVERIFY(!window.browser->loaded());
        QTRY_VERIFY(window.browser->loaded());
        QCOMPARE(window.browser->assets().size(), 1);
        QCOMPARE(window.browser->rows()->rowCount(), 0);
    }

    void aPlaceLeftAndComeBackToAtOnceLoads() {
        Window window;
        window.file("p/a.png");
        window.open(Place::folder(window.folder("p")));
        QTRY_VERIFY(window.browser->loaded());
        window.library->setPlace(Place::starred());
        window.library->setPlace(Place::folder(window.folder("p")));
        QTRY_VERIFY(window.browser->loaded());
        QCOMPARE(window.browser->assets().size(), 1);
    }
};

QTEST_GUILESS_MAIN(TestBrowser)
#include "tst_browser.moc"
