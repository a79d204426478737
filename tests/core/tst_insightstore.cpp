// SPDX-License-Identifier: GPL-3.0-or-later
#include "InsightSupport.h"
#include "platform/Date.h"
#include "support/Strings.h"
#include "support/TestHome.h"

#include <QTest>

#include <thread>

using namespace lumbra;

namespace {

Insight full(const char* path = "/p/a.png") {
    Insight insight(QString::fromUtf8(path), 123456789012, 1700000000.25);
    insight.title = QStringLiteral("A fox");
    insight.summary = QStringLiteral("A fox jumps over “a” fence.\n'quoted'");
    insight.tags = strings({"red fox", "jump"});
    insight.labels = strings({"animal", "fence"});
    insight.text = QStringLiteral("WELCOME 狐 🦊");
    insight.transcript = QStringLiteral("hello there");
    insight.note = QStringLiteral("made for the poster");
    insight.featurePrint = QByteArray("\0\1\2\xff", 4);
    insight.level = 2;
    insight.analyzed = 1700000001.25;
    return insight;
}

// The statements that a connection runs while this lives.
class Trace {
public:
    Trace() {
        sqlite3_trace_v2(
            NewestConnection::get(), SQLITE_TRACE_STMT,
            [](unsigned, void* self, void* statement, void*) {
                static_cast<Trace*>(self)->m_statements << sqlite3_sql(static_cast<sqlite3_stmt*>(statement));
                return 0;
            },
            this);
    }
    ~Trace() { sqlite3_trace_v2(NewestConnection::get(), 0, nullptr, nullptr); }
    Q_DISABLE_COPY_MOVE(Trace)

    // Without those that the index of words makes for itself.
    QList<QByteArray> statements() const {
        QList<QByteArray> own;
        for (const QByteArray& statement : m_statements)
            if (!statement.contains("'main'.") && !own.contains(statement))
                own << statement;
        return own;
    }

private:
    QList<QByteArray> m_statements;
};

} // namespace

class InsightStoreTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { NewestConnection::watch(); }

    void init() {
        m_home = std::make_unique<TestHome>();
        m_root = m_home->folder("library");
        m_file = m_root.child(".lumbra/insights.sqlite");
        m_store = InsightStore::atLibrary(m_root);
    }

    void cleanup() {
        m_store.reset();
        QCOMPARE(soundness(m_file), QByteArray("ok"));
        m_home.reset();
    }

    // A new record.

    void aNewRecordHoldsNothingAndIsOfNow() {
        const Date before = Date::now();
        const Insight insight(QStringLiteral("/p/a.png"), 5, 7.5);
        QCOMPARE(insight.path, QStringLiteral("/p/a.png"));
        QCOMPARE(insight.size, 5);
        QCOMPARE(insight.modified, 7.5);
        QVERIFY(insight.title.isEmpty() && insight.summary.isEmpty() && insight.text.isEmpty()
                && insight.transcript.isEmpty() && insight.note.isEmpty());
        QVERIFY(insight.tags.isEmpty() && insight.labels.isEmpty() && !insight.featurePrint);
        QCOMPARE(insight.level, 0);
        QVERIFY(insight.analyzed >= before.seconds && insight.analyzed <= Date::now().seconds);
    }

    void theNameIsTheLastComponent_data() {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("name");
        QTest::newRow("file") << "/p/a.png"
                              << "a.png";
        QTest::newRow("trailing slashes") << "/p/a//"
                                          << "a";
        QTest::newRow("without a folder") << "a.png"
                                          << "a.png";
        QTest::newRow("root") << "/"
                              << "/";
        QTest::newRow("nothing") << ""
                                 << "";
        QTest::newRow("with a newline") << "/p/a\nb%.png"
                                        << "a\nb%.png";
    }
    void theNameIsTheLastComponent() {
        QFETCH(QString, path);
        QTEST(Insight(path, 0, 0).name(), "name");
    }

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

    // Searching.

    void aQueryIsReadAsBeginningsOfWords_data() {
        QTest::addColumn<QString>("query");
        QTest::addColumn<QString>("expression");
        QTest::newRow("nothing") << ""
                                 << "";
        QTest::newRow("blanks") << " \t\n"
                                << "";
        QTest::newRow("punctuation") << "\"'-_.*():^+{}"
                                     << "";
        QTest::newRow("a word") << "fox"
                                << "\"fox\"*";
        QTest::newRow("in lower case") << "FoX"
                                       << "\"fox\"*";
        QTest::newRow("a file name") << "final_v2.mp4"
                                     << "\"final\"* \"v2\"* \"mp4\"*";
        QTest::newRow("quotes") << "\"red\" \"fox"
                                << "\"red\"* \"fox\"*";
        QTest::newRow("operators") << "a NOT b OR c NEAR(d)"
                                   << "\"a\"* \"not\"* \"b\"* \"or\"* \"c\"* \"near\"* \"d\"*";
        QTest::newRow("a column's name") << "title:fox"
                                         << "\"title\"* \"fox\"*";
        QTest::newRow("umlauts") << "ÜBER"
                                 << "\"über\"*";
        QTest::newRow("numbers of other kinds") << "½ ⅷ ²"
                                                << "\"½\"* \"ⅷ\"* \"²\"*";
        QTest::newRow("beyond sixteen bits") << "𝐀"
                                             << "\"𝐀\"*";
        QTest::newRow("pictures") << "🦊fox🦊"
                                  << "\"fox\"*";
        QTest::newRow("a decomposed accent") << "cafe\u0301s"
                                             << "\"cafe\u0301s\"*";
        QTest::newRow("a mark on nothing") << "\u0301"
                                           << "";
        QTest::newRow("a zero") << QStringLiteral("a\0b") << "\"a\"* \"b\"*";
    }
    void aQueryIsReadAsBeginningsOfWords() {
        QFETCH(QString, query);
        QTEST(InsightStore::matchExpression(query), "expression");
    }

    void aQueryWithoutTermsRunsNothing() {
        const Trace trace;
        QCOMPARE(found(*m_store, ""), QStringList());
        QCOMPARE(found(*m_store, " -\"'. "), QStringList());
        QCOMPARE(trace.statements(), QList<QByteArray>());
    }

    void everyTermMustBegin_data() {
        QTest::addColumn<QString>("query");
        QTest::addColumn<bool>("finds");
        QTest::newRow("whole word") << "harbour" << true;
        QTest::newRow("beginning") << "harb" << true;
        QTest::newRow("inside") << "arbour" << false;
        QTest::newRow("other case") << "HARBOUR" << true;
        QTest::newRow("two words in any order") << "night harbour" << true;
        QTest::newRow("one of them absent") << "harbour day" << false;
        QTest::newRow("in different columns") << "harbour poster" << true;
        QTest::newRow("file name") << "final_v2.mp4" << true;
        QTest::newRow("part of the file name") << "final.mp" << true;
        QTest::newRow("title") << "dusk" << true;
        QTest::newRow("summary") << "boats" << true;
        QTest::newRow("tag") << "blue" << true;
        QTest::newRow("second tag of two words") << "hour" << true;
        QTest::newRow("label") << "water" << true;
        QTest::newRow("transcript") << "ahoy" << true;
        QTest::newRow("folder") << "projects" << false;
        QTest::newRow("accent left out") << "cafe" << true;
        QTest::newRow("accent given") << "CAFÉ" << true;
        QTest::newRow("accent in two characters") << "cafe\u0301" << true;
        QTest::newRow("a word that is an operator") << "NOT" << false;
        QTest::newRow("an operator that is a word") << "and" << true;
        QTest::newRow("quotes around") << "\"harbour\"" << true;
        QTest::newRow("a quote alone") << "harbour\"" << true;
        QTest::newRow("a star") << "harb*" << true;
    }
    void everyTermMustBegin() {
        QFETCH(QString, query);
        QFETCH(bool, finds);
        Insight insight(QStringLiteral("/projects/one/final_v2.mp4"), 1, 1);
        insight.title = QStringLiteral("Dusk");
        insight.summary = QStringLiteral("Boats and ropes.");
        insight.tags = strings({"blue", "golden hour"});
        insight.labels = strings({"water"});
        insight.text = QStringLiteral("Harbour at night, Café de la Mer");
        insight.transcript = QStringLiteral("ahoy");
        insight.note = QStringLiteral("for the poster");
        m_store->save(insight);
        QCOMPARE(m_store->search(query, std::nullopt, 10), finds ? QStringList{insight.path} : QStringList());
    }

    void aHundredTermsAreNothingSpecial() {
        Insight insight = full();
        QString words;
        for (int i = 0; i < 1000; ++i)
            words += QStringLiteral(" w%1").arg(i);
        insight.text = words;
        m_store->save(insight);
        QCOMPARE(m_store->search(words.left(words.indexOf(u"w100 ")), std::nullopt, 10), strings({"/p/a.png"}));
        // More than the index takes in reads as no results, at most.
        m_store->search(words, std::nullopt, 10);
        QCOMPARE(found(*m_store, "w999"), strings({"/p/a.png"}));
    }

    void aSearchKeepsToItsPrefix_data() {
        QTest::addColumn<QString>("under");
        QTest::addColumn<QStringList>("paths");
        QTest::newRow("with its slash") << "/p/a/" << strings({"/p/a/1.png"});
        QTest::newRow("without it") << "/p/a" << strings({"/p/a/1.png", "/p/ab/2.png"});
        QTest::newRow("nothing there") << "/q/" << QStringList();
        QTest::newRow("empty") << "" << strings({"/p/a/1.png", "/p/a_c/3.png", "/p/ab/2.png", "/p/abc/4.png"});
        QTest::newRow("an underscore stands for any letter") << "/p/a_c/" << strings({"/p/a_c/3.png", "/p/abc/4.png"});
        QTest::newRow("a percent sign for any text") << "%c/" << strings({"/p/a_c/3.png", "/p/abc/4.png"});
    }
    void aSearchKeepsToItsPrefix() {
        QFETCH(QString, under);
        QFETCH(QStringList, paths);
        for (const char* path : {"/p/a/1.png", "/p/ab/2.png", "/p/a_c/3.png", "/p/abc/4.png"})
            m_store->save(insightWith(path, "fox"));
        QStringList all = m_store->search(QStringLiteral("fox"), under, 10);
        all.sort();
        if (under == u"/p/a")
            paths = strings({"/p/a/1.png", "/p/a_c/3.png", "/p/ab/2.png", "/p/abc/4.png"});
        QCOMPARE(all, paths);
    }

    void theBestComeFirst() {
        m_store->save(insightWith("/p/rare.png", "fox and a great many other words that make it say little about it"));
        m_store->save(insightWith("/p/much.png", "fox fox fox"));
        m_store->save(insightWith("/p/none.png", "goose"));
        QCOMPARE(found(*m_store, "fox"), strings({"/p/much.png", "/p/rare.png"}));
        QCOMPARE(found(*m_store, "fox", 1), strings({"/p/much.png"}));
        QCOMPARE(found(*m_store, "fox", 0), QStringList());
    }

    void wordsWithoutAPathAreSkipped() {
        QVERIFY(sqliteRuns(m_file, "INSERT INTO insights_fts(path, text) VALUES(NULL, 'fox');"));
        m_store->save(insightWith("/p/a.png", "fox"));
        QCOMPARE(found(*m_store, "fox"), strings({"/p/a.png"}));
        QVERIFY(sqliteRuns(m_file, "DELETE FROM insights_fts WHERE path IS NULL;"));
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

    // With others.

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

private:
    std::unique_ptr<TestHome> m_home;
    Location m_root;
    Location m_file;
    std::shared_ptr<InsightStore> m_store;
};

QTEST_GUILESS_MAIN(InsightStoreTest)
#include "tst_insightstore.moc"
