// SPDX-License-Identifier: GPL-3.0-or-later

// Another program may have written the catalogue. What is read from it must make the way there and back.

#include "FuzzInput.h"
#include "catalogue/CatalogueJson.h"

using namespace quillhaven;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzz::silenceLog();
    const std::optional<QList<ProtectedItem>> items = decodeProtectedItems(fuzz::bytesOf(data, size));
    if (!items) {
        return 0;
    }
    const QByteArray encoded = encodeProtectedItems(*items);
    fuzz::require(decodeProtectedItems(encoded) == items);
    for (const ProtectedItem &item : *items) {
        fuzz::require(!encodeProtectedItemInfo(item).isEmpty());
    }
    return 0;
}
