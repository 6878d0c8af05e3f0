// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "launch_at_login/LaunchAtLoginError.h"

#include <QDateTime>

#include <optional>

namespace quillhaven {

/// What the manager knows about the system's registration. The user's setting plays no part in it.
enum class SystemStatus { synchronized, outOfSync, unknown, updating };

/// The account that the manager keeps of the registration.
struct LaunchAtLoginState
{
    bool isEnabled = false;
    QDateTime lastUpdated;
    SystemStatus systemStatus = SystemStatus::unknown;
    std::optional<LaunchAtLoginError> errorState; ///< the last failure; a later success does not clear it

    bool operator==(const LaunchAtLoginState &) const = default;
};

} // namespace quillhaven
