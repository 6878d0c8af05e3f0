// SPDX-License-Identifier: GPL-3.0-or-later

#include "credentials/MasterPasswordError.h"

#include "catalogue/QuillhavenError.h"

namespace quillhaven {

namespace {

QString descriptionOf(MasterPasswordError::Case errorCase)
{
    switch (errorCase) {
    case MasterPasswordError::emptyPassword:
        return QStringLiteral("Password cannot be empty");
    case MasterPasswordError::weakPassword:
        return QuillhavenError(QuillhavenError::weakPassword).errorDescription();
    case MasterPasswordError::noMasterPassword:
        return QStringLiteral("No master password is set");
    case MasterPasswordError::invalidPassword:
        return QStringLiteral("Invalid master password");
    case MasterPasswordError::authenticationCancelled:
        return QStringLiteral("Authentication was cancelled");
    }
    return {};
}

} // namespace

MasterPasswordError::MasterPasswordError(Case errorCase) : LocalizedError(descriptionOf(errorCase)), m_case(errorCase)
{
}

} // namespace quillhaven
