// SPDX-License-Identifier: GPL-3.0-or-later

#include "credentials/PasswordStrength.h"

#include <QList>
#include <QTextBoundaryFinder>

namespace quillhaven {

namespace {

constexpr int minimumLength = 8;

bool isAtLeast(const QString &text, int graphemes)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    while (graphemes > 0 && finder.toNextBoundary() != -1) {
        --graphemes;
    }
    return graphemes == 0;
}

} // namespace

PasswordStrength PasswordStrength::of(const QString &password)
{
    PasswordStrength strength;
    strength.hasMinimumLength = isAtLeast(password, minimumLength);
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
