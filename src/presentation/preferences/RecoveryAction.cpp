// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/preferences/RecoveryAction.h"

namespace quillhaven {

QString RecoveryAction::description() const
{
    switch (action) {
    case Case::retryWithDelay:
        return QStringLiteral("Retry in ") + QString::number(static_cast<int>(seconds)) + QLatin1Char('s');
    case Case::showPermissionDialog:
        return QStringLiteral("Check permissions");
    case Case::showSystemRequirementsDialog:
        return QStringLiteral("Check system requirements");
    case Case::logAndShowGenericError:
        return QStringLiteral("View details");
    case Case::openSystemPreferences:
        return QStringLiteral("Open System Preferences");
    case Case::restartApp:
        return QStringLiteral("Restart app");
    case Case::noAction:
        break;
    }
    return {};
}

QString RecoveryAction::iconName() const
{
    switch (action) {
    case Case::retryWithDelay:
        return QStringLiteral("arrow.clockwise");
    case Case::showPermissionDialog:
        return QStringLiteral("lock.shield");
    case Case::showSystemRequirementsDialog:
        return QStringLiteral("info.circle");
    case Case::logAndShowGenericError:
        return QStringLiteral("exclamationmark.triangle");
    case Case::openSystemPreferences:
        return QStringLiteral("gear");
    case Case::restartApp:
        return QStringLiteral("arrow.clockwise.circle");
    case Case::noAction:
        break;
    }
    return {};
}

QList<RecoveryAction> recoveryActionsFor(const LaunchAtLoginError &error)
{
    using Case = RecoveryAction::Case;
    switch (error.errorCase()) {
    case LaunchAtLoginError::Case::registrationFailed:
    case LaunchAtLoginError::Case::unregistrationFailed:
        return {{Case::retryWithDelay, 2.0}, {Case::restartApp}};
    case LaunchAtLoginError::Case::permissionDenied:
        return {{Case::showPermissionDialog}, {Case::openSystemPreferences}};
    case LaunchAtLoginError::Case::systemUnavailable:
        return {{Case::showSystemRequirementsDialog}};
    case LaunchAtLoginError::Case::unknownError:
        break;
    }
    return {{Case::retryWithDelay, 1.0}, {Case::logAndShowGenericError}};
}

} // namespace quillhaven
