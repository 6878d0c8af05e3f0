// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/settings/SqliteArrays.h"

#include "platform/linux/settings/SqliteDatabase.h"

#include <algorithm>

namespace quillhaven {

bool SqliteArrays::open(SqliteDatabase &database)
{
    // The position is the row's number, so that a replaced element keeps it and a new one gets the highest. Ids may
    // repeat: an array that another program has written must not become one that cannot be saved.
    if (!database.run("CREATE TABLE IF NOT EXISTS elements (position INTEGER PRIMARY KEY, "
                      "key TEXT NOT NULL, id TEXT NOT NULL, value BLOB NOT NULL)") ||
        !database.run("CREATE INDEX IF NOT EXISTS elements_by_id ON elements (key, id)")) {
        return false;
    }
    // The plus keeps the index out of it: the table is in this order already.
    m_select = database.prepare("SELECT id, value FROM elements WHERE +key = ?1 ORDER BY position");
    m_find = database.prepare("SELECT position, value FROM elements WHERE key = ?1 AND id = ?2 "
                              "ORDER BY position LIMIT 1");
    m_append = database.prepare("INSERT INTO elements (key, id, value) VALUES (?1, ?2, ?3)");
    m_replace = database.prepare("UPDATE elements SET value = ?2 WHERE position = ?1");
    m_remove = database.prepare("DELETE FROM elements WHERE key = ?1 AND id = ?2 RETURNING position");
    m_removeAll = database.prepare("DELETE FROM elements WHERE key = ?1");
    return m_select && m_find && m_append && m_replace && m_remove && m_removeAll;
}

std::optional<QList<ArrayElement>> SqliteArrays::elements(const QString &key) const
{
    SqliteRun select(m_select, key);
    QList<ArrayElement> all;
    while (select.next()) {
        all.append({select.text(0), select.bytes(1)});
    }
    return select.hasFailed() ? std::nullopt : std::optional(all);
}

bool SqliteArrays::replaceAll(const QString &key, const QList<ArrayElement> &elements)
{
    const auto appendOne = [&](const ArrayElement &element) { return append(key, element); };
    return removeAll(key) && std::ranges::all_of(elements, appendOne);
}

bool SqliteArrays::change(const QString &key, const ArrayChange &change, bool &isChanged)
{
    const auto removeOne = [&](const QString &id) { return remove(key, id, isChanged); };
    const auto putOne = [&](const ArrayElement &element) { return put(key, element, isChanged); };
    return std::ranges::all_of(change.removed, removeOne) && std::ranges::all_of(change.put, putOne);
}

bool SqliteArrays::put(const QString &key, const ArrayElement &element, bool &isChanged)
{
    std::optional<qint64> position;
    {
        SqliteRun found(m_find, key, element.id);
        if (found.next()) {
            position = found.integer(0);
        }
        if (found.hasFailed() || (position && found.bytes(1) == element.value)) {
            return !found.hasFailed();
        }
    }
    isChanged = true;
    return position ? SqliteRun(m_replace, *position, element.value).finish() : append(key, element);
}

bool SqliteArrays::remove(const QString &key, const QString &id, bool &isChanged)
{
    SqliteRun removed(m_remove, key, id);
    while (removed.next()) {
        isChanged = true;
    }
    return !removed.hasFailed();
}

bool SqliteArrays::removeAll(const QString &key)
{
    return SqliteRun(m_removeAll, key).finish();
}

bool SqliteArrays::append(const QString &key, const ArrayElement &element)
{
    return SqliteRun(m_append, key, element.id, element.value).finish();
}

} // namespace quillhaven
