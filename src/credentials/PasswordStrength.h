// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

namespace quillhaven {

/// Which of the four requirements a new password meets. Characters are user-perceived ones (grapheme clusters,
/// Unicode UAX #29); the classes are the full Unicode ones.
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
