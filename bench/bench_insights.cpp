// SPDX-License-Identifier: GPL-3.0-or-later
//
// bench_insights FOLDER: the insight store on 200,000 rows of text, beside a bare program that makes the same
// statements of the same library on a database of its own. The rows are made once and kept in the folder.
#include "Measure.h"
#include "core/InsightStore.h"

#include <sqlite3.h>
#include <sys/stat.h>

#include <cmath>
#include <filesystem>
#include <random>

using namespace lumbra;
namespace fs = std::filesystem;

namespace {

constexpr int rows = 200'000;
constexpr int words = 20'000;
constexpr int rounds = 9;

// The n-th commonest word of a language that has the shape of one: syllables, the common words short.
std::string word(int n) {
    static constexpr std::array onsets{"b", "c", "d", "f", "g", "h", "l",  "m",  "n",
                                       "p", "r", "s", "t", "v", "w", "st", "tr", "sh"};
    static constexpr std::array rimes{"a", "e", "i", "o", "u", "an", "er", "in", "ol", "ust", "ea", "it"};
    std::string text;
    int rest = n + 7;
    do {
        text += onsets[size_t(rest) % onsets.size()];
        rest /= int(onsets.size());
        text += rimes[size_t(rest + n) % rimes.size()];
        rest /= int(rimes.size());
    } while (rest > 0);
    return text;
}

class Writer {
public:
    // Each n-th of all words is used about 1/n as often as the first, as in what people write.
    QString sentence(int length) {
        QString text;
        for (int i = 0; i < length; ++i) {
            const double spread = std::pow(double(words), m_even(m_random));
            if (i > 0)
                text += u' ';
            text += QString::fromStdString(word(int(spread) - 1));
        }
        return text;
    }

    int below(int limit) { return int(m_even(m_random) * limit); }

private:
    std::mt19937 m_random{20};
    std::uniform_real_distribution<double> m_even{0, 1};
};

QString pathOf(int number) {
    static constexpr std::array stems{"frame", "hero-final", "shot", "thumbnail", "voice", "storyboard-v3"};
    return QStringLiteral("/home/someone/Lumbra/project-%1/batch-%2/%3_%4.png")
        .arg(number % 20, 2, 10, QLatin1Char('0'))
        .arg(number / 100, 4, 10, QLatin1Char('0'))
        .arg(QLatin1String(stems[size_t(number / 20) % stems.size()]))
        .arg(number, 6, 10, QLatin1Char('0'));
}

Insight insightOf(int number, Writer& writer) {
    Insight insight(pathOf(number), 10'000 + number % 1000, 1'700'000'000 + number);
    insight.title = writer.sentence(4);
    insight.summary = writer.sentence(14);
    for (int i = 0; i < 6; ++i)
        insight.tags << writer.sentence(1 + i % 2);
    for (int i = 0; i < 4; ++i)
        insight.labels << writer.sentence(1);
    // Most pictures hold few words, documents many.
    insight.text = writer.sentence(number % 10 == 0 ? writer.below(400) : writer.below(25));
    insight.transcript = number % 8 == 0 ? writer.sentence(writer.below(120)) : QString();
    insight.note = number % 3 == 0 ? writer.sentence(12) : QString();
    insight.featurePrint = QByteArray(630, char(number));
    insight.level = 1 + number % 2;
    return insight;
}

// The same statements by SQLite's own calls, and nothing else.
class Bare {
public:
    explicit Bare(const fs::path& file) {
        if (sqlite3_open(file.c_str(), &m_connection) != SQLITE_OK)
            std::exit(1);
        sqlite3_exec(m_connection, "PRAGMA journal_mode=WAL; PRAGMA synchronous=NORMAL;", nullptr, nullptr, nullptr);
    }
    ~Bare() { sqlite3_close(m_connection); }
    Q_DISABLE_COPY_MOVE(Bare)

    using Value = std::variant<QByteArray, qint64, double>;

