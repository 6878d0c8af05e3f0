// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/RandomSource.h"

namespace quillhaven {

/// OpenSSL's generator for bytes, Qt's for identifiers.
class OpenSslRandomSource : public RandomSource
{
public:
    bool fill(std::span<std::byte> buffer) override;
    [[nodiscard]] QString uuidString() override;
};

} // namespace quillhaven
