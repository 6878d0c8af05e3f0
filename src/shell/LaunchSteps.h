// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QCoroTask>

#include <functional>

// The steps of the launch that do more than start one service. AppDelegate.h says in which order they run.

namespace quillhaven {

/// A step of the launch or of the termination. Called once, on the main thread.
using LaunchStep = std::function<void()>;

/// Starts both managers, then logs that they exist.
[[nodiscard]] LaunchStep autoLockStep(LaunchStep startAutoLockManager, LaunchStep startSmartAutoLockManager);

/// Starts a job that checks for an update and logs its start and its end. It runs after the launch.
[[nodiscard]] LaunchStep updateCheckStep(std::function<QCoro::Task<>()> performBackgroundUpdateCheck);

/// Starts a job that synchronizes the registration as a login item with the setting, then logs it. It runs after the
/// launch.
[[nodiscard]] LaunchStep launchAtLoginStep(std::function<QCoro::Task<>()> synchronizeLaunchAtLogin);

} // namespace quillhaven
