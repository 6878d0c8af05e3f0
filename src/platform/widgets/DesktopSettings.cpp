// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/widgets/DesktopSettings.h"

#include <algorithm>
#include <array>

namespace quillhaven {

namespace {

struct StartupPage
{
    QLatin1String desktop;
    QLatin1String program;
    QLatin1String page; ///< its argument, if it has one
};

/// Of several lines for a desktop, the first whose program is installed counts.
constexpr std::array startupPages{
    StartupPage{QLatin1String("GNOME"), QLatin1String("gnome-control-center"), QLatin1String("applications")},
    StartupPage{QLatin1String("KDE"), QLatin1String("systemsettings"), QLatin1String("kcm_autostart")},
    StartupPage{QLatin1String("KDE"), QLatin1String("systemsettings5"), QLatin1String("kcm_autostart")},
    StartupPage{QLatin1String("XFCE"), QLatin1String("xfce4-session-settings"), QLatin1String()},
    StartupPage{QLatin1String("X-Cinnamon"), QLatin1String("cinnamon-settings"), QLatin1String("startup")},
    StartupPage{QLatin1String("Cinnamon"), QLatin1String("cinnamon-settings"), QLatin1String("startup")},
    StartupPage{QLatin1String("MATE"), QLatin1String("mate-session-properties"), QLatin1String()},
};

} // namespace

QStringList desktopSettingsCommand(const QUrl &address, const QStringList &desktops,
                                   const std::function<bool(const QString &)> &isInstalled)
{
    if (address.path() != QLatin1String("com.apple.preference.security")) {
        return {};
    }
    const auto found = std::ranges::find_if(startupPages, [&](const StartupPage &page) {
        return desktops.contains(page.desktop) && isInstalled(page.program);
    });
    if (found == startupPages.end()) {
        return {};
    }
    return found->page.isEmpty() ? QStringList{found->program} : QStringList{found->program, found->page};
}

} // namespace quillhaven
