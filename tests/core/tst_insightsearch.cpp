// SPDX-License-Identifier: GPL-3.0-or-later
#include "LibraryWithStore.h"
#include "support/Strings.h"

#include <QTest>

using namespace lumbra;

class InsightSearchTest : public QObject, LibraryWithStore {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { NewestConnection::watch(); }
    void init() { makeLibrary(); }
    void cleanup() { QCOMPARE(soundnessAtTheEnd(), QByteArray("ok")); }

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
};

QTEST_GUILESS_MAIN(InsightSearchTest)
#include "tst_insightsearch.moc"
