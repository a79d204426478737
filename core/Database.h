// One connection to an SQLite database and the one way in which statements are run on it.
//
// A statement that fails has no effect and reports nothing but its result: what is kept here is derived from files, and
// can be derived again. Not safe on several threads at once; the owner puts its calls in a row.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Location.h"

#include <QByteArray>
#include <QString>

#include <chrono>
#include <functional>
#include <initializer_list>
#include <optional>
#include <utility>
#include <variant>

struct sqlite3;
struct sqlite3_stmt;

namespace lumbra {

class Database {
public:
    // What a statement takes, bound by its type; `std::monostate` is NULL. Texts end at their first zero.
    using Value = std::variant<std::monostate, QString, qint64, double, QByteArray>;

    // The row that a statement stands at; columns count from 0. Valid during the call that gets it.
    class Row {
    public:
        explicit Row(sqlite3_stmt* statement) : m_statement(statement) {}

        // NULL reads as the empty text.
        QString text(int column) const;
        qint64 integer(int column) const;
        double real(int column) const;
        // NULL and no bytes at all are absent.
        std::optional<QByteArray> bytes(int column) const;
        bool isNull(int column) const;

    private:
        sqlite3_stmt* m_statement;
    };

    // False ends the reading.
    using OnRow = std::function<bool(const Row&)>;

    Database() = default;
    ~Database() { close(); }
    Q_DISABLE_COPY_MOVE(Database)

    // Opens the file for reading and writing, and makes it if it is not there, but not its folder. False on failure;
    // it is then closed.
    bool open(const Location& file);
    void close();
    bool isOpen() const { return m_connection != nullptr; }

    // The file that was opened no longer stands under its name: it was removed, or another one took its place.
    bool hasLostItsFile() const;

    // How long a statement waits for other processes; without a call, and with nothing, not at all.
    void setPatience(std::chrono::milliseconds wait);

    // Runs a script of statements. The error's text when it fails, which may be "unknown".
    std::optional<QString> execute(const char* script);

    // Runs one statement for its effect. False when it failed.
    bool write(const char* statement, std::initializer_list<Value> values);

    // Runs one statement for its rows. False when it failed, be it after some rows.
    bool read(const char* statement, std::initializer_list<Value> values, const OnRow& onRow);

    // Runs `work` as one transaction: all its statements take effect or none does, even if the process dies in the
    // middle. False when `work` says so or anything fails; the connection is then closed, unless somebody else was
    // writing.
    bool atomically(const std::function<bool()>& work);

    // The last failure says that the database is damaged, if the statement could violate no constraint by itself.
    bool lastFailureWasDamage() const;

private:
    sqlite3* m_connection = nullptr;
    Location m_file;
    std::pair<quint64, quint64> m_identity; // device and inode of the opened file
    int m_failure = 0;                      // SQLite's result code of what failed last
};

} // namespace lumbra
