// SPDX-License-Identifier: GPL-3.0-or-later
#include "LibraryWithStore.h"
#include "support/Strings.h"

#include <QTest>

using namespace lumbra;

class InsightStoreTest : public QObject, LibraryWithStore {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { NewestConnection::watch(); }
    void init() { makeLibrary(); }
    void cleanup() { QCOMPARE(soundnessAtTheEnd(), QByteArray("ok")); }

    // What is kept.

    void aRecordReadsAsItWasSaved() {
        m_store->save(full());
        QCOMPARE(kept(*m_store, full()), full());
        QCOMPARE(m_store->count(), 1);
    }

    void recordsOutliveTheStore() {
        m_store->save(full());
        m_store = InsightStore::atLibrary(m_root);
        QCOMPARE(kept(*m_store, full()), full());
        QCOMPARE(found(*m_store, "welcome"), strings({"/p/a.png"}));
    }

    void savingTwiceLeavesOneRowInEachTable() {
        m_store->save(full());
        Insight later = full();
        later.text = QStringLiteral("GOODBYE");
        m_store->save(later);
        m_store->save(later);
        QCOMPARE(kept(*m_store, later), later);
        QCOMPARE(found(*m_store, "goodbye"), strings({"/p/a.png"}));
        QCOMPARE(found(*m_store, "welcome"), QStringList());
        QCOMPARE(sqlitePrints(m_file, "SELECT count(*) FROM insights; SELECT count(*) FROM insights_fts;"),
                 QByteArray("1\n1"));
    }

    void columnsAreAsOtherProgramsExpectThem() {
        m_store->save(full());
        QCOMPARE(sqlitePrints(m_file,
                              ".mode quote\nSELECT path, name, size, modified, title, tags, labels, transcript, note, "
                              "featureprint, level, analyzed FROM insights;"),
                 QByteArray("'/p/a.png','a.png',123456789012,1700000000.25,'A fox','red fox, jump','animal, fence',"
                            "'hello there','made for the poster',X'000102ff',2,1700000001.25"));
        QCOMPARE(
            sqlitePrints(m_file,
                         ".mode quote\nSELECT path, name, title, tags, labels, transcript, note FROM insights_fts;"),
            QByteArray("'/p/a.png','a.png','A fox','red fox jump','animal fence','hello there',"
                       "'made for the poster'"));
    }

    void featurePrintsAreKept_data() {
        QTest::addColumn<std::optional<QByteArray>>("print");
        QTest::addColumn<QByteArray>("stored");
        QTest::addColumn<bool>("comesBack");
        QTest::newRow("absent") << std::optional<QByteArray>() << QByteArray("NULL") << false;
        QTest::newRow("no bytes") << std::optional(QByteArray()) << QByteArray("X''") << false;
        QTest::newRow("no bytes in a buffer") << std::optional(QByteArray("")) << QByteArray("X''") << false;
        QTest::newRow("one byte") << std::optional(QByteArray(1, '\0')) << QByteArray("X'00'") << true;
    }
    void featurePrintsAreKept() {
        QFETCH(std::optional<QByteArray>, print);
        QFETCH(bool, comesBack);
        Insight insight = full();
        insight.featurePrint = print;
        m_store->save(insight);
        QTEST(sqlitePrints(m_file, ".mode quote\nSELECT featureprint FROM insights;"), "stored");
        QCOMPARE(kept(*m_store, insight)->featurePrint, comesBack ? print : std::nullopt);
        QCOMPARE(m_store->featurePrintsUnder(QStringLiteral("/")).size(), comesBack ? 1 : 0);
    }

    void listsAreSplitAtCommas_data() {
        QTest::addColumn<QStringList>("saved");
        QTest::addColumn<QStringList>("read");
        QTest::newRow("none") << QStringList() << QStringList();
        QTest::newRow("one") << strings({"a b"}) << strings({"a b"});
        QTest::newRow("several") << strings({"a", "b", "c"}) << strings({"a", "b", "c"});
        QTest::newRow("with a comma inside") << strings({"a,b", "c"}) << strings({"a", "b", "c"});
        QTest::newRow("blanks around") << strings({" a ", "\tb"}) << strings({"a", "b"});
        QTest::newRow("empty ones") << strings({"", "a", " "}) << strings({"a"});
    }
    void listsAreSplitAtCommas() {
        QFETCH(QStringList, saved);
        QFETCH(QStringList, read);
        Insight insight = full();
        insight.tags = insight.labels = saved;
        m_store->save(insight);
        QCOMPARE(kept(*m_store, insight)->tags, read);
        QCOMPARE(kept(*m_store, insight)->labels, read);
    }

