// SPDX-License-Identifier: GPL-3.0-or-later
//
// Every call that an operation of the insight store makes is made to fail in turn, and what is left is looked at: at
// once, when nothing may be wrong, and after the same operation was repeated, when all must be right.
#include "FailingDisk.h"
#include "InsightSupport.h"
#include "support/Strings.h"
#include "support/TestHome.h"

#include <QTest>

using namespace lumbra;

namespace {

// Something that makes the n-th step of an operation fail, once or from then on.
struct Trouble {
    std::function<void(int n, bool forGood)> begin;
    std::function<bool()> end; // true when it was met
};

Trouble disk(FailingDisk::Fault fault) {
    return {[fault](int n, bool forGood) { FailingDisk::failAt(n, fault, forGood); }, &FailingDisk::mend};
}

// What the hooks below count; one operation is under trouble at a time.
struct Countdown {
    int left = 0;
    bool forGood = false;
    bool met = false;

    bool isOver() {
        if (left == 0 || --left > 0)
            return false;
        met = true;
        left = forGood ? 1 : 0;
        return true;
    }
};
Countdown countdown;

Trouble hook(void (*set)(sqlite3*), void (*unset)(sqlite3*)) {
    // The connection may be given up and made anew under way: only that which was prepared is looked after.
    static sqlite3* connection;
    return {[set](int n, bool forGood) {
                countdown = {n, forGood, false};
                connection = NewestConnection::get();
                set(connection);
            },
            [unset] {
                if (connection == NewestConnection::get())
                    unset(connection);
                countdown.left = 0;
                return countdown.met;
            }};
}

// A statement can't be prepared.
Trouble refusal() {
    return hook(
        [](sqlite3* connection) {
            sqlite3_set_authorizer(
                connection,
                [](void*, int, const char*, const char*, const char*, const char*) {
                    return countdown.isOver() ? SQLITE_DENY : SQLITE_OK;
                },
                nullptr);
        },
        [](sqlite3* connection) { sqlite3_set_authorizer(connection, nullptr, nullptr); });
}

// A statement is interrupted while it runs.
Trouble interruption() {
    return hook(
        [](sqlite3* connection) {
            sqlite3_progress_handler(
                connection, 1, [](void*) { return int(countdown.isOver()); }, nullptr);
        },
        [](sqlite3* connection) { sqlite3_progress_handler(connection, 0, nullptr, nullptr); });
}

// A commit turns into a rollback.
Trouble refusedCommit() {
    return hook(
        [](sqlite3* connection) {
            sqlite3_commit_hook(
                connection, [](void*) { return int(countdown.isOver()); }, nullptr);
        },
        [](sqlite3* connection) { sqlite3_commit_hook(connection, nullptr, nullptr); });
}

// Memory is refused. Set up before SQLite begins.
sqlite3_mem_methods memory;

void countAllocations() {
    sqlite3_config(SQLITE_CONFIG_GETMALLOC, &memory);
    sqlite3_mem_methods counted = memory;
    counted.xMalloc = [](int size) { return countdown.isOver() ? nullptr : memory.xMalloc(size); };
    counted.xRealloc = [](void* block, int size) {
        return countdown.isOver() ? nullptr : memory.xRealloc(block, size);
    };
    sqlite3_config(SQLITE_CONFIG_MALLOC, &counted);
}

Trouble wantOfMemory() {
    return {[](int n, bool forGood) {
                countdown = {n, forGood, false};
            },
            [] {
                countdown.left = 0;
                return countdown.met;
            }};
}

enum class Kind { error, full, locked, tornWrite, refusal, interruption, refusedCommit, wantOfMemory };

Trouble troubleOf(Kind kind) {
    switch (kind) {
    case Kind::error:
        return disk(FailingDisk::Fault::error);
    case Kind::full:
        return disk(FailingDisk::Fault::full);
    case Kind::locked:
        return disk(FailingDisk::Fault::locked);
    case Kind::tornWrite:
        return disk(FailingDisk::Fault::tornWrite);
    case Kind::refusal:
        return refusal();
    case Kind::interruption:
        return interruption();
    case Kind::refusedCommit:
        return refusedCommit();
    case Kind::wantOfMemory:
        return wantOfMemory();
    }
    Q_UNREACHABLE();
}

} // namespace

