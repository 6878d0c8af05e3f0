// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QString>

#include <memory>

struct sqlite3;
struct sqlite3_stmt;

namespace quillhaven {

/// A prepared SQL statement. Its database must be open for as long as it is run.
class SqliteStatement
{
public:
    SqliteStatement() = default;
    /// Empty when the SQL cannot be prepared; the database then knows the reason.
    SqliteStatement(sqlite3 *database, const char *sql);

    [[nodiscard]] explicit operator bool() const { return m_statement != nullptr; }
    [[nodiscard]] sqlite3_stmt *get() const { return m_statement.get(); }

private:
    struct Finalize
    {
        void operator()(sqlite3_stmt *statement) const;
    };
    std::unique_ptr<sqlite3_stmt, Finalize> m_statement;
};

/// One run of a statement with its values for ?1, ?2 and so on; its end leaves the statement ready for the next run.
/// Bytes that are bound must outlive the run.
class SqliteRun
{
public:
    template <typename... Values>
    explicit SqliteRun(const SqliteStatement &statement, const Values &...values) : m_statement(statement.get())
    {
        (bind(values), ...);
    }
    ~SqliteRun();
    SqliteRun(const SqliteRun &) = delete;
    SqliteRun &operator=(const SqliteRun &) = delete;

    /// Goes to the next row; false after the last one, and at a failure.
    [[nodiscard]] bool next();
    /// Runs to the end, past any rows; false when that fails.
    [[nodiscard]] bool finish();
    [[nodiscard]] bool hasFailed() const { return m_hasFailed; }

    /// The columns of the current row, from 0; NULL reads as empty or 0.
    [[nodiscard]] QByteArray bytes(int column) const;
    [[nodiscard]] QString text(int column) const;
    [[nodiscard]] qint64 integer(int column) const;

private:
    void bind(const QString &text);
    void bind(const QByteArray &bytes);
    void bind(qint64 integer);

    sqlite3_stmt *m_statement;
    int m_boundCount = 0;
    bool m_hasFailed = false;
};

} // namespace quillhaven
