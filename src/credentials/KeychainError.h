// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/CredentialStore.h"
#include "support/LocalizedError.h"

namespace quillhaven {

/// A failure of the credential store, with the store's status.
class KeychainError : public LocalizedError
{
public:
    enum Case { saveFailed, retrieveFailed, deleteFailed, invalidData };

    /// `status` is used by the first three cases only.
    explicit KeychainError(Case errorCase, CredentialStatus status = 0);

    [[nodiscard]] Case errorCase() const { return m_case; }
    [[nodiscard]] CredentialStatus status() const { return m_status; }

private:
    Case m_case;
    CredentialStatus m_status;
};

} // namespace quillhaven
