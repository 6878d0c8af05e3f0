// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "support/LocalizedError.h"

namespace quillhaven {

/// Why the program could not be set to start at login, or no longer to do so.
class LaunchAtLoginError : public LocalizedError
{
public:
    enum class Case { registrationFailed, unregistrationFailed, unknownError, permissionDenied, systemUnavailable };

    [[nodiscard]] static LaunchAtLoginError registrationFailed(const QString &text);
    [[nodiscard]] static LaunchAtLoginError unregistrationFailed(const QString &text);
    [[nodiscard]] static LaunchAtLoginError unknownError(const QString &text);
    [[nodiscard]] static LaunchAtLoginError permissionDenied();
    [[nodiscard]] static LaunchAtLoginError systemUnavailable();

    [[nodiscard]] Case errorCase() const { return m_case; }
    /// What the user can do about it.
    [[nodiscard]] QString recoverySuggestion() const;

    bool operator==(const LaunchAtLoginError &other) const
    {
        return m_case == other.m_case && errorDescription() == other.errorDescription();
    }

private:
    LaunchAtLoginError(Case errorCase, const QString &description) : LocalizedError(description), m_case(errorCase) {}

    Case m_case;
};

} // namespace quillhaven