Q_DECLARE_METATYPE(Kind)

class InsightStoreFaultsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        FailingDisk::install();
        NewestConnection::watch();
    }

    void aSaveThatFailsAnywhereIsRepairedByTheNext_data() { troubles(); }
    void aSaveThatFailsAnywhereIsRepairedByTheNext() {
        const Insight before = insightWith("/p/a.png", "before");
        const Insight after = insightWith("/p/a.png", "after", 11);
        eachStep([&](InsightStore& store) { store.save(before); }, [&](InsightStore& store) { store.save(after); },
                 [&](InsightStore& store, bool done) {
                     // Either nothing has happened or everything.
                     const bool isNew = kept(store, after).has_value();
                     QVERIFY(isNew || !done);
                     QCOMPARE(kept(store, before).has_value(), !isNew);
                     QCOMPARE(found(store, "after"), isNew ? strings({"/p/a.png"}) : QStringList());
                     QCOMPARE(found(store, "before"), isNew ? QStringList() : strings({"/p/a.png"}));
                 });
    }

    void aFirstSaveThatFailsAnywhereIsRepairedByTheNext_data() { troubles(); }
    void aFirstSaveThatFailsAnywhereIsRepairedByTheNext() {
        const Insight insight = insightWith("/p/a.png", "fox");
        eachStep([](InsightStore&) {}, [&](InsightStore& store) { store.save(insight); },
                 [&](InsightStore& store, bool done) {
                     const bool isThere = kept(store, insight).has_value();
                     QVERIFY(isThere || !done);
                     QCOMPARE(found(store, "fox"), isThere ? strings({"/p/a.png"}) : QStringList());
                     QCOMPARE(store.count(), isThere ? 2 : 1);
                 });
    }

    void aMoveThatFailsAnywhereIsRecognisedByTheNextLookup_data() { troubles(); }
    void aMoveThatFailsAnywhereIsRecognisedByTheNextLookup() {
        const Insight old = insightWith("/gone/a.png", "fox");
        const Insight moved = insightWith("/p/a.png", "fox");
        eachStep([&](InsightStore& store) { store.save(old); },
                 [&](InsightStore& store) {
                     // An answer is right or absent.
                     const auto answer = kept(store, moved);
                     QVERIFY(!answer || (answer->path == moved.path && answer->text == moved.text));
                 },
                 [&](InsightStore& store, bool done) {
                     const QStringList paths = found(store, "fox");
                     QVERIFY(paths == strings({"/p/a.png"}) || (!done && paths == strings({"/gone/a.png"})));
                     QCOMPARE(store.count(), 2);
                     if (done)
                         QVERIFY(kept(store, moved).has_value());
                 });
    }

    void forgettingThatFailsAnywhereIsRepairedByTheNext_data() { troubles(); }
    void forgettingThatFailsAnywhereIsRepairedByTheNext() {
        const Insight insight = insightWith("/p/a.png", "fox");
        eachStep([&](InsightStore& store) { store.save(insight); },
                 [&](InsightStore& store) { store.forget(insight.path); },
                 [&](InsightStore& store, bool done) {
                     const bool isThere = kept(store, insight).has_value();
                     QVERIFY(!isThere || !done);
                     QCOMPARE(found(store, "fox"), isThere ? strings({"/p/a.png"}) : QStringList());
                 });
    }

    void aSearchThatFailsAnywhereLeavesTheNextOneRight_data() { troubles(); }
    void aSearchThatFailsAnywhereLeavesTheNextOneRight() {
        const Insight insight = insightWith("/p/a.png", "fox");
        eachStep([&](InsightStore& store) { store.save(insight); },
                 [&](InsightStore& store) {
                     const QStringList paths = found(store, "fox");
                     QVERIFY(paths.isEmpty() || paths == strings({"/p/a.png"}));
                 },
                 [&](InsightStore& store, bool) { QCOMPARE(found(store, "fox"), strings({"/p/a.png"})); });
    }

