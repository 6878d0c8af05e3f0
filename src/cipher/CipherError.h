// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "support/LocalizedError.h"

namespace quillhaven {

/// A failure of the cipher library, or data that a key does not open.
class CipherError : public LocalizedError
{
public:
    enum Case { libraryFailure, authenticationFailure };

    explicit CipherError(Case errorCase);

    [[nodiscard]] Case errorCase() const { return m_case; }

private:
    Case m_case;
};

} // namespace quillhaven
