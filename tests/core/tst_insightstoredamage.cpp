// SPDX-License-Identifier: GPL-3.0-or-later
//
// The insight store on databases that are damaged, or replaced under it: operations return, and work again as soon as
// there is a good database.
#include "InsightTrouble.h"
#include "support/TestHome.h"

#include <QTest>

#include <filesystem>

using namespace lumbra;
namespace fs = std::filesystem;

class InsightStoreDamageTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        m_home = std::make_unique<TestHome>();
        m_file = m_home->folder("library/.lumbra").child("insights.sqlite");
    }

    void aTruncatedDatabaseHasNoStore() {
        fill(m_file);
        for (const double part : {0.9, 0.5, 0.1}) {
            const Location cut = m_home->path().child("cut.sqlite");
            removeDatabase(cut);
            fs::copy_file(m_file.view(), cut.view());
            fs::resize_file(cut.view(), uintmax_t(double(fs::file_size(m_file.view())) * part));
            QVERIFY(!errorOfOpening(cut).isEmpty());
        }
    }

    void aDatabaseSpoiltAnywhereIsSurvived() {
        fill(m_file);
        const auto size = qint64(fs::file_size(m_file.view()));
        const Location spoilt = m_home->path().child("spoilt.sqlite");
        for (qint64 at = 0; at < size; at += 4096) {
            removeDatabase(spoilt);
            fs::copy_file(m_file.view(), spoilt.view());
            overwrite(spoilt, at + 100, QByteArray(600, char(at / 4096 * 37)));
            try {
                InsightStore store(spoilt);
                useAll(store);
                useAll(store);
            } catch (const InsightStore::StoreError&) {
            }
        }
    }

    void aDatabaseSpoiltWhileOpenIsSurvivedAndUsedAgainOnceReplaced_data() {
        QTest::addColumn<QByteArray>("how");
        QTest::newRow("cut to nothing") << QByteArray("cut");
        QTest::newRow("cut in half") << QByteArray("half");
        QTest::newRow("filled with rubbish") << QByteArray("rubbish");
        QTest::newRow("removed") << QByteArray("removed");
        QTest::newRow("removed with its log") << QByteArray("all removed");
        QTest::newRow("a text in its place") << QByteArray("text");
        QTest::newRow("a folder in its place") << QByteArray("folder");
        QTest::newRow("its folder removed") << QByteArray("no folder");
    }
    void aDatabaseSpoiltWhileOpenIsSurvivedAndUsedAgainOnceReplaced() {
        QFETCH(QByteArray, how);
        fill(m_file);
        InsightStore store(m_file);
        store.save(fox);
        QVERIFY(isWhole(store, fox));

        const auto size = fs::file_size(m_file.view());
        if (how == "cut" || how == "half")
            fs::resize_file(m_file.view(), how == "cut" ? 0 : size / 2);
        else if (how == "rubbish")
            overwrite(m_file, 0, QByteArray(qsizetype(size), 'r'));
        else if (how == "no folder")
            fs::remove_all(m_file.parent().view());
        else if (how == "all removed")
            removeDatabase(m_file);
        else
            fs::remove(m_file.view());
        if (how == "text")
            m_home->file("library/.lumbra/insights.sqlite", QByteArray(5000, 't'));
        if (how == "folder")
            m_home->folder("library/.lumbra/insights.sqlite");
        useAll(store);
        useAll(store);
        if (how == "no folder")
            QVERIFY(!m_file.parent().exists());

        // Somebody puts a good one in its place.
        const Location good = m_home->path().child("good.sqlite");
        InsightStore(good).save(goose);
        fs::remove_all(m_file.view());
        removeDatabase(m_file);
        m_home->folder("library/.lumbra");
        fs::rename(good.view(), m_file.view());
        QVERIFY(isWhole(store, goose));
        QVERIFY(isAbsent(store, fox));
        store.save(fox);
        QVERIFY(isWhole(store, fox));
        QCOMPARE(soundness(m_file), QByteArray("ok"));
    }

    void aRemovedDatabaseIsBegunAnew() {
        InsightStore store(m_file);
        store.save(fox);
        removeDatabase(m_file);
        QVERIFY(isAbsent(store, fox));
        store.save(goose);
        QVERIFY(isWhole(store, goose));
        QCOMPARE(sqlitePrints(m_file, "SELECT path FROM insights;"), goose.path.toUtf8());
    }

    void aDatabaseThatIsReplacedAloneIsNotMixedWithTheOldLog() {
        InsightStore store(m_file);
        for (int i = 0; i < 50; ++i)
            store.save(insightWith(("/p/" + std::to_string(i) + ".png").c_str(), "fox"));
        QVERIFY(!bytesOf(Location(QByteArray(m_file.path() + "-wal"))).isEmpty());
        const Location good = m_home->path().child("good.sqlite");
        InsightStore(good).save(goose);
        fs::rename(good.view(), m_file.view());
        QCOMPARE(found(store, "fox"), QStringList());
        QVERIFY(isWhole(store, goose));
        QCOMPARE(store.count(), 1);
        QCOMPARE(soundness(m_file), QByteArray("ok"));
    }

    void aSpoiltIndexOfWordsIsMadeAnew_data() {
        QTest::addColumn<QByteArray>("script");
        QTest::newRow("its plan") << QByteArray("UPDATE insights_fts_data SET block = X'ffffffff' WHERE id = 10;");
        QTest::newRow("its words") << QByteArray("UPDATE insights_fts_data SET block = X'00' WHERE id > 10;");
        QTest::newRow("its words gone") << QByteArray("DELETE FROM insights_fts_data WHERE id > 10;");
    }
    void aSpoiltIndexOfWordsIsMadeAnew() {
        QFETCH(QByteArray, script);
        fill(m_file);
        InsightStore(m_file).save(fox);
        QVERIFY(sqliteRuns(m_file, script));
        InsightStore store(m_file);
        QCOMPARE(found(store, "fox"), QStringList());
        store.save(goose);
        QVERIFY(isWhole(store, goose));
        QVERIFY(isWhole(store, fox));
        QCOMPARE(soundness(m_file), QByteArray("ok"));
    }

private:
    std::unique_ptr<TestHome> m_home;
    Location m_file;
};

QTEST_GUILESS_MAIN(InsightStoreDamageTest)
#include "tst_insightstoredamage.moc"
