// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/settings/SqliteStatement.h"

#include <sqlite3.h>

namespace quillhaven {

void SqliteStatement::Finalize::operator()(sqlite3_stmt *statement) const
{
    sqlite3_finalize(statement);
}

SqliteStatement::SqliteStatement(sqlite3 *database, const char *sql)
{
    sqlite3_stmt *statement = nullptr;
    sqlite3_prepare_v3(database, sql, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
    m_statement.reset(statement);
}

SqliteRun::~SqliteRun()
{
    sqlite3_reset(m_statement);
    sqlite3_clear_bindings(m_statement);
}

bool SqliteRun::next()
{
    const int result = sqlite3_step(m_statement);
    m_hasFailed = result != SQLITE_ROW && result != SQLITE_DONE;
    return result == SQLITE_ROW;
}

bool SqliteRun::finish()
{
    while (next()) {
    }
    return !m_hasFailed;
}

QByteArray SqliteRun::bytes(int column) const
{
    const auto *bytes = static_cast<const char *>(sqlite3_column_blob(m_statement, column));
    return {bytes, sqlite3_column_bytes(m_statement, column)};
}

QString SqliteRun::text(int column) const
{
    return QString::fromUtf8(bytes(column));
}

qint64 SqliteRun::integer(int column) const
{
    return sqlite3_column_int64(m_statement, column);
}

void SqliteRun::bind(const QString &text)
{
    const QByteArray utf8 = text.toUtf8();
    sqlite3_bind_text(m_statement, ++m_boundCount, utf8.constData(), static_cast<int>(utf8.size()), SQLITE_TRANSIENT);
}

void SqliteRun::bind(const QByteArray &bytes)
{
    sqlite3_bind_blob64(m_statement, ++m_boundCount, bytes.constData(), static_cast<sqlite3_uint64>(bytes.size()),
                        SQLITE_STATIC);
}

void SqliteRun::bind(qint64 integer)
{
    sqlite3_bind_int64(m_statement, ++m_boundCount, integer);
}

} // namespace quillhaven
