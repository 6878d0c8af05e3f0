// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "catalogue/ProtectedItem.h"

namespace quillhaven {

/// A JSON object (RFC 8259, UTF-8) whose keys are the field names; "mountedPath" is left out when absent. Empty bytes
/// when a string cannot be written as UTF-8.
[[nodiscard]] QByteArray encodeProtectedItem(const ProtectedItem &item);

/// The same with the five fields of the record's summary.
[[nodiscard]] QByteArray encodeProtectedItemInfo(const ProtectedItem &item);

/// A JSON array of whole records: what the application's store holds. Empty bytes when one cannot be written.
[[nodiscard]] QByteArray encodeProtectedItems(const QList<ProtectedItem> &items);

/// The records of such an array, or nothing when the text is no such array, or one record lacks a field or has one of
/// another type or with half of a surrogate pair. Other keys are ignored. What is returned can be encoded again.
[[nodiscard]] std::optional<QList<ProtectedItem>> decodeProtectedItems(const QByteArray &json);

} // namespace quillhaven
