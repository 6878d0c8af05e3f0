// SPDX-License-Identifier: GPL-3.0-or-later

// Another program may have written the rules. What is read from them must make the way there and back.

#include "FuzzInput.h"
#include "autolock/SmartAutoLockRules.h"

using namespace quillhaven;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzz::silenceLog();
    const std::optional<SmartAutoLockRules> rules = decodeSmartAutoLockRules(fuzz::bytesOf(data, size));
    if (rules) {
        fuzz::require(decodeSmartAutoLockRules(encodeSmartAutoLockRules(*rules)) == rules);
    }
    return 0;
}
