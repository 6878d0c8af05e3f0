// SPDX-License-Identifier: GPL-3.0-or-later

#include "catalogue/QuillhavenError.h"

namespace quillhaven {

namespace {

QString descriptionOf(QuillhavenError::Case errorCase, const QString &payload)
{
    switch (errorCase) {
    case QuillhavenError::encryptionFailed:
        return QStringLiteral("Failed to create encrypted container: ") + payload;
    case QuillhavenError::accessDenied:
    case QuillhavenError::bulkOperationFailed:
    case QuillhavenError::operationTimeout:
        return payload;
    case QuillhavenError::itemNotFound:
        return QStringLiteral("The selected file or folder could not be found.");
    case QuillhavenError::authenticationFailed:
        return QStringLiteral("Authentication failed. Please try again.");
    case QuillhavenError::touchIDNotAvailable:
        return QStringLiteral("Touch ID is not available on this device.");
    case QuillhavenError::keychainError:
        return QStringLiteral("Failed to access secure storage.");
    case QuillhavenError::weakPassword:
        return QStringLiteral("Password must be at least 8 characters with uppercase, lowercase, and numbers");
    case QuillhavenError::authenticationCancelled:
        return QStringLiteral("Authentication cancelled by user.");
    case QuillhavenError::iCloudNotAvailable:
        return QStringLiteral("iCloud is not available. Please sign in to iCloud and enable iCloud Drive.");
    }
    return payload;
}

} // namespace

QuillhavenError::QuillhavenError(Case errorCase, const QString &payload)
    : LocalizedError(descriptionOf(errorCase, payload)), m_case(errorCase)
{
}

} // namespace quillhaven
