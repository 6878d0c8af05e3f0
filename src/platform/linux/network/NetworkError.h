// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "support/LocalizedError.h"

namespace quillhaven {

/// Why a document could not be read from the network.
class NetworkError : public LocalizedError
{
public:
    explicit NetworkError(const QString &description) : LocalizedError(description) {}
};

} // namespace quillhaven
