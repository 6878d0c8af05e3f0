// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

namespace quillhaven {

/// Which of the four requirements a new password meets. A character is a user-perceived one (grapheme cluster, Unicode
/// UAX #29), and its class is the Unicode one.
struct PasswordStrength
{
    bool hasMinimumLength = false; ///< at least 8 characters
    bool hasUppercase = false;
    bool hasLowercase = false;
    bool hasDigit = false;

    [[nodiscard]] static PasswordStrength of(const QString &password);
    [[nodiscard]] bool isStrong() const { return hasMinimumLength && hasUppercase && hasLowercase && hasDigit; }
};

} // namespace quillhaven
