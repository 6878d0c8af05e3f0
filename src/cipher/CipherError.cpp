// SPDX-License-Identifier: GPL-3.0-or-later

#include "cipher/CipherError.h"

namespace quillhaven {

namespace {

QString descriptionOf(CipherError::Case errorCase)
{
    switch (errorCase) {
    case CipherError::libraryFailure:
        return QStringLiteral("The cipher library reported a failure.");
    case CipherError::authenticationFailure:
        return QStringLiteral("The data could not be opened: the password is wrong or the data was changed.");
    }
    return {};
}

} // namespace

CipherError::CipherError(Case errorCase) : LocalizedError(descriptionOf(errorCase)), m_case(errorCase) {}

} // namespace quillhaven