    void rowsOfOthersWithGapsAreRead() {
        QVERIFY(sqliteRuns(m_file, "INSERT INTO insights(path, size, modified) VALUES('/p/b.png', 3, 4.0);"
                                   "INSERT INTO insights_fts(path) VALUES('/p/b.png');"));
        const auto read = m_store->lookup(QStringLiteral("/p/b.png"), 3, 4);
        QVERIFY(read.has_value());
        Insight expected(QStringLiteral("/p/b.png"), 3, 4);
        expected.analyzed = 0;
        QCOMPARE(*read, expected);
    }

    void hostileTextsDoNoHarm_data() {
        QTest::addColumn<QString>("text");
        QTest::newRow("SQL") << QStringLiteral("'); DROP TABLE insights; --");
        QTest::newRow("one megabyte") << QStringLiteral("word ").repeated(200'000);
        QTest::newRow("one word of a megabyte") << QString(1'000'000, u'x');
        QTest::newRow("half a pair") << QString(QChar(0xD800));
    }
    void hostileTextsDoNoHarm() {
        QFETCH(QString, text);
        Insight insight = full();
        insight.text = text;
        m_store->save(insight);
        QVERIFY(kept(*m_store, insight).has_value());
        QCOMPARE(m_store->count(), 1);
    }

    void aTextEndsAtItsFirstZero() {
        Insight insight = full();
        insight.text = QStringLiteral("seen\0hidden");
        m_store->save(insight);
        QCOMPARE(kept(*m_store, insight)->text, QStringLiteral("seen"));
        QCOMPARE(found(*m_store, "hidden"), QStringList());
    }

    // Whether a row is a file's.

    void aRowStandsForTheFileAsItWas_data() {
        QTest::addColumn<double>("later");
        QTest::addColumn<qint64>("larger");
        QTest::addColumn<bool>("stands");
        QTest::newRow("unchanged") << 0.0 << qint64(0) << true;
        QTest::newRow("0.9 s later") << 0.9 << qint64(0) << true;
        QTest::newRow("0.9 s earlier") << -0.9 << qint64(0) << true;
        QTest::newRow("1 s later") << 1.0 << qint64(0) << false;
        QTest::newRow("1 s earlier") << -1.0 << qint64(0) << false;
        QTest::newRow("one byte more") << 0.0 << qint64(1) << false;
        QTest::newRow("at no time") << std::numeric_limits<double>::quiet_NaN() << qint64(0) << false;
    }
    void aRowStandsForTheFileAsItWas() {
        QFETCH(double, later);
        QFETCH(qint64, larger);
        const Insight insight = insightWith("/p/a.png");
        m_store->save(insight);
        QTEST(m_store->lookup(insight.path, insight.size + larger, insight.modified + later).has_value(), "stands");
        // Where it does not, it stays until it is replaced.
        QCOMPARE(m_store->count(), 1);
        QVERIFY(kept(*m_store, insight).has_value());
    }

    void aPathWithAnOutdatedRowIsNotTakenForAMovedFile() {
        m_store->save(insightWith("/gone/a.png", "elsewhere"));
        m_store->save(insightWith("/p/a.png", "before", 11));
        QVERIFY(!m_store->lookup(QStringLiteral("/p/a.png"), 10, 1000).has_value());
        QCOMPARE(found(*m_store, "elsewhere"), strings({"/gone/a.png"}));
    }

    void aMovedFileKeepsItsRow() {
        Insight insight = full("/gone/a.png");
        m_store->save(insight);
        insight.path = m_home->file("there/a.png").toString();
        // A copy between file systems may round the time.
        const auto moved = m_store->lookup(insight.path, insight.size, insight.modified + 0.4);
        QCOMPARE(moved, insight);
        QCOMPARE(kept(*m_store, insight), insight);
        QVERIFY(!kept(*m_store, full("/gone/a.png")).has_value());
        QCOMPARE(found(*m_store, "welcome"), QStringList{insight.path});
        QCOMPARE(m_store->count(), 1);
    }

    void aRenamedFileDoesNot() {
        m_store->save(full("/gone/a.png"));
        QVERIFY(!kept(*m_store, full("/p/b.png")).has_value());
        QCOMPARE(found(*m_store, "welcome"), strings({"/gone/a.png"}));
    }

    void aCopyGetsNoRow() {
        const Location original = m_home->file("here/a.png");
        Insight insight = full(original.path().constData());
        m_store->save(insight);
        QVERIFY(!kept(*m_store, full("/p/a.png")).has_value());
        QCOMPARE(kept(*m_store, insight), insight);
    }

    void ofTwoMatchesTheFirstDecides() {
        // Which one the database yields first is its own affair; whichever it is, its file being there ends the matter.
        const Location first = m_home->file("first/a.png");
        const Location second = m_home->file("second/a.png");
        m_store->save(full(first.path().constData()));
        m_store->save(full(second.path().constData()));
        const QByteArray chosen =
            sqlitePrints(m_file, "SELECT path FROM insights WHERE name = 'a.png' AND size = 123456789012 "
                                 "AND abs(modified - 1700000000.25) < 1 LIMIT 1;");
        const Location other = chosen == first.path() ? second : first;
        QVERIFY(QFile::remove(other.toString()));
        QVERIFY(!kept(*m_store, full("/p/a.png")).has_value());
        QVERIFY(QFile::remove(QString::fromUtf8(chosen)));
        QVERIFY(kept(*m_store, full("/p/a.png")).has_value());
        QCOMPARE(m_store->count(), 2);
    }

    void lookingUpStaysOnIndexes() {
        // A file that is unknown asks for both: its path and whether it was moved.
        const Trace trace;
        QVERIFY(!kept(*m_store, full()).has_value());
        const QList<QByteArray> statements = trace.statements();
        QCOMPARE(statements.size(), 2);
        QVERIFY(sqlitePrints(m_file, "EXPLAIN QUERY PLAN " + statements[0] + ";")
                    .contains("INDEX sqlite_autoindex_insights_1 (path=?)"));
        QVERIFY(sqlitePrints(m_file, "EXPLAIN QUERY PLAN " + statements[1] + ";")
                    .contains("INDEX insights_fingerprint (name=? AND size=?)"));
    }

    // The rest.

    void featurePrintsAreListedBelowAPrefix() {
        m_store->save(full("/p/a.png"));
        m_store->save(full("/q/b.png"));
        m_store->save(insightWith("/p/without.png"));
        QCOMPARE(m_store->featurePrintsUnder(QStringLiteral("/p/")),
                 (QList<InsightStore::FeaturePrint>{{QStringLiteral("/p/a.png"), QByteArray("\0\1\2\xff", 4)}}));
        QCOMPARE(m_store->featurePrintsUnder(QStringLiteral("/")).size(), 2);
        QCOMPARE(m_store->featurePrintsUnder(QStringLiteral("/r/")).size(), 0);
    }

    void aForgottenFileIsNeitherKeptNorFound() {
        m_store->save(full("/p/a.png"));
        m_store->save(full("/p/b.png"));
        m_store->forget(QStringLiteral("/p/a.png"));
        m_store->forget(QStringLiteral("/p/never.png"));
        QVERIFY(!kept(*m_store, full("/p/a.png")).has_value());
        QCOMPARE(found(*m_store, "welcome"), strings({"/p/b.png"}));
        QCOMPARE(m_store->count(), 1);
    }

    void statementsAreThoseOfTheFormat() {
        const Trace trace;
        m_store->save(full());
        QCOMPARE(trace.statements(),
                 (QList<QByteArray>{
                     "BEGIN IMMEDIATE",
                     "INSERT OR REPLACE INTO insights(path, name, size, modified, title, summary, tags, labels, text, "
                     "transcript, note, featureprint, level, analyzed)\n"
                     "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
                     "DELETE FROM insights_fts WHERE path = ?",
                     "INSERT INTO insights_fts(path, name, title, summary, tags, labels, text, transcript, note) "
                     "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)",
                     "COMMIT"}));
    }
};

QTEST_GUILESS_MAIN(InsightStoreTest)
#include "tst_insightstore.moc"
