// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "support/LocalizedError.h"

namespace quillhaven {

/// What the engine fails with, apart from the errors of files and credentials that it passes on.
class QuillhavenError : public LocalizedError
{
public:
    enum Case {
        encryptionFailed,
        accessDenied,
        bulkOperationFailed,
        operationTimeout,
        itemNotFound,
        authenticationFailed,
        touchIDNotAvailable,
        keychainError,
        weakPassword,
        authenticationCancelled,
        iCloudNotAvailable,
    };

    /// `payload` belongs to the first four cases and is left out for the others.
    explicit QuillhavenError(Case errorCase, const QString &payload = {});

    [[nodiscard]] Case errorCase() const { return m_case; }

private:
    Case m_case;
};

} // namespace quillhaven
