// SPDX-License-Identifier: GPL-3.0-or-later

#include "credentials/KeychainError.h"

namespace quillhaven {

namespace {

QString descriptionOf(KeychainError::Case errorCase, CredentialStatus status)
{
    switch (errorCase) {
    case KeychainError::saveFailed:
        return QStringLiteral("Failed to save to keychain: ") + QString::number(status);
    case KeychainError::retrieveFailed:
        return QStringLiteral("Failed to retrieve from keychain: ") + QString::number(status);
    case KeychainError::deleteFailed:
        return QStringLiteral("Failed to delete from keychain: ") + QString::number(status);
    case KeychainError::invalidData:
        return QStringLiteral("Invalid data in keychain");
    }
    return {};
}

} // namespace

KeychainError::KeychainError(Case errorCase, CredentialStatus status)
    : LocalizedError(descriptionOf(errorCase, status)), m_case(errorCase), m_status(status)
{
}

} // namespace quillhaven
