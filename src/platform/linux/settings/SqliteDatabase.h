// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/linux/settings/SqliteStatement.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

struct sqlite3;

namespace quillhaven {

/// One open database file with a table of key, type and value. Every call returns whether it worked; `lastError` says
/// why it did not.
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
        Damaged,  ///< the file is not a database of ours, or is missing or empty while its log exists
        Unusable, ///< it cannot be read or written
    };

    SqliteDatabase();
    ~SqliteDatabase();
    SqliteDatabase(const SqliteDatabase &) = delete;
    SqliteDatabase &operator=(const SqliteDatabase &) = delete;

    /// Opens the file, which is created with mode 0600 when it is missing, or a database in memory for an empty path.
    [[nodiscard]] OpenResult open(const QString &path);
    /// Reads what the file and its log hold into a database in memory, without any change beside the file: for one that
    /// cannot be written. False when it cannot be read either.
    [[nodiscard]] bool openCopy(const QString &path);
    void close();

    /// Reads one row, which is empty for an absent key.
    [[nodiscard]] bool read(const QString &key, std::optional<Row> &row) const;
    /// All rows, or nothing when the read failed.
    [[nodiscard]] std::optional<QList<Row>> rows() const;
    [[nodiscard]] bool store(const Row &row);
    [[nodiscard]] bool remove(const QString &key);
    /// A number that changes when another connection has committed.
    [[nodiscard]] qint64 dataVersion() const;
    /// The reason of the last failure, of the opening or of a call on the open database.
    [[nodiscard]] QString lastError() const { return m_lastError; }

    /// What the last failure says about the file, for one that happened on opening.
    [[nodiscard]] OpenResult openFailure() const;

    /// Makes all changes of `work` or, when it returns false, none of them.
    [[nodiscard]] bool inTransaction(const std::function<bool()> &work);
    /// Lets `work` read one state of the database, whatever other processes write meanwhile.
    [[nodiscard]] bool inSnapshot(const std::function<bool()> &work) const;
    /// For a table beside that of the values.
    [[nodiscard]] bool run(const char *sql) const;
    [[nodiscard]] SqliteStatement prepare(const char *sql);

private:
    struct CloseDatabase
    {
        void operator()(sqlite3 *database) const;
    };
    [[nodiscard]] bool connectTo(const QByteArray &file);
    /// Makes the table and the statements.
    [[nodiscard]] OpenResult setUp();
    [[nodiscard]] bool prepareAll();
    [[nodiscard]] bool isIntact();
    /// Keeps the reason of a failure, which the next statement replaces. Returns what it is given.
    [[nodiscard]] bool noted(bool isDone) const;
    [[nodiscard]] bool between(const char *begin, const std::function<bool()> &work) const;

    std::unique_ptr<sqlite3, CloseDatabase> m_database;
    mutable QString m_lastError;
    SqliteStatement m_select;
    SqliteStatement m_selectAll;
    SqliteStatement m_store;
    SqliteStatement m_remove;
    SqliteStatement m_dataVersion;
};

} // namespace quillhaven