    // How many rows there were; the texts of the first one's columns are read, as whoever asks would.
    int run(const char* sql, std::initializer_list<Value> values, int blob = -1) {
        sqlite3_stmt* statement = nullptr;
        sqlite3_prepare_v2(m_connection, sql, -1, &statement, nullptr);
        int position = 0;
        for (const Value& value : values) {
            ++position;
            if (const auto* text = std::get_if<QByteArray>(&value)) {
                if (position == blob)
                    sqlite3_bind_blob(statement, position, text->constData(), int(text->size()), SQLITE_TRANSIENT);
                else
                    sqlite3_bind_text(statement, position, text->constData(), -1, SQLITE_TRANSIENT);
            } else if (const auto* number = std::get_if<qint64>(&value)) {
                sqlite3_bind_int64(statement, position, *number);
            } else {
                sqlite3_bind_double(statement, position, std::get<double>(value));
            }
        }
        int found = 0;
        while (sqlite3_step(statement) == SQLITE_ROW) {
            ++found;
            for (int column = 0; column < sqlite3_column_count(statement); ++column)
                m_bytes += sqlite3_column_bytes(statement, column);
        }
        sqlite3_finalize(statement);
        return found;
    }

    void save(const Insight& insight) {
        const QByteArray path = insight.path.toUtf8(), name = insight.name().toUtf8(), title = insight.title.toUtf8(),
                         summary = insight.summary.toUtf8(), text = insight.text.toUtf8(),
                         transcript = insight.transcript.toUtf8(), note = insight.note.toUtf8();
        run("INSERT OR REPLACE INTO insights(path, name, size, modified, title, summary, tags, labels, text, "
            "transcript, "
            "note, featureprint, level, analyzed) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
            {path, name, insight.size, insight.modified, title, summary, insight.tags.join(u", ").toUtf8(),
             insight.labels.join(u", ").toUtf8(), text, transcript, note, *insight.featurePrint, qint64(insight.level),
             insight.analyzed},
            12);
        run("DELETE FROM insights_fts WHERE path = ?", {path});
        insertWords(insight);
    }

    void insertWords(const Insight& insight) {
        run("INSERT INTO insights_fts(path, name, title, summary, tags, labels, text, transcript, note) VALUES (?, ?, "
            "?, "
            "?, ?, ?, ?, ?, ?)",
            {insight.path.toUtf8(), insight.name().toUtf8(), insight.title.toUtf8(), insight.summary.toUtf8(),
             insight.tags.join(u' ').toUtf8(), insight.labels.join(u' ').toUtf8(), insight.text.toUtf8(),
             insight.transcript.toUtf8(), insight.note.toUtf8()});
    }

    int byPath(const QString& path) { return run("SELECT * FROM insights WHERE path = ?", {path.toUtf8()}); }

    int moved(const QString& path, qint64 size, double modified) {
        return run("SELECT * FROM insights WHERE name = ? AND size = ? AND abs(modified - ?) < 1",
                   {Insight::nameOf(path).toUtf8(), size, modified});
    }

    void move(const QString& from, const QString& to, qint64 size, double modified) {
        byPath(to);
        moved(to, size, modified);
        struct stat status;
        ::stat(from.toUtf8().constData(), &status);
        run("UPDATE insights SET path = ? WHERE path = ?", {to.toUtf8(), from.toUtf8()});
        run("UPDATE insights_fts SET path = ? WHERE path = ?", {to.toUtf8(), from.toUtf8()});
    }

    int search(const QString& query, int limit) {
        return run("SELECT path FROM insights_fts WHERE insights_fts MATCH ? ORDER BY rank LIMIT ?",
                   {InsightStore::matchExpression(query).toUtf8(), qint64(limit)});
    }

    void execute(const char* script) { sqlite3_exec(m_connection, script, nullptr, nullptr, nullptr); }

private:
    sqlite3* m_connection = nullptr;
    qint64 m_bytes = 0;
};

void make(const fs::path& file) {
    fs::remove(file);
    const fs::path begun = file.string() + ".part";
    fs::remove(begun);
    { InsightStore schema{Location(QByteArray::fromStdString(begun.string()))}; }
    {
        Bare bare(begun);
        Writer writer;
        bare.execute("BEGIN");
        for (int number = 0; number < rows; ++number) {
            const Insight insight = insightOf(number, writer);
            bare.run("INSERT INTO insights(path, name, size, modified, title, summary, tags, labels, text, transcript, "
                     "note, featureprint, level, analyzed) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
                     {insight.path.toUtf8(), insight.name().toUtf8(), insight.size, insight.modified,
                      insight.title.toUtf8(), insight.summary.toUtf8(), insight.tags.join(u", ").toUtf8(),
                      insight.labels.join(u", ").toUtf8(), insight.text.toUtf8(), insight.transcript.toUtf8(),
                      insight.note.toUtf8(), *insight.featurePrint, qint64(insight.level), insight.analyzed},
                     12);
            bare.insertWords(insight);
        }
        bare.execute("COMMIT; PRAGMA wal_checkpoint(TRUNCATE)");
    }
    fs::rename(begun, file);
}

// Medians of both in one row of results, microseconds.
void compare(const char* name, int times, const std::function<void(int)>& ours,
             const std::function<void(int)>& theirs) {
    std::vector<double> our;
    std::vector<double> their;
    for (int i = -1; i < times; ++i) {
        const auto timed = [i](const std::function<void(int)>& work, std::vector<double>& into) {
            const auto start = bench::Clock::now();
            work(i + 1);
            if (i >= 0)
                into.push_back(bench::millisecondsSince(start) * 1000);
        };
        // By turns, so that neither always finds what the other has just made warm.
        if (i % 2) {
            timed(ours, our);
            timed(theirs, their);
        } else {
            timed(theirs, their);
            timed(ours, our);
        }
    }
    bench::report(name, bench::median(our));
    bench::report((name + std::string("_bare")).c_str(), bench::median(their));
}

} // namespace

