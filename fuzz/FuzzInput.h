// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/FileBuffer.h"
#include "support/printLogger.h"

#include <QByteArray>

#include <algorithm>
#include <cstdlib>

namespace quillhaven::fuzz {

/// A failed expectation ends the process, which is how libFuzzer learns of it.
inline void require(bool holds)
{
    if (!holds) {
        std::abort();
    }
}

inline FileBuffer bufferOf(const uint8_t *data, size_t size)
{
    FileBuffer buffer(size);
    std::copy_n(reinterpret_cast<const std::byte *>(data), size, buffer.bytes().begin());
    return buffer;
}

inline QByteArray bytesOf(const uint8_t *data, size_t size)
{
    return {reinterpret_cast<const char *>(data), static_cast<qsizetype>(size)};
}

/// The log would drown what libFuzzer prints.
inline void silenceLog()
{
    static const bool done = [] {
        setLogSink([](const QString &) {});
        return true;
    }();
    (void)done;
}

} // namespace quillhaven::fuzz