private:
    static void troubles() {
        QTest::addColumn<Kind>("kind");
        QTest::addColumn<bool>("forGood"); // until it is over, which it is before anybody looks
        QTest::addColumn<bool>("checkpoint");
        struct Row {
            const char* name;
            Kind kind;
        };
        for (const auto& [name, kind] : {Row{"a broken disk", Kind::error}, Row{"a full disk", Kind::full},
                                         Row{"a lock", Kind::locked}, Row{"a torn write", Kind::tornWrite}}) {
            QTest::addRow("%s", name) << kind << false << false;
            QTest::addRow("%s, all along", name) << kind << true << false;
            QTest::addRow("%s, with the log taken down", name) << kind << false << true;
            QTest::addRow("%s, all along, with the log taken down", name) << kind << true << true;
        }
        for (const auto& [name, kind] :
             {Row{"a refused statement", Kind::refusal}, Row{"an interruption", Kind::interruption},
              Row{"a refused commit", Kind::refusedCommit}, Row{"want of memory", Kind::wantOfMemory}}) {
            QTest::addRow("%s", name) << kind << false << false;
            // SQLite itself does not survive the interruption of all that it runs.
            if (kind != Kind::interruption)
                QTest::addRow("%s, all along", name) << kind << true << false;
        }
    }

    using Operation = std::function<void(InsightStore&)>;
    using Check = std::function<void(InsightStore&, bool done)>;

    // Makes the first, the second, the third ... step of the operation fail, each on a database of its own, until it
    // has no more steps; of the smallest ones, which are a thousand, some are left out. `check` sees the store after
    // the failure and, with `done`, after the operation was repeated.
    static void eachStep(const Operation& prepare, const Operation& operation, const Check& check) {
        QFETCH(Kind, kind);
        QFETCH(bool, forGood);
        QFETCH(bool, checkpoint);
        const Trouble trouble = troubleOf(kind);
        const bool isSave = QByteArray(QTest::currentTestFunction()).startsWith("aSave");
        const bool isSmall = kind == Kind::interruption || kind == Kind::wantOfMemory || kind == Kind::refusal;
        const int stride = !isSmall ? 1 : !isSave ? 29 : kind == Kind::refusal && !forGood ? 1 : 5;
        for (int n = 1;; n += stride) {
            const TestHome home;
            const Location file = home.path().child(".lumbra/insights.sqlite");
            auto store = std::make_unique<InsightStore>(file);
            if (checkpoint)
                sqlite3_wal_autocheckpoint(NewestConnection::get(), 1);
            store->save(insightWith("/p/other.png", "other"));
            prepare(*store);

            trouble.begin(n, forGood);
            operation(*store);
            const bool met = trouble.end();
            check(*store, false);
            if (QTest::currentTestFailed())
                qFatal("after step %d failed", n);
            operation(*store);
            check(*store, true);
            QCOMPARE(found(*store, "other"), strings({"/p/other.png"}));
            if (QTest::currentTestFailed())
                qFatal("after step %d failed and the operation was repeated", n);
            store.reset();
            expectSound(file);
            if (!met) {
                QVERIFY(n > 1 || kind == Kind::locked); // a search takes no lock that others hold
                return;
            }
        }
    }

    // As `soundness`, within this process: a child for each step would take minutes.
    static void expectSound(const Location& file) {
        OtherConnection connection(file);
        QVERIFY(connection.execute("INSERT INTO insights_fts(insights_fts) VALUES('integrity-check')"));
        QVERIFY(connection.holds("SELECT integrity_check = 'ok' FROM pragma_integrity_check"));
        QVERIFY(connection.holds("SELECT (SELECT count(*) FROM insights) = (SELECT count(*) FROM insights_fts)"));
        QVERIFY(connection.holds("SELECT count(*) = 0 FROM (SELECT path FROM insights EXCEPT SELECT path FROM "
                                 "insights_fts)"));
    }
};

int main(int argc, char* argv[]) {
    countAllocations(); // only before SQLite begins
    if (Location(QByteArray("/dev/shm")).isFolder())
        qputenv("TMPDIR", "/dev/shm"); // thousands of databases, each synced to its disk
    QCoreApplication application(argc, argv);
    InsightStoreFaultsTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_insightstorefaults.moc"
