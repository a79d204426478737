// SPDX-License-Identifier: GPL-3.0-or-later
#include "InsightStore.h"

#include "JsonFile.h"

#include <cmath>

namespace lumbra {

namespace {

constexpr char schema[] = R"(PRAGMA journal_mode=WAL;
PRAGMA synchronous=NORMAL;
CREATE TABLE IF NOT EXISTS insights(
    path TEXT PRIMARY KEY, name TEXT, size INTEGER, modified REAL,
    title TEXT, summary TEXT, tags TEXT, labels TEXT, text TEXT, transcript TEXT, note TEXT,
    featureprint BLOB, level INTEGER, analyzed REAL);
CREATE INDEX IF NOT EXISTS insights_fingerprint ON insights(name, size, modified);
CREATE VIRTUAL TABLE IF NOT EXISTS insights_fts USING fts5(
    path UNINDEXED, name, title, summary, tags, labels, text, transcript, note,
    tokenize = 'unicode61 remove_diacritics 2');)";

// As `SELECT *` yields them.
struct Column {
    enum {
        path,
        name, // not read: the path tells it
        size,
        modified,
        title,
        summary,
        tags,
        labels,
        text,
        transcript,
        note,
        featurePrint,
        level,
        analyzed,
    };
};

// Another process may be making the same database, or be taking its log down as the last to leave.
constexpr std::chrono::seconds patienceAtFirst{2};

constexpr double sameMoment = 1; // s; file systems and copies round modification times

bool isBlank(QChar letter) {
    return letter.category() == QChar::Separator_Space || letter == u'\t';
}

QStringList listOf(const QString& joined) {
    QStringList list;
    for (QStringView piece : QStringView(joined).split(u',')) {
        while (!piece.isEmpty() && isBlank(piece.front()))
            piece = piece.mid(1);
        while (!piece.isEmpty() && isBlank(piece.back()))
            piece.chop(1);
        if (!piece.isEmpty())
            list << piece.toString();
    }
    return list;
}

Insight insightOf(const Database::Row& row) {
    Insight insight(row.text(Column::path), row.integer(Column::size), row.real(Column::modified));
    insight.title = row.text(Column::title);
    insight.summary = row.text(Column::summary);
    insight.tags = listOf(row.text(Column::tags));
    insight.labels = listOf(row.text(Column::labels));
    insight.text = row.text(Column::text);
    insight.transcript = row.text(Column::transcript);
    insight.note = row.text(Column::note);
    insight.featurePrint = row.bytes(Column::featurePrint);
    insight.level = int(row.integer(Column::level));
    insight.analyzed = row.real(Column::analyzed);
    return insight;
}

bool isAboutSameFile(const Insight& insight, qint64 size, double modified) {
    return std::abs(insight.modified - modified) < sameMoment && insight.size == size;
}

} // namespace

InsightStore::InsightStore(const Location& url) : m_url(url) {
    JsonFile::makeFolder(url.parent());
    if (!m_database.open(url))
        throw StoreError(QStringLiteral("couldn't open ") + url.toString());
    m_database.setPatience(patienceAtFirst);
    if (const auto error = m_database.execute(schema))
        throw StoreError(*error);
    m_database.setPatience({});
}

std::shared_ptr<InsightStore> InsightStore::atLibrary(const Location& root) {
    return std::make_shared<InsightStore>(root.child(relativePath));
}

void InsightStore::save(const Insight& insight) {
    const std::lock_guard turn(m_queue);
    if (!ready())
        return;
    if (m_indexIsDamaged)
        rebuildIndex();
    if (!writeRow(insight) && m_database.lastFailureWasDamage() && rebuildIndex())
        writeRow(insight);
}

std::optional<Insight> InsightStore::lookup(const QString& path, qint64 size, double modified) {
    const std::lock_guard turn(m_queue);
    if (!ready())
        return std::nullopt;
    std::optional<Insight> found;
    const auto takeFirst = [&found](const Database::Row& row) {
        found = insightOf(row);
        return false;
    };
    // A failure must not pass for a path without a row: what stands there would be moved upon.
    if (!m_database.read("SELECT * FROM insights WHERE path = ?", {path}, takeFirst))
        return std::nullopt;
    if (found)
        return isAboutSameFile(*found, size, modified) ? found : std::nullopt;

    m_database.read("SELECT * FROM insights WHERE name = ? AND size = ? AND abs(modified - ?) < 1",
                    {Insight::nameOf(path), size, modified}, takeFirst);
    // If its file is still there, this one is a copy.
    if (!found || Location(QStringView(found->path)).exists())
        return std::nullopt;
    // Whether or not it can be written down, it is this file's.
    moveRow(found->path, path);
    found->path = path;
    return found;
}

