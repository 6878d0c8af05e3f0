// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/UserDefaults.h"
#include "platform/linux/settings/SqliteStatement.h"

#include <optional>

namespace quillhaven {

class SqliteDatabase;

/// The table of the elements of array values, one row for each element, beside the table of values. Every change must
/// be made in a transaction of the database, and returns whether it worked.
class SqliteArrays
{
public:
    /// Creates the table when it is missing. False when that fails.
    [[nodiscard]] bool open(SqliteDatabase &database);

    /// The elements in their order, or nothing when the read failed.
    [[nodiscard]] std::optional<QList<ArrayElement>> elements(const QString &key) const;
    /// Replaces the first element with that id, or appends the element. `isChanged` becomes true unless it was equal.
    [[nodiscard]] bool put(const QString &key, const ArrayElement &element, bool &isChanged);
    /// Removes the elements with that id. `isChanged` becomes true if there was one.
    [[nodiscard]] bool remove(const QString &key, const QString &id, bool &isChanged);
    [[nodiscard]] bool removeAll(const QString &key);
    [[nodiscard]] bool append(const QString &key, const ArrayElement &element);

private:
    SqliteStatement m_select;
    SqliteStatement m_find;
    SqliteStatement m_append;
    SqliteStatement m_replace;
    SqliteStatement m_remove;
    SqliteStatement m_removeAll;
};

} // namespace quillhaven
