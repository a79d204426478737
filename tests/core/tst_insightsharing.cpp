// SPDX-License-Identifier: GPL-3.0-or-later
#include "LibraryWithStore.h"
#include "support/Strings.h"

#include <QTest>

#include <atomic>
#include <thread>

using namespace lumbra;

class InsightSharingTest : public QObject, LibraryWithStore {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { NewestConnection::watch(); }
    void init() { makeLibrary(); }
    void cleanup() { QCOMPARE(soundnessAtTheEnd(), QByteArray("ok")); }

    void aDatabaseThatTheCommandMadeIsUsable() {
        const Location made = m_home->folder("elsewhere").child("insights.sqlite");
        QCOMPARE(sqlitePrints(made, insightScript), QByteArray("wal"));
        QVERIFY(sqliteRuns(made, "INSERT OR REPLACE INTO insights VALUES('/p/a.png', 'a.png', 10, 1000.0, 'Fox', '', "
                                 "'red, quick', '', '', '', '', X'0102', 1, 5.0);"
                                 "DELETE FROM insights_fts WHERE path = '/p/a.png';"
                                 "INSERT INTO insights_fts(path, name, title, tags) VALUES('/p/a.png', 'a.png', 'Fox', "
                                 "'red quick');"));
        InsightStore store(made);
        const auto read = store.lookup(QStringLiteral("/p/a.png"), 10, 1000);
        QVERIFY(read.has_value());
        QCOMPARE(read->title, QStringLiteral("Fox"));
        QCOMPARE(read->tags, strings({"red", "quick"}));
        QCOMPARE(read->featurePrint, QByteArray("\1\2"));
        QCOMPARE(found(store, "quick"), strings({"/p/a.png"}));
        store.save(full());
        QCOMPARE(kept(store, full()), full());
        QCOMPARE(found(store, "quick"), QStringList());
        QCOMPARE(soundness(made), QByteArray("ok"));
    }

    void theCommandUsesADatabaseThatTheStoreMade() {
        m_store->save(full());
        m_store.reset();
        QCOMPARE(sqlitePrints(m_file, insightScript), QByteArray("wal"));
        QCOMPARE(sqlitePrints(m_file,
                              "SELECT path FROM insights_fts WHERE insights_fts MATCH '\"welc\"* \"fox\"*' ORDER BY "
                              "rank LIMIT 5;"),
                 QByteArray("/p/a.png"));
        QCOMPARE(sqlitePrints(m_file, "SELECT title FROM insights WHERE path = '/p/a.png';"), QByteArray("A fox"));
    }

    void theirSchemasAreTheSame() {
        const Location made = m_home->folder("elsewhere").child("insights.sqlite");
        QVERIFY(sqliteRuns(made, insightScript));
        const QByteArray schema =
            "SELECT type, name, tbl_name, sql FROM sqlite_master ORDER BY name; PRAGMA journal_mode;";
        QVERIFY(sqlitePrints(made, schema).contains("insights_fingerprint"));
        QCOMPARE(sqlitePrints(m_file, schema), sqlitePrints(made, schema));
    }

    void whatAnotherProcessWritesIsSeenAtOnce() {
        m_store->save(insightWith("/p/a.png", "fox"));
        QVERIFY(sqliteRuns(m_file, "UPDATE insights SET title = 'theirs' WHERE path = '/p/a.png';"
                                   "DELETE FROM insights_fts WHERE path = '/p/a.png';"
                                   "INSERT INTO insights_fts(path, title) VALUES('/p/a.png', 'theirs');"));
        QCOMPARE(kept(*m_store, insightWith("/p/a.png"))->title, QStringLiteral("theirs"));
        QCOMPARE(found(*m_store, "theirs"), strings({"/p/a.png"}));
        QCOMPARE(found(*m_store, "fox"), QStringList());
    }

    void anotherProcessWritesAtTheSameTime() {
        // Each loses what collides, and neither ever sees or leaves half of a change.
        QProcess other;
        other.setProcessChannelMode(QProcess::MergedChannels);
        other.start(QStringLiteral("sqlite3"), {QStringLiteral("-batch"), m_file.toString()});
        for (int i = 0; i < 300; ++i) {
            const QByteArray path = "'/other/" + QByteArray::number(i % 20) + ".png'";
            other.write("BEGIN IMMEDIATE; INSERT OR REPLACE INTO insights(path) VALUES(" + path
                        + "); DELETE FROM insights_fts WHERE path = " + path
                        + "; INSERT INTO insights_fts(path, text) VALUES(" + path + ", 'theirs'); COMMIT;\n");
        }
        other.write("SELECT 'done';\n");
        other.closeWriteChannel();
        QByteArray output;
        int saved = 0;
        int written = 0;
        while (other.state() != QProcess::NotRunning || saved < 50) {
            const Insight insight = insightWith(("/ours/" + std::to_string(saved++ % 20) + ".png").c_str(), "ours");
            m_store->save(insight);
            written += kept(*m_store, insight).has_value();
            QVERIFY(found(*m_store, "ours").size() <= 20);
            QVERIFY(found(*m_store, "theirs").size() <= 20);
            other.waitForReadyRead(0);
            output += other.readAll();
        }
        QVERIFY(output.contains("done"));
        QVERIFY(written > 0);
    }

    void manyThreadsAskAtOnce() {
        std::vector<std::jthread> threads;
        std::atomic<int> wrong = 0;
        for (int thread = 0; thread < 4; ++thread) {
            threads.emplace_back([&, thread] {
                for (int i = 0; i < 50; ++i) {
                    const std::string word = "w" + std::to_string(thread) + "x" + std::to_string(i);
                    const Insight insight = insightWith(("/t/" + word + ".png").c_str(), word.c_str());
                    m_store->save(insight);
                    if (kept(*m_store, insight) != insight
                        || found(*m_store, word.c_str()) != QStringList{insight.path})
                        ++wrong;
                }
            });
        }
        threads.clear();
        QCOMPARE(wrong.load(), 0);
        QCOMPARE(m_store->count(), 200);
    }
};

QTEST_GUILESS_MAIN(InsightSharingTest)
#include "tst_insightsharing.moc"
