// What the tests of the insight store share: records, the command-line sqlite3 as the other process, and a hold on the
// store's own connection.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/InsightStore.h"

#include <QFile>
#include <QProcess>

#include <sqlite3.h>

namespace lumbra {

// The script that makes the database, as every process that uses it must state it.
inline constexpr char insightScript[] = "PRAGMA journal_mode=WAL;\n"
                                        "PRAGMA synchronous=NORMAL;\n"
                                        "CREATE TABLE IF NOT EXISTS insights(\n"
                                        "    path TEXT PRIMARY KEY, name TEXT, size INTEGER, modified REAL,\n"
                                        "    title TEXT, summary TEXT, tags TEXT, labels TEXT, text TEXT, transcript "
                                        "TEXT, note TEXT,\n"
                                        "    featureprint BLOB, level INTEGER, analyzed REAL);\n"
                                        "CREATE INDEX IF NOT EXISTS insights_fingerprint ON insights(name, size, "
                                        "modified);\n"
                                        "CREATE VIRTUAL TABLE IF NOT EXISTS insights_fts USING fts5(\n"
                                        "    path UNINDEXED, name, title, summary, tags, labels, text, transcript, "
                                        "note,\n"
                                        "    tokenize = 'unicode61 remove_diacritics 2');";

inline Insight insightWith(const char* path, const char* text = "", qint64 size = 10, double modified = 1000) {
    Insight insight(QString::fromUtf8(path), size, modified);
    insight.text = QString::fromUtf8(text);
    insight.level = 1;
    return insight;
}

// One with something in every field.
inline Insight full(const char* path = "/p/a.png") {
    Insight insight(QString::fromUtf8(path), 123456789012, 1700000000.25);
    insight.title = QStringLiteral("A fox");
    insight.summary = QStringLiteral("A fox jumps over “a” fence.\n'quoted'");
    insight.tags = {QStringLiteral("red fox"), QStringLiteral("jump")};
    insight.labels = {QStringLiteral("animal"), QStringLiteral("fence")};
    insight.text = QStringLiteral("WELCOME 狐 🦊");
    insight.transcript = QStringLiteral("hello there");
    insight.note = QStringLiteral("made for the poster");
    insight.featurePrint = QByteArray("\0\1\2\xff", 4);
    insight.level = 2;
    insight.analyzed = 1700000001.25;
    return insight;
}

inline QStringList found(InsightStore& store, const char* query, int limit = 100) {
    return store.search(QString::fromUtf8(query), std::nullopt, limit);
}

// What is kept of the record's file as it is.
inline std::optional<Insight> kept(InsightStore& store, const Insight& insight) {
    return store.lookup(insight.path, insight.size, insight.modified);
}

// What the command prints for the script, trimmed; "failed" and why when it fails.
inline QByteArray sqlitePrints(const Location& file, const QByteArray& script) {
    QProcess process;
    process.start(QStringLiteral("sqlite3"), {QStringLiteral("-batch"), QStringLiteral("-bail"), file.toString()});
    process.write(script);
    process.closeWriteChannel();
    if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        return "failed: " + process.readAllStandardError();
    return process.readAllStandardOutput().trimmed();
}

inline bool sqliteRuns(const Location& file, const QByteArray& script) {
    return !sqlitePrints(file, script).startsWith("failed");
}

// Whether table and index of words are whole and tell of the same paths, each once.
inline QByteArray soundness(const Location& file) {
    return sqlitePrints(
        file, "PRAGMA integrity_check;"
              "INSERT INTO insights_fts(insights_fts) VALUES('integrity-check');"
              "SELECT 'words of ' || path FROM (SELECT path FROM insights_fts EXCEPT SELECT path FROM insights);"
              "SELECT 'no words of ' || path FROM (SELECT path FROM insights EXCEPT SELECT path FROM "
              "insights_fts);"
              "SELECT 'twice ' || path FROM insights_fts GROUP BY path HAVING count(*) > 1;");
}

// Another connection to the database, as another process has it.
class OtherConnection {
public:
    explicit OtherConnection(const Location& file) {
        if (sqlite3_open(file.path().constData(), &m_connection) != SQLITE_OK)
            qFatal("cannot open %s", file.path().constData());
    }
    ~OtherConnection() { sqlite3_close(m_connection); }
    Q_DISABLE_COPY_MOVE(OtherConnection)

    bool execute(const char* script) {
        return sqlite3_exec(m_connection, script, nullptr, nullptr, nullptr) == SQLITE_OK;
    }

    // The one value that the statement yields is true.
    bool holds(const char* statement) {
        bool holds = false;
        const auto note = [](void* into, int, char** values, char**) {
            *static_cast<bool*>(into) = values[0] && values[0][0] == '1';
            return 0;
        };
        return sqlite3_exec(m_connection, statement, note, &holds, nullptr) == SQLITE_OK && holds;
    }

private:
    sqlite3* m_connection = nullptr;
};

// Notes the newest connection of this process, which is how a test reaches the one that a store keeps to itself.
class NewestConnection {
public:
    static void watch() { sqlite3_auto_extension(reinterpret_cast<void (*)()>(&note)); }
    static sqlite3* get() { return connection; }

private:
    static int note(sqlite3* opened, char**, const void*) {
        connection = opened;
        return SQLITE_OK;
    }

    static inline sqlite3* connection = nullptr;
};

// The statements that the newest connection runs while this lives.
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

} // namespace lumbra
