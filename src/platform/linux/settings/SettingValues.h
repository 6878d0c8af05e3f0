// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/linux/settings/SqliteDatabase.h"

#include <QVariant>

namespace quillhaven {

/// The stored form of a value; its type is empty for a value that no domain holds.
[[nodiscard]] SqliteDatabase::Row encodedSetting(const QString &key, const QVariant &value);

/// The value of a stored row, or an invalid one when the bytes do not fit the type.
[[nodiscard]] QVariant decodedSetting(const SqliteDatabase::Row &row);

} // namespace quillhaven
