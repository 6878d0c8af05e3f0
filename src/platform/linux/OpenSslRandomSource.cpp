// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/OpenSslRandomSource.h"

#include <QUuid>

#include <openssl/crypto.h>
#include <openssl/rand.h>

#include <algorithm>
#include <limits>
#include <vector>

namespace quillhaven {

bool OpenSslRandomSource::fill(std::span<std::byte> buffer)
{
    // A generator that fails may have written a part, so the caller's buffer is filled only after a success.
    std::vector<unsigned char> fresh(buffer.size());
    constexpr size_t maxRequest = std::numeric_limits<int>::max();
    bool isFilled = true;
    for (size_t done = 0; isFilled && done < fresh.size();) {
        const size_t count = std::min(maxRequest, fresh.size() - done);
        isFilled = RAND_bytes(fresh.data() + done, static_cast<int>(count)) == 1;
        done += count;
    }
    if (isFilled) {
        std::ranges::copy(std::as_bytes(std::span(fresh)), buffer.begin());
    }
    OPENSSL_cleanse(fresh.data(), fresh.size());
    return isFilled;
}

QString OpenSslRandomSource::uuidString()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
}

} // namespace quillhaven
