// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/session/DisplaySettings.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace quillhaven::test {
namespace {

using Contrast = DisplayPreferences::Contrast;
using Values = DisplayPreferences::Values;

const QString appearance = QStringLiteral("org.freedesktop.appearance");
const QString gnome = QStringLiteral("org.gnome.desktop.interface");
const QString gnomeAccess = QStringLiteral("org.gnome.desktop.a11y.interface");
const QString plasma = QStringLiteral("org.kde.kdeglobals.KDE");

const Values moreContrast{.differentiateWithoutColor = true, .colorSchemeContrast = Contrast::Increased};

struct Setting
{
    QString space;
    const char *key;
    QVariant value;
};

Values valuesOf(const QList<Setting> &settings)
{
    DisplaySettings known;
    for (const Setting &each : settings) {
        known.set(each.space, QString::fromLatin1(each.key), each.value);
    }
    return known.values();
}

TEST(DisplaySettings, WithoutAnyNothingIsWished)
{
    EXPECT_EQ(valuesOf({}), Values());
}

TEST(DisplaySettings, OneInAKeyOfAllDesktopsIsAWishAndEveryOtherNumberIsNone)
{
    EXPECT_EQ(valuesOf({{appearance, "contrast", 1U}}), moreContrast);
    EXPECT_EQ(valuesOf({{appearance, "reduced-motion", 1U}}), Values{.reduceMotion = true});
    for (const uint number : {0U, 2U, 7U}) {
        EXPECT_EQ(valuesOf({{appearance, "contrast", number}, {appearance, "reduced-motion", number}}), Values());
    }
}

TEST(DisplaySettings, TheKeysOfSingleDesktopsCountWhereTheSharedOnesAreAbsent)
{
    EXPECT_EQ(valuesOf({{gnomeAccess, "high-contrast", true}}), moreContrast);
    EXPECT_EQ(valuesOf({{gnome, "gtk-theme", QStringLiteral("HighContrastInverse")}}), moreContrast);
    EXPECT_EQ(valuesOf({{gnome, "gtk-theme", QStringLiteral("Adwaita")}}), Values());
    EXPECT_EQ(valuesOf({{gnomeAccess, "show-status-shapes", true}}), Values{.differentiateWithoutColor = true});
    EXPECT_EQ(valuesOf({{gnome, "enable-animations", false}}), Values{.reduceMotion = true});
    EXPECT_EQ(valuesOf({{gnome, "enable-animations", true}}), Values());
    for (const char *none : {"0", "0.0"}) {
        EXPECT_EQ(valuesOf({{plasma, "AnimationDurationFactor", QString::fromLatin1(none)}}),
                  Values{.reduceMotion = true});
    }
    for (const char *some : {"1", "0.25", "", "fast"}) {
        EXPECT_EQ(valuesOf({{plasma, "AnimationDurationFactor", QString::fromLatin1(some)}}), Values()) << some;
    }
}

TEST(DisplaySettings, TheFactorOfTheTextIsItsScaleWithinLimits)
{
    const std::pair<double, double> cases[] = {{1.25, 1.25}, {0.5, 0.5}, {3, 3}, {0.1, 0.5}, {40, 3}};
    for (const auto &[factor, scale] : cases) {
        EXPECT_EQ(valuesOf({{gnome, "text-scaling-factor", factor}}), Values{.textScale = scale}) << factor;
    }
}

TEST(DisplaySettings, AFactorOfTheTextThatIsNoneLeavesTheUsualSize)
{
    const double infinite = std::numeric_limits<double>::infinity();
    for (const QVariant &wrong : {QVariant(0.0), QVariant(-1.5), QVariant(std::nan("")), QVariant(infinite),
                                  QVariant(-infinite), QVariant(2), QVariant(QStringLiteral("1.5")), QVariant(true)}) {
        EXPECT_EQ(valuesOf({{gnome, "text-scaling-factor", wrong}}), Values()) << wrong.typeName();
    }
    EXPECT_EQ(valuesOf({{appearance, "text-scaling-factor", 1.5}}), Values());
}

TEST(DisplaySettings, TheSharedKeysHavePrecedence)
{
    EXPECT_EQ(valuesOf({{appearance, "contrast", 0U},
                        {gnomeAccess, "high-contrast", true},
                        {gnome, "gtk-theme", QStringLiteral("HighContrast")},
                        {appearance, "reduced-motion", 0U},
                        {gnome, "enable-animations", false},
                        {plasma, "AnimationDurationFactor", QStringLiteral("0")}}),
              Values());
}

TEST(DisplaySettings, AValueOfAnotherTypeAndAForeignKeyLeaveTheFormerValue)
{
    const QList<Setting> wished{{appearance, "contrast", 1U}, {appearance, "reduced-motion", 1U}};
    const Values both{
        .reduceMotion = true, .differentiateWithoutColor = true, .colorSchemeContrast = Contrast::Increased};
    for (const QVariant &wrong :
         {QVariant(0), QVariant(false), QVariant(QStringLiteral("0")), QVariant(0.0), QVariant()}) {
        EXPECT_EQ(
            valuesOf(wished + QList<Setting>{{appearance, "contrast", wrong}, {appearance, "reduced-motion", wrong}}),
            both)
            << wrong.typeName();
    }
    EXPECT_EQ(valuesOf(wished + QList<Setting>{{gnome, "contrast", 0U}, {appearance, "color-scheme", 0U}}), both);
    EXPECT_EQ(valuesOf({{gnome, "enable-animations", 0U}, {gnomeAccess, "high-contrast", QStringLiteral("true")}}),
              Values());
}

TEST(DisplaySettings, EachNamespaceIsAskedForOnce)
{
    EXPECT_EQ(DisplaySettings::namespaces(), (QStringList{appearance, gnomeAccess, gnome, plasma}));
}

} // namespace
} // namespace quillhaven::test
