// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/PreferenceKeys.h"
#include "platform/Tasks.h"
#include "support/Strings.h"
#include "support/TestHome.h"
#include "understanding/InsightEngine.h"

#include <QFile>
#include <QSignalSpy>
#include <QTest>

using namespace lumbra;

namespace {

constexpr std::string_view database = "library/.lumbra/insights.sqlite";

// Whatever was begun by now has been tried, and its end has come to the main thread.
void finishOpening() {
    Tasks::pool(Tasks::Pool::userInitiated).waitForDone();
    QCoreApplication::processEvents();
}

} // namespace

class InsightEngineTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void itsSwitchIsKept() {
        TestHome home;
        Library library(home.folder("library"), true);
        {
            InsightEngine engine(&library);
            QVERIFY(engine.enabled());
            QSignalSpy changed(&engine, &InsightEngine::enabledChanged);
            engine.setEnabled(false);
            engine.setEnabled(false);
            QCOMPARE(changed.count(), 1);
        }
        QVERIFY(!InsightEngine(&library).enabled());
        Preferences::shared().remove(PreferenceKeys::insightsEnabled.key);
        QVERIFY(InsightEngine(&library).enabled());
    }

    void atFirstThereIsNoWork() {
        TestHome home;
        Library library(home.folder("library"), true);
        const InsightEngine engine(&library);
        QCOMPARE(engine.done(), 0);
        QCOMPARE(engine.planned(), 0);
        QVERIFY(!engine.current() && !engine.paused());
    }

    void theStoreOpensInTheBackground() {
        TestHome home;
        Library library(home.folder("library"), true);
        InsightEngine engine(&library);
        QVERIFY(!engine.store());
        QSignalSpy opened(&engine, &InsightEngine::storeOpened);
        QTRY_VERIFY(engine.store());
        QCOMPARE(opened.count(), 1);
        QVERIFY(home.path().child(database).exists());

        engine.store()->save(Insight(QStringLiteral("/p/fox.png"), 1, 1));
        QCOMPARE(engine.store()->search(QStringLiteral("fox"), std::nullopt, 5), strings({"/p/fox.png"}));
    }

    void nothingIsMadeBeforeALibraryIsChosen() {
        TestHome home;
        const Location root = home.path().child("library");
        Library library(root, false);
        InsightEngine engine(&library);
        finishOpening();
        QVERIFY(!engine.store());
        QVERIFY(!root.exists());
        // The folder that was offered is taken.
        home.folder("library");
        library.setOnboarding(false);
        QTRY_VERIFY(engine.store());
        // Showing the first run again changes nothing.
        const auto store = engine.store();
        QSignalSpy opened(&engine, &InsightEngine::storeOpened);
        library.setOnboarding(true);
        library.setOnboarding(false);
        finishOpening();
        QCOMPARE(engine.store(), store);
        QCOMPARE(opened.count(), 0);
    }

    void withoutAStoreTheEngineStands_data() {
        QTest::addColumn<QByteArray>("path");
        QTest::newRow("no database") << QByteArray(database.data());
        QTest::newRow("a file for its folder") << QByteArray("library/.lumbra");
    }
    void withoutAStoreTheEngineStands() {
        QFETCH(QByteArray, path);
        TestHome home;
        const QByteArray text(10'000, 'x');
        const Location inTheWay = home.file(path.constData(), text);
        Library library(home.folder("library"), true);
        InsightEngine engine(&library);
        QSignalSpy opened(&engine, &InsightEngine::storeOpened);
        finishOpening();
        QCOMPARE(opened.count(), 0);
        QVERIFY(!engine.store());
        // What is no database of ours is left alone.
        QFile file(inTheWay.toString());
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), text);
    }
};

QTEST_GUILESS_MAIN(InsightEngineTest)
#include "tst_insightengine.moc"
