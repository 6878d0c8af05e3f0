// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <memory>
#include <optional>

struct sqlite3;
struct sqlite3_stmt;

namespace quillhaven {

/// One database file with one table of key, type and value. Every call answers whether it worked; `lastError` says
/// why not.
class SqliteDatabase
{
public:
    struct Row
    {
        QString key;
        QString type;
        QByteArray value;

        bool operator==(const Row &) const = default;
    };
    enum class OpenResult {
        Opened,
        Corrupt,  ///< what stands there is no database of ours
        Unusable, ///< it cannot be read or written
    };

    SqliteDatabase();
    ~SqliteDatabase();
    SqliteDatabase(const SqliteDatabase &) = delete;
    SqliteDatabase &operator=(const SqliteDatabase &) = delete;

    /// Opens the file, making it with mode 0600 when it is missing, or a database in memory for an empty path.
    [[nodiscard]] OpenResult open(const QString &path);
    void close();

    [[nodiscard]] std::optional<Row> row(const QString &key) const;
    [[nodiscard]] QList<Row> rows() const;
    [[nodiscard]] bool store(const Row &row);
    [[nodiscard]] bool remove(const QString &key);
    /// A number that changes when another connection has committed.
    [[nodiscard]] qint64 dataVersion() const;
    [[nodiscard]] QString lastError() const;

private:
    struct CloseDatabase
    {
        void operator()(sqlite3 *database) const;
    };
    struct FinalizeStatement
    {
        void operator()(sqlite3_stmt *statement) const;
    };
    using Statement = std::unique_ptr<sqlite3_stmt, FinalizeStatement>;

    [[nodiscard]] bool run(const char *sql);
    [[nodiscard]] bool prepareAll();
    [[nodiscard]] Statement prepare(const char *sql);
    [[nodiscard]] bool isIntact();

    std::unique_ptr<sqlite3, CloseDatabase> m_database;
    Statement m_select;
    Statement m_selectAll;
    Statement m_store;
    Statement m_remove;
    Statement m_dataVersion;
};

} // namespace quillhaven
