// SPDX-License-Identifier: GPL-3.0-or-later

#include "launch_at_login/LaunchAtLoginError.h"

namespace quillhaven {

LaunchAtLoginError LaunchAtLoginError::registrationFailed(const QString &text)
{
    return {Case::registrationFailed, QStringLiteral("Failed to register app for launch at login: ") + text};
}

LaunchAtLoginError LaunchAtLoginError::unregistrationFailed(const QString &text)
{
    return {Case::unregistrationFailed, QStringLiteral("Failed to unregister app from launch at login: ") + text};
}

LaunchAtLoginError LaunchAtLoginError::unknownError(const QString &text)
{
    return {Case::unknownError, QStringLiteral("Unknown error occurred: ") + text};
}

LaunchAtLoginError LaunchAtLoginError::permissionDenied()
{
    return {Case::permissionDenied, QStringLiteral("Permission denied for launch at login registration")};
}

LaunchAtLoginError LaunchAtLoginError::systemUnavailable()
{
    return {Case::systemUnavailable, QStringLiteral("Launch at login system is unavailable")};
}

QString LaunchAtLoginError::recoverySuggestion() const
{
    switch (m_case) {
    case Case::registrationFailed:
    case Case::unregistrationFailed:
        return QStringLiteral("Try again in a few moments. If the problem persists, restart the app.");
    case Case::unknownError:
        return QStringLiteral("Please try again. If the problem persists, contact support.");
    case Case::permissionDenied:
        return QStringLiteral("Check System Preferences > Security & Privacy > Privacy > Automation to ensure the app "
                              "has necessary permissions.");
    case Case::systemUnavailable:
        break;
    }
    return QStringLiteral("This feature requires macOS 10.10 or later. Please update your system if possible.");
}

} // namespace quillhaven
