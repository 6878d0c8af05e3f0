// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/settings/SqliteDatabase.h"

#include "platform/linux/files/ScopedFd.h"
#include "platform/linux/settings/DatabaseCopy.h"

#include <QFile>
#include <QFileInfo>

#include <sqlite3.h>

#include <fcntl.h>

#include <cerrno>
#include <cstring>

namespace quillhaven {

namespace {

constexpr int busyTimeoutMs = 2000;

SqliteDatabase::Row currentRow(const SqliteRun &run)
{
    return {run.text(0), run.text(1), run.bytes(2)};
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

constexpr const char *inMemory = ":memory:";

/// Whether only the log is left of a database: SQLite would delete it when it creates a new one, and the log may hold
/// all that was saved since the program started.
bool isMissingBesideLog(const QString &path)
{
    return QFileInfo(path).size() == 0 && QFileInfo(path + QStringLiteral("-wal")).size() > 0;
}

} // namespace

void SqliteDatabase::CloseDatabase::operator()(sqlite3 *database) const
{
    sqlite3_close_v2(database);
}

SqliteDatabase::SqliteDatabase() = default;

SqliteDatabase::~SqliteDatabase()
{
    close();
}

void SqliteDatabase::close()
{
    m_select = {};
    m_selectAll = {};
    m_store = {};
    m_remove = {};
    m_dataVersion = {};
    m_database.reset();
}

SqliteDatabase::OpenResult SqliteDatabase::open(const QString &path)
{
    close();
    if (!path.isEmpty()) {
        if (isMissingBesideLog(path)) {
            m_lastError = QStringLiteral("it is missing while its log exists");
            return OpenResult::Damaged;
        }
        // SQLite itself would create a file that others can read.
        const ScopedFd created(
            ::open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
        if (!created.isOpen()) {
            m_lastError = QString::fromLocal8Bit(::strerror(errno));
            return OpenResult::Unusable;
        }
    }
    return connectTo(path.isEmpty() ? inMemory : QFile::encodeName(path)) ? setUp() : OpenResult::Unusable;
}

bool SqliteDatabase::openCopy(const QString &path)
{
    close();
    const DatabaseCopy copy(path);
    if (copy.path().isEmpty()) {
        m_lastError = copy.reason();
        return false;
    }
    SqliteDatabase source;
    if (!source.connectTo(QFile::encodeName(copy.path())) || !connectTo(inMemory)) {
        return false;
    }
    sqlite3_backup *backup = sqlite3_backup_init(m_database.get(), "main", source.m_database.get(), "main");
    sqlite3_backup_step(backup, -1);
    return noted(sqlite3_backup_finish(backup) == SQLITE_OK) && setUp() == OpenResult::Opened;
}

bool SqliteDatabase::connectTo(const QByteArray &file)
{
    sqlite3 *database = nullptr;
    const int result =
        sqlite3_open_v2(file.constData(), &database, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
    m_database.reset(database);
    if (!noted(result == SQLITE_OK)) {
        return false;
    }
    sqlite3_busy_timeout(database, busyTimeoutMs);
    return true;
}

SqliteDatabase::OpenResult SqliteDatabase::setUp()
{
    // The last step takes the right to write, since a database whose log cannot be written opens without an error.
    // Full: the settings hold the only pointers to people's data, and a save must survive a power cut.
    if (noted(run("PRAGMA journal_mode = WAL") && isIntact() &&
              run("CREATE TABLE IF NOT EXISTS defaults (key TEXT PRIMARY KEY, type TEXT NOT NULL, value BLOB)") &&
              run("PRAGMA synchronous = FULL") && prepareAll() && run("BEGIN IMMEDIATE") && run("ROLLBACK"))) {
        return OpenResult::Opened;
    }
    const OpenResult failure = openFailure();
    if (failure == OpenResult::Damaged) {
        m_lastError = QStringLiteral("it is damaged");
    }
    return failure;
}

SqliteDatabase::OpenResult SqliteDatabase::openFailure() const
{
    return isBlockedFromOutside(sqlite3_errcode(m_database.get())) ? OpenResult::Unusable : OpenResult::Damaged;
}

bool SqliteDatabase::isIntact()
{
    const SqliteStatement statement = prepare("PRAGMA quick_check(1)");
    if (!statement) {
        return false;
    }
    SqliteRun check(statement);
    return check.next() && check.bytes(0) == "ok";
}

bool SqliteDatabase::run(const char *sql) const
{
    return sqlite3_exec(m_database.get(), sql, nullptr, nullptr, nullptr) == SQLITE_OK;
}

SqliteStatement SqliteDatabase::prepare(const char *sql)
{
    return {m_database.get(), sql};
}

bool SqliteDatabase::inTransaction(const std::function<bool()> &work)
{
    return between("BEGIN IMMEDIATE", work);
}

bool SqliteDatabase::inSnapshot(const std::function<bool()> &work) const
{
    return between("BEGIN", work);
}

bool SqliteDatabase::between(const char *begin, const std::function<bool()> &work) const
{
    if (!noted(run(begin))) {
        return false;
    }
    if (noted(work() && run("COMMIT"))) {
        return true;
    }
    (void)run("ROLLBACK");
    return false;
}

bool SqliteDatabase::noted(bool isDone) const
{
    if (!isDone) {
        m_lastError = QString::fromUtf8(sqlite3_errmsg(m_database.get()));
    }
    return isDone;
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

bool SqliteDatabase::read(const QString &key, std::optional<Row> &row) const
{
    SqliteRun select(m_select, key);
    row = select.next() ? std::optional(currentRow(select)) : std::nullopt;
    return noted(!select.hasFailed());
}

std::optional<QList<SqliteDatabase::Row>> SqliteDatabase::rows() const
{
    SqliteRun select(m_selectAll);
    QList<Row> all;
    while (select.next()) {
        all.append(currentRow(select));
    }
    return noted(!select.hasFailed()) ? std::optional(all) : std::nullopt;
}

bool SqliteDatabase::store(const Row &row)
{
    return noted(SqliteRun(m_store, row.key, row.type, row.value).finish());
}

bool SqliteDatabase::remove(const QString &key)
{
    return noted(SqliteRun(m_remove, key).finish());
}

qint64 SqliteDatabase::dataVersion() const
{
    SqliteRun select(m_dataVersion);
    return select.next() ? select.integer(0) : -1;
}

} // namespace quillhaven
