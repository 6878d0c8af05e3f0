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
        Corrupt,  ///< the file there is not a database of ours
        Unusable, ///< it cannot be read or written
    };

    SqliteDatabase();
    ~SqliteDatabase();
    SqliteDatabase(const SqliteDatabase &) = delete;
    SqliteDatabase &operator=(const SqliteDatabase &) = delete;

    /// Opens the file, which is created with mode 0600 when it is missing, or a database in memory for an empty path.
    [[nodiscard]] OpenResult open(const QString &path);
    void close();

    [[nodiscard]] std::optional<Row> row(const QString &key) const;
    [[nodiscard]] QList<Row> rows() const;
    [[nodiscard]] bool store(const Row &row);
    [[nodiscard]] bool remove(const QString &key);
    /// A number that changes when another connection has committed.
    [[nodiscard]] qint64 dataVersion() const;
    [[nodiscard]] QString lastError() const;

    /// What the last failure says about the file, for one that happened on opening.
    [[nodiscard]] OpenResult openFailure() const;

    /// Makes all changes of `work` or, when it returns false, none of them.
    [[nodiscard]] bool inTransaction(const std::function<bool()> &work);
    /// Lets `work` read one state of the database, whatever other processes write meanwhile.
    [[nodiscard]] bool inSnapshot(const std::function<bool()> &work);
    /// For a table beside that of the values.
    [[nodiscard]] bool run(const char *sql);
    [[nodiscard]] SqliteStatement prepare(const char *sql);

private:
    struct CloseDatabase
    {
        void operator()(sqlite3 *database) const;
    };
    [[nodiscard]] bool prepareAll();
    [[nodiscard]] bool isIntact();
    [[nodiscard]] bool between(const char *begin, const std::function<bool()> &work);

    std::unique_ptr<sqlite3, CloseDatabase> m_database;
    QString m_failure; ///< of the last transaction
    SqliteStatement m_select;
    SqliteStatement m_selectAll;
    SqliteStatement m_store;
    SqliteStatement m_remove;
    SqliteStatement m_dataVersion;
};

} // namespace quillhaven
