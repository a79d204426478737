// SPDX-License-Identifier: GPL-3.0-or-later
#include "Database.h"

#include <sqlite3.h>
#include <sys/stat.h>

#include <memory>

namespace lumbra {

namespace {

using Statement = std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)>;

// Zeros for a file that is not there.
std::pair<quint64, quint64> identityOf(const Location& file) {
    struct stat status;
    if (::stat(file.path().constData(), &status) != 0)
        return {};
    return {status.st_dev, status.st_ino};
}

struct Binder {
    sqlite3_stmt* statement;
    int position;

    int operator()(std::monostate) const { return sqlite3_bind_null(statement, position); }
    int operator()(const QString& text) const {
        return sqlite3_bind_text(statement, position, text.toUtf8().constData(), -1, SQLITE_TRANSIENT);
    }
    int operator()(qint64 number) const { return sqlite3_bind_int64(statement, position, number); }
    int operator()(double number) const { return sqlite3_bind_double(statement, position, number); }
    int operator()(const QByteArray& bytes) const {
        // The address of no bytes is not null either, and so they are bound as a blob without length rather than NULL.
        return sqlite3_bind_blob64(statement, position, bytes.constData(), sqlite3_uint64(bytes.size()),
                                   SQLITE_TRANSIENT);
    }
};

// Without a statement when it can't be prepared or a value can't be bound; `result` then says why.
Statement prepared(sqlite3* connection, const char* sql, std::initializer_list<Database::Value> values, int& result) {
    sqlite3_stmt* raw = nullptr;
    result = connection ? sqlite3_prepare_v2(connection, sql, -1, &raw, nullptr) : SQLITE_MISUSE;
    Statement statement(raw, sqlite3_finalize);
    int position = 0;
    for (const Database::Value& value : values) {
        if (result == SQLITE_OK)
            result = std::visit(Binder{raw, ++position}, value);
    }
    if (result != SQLITE_OK)
        statement.reset();
    return statement;
}

} // namespace

QString Database::Row::text(int column) const {
    return QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(m_statement, column)));
}

qint64 Database::Row::integer(int column) const {
    return sqlite3_column_int64(m_statement, column);
}

double Database::Row::real(int column) const {
    return sqlite3_column_double(m_statement, column);
}

std::optional<QByteArray> Database::Row::bytes(int column) const {
    const void* blob = sqlite3_column_blob(m_statement, column);
    const int size = sqlite3_column_bytes(m_statement, column);
    if (!blob || size < 1)
        return std::nullopt;
    return QByteArray(static_cast<const char*>(blob), size);
}

bool Database::Row::isNull(int column) const {
    return sqlite3_column_type(m_statement, column) == SQLITE_NULL;
}

bool Database::open(const Location& file) {
    close();
    m_file = file;
    const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_FULLMUTEX;
    m_failure = sqlite3_open_v2(file.path().constData(), &m_connection, flags, nullptr);
    if (m_failure != SQLITE_OK)
        close(); // a failed open leaves a handle too
    m_identity = identityOf(file);
    return isOpen();
}

void Database::close() {
    if (!m_connection)
        return;
    // What stands in the log beside a file that was replaced belongs to the old file: left there, it would be read into
    // the new one.
    if (hasLostItsFile())
        sqlite3_wal_checkpoint_v2(m_connection, nullptr, SQLITE_CHECKPOINT_TRUNCATE, nullptr, nullptr);
    sqlite3_close(m_connection);
    m_connection = nullptr;
}

bool Database::hasLostItsFile() const {
    return identityOf(m_file) != m_identity;
}

void Database::setPatience(std::chrono::milliseconds wait) {
    sqlite3_busy_timeout(m_connection, int(wait.count()));
}

std::optional<QString> Database::execute(const char* script) {
    char* message = nullptr;
    m_failure = sqlite3_exec(m_connection, script, nullptr, nullptr, &message);
    if (m_failure == SQLITE_OK)
        return std::nullopt;
    const QString text = message ? QString::fromUtf8(message) : QStringLiteral("unknown");
    sqlite3_free(message);
    return text;
}

bool Database::write(const char* sql, std::initializer_list<Value> values) {
    const Statement statement = prepared(m_connection, sql, values, m_failure);
    if (!statement)
        return false;
    const int result = sqlite3_step(statement.get());
    if (result == SQLITE_DONE)
        return true;
    m_failure = result;
    return false;
}

bool Database::read(const char* sql, std::initializer_list<Value> values, const OnRow& onRow) {
    const Statement statement = prepared(m_connection, sql, values, m_failure);
    if (!statement)
        return false;
    int result = sqlite3_step(statement.get());
    while (result == SQLITE_ROW && onRow(Row(statement.get())))
        result = sqlite3_step(statement.get());
    if (result == SQLITE_DONE || result == SQLITE_ROW)
        return true;
    m_failure = result;
    return false;
}

bool Database::atomically(const std::function<bool()>& work) {
    // At once the right to write, so that a write of another process is met before the first statement and not between
    // two.
    const bool begun = write("BEGIN IMMEDIATE", {});
    if (begun && work() && write("COMMIT", {}))
        return true;
    // A transaction may have begun though its beginning is said to have failed. None is ended by ROLLBACK, which can
    // fail as well, and after which the full-text index may go on with a picture of itself that is no longer that of
    // the file, and find it malformed.
    if (begun || (m_connection && !sqlite3_get_autocommit(m_connection)))
        close();
    return false;
}

bool Database::lastFailureWasDamage() const {
    const int primary = m_failure & 0xff;
    // A full-text index that has lost its plan comes upon its own entries as if they were somebody else's.
    return primary == SQLITE_CORRUPT || primary == SQLITE_NOTADB || primary == SQLITE_CONSTRAINT;
}

} // namespace lumbra
