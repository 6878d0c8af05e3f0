// SPDX-License-Identifier: GPL-3.0-or-later

#include "launch_at_login/LaunchAtLoginConfiguration.h"

#include <QCoreApplication>

#include <algorithm>

namespace quillhaven {

QString mainBundleIdentifier()
{
    QStringList parts = QCoreApplication::organizationDomain().split(QLatin1Char('.'), Qt::SkipEmptyParts);
    if (parts.isEmpty()) {
        return QStringLiteral("com.unknown.app");
    }
    std::ranges::reverse(parts);
    return parts.join(QLatin1Char('.')) + QLatin1Char('.') + QCoreApplication::applicationName();
}

LaunchAtLoginConfiguration LaunchAtLoginConfiguration::current()
{
    return {.bundleIdentifier = mainBundleIdentifier(),
            .executablePath = QCoreApplication::instance() ? QCoreApplication::applicationFilePath() : QString(),
            .launchArguments = {QStringLiteral("--login-item")},
            .environmentVariables = {}};
}

} // namespace quillhaven
