// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "launch_at_login/LaunchAtLoginError.h"

#include <QList>

namespace quillhaven {

/// What the user can choose when the start at login could not be changed.
struct RecoveryAction
{
    enum class Case {
        retryWithDelay,
        showPermissionDialog,
        showSystemRequirementsDialog,
        logAndShowGenericError,
        noAction,
        openSystemPreferences,
        restartApp,
    };

    Case action = Case::noAction;
    double seconds = 0; ///< the delay of `retryWithDelay`

    /// The label of its button.
    [[nodiscard]] QString description() const;
    /// The symbol of its button.
    [[nodiscard]] QString iconName() const;

    bool operator==(const RecoveryAction &) const = default;
};

/// The actions for an error, in the order of their buttons.
[[nodiscard]] QList<RecoveryAction> recoveryActionsFor(const LaunchAtLoginError &error);

} // namespace quillhaven
