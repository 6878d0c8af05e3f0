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
    [[nodiscard]] bool replaceAll(const QString &key, const QList<ArrayElement> &elements);
    /// Makes the change. `isChanged` becomes true unless that leaves every element as it was.
    [[nodiscard]] bool change(const QString &key, const ArrayChange &change, bool &isChanged);
    [[nodiscard]] bool removeAll(const QString &key);

private:
    [[nodiscard]] bool put(const QString &key, const ArrayElement &element, bool &isChanged);
    [[nodiscard]] bool remove(const QString &key, const QString &id, bool &isChanged);
    [[nodiscard]] bool append(const QString &key, const ArrayElement &element);

    SqliteStatement m_select;
    SqliteStatement m_find;
    SqliteStatement m_append;
    SqliteStatement m_replace;
    SqliteStatement m_remove;
    SqliteStatement m_removeAll;
};

} // namespace quillhaven
