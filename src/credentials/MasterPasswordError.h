// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "support/LocalizedError.h"

namespace quillhaven {

/// A violation of the rules for the master password.
class MasterPasswordError : public LocalizedError
{
public:
    enum Case { emptyPassword, weakPassword, noMasterPassword, invalidPassword, authenticationCancelled };

    explicit MasterPasswordError(Case errorCase);

    [[nodiscard]] Case errorCase() const { return m_case; }

private:
    Case m_case;
};

} // namespace quillhaven
