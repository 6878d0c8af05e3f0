// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

namespace quillhaven {

/// Describes the start at login.
struct LaunchAtLoginConfiguration
{
    QString bundleIdentifier;
    QString executablePath;
    QStringList launchArguments;
    QMap<QString, QString> environmentVariables;

    /// Of this process. The path is empty while there is no application object.
    [[nodiscard]] static LaunchAtLoginConfiguration current();

    bool operator==(const LaunchAtLoginConfiguration &) const = default;
};

/// The reversed organization domain of the application, and its name; "com.unknown.app" if it has no domain.
[[nodiscard]] QString mainBundleIdentifier();

} // namespace quillhaven