int main(int count, char** arguments) {
    if (count != 2) {
        std::fprintf(stderr, "usage: bench_insights FOLDER\n");
        return 2;
    }
    const fs::path folder = arguments[1];
    fs::create_directories(folder);
    const fs::path made = folder / "insights-1.sqlite";
    if (!fs::exists(made))
        make(made);
    const fs::path ourFile = folder / "ours.sqlite";
    const fs::path bareFile = folder / "bare.sqlite";
    for (const fs::path& file : {ourFile, bareFile}) {
        for (const char* suffix : {"", "-wal", "-shm"})
            fs::remove(file.string() + suffix);
        fs::copy_file(made, file);
    }

    {
        InsightStore store{Location(QByteArray::fromStdString(ourFile.string()))};
        Bare bare(bareFile);
        Writer writer;
        bench::report("insights_rows", store.count());

        const auto some = [](int i) { return i * 7919 % rows; };
        compare(
            "insights_lookup", 5000,
            [&](int i) {
                const int n = some(i);
                if (!store.lookup(pathOf(n), 10'000 + n % 1000, 1'700'000'000 + n))
                    std::exit(1);
            },
            [&](int i) { bare.byPath(pathOf(some(i))); });
        // A file that nobody has seen, with a name and a size that somebody has.
        const auto unseen = [](int n) { return QStringLiteral("/elsewhere/") + Insight::nameOf(pathOf(n)); };
        compare(
            "insights_unknown", 5000,
            [&](int i) {
                const int n = some(i);
                if (store.lookup(unseen(n), 10'000 + n % 1000, 1'600'000'000))
                    std::exit(1);
            },
            [&](int i) {
                const int n = some(i);
                bare.byPath(unseen(n));
                bare.moved(unseen(n), 10'000 + n % 1000, 1'600'000'000);
            });

        struct Query {
            const char* name;
            QString text;
        };
        const QString first = QString::fromStdString(word(700)), second = QString::fromStdString(word(40)),
                      third = QString::fromStdString(word(90));
        for (const Query& query :
             {Query{"insights_search_one", first}, Query{"insights_search_two", second + u' ' + third},
              Query{"insights_search_three", first.left(3) + u' ' + second + u' ' + third},
              Query{"insights_search_best", QStringLiteral("100019")},
              Query{"insights_search_worst", QStringLiteral("s")}}) {
            int found = 0;
            compare(
                query.name, rounds, [&](int) { found = int(store.search(query.text, std::nullopt, 2000).size()); },
                [&](int) { bare.search(query.text, 2000); });
            bench::report((query.name + std::string("_all")).c_str(), bare.search(query.text, -1));
            if (found == 0)
                std::exit(1);
        }

        const auto changed = [&](int i) {
            Writer again; // the same words for both
            return insightOf(some(i), again);
        };
        compare(
            "insights_save", rounds, [&](int i) { store.save(changed(i)); }, [&](int i) { bare.save(changed(i)); });
        compare(
            "insights_move", rounds,
            [&](int i) {
                const int n = some(i + 100);
                if (!store.lookup(unseen(n), 10'000 + n % 1000, 1'700'000'000 + n))
                    std::exit(1);
            },
            [&](int i) {
                const int n = some(i + 100);
                bare.move(pathOf(n), unseen(n), 10'000 + n % 1000, 1'700'000'000 + n);
            });
    }
    fs::remove(ourFile);
    fs::remove(bareFile);
}
