// What has been understood about each file, kept in one SQLite database inside the library, with an index of its words.
//
// Other processes open the same database at the same time. It is a cache of what can be derived again: an operation
// that fails, because the database is locked, full, read-only or damaged, has no effect and says nothing. What it
// leaves is never half of a change, so a file whose saving failed is found to be missing, and is saved anew.
//
// Operations are synchronous, safe on any thread, and wait for one another; one that changes the index of words looks
// through all its rows. Ask off the main thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CoreError.h"
#include "Database.h"
#include "Insight.h"

#include <memory>
#include <mutex>

namespace lumbra {

class InsightStore {
public:
    class StoreError : public CoreError {
    public:
        using CoreError::CoreError;
    };

    struct FeaturePrint {
        QString path;
        QByteArray print;

        friend bool operator==(const FeaturePrint&, const FeaturePrint&) = default;
    };

    // Where the database is below the library's root.
    static constexpr std::string_view relativePath = ".lumbra/insights.sqlite";

    // Opens the database, and makes it and the folders above it if need be. Throws CoreError when the folder can't be
    // made, StoreError when the database can't be opened or used.
    explicit InsightStore(const Location& url);

    // The one of a library; throws as above.
    static std::shared_ptr<InsightStore> atLibrary(const Location& root);

    // Replaces what is kept of the record's path.
    void save(const Insight& insight);

    // What is kept of a file that has this size, and this modification time to the second, now. A file that was moved
    // to another folder is recognised by its name and keeps what is known of it; that of a file that was renamed or has
    // changed is absent.
    std::optional<Insight> lookup(const QString& path, qint64 size, double modified);

    // Paths whose words hold all the query's terms as beginnings of words, best first, at most `limit`. `under` is put
    // before a wildcard as it stands: it wants its trailing slash, and a "%" or "_" in it stands for anything.
    QStringList search(const QString& query, const std::optional<QString>& under, int limit);

    // All feature prints of files whose path begins so, in no order; the prefix is taken as in `search`.
    QList<FeaturePrint> featurePrintsUnder(const QString& prefix);

    void forget(const QString& path);

    // How many files are kept.
    int count();

    // The query as the index of words reads it, each term a quoted beginning of a word; empty when it has no terms. A
    // term is a run of letters and numbers, with the marks upon them.
    static QString matchExpression(const QString& query);

private:
    bool ready();
    bool writeRow(const Insight& insight);
    bool moveRow(const QString& from, const QString& to);
    bool rebuildIndex();

    const Location m_url;
    std::mutex m_queue; // held for each operation as a whole
    Database m_database;
    bool m_indexIsDamaged = false; // a search came upon it
    bool m_mayRebuild = true;
};

} // namespace lumbra
