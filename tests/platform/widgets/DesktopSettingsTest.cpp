// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/widgets/DesktopSettings.h"

#include "support/PrintText.h"

#include <gtest/gtest.h>

using namespace quillhaven;

namespace {

const QUrl address(QStringLiteral("x-apple.systempreferences:com.apple.preference.security?Privacy_Automation"));

QStringList commandOn(const char *desktop, const QStringList &missing = {})
{
    return desktopSettingsCommand(address, QString::fromLatin1(desktop).split(QLatin1Char(':')),
                                  [missing](const QString &program) { return !missing.contains(program); });
}

} // namespace

TEST(DesktopSettings, EachDesktopHasItsPageOfStartupPrograms)
{
    EXPECT_EQ(commandOn("GNOME"),
              (QStringList{QStringLiteral("gnome-control-center"), QStringLiteral("applications")}));
    EXPECT_EQ(commandOn("ubuntu:GNOME"),
              (QStringList{QStringLiteral("gnome-control-center"), QStringLiteral("applications")}));
    EXPECT_EQ(commandOn("KDE"), (QStringList{QStringLiteral("systemsettings"), QStringLiteral("kcm_autostart")}));
    EXPECT_EQ(commandOn("XFCE"), QStringList{QStringLiteral("xfce4-session-settings")});
    EXPECT_EQ(commandOn("X-Cinnamon"), (QStringList{QStringLiteral("cinnamon-settings"), QStringLiteral("startup")}));
    EXPECT_EQ(commandOn("MATE"), QStringList{QStringLiteral("mate-session-properties")});
}

TEST(DesktopSettings, OlderNameOfAProgramIsTriedNext)
{
    EXPECT_EQ(commandOn("KDE", {QStringLiteral("systemsettings")}),
              (QStringList{QStringLiteral("systemsettings5"), QStringLiteral("kcm_autostart")}));
}

TEST(DesktopSettings, NothingIsOpenedWithoutADesktopOrItsProgram)
{
    EXPECT_EQ(commandOn("sway"), QStringList());
    EXPECT_EQ(commandOn(""), QStringList());
    EXPECT_EQ(commandOn("XFCE", {QStringLiteral("xfce4-session-settings")}), QStringList());
}

TEST(DesktopSettings, OtherPagesAreUnknown)
{
    EXPECT_EQ(desktopSettingsCommand(QUrl(QStringLiteral("x-apple.systempreferences:com.apple.preference.appleid")),
                                     {QStringLiteral("GNOME")}, [](const QString &) { return true; }),
              QStringList());
}
