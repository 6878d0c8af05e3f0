// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/settings/SqliteDatabase.h"

#include "platform/linux/files/ScopedFd.h"

#include <QFile>

#include <sqlite3.h>

#include <fcntl.h>

namespace quillhaven {

namespace {

constexpr int busyTimeoutMs = 2000;

void bindText(sqlite3_stmt *statement, int index, const QString &text)
{
    const QByteArray utf8 = text.toUtf8();
    sqlite3_bind_text(statement, index, utf8.constData(), static_cast<int>(utf8.size()), SQLITE_TRANSIENT);
}

QByteArray columnBytes(sqlite3_stmt *statement, int column)
{
    const auto *bytes = static_cast<const char *>(sqlite3_column_blob(statement, column));
    return {bytes, sqlite3_column_bytes(statement, column)};
}

SqliteDatabase::Row currentRow(sqlite3_stmt *statement)
{
    return {QString::fromUtf8(columnBytes(statement, 0)), QString::fromUtf8(columnBytes(statement, 1)),
            columnBytes(statement, 2)};
}

/// Whether the failure lies in the surroundings and not in what the file holds.
bool isBlockedFromOutside(int error)
{
    switch (error & 0xff) {
    case SQLITE_PERM:
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
    case SQLITE_NOMEM:
    case SQLITE_READONLY:
    case SQLITE_IOERR:
    case SQLITE_FULL:
    case SQLITE_CANTOPEN:
        return true;
    default:
        return false;
    }
}

/// Leaves a statement ready for its next use at the end of the scope.
class ResetAtEnd
{
public:
    explicit ResetAtEnd(sqlite3_stmt *statement) : m_statement(statement) {}
    ~ResetAtEnd()
    {
        sqlite3_reset(m_statement);
        sqlite3_clear_bindings(m_statement);
    }
    ResetAtEnd(const ResetAtEnd &) = delete;
    ResetAtEnd &operator=(const ResetAtEnd &) = delete;

private:
    sqlite3_stmt *m_statement;
};

} // namespace

void SqliteDatabase::CloseDatabase::operator()(sqlite3 *database) const
{
    sqlite3_close_v2(database);
}

void SqliteDatabase::FinalizeStatement::operator()(sqlite3_stmt *statement) const
{
    sqlite3_finalize(statement);
}

SqliteDatabase::SqliteDatabase() = default;

SqliteDatabase::~SqliteDatabase()
{
    close();
}

void SqliteDatabase::close()
{
    m_select.reset();
    m_selectAll.reset();
    m_store.reset();
    m_remove.reset();
    m_dataVersion.reset();
    m_database.reset();
}

SqliteDatabase::OpenResult SqliteDatabase::open(const QString &path)
{
    close();
    const QByteArray file = path.isEmpty() ? QByteArray(":memory:") : QFile::encodeName(path);
    if (!path.isEmpty()) {
        // Made by us, so that it is never readable by others, not even for a moment.
        const ScopedFd made(::open(file.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
        if (!made.isOpen()) {
            return OpenResult::Unusable;
        }
    }
    sqlite3 *database = nullptr;
    const int result =
        sqlite3_open_v2(file.constData(), &database, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
    m_database.reset(database);
    if (result != SQLITE_OK) {
        return OpenResult::Unusable;
    }
    sqlite3_busy_timeout(database, busyTimeoutMs);
    // A long catalogue in pages of the usual 4 KiB is written by hundreds of calls. A database that has such pages
    // keeps them. After 16 MiB the log goes into the file, so that a bulk run does not write each of its saves twice.
    // Full: the catalogue is the only pointer to people's data, and a save must survive a power cut.
    if (!run("PRAGMA page_size = 65536") || !run("PRAGMA journal_mode = WAL") ||
        !run("PRAGMA wal_autocheckpoint = 256") || !isIntact() ||
        !run("CREATE TABLE IF NOT EXISTS defaults (key TEXT PRIMARY KEY, type TEXT NOT NULL, value BLOB)") ||
        !run("PRAGMA synchronous = FULL") || !prepareAll()) {
        return isBlockedFromOutside(sqlite3_errcode(database)) ? OpenResult::Unusable : OpenResult::Corrupt;
    }
    return OpenResult::Opened;
}

bool SqliteDatabase::isIntact()
{
    const Statement check = prepare("PRAGMA quick_check(1)");
    if (!check || sqlite3_step(check.get()) != SQLITE_ROW) {
        return false;
    }
    return columnBytes(check.get(), 0) == "ok";
}

bool SqliteDatabase::run(const char *sql)
{
    return sqlite3_exec(m_database.get(), sql, nullptr, nullptr, nullptr) == SQLITE_OK;
}

SqliteDatabase::Statement SqliteDatabase::prepare(const char *sql)
{
    sqlite3_stmt *statement = nullptr;
    sqlite3_prepare_v3(m_database.get(), sql, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
    return Statement(statement);
}

bool SqliteDatabase::prepareAll()
{
    m_select = prepare("SELECT key, type, value FROM defaults WHERE key = ?1");
    m_selectAll = prepare("SELECT key, type, value FROM defaults");
    m_store = prepare("INSERT INTO defaults (key, type, value) VALUES (?1, ?2, ?3) "
                      "ON CONFLICT (key) DO UPDATE SET type = excluded.type, value = excluded.value");
    m_remove = prepare("DELETE FROM defaults WHERE key = ?1");
    m_dataVersion = prepare("PRAGMA data_version");
    return m_select && m_selectAll && m_store && m_remove && m_dataVersion;
}

std::optional<SqliteDatabase::Row> SqliteDatabase::row(const QString &key) const
{
    sqlite3_stmt *statement = m_select.get();
    const ResetAtEnd reset(statement);
    bindText(statement, 1, key);
    if (sqlite3_step(statement) != SQLITE_ROW) {
        return std::nullopt;
    }
    return currentRow(statement);
}

QList<SqliteDatabase::Row> SqliteDatabase::rows() const
{
    sqlite3_stmt *statement = m_selectAll.get();
    const ResetAtEnd reset(statement);
    QList<Row> all;
    while (sqlite3_step(statement) == SQLITE_ROW) {
        all.append(currentRow(statement));
    }
    return all;
}

bool SqliteDatabase::store(const Row &row)
{
    sqlite3_stmt *statement = m_store.get();
    const ResetAtEnd reset(statement);
    bindText(statement, 1, row.key);
    bindText(statement, 2, row.type);
    sqlite3_bind_blob64(statement, 3, row.value.constData(), static_cast<sqlite3_uint64>(row.value.size()),
                        SQLITE_STATIC);
    return sqlite3_step(statement) == SQLITE_DONE;
}

bool SqliteDatabase::remove(const QString &key)
{
    sqlite3_stmt *statement = m_remove.get();
    const ResetAtEnd reset(statement);
    bindText(statement, 1, key);
    return sqlite3_step(statement) == SQLITE_DONE;
}

qint64 SqliteDatabase::dataVersion() const
{
    sqlite3_stmt *statement = m_dataVersion.get();
    const ResetAtEnd reset(statement);
    return sqlite3_step(statement) == SQLITE_ROW ? sqlite3_column_int64(statement, 0) : -1;
}

QString SqliteDatabase::lastError() const
{
    return m_database ? QString::fromUtf8(sqlite3_errmsg(m_database.get())) : QStringLiteral("not open");
}

} // namespace quillhaven
