// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/UserDefaults.h"
#include "platform/linux/files/ScopedFd.h"
#include "platform/linux/settings/SqliteArrays.h"
#include "platform/linux/settings/SqliteDatabase.h"

#include <QHash>

#include <memory>
#include <optional>

class QFileSystemWatcher;

namespace quillhaven {

/// One domain of settings as a SQLite database (WAL), `<directory>/<name>.db`, mode 0600. Several processes may have it
/// open at a time; each sees the changes of the others at once, and reports them from its event loop.
class SqliteUserDefaults : public UserDefaults
{
public:
    using OpenResult = SqliteDatabase::OpenResult;
    struct Opened
    {
        std::unique_ptr<SqliteUserDefaults> domain; ///< nullptr unless the result is Opened
        OpenResult result;
    };

    /// Opens the domain, and creates the directory (mode 0700) and the database when they are missing. A damaged
    /// database is left as it is, so that any process may try.
    [[nodiscard]] static Opened open(const QString &directory, const QString &name);
    /// The values of a domain that cannot be written, as far as they can be read. Single values may be set until the
    /// end of the process; arrays cannot be changed.
    [[nodiscard]] static std::unique_ptr<SqliteUserDefaults> openForReading(const QString &directory,
                                                                            const QString &name);
    ~SqliteUserDefaults() override;

    [[nodiscard]] QVariant objectForKey(const QString &key) const override;
    void setObject(const QString &key, const QVariant &value) override;
    void removeObject(const QString &key) override;
    [[nodiscard]] bool setArray(const QString &key, const QList<ArrayElement> &elements) override;
    [[nodiscard]] bool changeArray(const QString &key, const ArrayChange &change) override;

    /// Why a domain that was opened for reading cannot be written; nothing for any other.
    [[nodiscard]] std::optional<QString> problem() const { return m_problem; }
    /// Tries to open a domain for writing that was opened for reading. What was set meanwhile is lost; the changes that
    /// other programs made are reported.
    [[nodiscard]] OpenResult reopen();

    /// Where `open` keeps a domain.
    [[nodiscard]] static QString databasePath(const QString &directory, const QString &name);

private:
    using Row = SqliteDatabase::Row;
    using KnownRows = QHash<QString, Row>;

    SqliteUserDefaults(const QString &directory, const QString &name);
    [[nodiscard]] OpenResult openForWriting();
    void readWhatCanBeRead();
    [[nodiscard]] bool openTables();
    void watchOtherProcesses();

    [[nodiscard]] std::optional<KnownRows> storedRows() const;
    [[nodiscard]] std::optional<Row> storedRow(const QString &key) const;
    [[nodiscard]] QVariant arrayForKey(const QString &key) const;
    [[nodiscard]] bool apply(const QString &key, const ArrayChange &change, bool &isChanged);
    [[nodiscard]] bool save(const QString &key, const std::function<bool()> &work);
    void publish(const QString &key, const std::optional<Row> &row);
    void publishForeignChanges();
    void publishDifferences(const KnownRows &current);
    void touch() const;
    void logFailure(const QString &key) const;

    QString m_name;
    QString m_path;
    std::optional<QString> m_problem;
    mutable SqliteDatabase m_values;
    SqliteArrays m_arrays; ///< closed before the database
    KnownRows m_known;     ///< as last published
    qint64 m_dataVersion = -1;
    ScopedFd m_touched;
    std::unique_ptr<QFileSystemWatcher> m_watcher;
};

} // namespace quillhaven
