// SPDX-License-Identifier: GPL-3.0-or-later

// The real portal of the desktop, with the real settings of GNOME.

#include "platform/linux/session/DesktopDisplayPreferences.h"
#include "support/RunTask.h"

#include <QProcess>

#include <gtest/gtest.h>

namespace quillhaven::test {
namespace {

using Contrast = DisplayPreferences::Contrast;
using Values = DisplayPreferences::Values;

void gsettings(const QString &command)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.start(QStringLiteral("gsettings"), command.split(QLatin1Char(' ')));
    ASSERT_TRUE(process.waitForFinished());
    ASSERT_EQ(process.exitCode(), 0) << qUtf8Printable(command);
}

TEST(DisplayPortal, IsStartedAndTheSettingsOfTheDesktopAreFollowed)
{
    gsettings(QStringLiteral("set org.gnome.desktop.interface enable-animations false"));
    DesktopDisplayPreferences display;
    const auto expectValues = [&](const Values &expected) {
        EXPECT_TRUE(spinUntil([&] { return display.values() == expected; }))
            << display.reduceMotion() << display.differentiateWithoutColor() << int(display.colorSchemeContrast());
    };
    expectValues({.reduceMotion = true});
    gsettings(QStringLiteral("set org.gnome.desktop.a11y.interface high-contrast true"));
    expectValues({.reduceMotion = true, .differentiateWithoutColor = true, .colorSchemeContrast = Contrast::Increased});
    gsettings(QStringLiteral("reset org.gnome.desktop.interface enable-animations"));
    expectValues({.differentiateWithoutColor = true, .colorSchemeContrast = Contrast::Increased});
    gsettings(QStringLiteral("reset org.gnome.desktop.a11y.interface high-contrast"));
    expectValues({});
}

} // namespace
} // namespace quillhaven::test
