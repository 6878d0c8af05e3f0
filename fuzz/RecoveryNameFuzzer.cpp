// SPDX-License-Identifier: GPL-3.0-or-later

// The metadata of a backup stands in clear: whatever it says, it may name nothing but a file in the chosen folder.

#include "FuzzInput.h"
#include "backup/RecoveryName.h"

using namespace quillhaven;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzz::silenceLog();
    if (const std::optional<QString> name = nameInMetadata(std::as_bytes(std::span(data, size)))) {
        fuzz::require(!name->isEmpty() && !name->contains(QLatin1Char('/')) && !name->contains(QChar(u'\0')));
        fuzz::require(*name != QStringLiteral(".") && *name != QStringLiteral(".."));
    }
    return 0;
}
