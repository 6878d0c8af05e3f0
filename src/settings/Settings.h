// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "settings/Setting.h"

#include <QByteArray>
#include <QDateTime>
#include <QVariantMap>

/// Every key of the settings store; no other file spells one. All are in the standard domain unless the row says
/// otherwise.
namespace quillhaven::settings {

/// Minutes without input after which the items are locked.
inline constexpr Setting<qlonglong> autoLockMinutes{"autoLockMinutes", 5};
/// Whether items are locked after that time.
inline constexpr Setting<bool> isAutoLockEnabled{"isAutoLockEnabled", false};
/// Whether items are locked when the computer goes to sleep. The settings model proposes true until the user has
/// chosen, and auto-lock and the preferences take no choice for false: the two differ on purpose.
inline constexpr Setting<bool> lockOnSleep{"lockOnSleep", false};
inline constexpr Setting<bool> lockOnSleepInViewModel{"lockOnSleep", true};
/// Whether auto-lock locks without asking for the master password.
inline constexpr Setting<bool> autoLockWithoutMasterPassword{"autoLockWithoutMasterPassword", false};
/// Whether items are locked at the events of the rules.
inline constexpr Setting<bool> smartAutoLockEnabled{"smartAutoLockEnabled", false};
/// Those rules, as JSON.
inline constexpr OptionalSetting<QByteArray> smartAutoLockRules{"smartAutoLockRules"};

/// Whether the fingerprint reader is used.
inline constexpr Setting<bool> enableTouchID{"enableTouchID", true};
/// Whether a new password must be strong.
inline constexpr Setting<bool> enforceStrongPasswords{"enforceStrongPasswords", true};
/// Whether an item is backed up when it is protected.
inline constexpr Setting<bool> enableiCloudBackup{"enableiCloudBackup", false};

/// Whether the program is started when the user logs in.
inline constexpr Setting<bool> startAtLogin{"startAtLogin", false};
/// Whether that start shows no window.
inline constexpr Setting<bool> startHiddenAtLogin{"startHiddenAtLogin", false};
/// Kept and validated by the settings model; nothing else reads it.
inline constexpr Setting<bool> hideMenuBarIcon{"hideMenuBarIcon", false};
/// "system", "light" or "dark". Kept and validated by the settings model; nothing else reads it.
inline constexpr Setting<QString, QLatin1String> appearanceMode{"appearanceMode", QLatin1String("system")};
/// Whether the introduction has been read.
inline constexpr Setting<bool> hasCompletedOnboarding{"hasCompletedOnboarding", false};
/// Whether the note on the file manager's menus has been shown.
inline constexpr Setting<bool> extensionNotificationShown{"ExtensionActivationNotificationShown", false};
/// When the program last looked for a newer version with success.
inline constexpr OptionalSetting<QDateTime> lastUpdateCheck{"LastUpdateCheck"};

/// The catalogue, an array value with an element for each record; in the shared suite their summaries.
inline constexpr OptionalSetting<QByteArray> protectedItems{"ProtectedItems"};

/// The domain that the user's other programs read and write.
inline constexpr QLatin1String sharedSuite("TQ4WZ81KDR.com.quillhaven.shared");
/// In the shared suite: what a file manager asks the program to do.
inline constexpr OptionalSetting<QVariantMap> pendingAction{"PendingAction"};

} // namespace quillhaven::settings