QStringList InsightStore::search(const QString& query, const std::optional<QString>& under, int limit) {
    const QString match = matchExpression(query);
    if (match.isEmpty())
        return {};
    const std::lock_guard turn(m_queue);
    QStringList paths;
    const auto take = [&paths](const Database::Row& row) {
        if (!row.isNull(0))
            paths << row.text(0);
        return true;
    };
    const auto run = [&] {
        paths.clear();
        if (!ready())
            return false;
        return under ? m_database.read("SELECT path FROM insights_fts WHERE insights_fts MATCH ? AND path LIKE ?"
                                       " ORDER BY rank LIMIT ?",
                                       {match, *under + u'%', qint64(limit)}, take)
                     : m_database.read("SELECT path FROM insights_fts WHERE insights_fts MATCH ? ORDER BY rank LIMIT ?",
                                       {match, qint64(limit)}, take);
    };
    if (!run() && m_database.lastFailureWasDamage()) {
        // It may be the connection that is wrong, not the file.
        m_database.close();
        m_indexIsDamaged = !run() && m_database.lastFailureWasDamage();
    }
    return paths;
}

QList<InsightStore::FeaturePrint> InsightStore::featurePrintsUnder(const QString& prefix) {
    const std::lock_guard turn(m_queue);
    if (!ready())
        return {};
    QList<FeaturePrint> prints;
    m_database.read("SELECT path, featureprint FROM insights WHERE path LIKE ? AND featureprint IS NOT NULL",
                    {prefix + u'%'}, [&prints](const Database::Row& row) {
                        if (const auto print = row.bytes(1))
                            prints.append({row.text(0), *print});
                        return true;
                    });
    return prints;
}

void InsightStore::forget(const QString& path) {
    const std::lock_guard turn(m_queue);
    if (!ready())
        return;
    m_database.atomically([&] {
        return m_database.write("DELETE FROM insights WHERE path = ?", {path})
               && m_database.write("DELETE FROM insights_fts WHERE path = ?", {path});
    });
}

int InsightStore::count() {
    const std::lock_guard turn(m_queue);
    int count = 0;
    if (ready()) {
        m_database.read("SELECT count(*) FROM insights", {}, [&count](const Database::Row& row) {
            count = int(row.integer(0));
            return false;
        });
    }
    return count;
}

QString InsightStore::matchExpression(const QString& query) {
    QString expression;
    bool inTerm = false;
    const auto endTerm = [&] {
        if (inTerm)
            expression += u"\"*";
        inTerm = false;
    };
    for (const char32_t letter : query.toLower().toUcs4()) {
        // A mark belongs to the letter before it: taken for a separator it would cut words in two that are written in
        // decomposed form, or in scripts whose vowels are marks.
        if (QChar::isLetterOrNumber(letter) || (inTerm && QChar::isMark(letter))) {
            if (!inTerm)
                expression += expression.isEmpty() ? u"\"" : u" \"";
            inTerm = true;
            expression += QChar::fromUcs4(letter);
        } else {
            endTerm();
        }
    }
    endTerm();
    return expression;
}

// The connection, made anew if its file was removed or replaced, or if it had to be given up. The folder is not made
// again: where a whole library is gone, such as with its disk, nothing is to be left in its place.
bool InsightStore::ready() {
    if (m_database.isOpen() && !m_database.hasLostItsFile())
        return true;
    if (!m_database.open(m_url))
        return false;
    if (m_database.execute(schema))
        m_database.close();
    return m_database.isOpen();
}

// One transaction: were the process to end, or another one to take the lock, between the row and its words, `lookup`
// would call the row good for ever and `search` would never find it.
bool InsightStore::writeRow(const Insight& insight) {
    using Value = Database::Value;
    const QString fileName = insight.name();
    const QString comma = QStringLiteral(", ");
    const Value print = insight.featurePrint ? Value(*insight.featurePrint) : Value();
    return m_database.atomically([&] {
        return m_database.write("INSERT OR REPLACE INTO insights(path, name, size, modified, title, summary, tags, "
                                "labels, text, transcript, note, featureprint, level, analyzed)\n"
                                "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
                                {insight.path, fileName, insight.size, insight.modified, insight.title, insight.summary,
                                 insight.tags.join(comma), insight.labels.join(comma), insight.text, insight.transcript,
                                 insight.note, print, qint64(insight.level), insight.analyzed})
               && m_database.write("DELETE FROM insights_fts WHERE path = ?", {insight.path})
               && m_database.write(
                   "INSERT INTO insights_fts(path, name, title, summary, tags, labels, text, transcript, "
                   "note) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)",
                   {insight.path, fileName, insight.title, insight.summary, insight.tags.join(u' '),
                    insight.labels.join(u' '), insight.text, insight.transcript, insight.note});
    });
}

bool InsightStore::moveRow(const QString& from, const QString& to) {
    return m_database.atomically([&] {
        return m_database.write("UPDATE insights SET path = ? WHERE path = ?", {to, from})
               && m_database.write("UPDATE insights_fts SET path = ? WHERE path = ?", {to, from});
    });
}

// Makes the index of words anew from what it was given, over a fresh connection. Tried once: a disk that spoils what it
// is given would keep us at it for ever.
bool InsightStore::rebuildIndex() {
    if (!std::exchange(m_mayRebuild, false))
        return false;
    m_database.close();
    m_indexIsDamaged = !ready() || !m_database.write("INSERT INTO insights_fts(insights_fts) VALUES('rebuild')", {});
    return !m_indexIsDamaged;
}

} // namespace lumbra
