// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>

#include <cstddef>
#include <span>

namespace quillhaven::test {

inline std::span<const std::byte> bytesOf(const QByteArray &data)
{
    return std::as_bytes(std::span(data.constData(), static_cast<size_t>(data.size())));
}

inline std::span<std::byte> writable(QByteArray &data)
{
    return std::as_writable_bytes(std::span(data.data(), static_cast<size_t>(data.size())));
}

inline QByteArray hexOf(std::span<const std::byte> bytes)
{
    return QByteArray(reinterpret_cast<const char *>(bytes.data()), static_cast<qsizetype>(bytes.size())).toHex();
}

inline QByteArray fromHex(const char *hex)
{
    return QByteArray::fromHex(hex);
}

} // namespace quillhaven::test
