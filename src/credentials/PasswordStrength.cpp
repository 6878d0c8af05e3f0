// SPDX-License-Identifier: GPL-3.0-or-later

#include "credentials/PasswordStrength.h"

#include "support/CharacterCount.h"

#include <QList>

namespace quillhaven {

PasswordStrength PasswordStrength::of(const QString &password)
{
    PasswordStrength strength;
    constexpr qsizetype minimumLength = 8;
    strength.hasMinimumLength = characterCount(password) >= minimumLength;
    for (const char32_t character : password.toUcs4()) {
        switch (QChar::category(character)) {
        case QChar::Letter_Uppercase:
        case QChar::Letter_Titlecase:
            strength.hasUppercase = true;
            break;
        case QChar::Letter_Lowercase:
            strength.hasLowercase = true;
            break;
        case QChar::Number_DecimalDigit:
            strength.hasDigit = true;
            break;
        default:
            break;
        }
    }
    return strength;
}

} // namespace quillhaven
