// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/tokens/Colors.h"
#include "presentation/tokens/Design.h"
#include "presentation/tokens/DesignSystem.h"
#include "presentation/tokens/PanelPalette.h"
#include "presentation/tokens/Spacing.h"
#include "presentation/tokens/Typography.h"

#include <QMetaProperty>
#include <QSet>
#include <QSignalSpy>

#include <gtest/gtest.h>

namespace quillhaven {
namespace {

const ColorTokens colors;

int percentOpaque(const QColor &color)
{
    return qRound(color.alphaF() * 100);
}

TEST(ColorTokens, PrimaryIs85And77And221)
{
    EXPECT_EQ(colors.primary.red(), 85);
    EXPECT_EQ(colors.primary.green(), 77);
    EXPECT_EQ(colors.primary.blue(), 221);
    EXPECT_EQ(colors.primary.alpha(), 255);
}

TEST(ColorTokens, HexOfPrimaryEqualsPrimaryInEitherCase)
{
    EXPECT_EQ(colorFromHex(u"#554DDD"), colors.primary);
    EXPECT_EQ(colorFromHex(u"#554ddd"), colors.primary);
}

TEST(ColorTokens, HexWithoutAHashAndSixDigitsIsInvalid)
{
    for (const QStringView text : {u"", u"#", u"554DDD", u"#554DD", u"#554DDDD", u"#554DDG", u"#+54DDD", u"#0x54DD",
                                   u"# 54DDD", u"primary", u"#FFF"}) {
        EXPECT_FALSE(colorFromHex(text).isValid()) << qUtf8Printable(text.toString());
    }
}

TEST(ColorTokens, FixedValues)
{
    EXPECT_EQ(colors.primaryAccent, QColor(0x43, 0x73, 0xF1));
    EXPECT_EQ(colors.bgBody, QColor(0x05, 0x0D, 0x1D));
    EXPECT_EQ(colors.bgPanel, QColor(0x29, 0x30, 0x3F));
    EXPECT_EQ(colors.textPrimary, QColor(0xFF, 0xFF, 0xFF));
    EXPECT_EQ(colors.textSecondary, QColor(0xAB, 0xB1, 0xBD));
}

TEST(ColorTokens, AliasesHaveTheValueOfTheirColour)
{
    for (const QColor &alias : {colors.cta, colors.badgeLocked, colors.iconStrong, colors.accent, colors.focus}) {
        EXPECT_EQ(alias, colors.primary);
    }
    EXPECT_EQ(colors.cardBackground, colors.bgPanel);
    EXPECT_EQ(colors.windowBackground, colors.bgBody);
    EXPECT_EQ(colors.iconMuted, colors.textSecondary);
    EXPECT_EQ(colors.modalBackground, colors.background);
    EXPECT_EQ(colors.badgeUnlocked, colors.platformGreen);
    EXPECT_EQ(colors.success, colors.platformGreen);
    EXPECT_EQ(colors.badgeWarning, colors.platformOrange);
    EXPECT_EQ(colors.warning, colors.platformOrange);
    EXPECT_EQ(colors.error, colors.platformRed);
    EXPECT_EQ(colors.info, colors.platformBlue);
    EXPECT_EQ(colors.statusEnabled, colors.success);
    EXPECT_EQ(colors.statusDisabled, colors.disabled);
    EXPECT_EQ(colors.statusWarning, colors.warning);
    EXPECT_EQ(colors.statusError, colors.error);
    EXPECT_EQ(colors.statusInfo, colors.info);
    EXPECT_EQ(colors.border, colors.platformSeparator);
    EXPECT_EQ(colors.divider, colors.platformSeparator);
}

TEST(ColorTokens, SelectionOverTheBodyStaysSixteenPercentOpaque)
{
    EXPECT_EQ(percentOpaque(colors.selection), 16);
    EXPECT_EQ(colors.selection.rgb(), colors.primary.rgb());
    EXPECT_EQ(colors.badgeLockedBg, colors.selection);
}

TEST(ColorTokens, OpacityDoesNotChangeTheColour)
{
    struct Row
    {
        QColor derived;
        QColor base;
        int percent;
    };
    const QColor white(Qt::white);
    const QColor black(Qt::black);
    for (const Row &row : QList<Row>{{colors.disabled, colors.textSecondary, 60},
                                     {colors.borderSubtle, white, 8},
                                     {colors.badgeUnlockedBg, colors.platformGreen, 18},
                                     {colors.badgeWarningBg, colors.platformOrange, 18},
                                     {colors.badgeErrorBg, colors.platformRed, 18},
                                     {colors.badgeInfoBg, colors.platformBlue, 18},
                                     {colors.modalOverlay, black, 30},
                                     {colors.modalShadow, black, 8},
                                     {colors.backgroundTertiary, colors.backgroundSecondary, 50},
                                     {colors.hover, colors.platformAccent, 10}}) {
        EXPECT_EQ(percentOpaque(row.derived), row.percent) << qUtf8Printable(row.base.name());
        EXPECT_EQ(row.derived.rgb(), row.base.rgb());
    }
}

TEST(ColorTokens, BadgeFills)
{
    EXPECT_EQ(colors.badgeLockedFill, QColor(0xB6, 0xB2, 0xF7));
    EXPECT_EQ(colors.badgeUnlockedFill, QColor(0x2D, 0x4D, 0x41));
    EXPECT_EQ(colors.badgeUnlockedText, QColor(0x27, 0xCD, 0x41));
}

TEST(ColorTokens, AccessibleColoursFollowTheHighContrastSetting)
{
    Colors switched;
    EXPECT_EQ(switched.accessibleTextColor(), colors.text);
    EXPECT_EQ(switched.accessibleBorderColor(), colors.border);
    EXPECT_EQ(switched.accessibleFocusColor(), colors.focus);

    const QSignalSpy changes(&switched, &Colors::changed);
    switched.setIsHighContrast(true);
    switched.setIsHighContrast(true);
    EXPECT_EQ(changes.size(), 1);
    EXPECT_EQ(switched.accessibleTextColor(), QColor(Qt::black));
    EXPECT_EQ(switched.accessibleBorderColor(), QColor(Qt::black));
    EXPECT_EQ(switched.accessibleFocusColor(), colors.platformBlue);
    EXPECT_EQ(colors.textHighContrast, QColor(Qt::black));
    EXPECT_EQ(colors.borderHighContrast, QColor(Qt::black));
    EXPECT_EQ(colors.backgroundHighContrast, QColor(Qt::white));
    EXPECT_EQ(colors.focusRingHighContrast, colors.platformBlue);
}

TEST(ColorTokens, AnotherSchemeChangesTheDerivedColoursAndEmitsChanged)
{
    const ColorTokens light{.bgBody = QColor(Qt::white), .textSecondary = QColor(Qt::darkGray)};
    EXPECT_EQ(light.windowBackground, QColor(Qt::white));
    EXPECT_EQ(light.disabled, withOpacity(QColor(Qt::darkGray), 0.6F));

    Colors switched;
    const QSignalSpy changes(&switched, &Colors::changed);
    switched.setTokens(light);
    switched.setTokens(light);
    EXPECT_EQ(changes.size(), 1);
    EXPECT_EQ(switched.windowBackground(), QColor(Qt::white));
    EXPECT_EQ(switched.primary(), colors.primary);
}

TEST(ColorTokens, EveryColourHasAChangeSignal)
{
    const Colors read;
    const QMetaObject *meta = read.metaObject();
    for (int index = meta->propertyOffset(); index < meta->propertyCount(); ++index) {
        EXPECT_FALSE(meta->property(index).isConstant()) << meta->property(index).name();
        EXPECT_TRUE(meta->property(index).hasNotifySignal()) << meta->property(index).name();
    }
}

/// A colour by its name in QML: the token that it reads, and its value.
struct NamedColor
{
    const char *name;
    QColor ColorTokens::*token;
    QRgb rgb;
    int percentOpaque = 100;
};

const QList<NamedColor> namedColors{
    {"primary", &ColorTokens::primary, 0x554DDD},
    {"primaryAccent", &ColorTokens::primaryAccent, 0x4373F1},
    {"bgBody", &ColorTokens::bgBody, 0x050D1D},
    {"bgPanel", &ColorTokens::bgPanel, 0x29303F},
    {"textPrimary", &ColorTokens::textPrimary, 0xFFFFFF},
    {"textSecondary", &ColorTokens::textSecondary, 0xABB1BD},
    {"cta", &ColorTokens::cta, 0x554DDD},
    {"badgeLocked", &ColorTokens::badgeLocked, 0x554DDD},
    {"iconStrong", &ColorTokens::iconStrong, 0x554DDD},
    {"accent", &ColorTokens::accent, 0x554DDD},
    {"selection", &ColorTokens::selection, 0x554DDD, 16},
    {"badgeLockedBg", &ColorTokens::badgeLockedBg, 0x554DDD, 16},
    {"cardBackground", &ColorTokens::cardBackground, 0x29303F},
    {"windowBackground", &ColorTokens::windowBackground, 0x050D1D},
    {"iconMuted", &ColorTokens::iconMuted, 0xABB1BD},
    {"disabled", &ColorTokens::disabled, 0xABB1BD, 60},
    {"borderSubtle", &ColorTokens::borderSubtle, 0xFFFFFF, 8},
    {"badgeUnlocked", &ColorTokens::badgeUnlocked, 0x27CD41},
    {"success", &ColorTokens::success, 0x27CD41},
    {"badgeUnlockedBg", &ColorTokens::badgeUnlockedBg, 0x27CD41, 18},
    {"badgeWarning", &ColorTokens::badgeWarning, 0xFF9F0A},
    {"warning", &ColorTokens::warning, 0xFF9F0A},
    {"badgeWarningBg", &ColorTokens::badgeWarningBg, 0xFF9F0A, 18},
    {"error", &ColorTokens::error, 0xFF5A52},
    {"info", &ColorTokens::info, 0x3D9BFF},
    {"destructive", &ColorTokens::destructive, 0xCC4842},
    {"statusEnabled", &ColorTokens::statusEnabled, 0x27CD41},
    {"statusDisabled", &ColorTokens::statusDisabled, 0xABB1BD, 60},
    {"statusWarning", &ColorTokens::statusWarning, 0xFF9F0A},
    {"statusError", &ColorTokens::statusError, 0xFF5A52},
    {"statusInfo", &ColorTokens::statusInfo, 0x3D9BFF},
    {"focus", &ColorTokens::focus, 0x554DDD},
    {"modalOverlay", &ColorTokens::modalOverlay, 0x000000, 30},
    {"modalShadow", &ColorTokens::modalShadow, 0x000000, 8},
    {"modalBackground", &ColorTokens::modalBackground, 0x161E2F},
    {"background", &ColorTokens::background, 0x161E2F},
    {"backgroundSecondary", &ColorTokens::backgroundSecondary, 0x0B1425},
    {"backgroundTertiary", &ColorTokens::backgroundTertiary, 0x0B1425, 50},
    {"text", &ColorTokens::text, 0xFFFFFF},
    {"textTertiary", &ColorTokens::textTertiary, 0x7F8798},
    {"hover", &ColorTokens::hover, 0x4373F1, 10},
    {"border", &ColorTokens::border, 0xFFFFFF, 12},
    {"divider", &ColorTokens::divider, 0xFFFFFF, 12},
    {"focusRingHighContrast", &ColorTokens::focusRingHighContrast, 0x3D9BFF},
    {"borderHighContrast", &ColorTokens::borderHighContrast, 0x000000},
    {"textHighContrast", &ColorTokens::textHighContrast, 0x000000},
    {"backgroundHighContrast", &ColorTokens::backgroundHighContrast, 0xFFFFFF},
    {"badgeLockedFill", &ColorTokens::badgeLockedFill, 0xB6B2F7},
    {"badgeUnlockedFill", &ColorTokens::badgeUnlockedFill, 0x2D4D41},
    {"badgeUnlockedText", &ColorTokens::badgeUnlockedText, 0x27CD41},
    {"badgeErrorBg", &ColorTokens::badgeErrorBg, 0xFF5A52, 18},
    {"badgeInfoBg", &ColorTokens::badgeInfoBg, 0x3D9BFF, 18},
    {"brightening", &ColorTokens::brightening, 0xFFFFFF},
    {"pressed", &ColorTokens::pressed, 0x000000, 16},
    {"panelHover", &ColorTokens::panelHover, 0x2E3647},
    {"clear", &ColorTokens::clear, 0x000000, 0},
};

TEST(ColorTokens, EveryColourReadsItsOwnValueByItsName)
{
    const Colors dark;
    QSet<QString> left;
    const QMetaObject *meta = dark.metaObject();
    for (int index = meta->propertyOffset(); index < meta->propertyCount(); ++index) {
        if (meta->property(index).typeId() == QMetaType::QColor) {
            left.insert(QString::fromLatin1(meta->property(index).name()));
        }
    }
    left -= {QStringLiteral("accessibleTextColor"), QStringLiteral("accessibleBorderColor"),
             QStringLiteral("accessibleFocusColor")};
    for (const NamedColor &row : namedColors) {
        const auto color = dark.property(row.name).value<QColor>();
        EXPECT_EQ(color.rgb() & RGB_MASK, row.rgb) << row.name << " is " << color.name().toStdString();
        EXPECT_EQ(percentOpaque(color), row.percentOpaque) << row.name;
        EXPECT_TRUE(left.remove(QString::fromLatin1(row.name))) << row.name;
    }
    EXPECT_TRUE(left.isEmpty()) << "not in the table: " << left.values().join(QLatin1Char(' ')).toStdString();
}

TEST(ColorTokens, EveryColourReadsItsOwnTokenWhereOthersHaveTheSameValue)
{
    const QColor marked(1, 2, 3);
    for (const NamedColor &row : namedColors) {
        ColorTokens scheme;
        scheme.*row.token = marked;
        Colors colorsOfScheme;
        colorsOfScheme.setTokens(scheme);
        for (const NamedColor &other : namedColors) {
            const bool isMarked = colorsOfScheme.property(other.name).value<QColor>() == marked;
            EXPECT_EQ(isMarked, other.name == row.name) << other.name << " reads " << row.name;
        }
    }
}

TEST(ColorTokens, GradientsReadTheirOwnTokens)
{
    const Colors dark;
    EXPECT_EQ(dark.property("primaryGradient").value<ColorGradient>(), colors.primaryGradient);
    EXPECT_EQ(dark.property("primaryGradientHorizontal").value<ColorGradient>(), colors.primaryGradientHorizontal);
    EXPECT_EQ(dark.property("primaryGradientVertical").value<ColorGradient>(), colors.primaryGradientVertical);
}

TEST(ColorTokens, GradientsRunFromPrimaryToItsAccent)
{
    EXPECT_EQ(colors.primaryGradient, (ColorGradient{colors.primary, colors.primaryAccent, {0, 0}, {1, 1}}));
    EXPECT_EQ(colors.primaryGradientHorizontal, (ColorGradient{colors.primary, colors.primaryAccent, {0, 0}, {1, 0}}));
    EXPECT_EQ(colors.primaryGradientVertical, (ColorGradient{colors.primary, colors.primaryAccent, {0, 0}, {0, 1}}));
}

TEST(ColorTokens, LookupsByBoolean)
{
    const Colors lookup;
    EXPECT_EQ(lookup.statusColor(true), colors.statusEnabled);
    EXPECT_EQ(lookup.statusColor(false), colors.statusDisabled);
    EXPECT_EQ(lookup.validationColor(true), colors.statusEnabled);
    EXPECT_EQ(lookup.validationColor(false), colors.statusError);
}

TEST(PanelPalette, HasTheColoursOfTheWindow)
{
    const QPalette palette = panelPalette(colors);
    EXPECT_EQ(palette.color(QPalette::Window), colors.bgPanel);
    EXPECT_EQ(palette.color(QPalette::Base), colors.bgBody);
    EXPECT_EQ(palette.color(QPalette::Text), colors.textPrimary);
    EXPECT_EQ(palette.color(QPalette::Highlight), colors.primary);
    EXPECT_EQ(palette.color(QPalette::Button), QColor(0x3A, 0x42, 0x54));
    EXPECT_EQ(palette.color(QPalette::Disabled, QPalette::Text), QColor(0x7A, 0x81, 0x91));
}

TEST(SpacingTokens, Values)
{
    EXPECT_EQ(
        (QList<int>{Spacing::baseUnit, Spacing::xs, Spacing::sm, Spacing::md, Spacing::lg, Spacing::xl, Spacing::xxl,
                    Spacing::xxxl, Spacing::componentSpacing, Spacing::controlSpacing, Spacing::rowSpacing,
                    Spacing::sectionSpacing, Spacing::modalPadding, Spacing::minTouchTarget}),
        (QList<int>{4, 4, 8, 12, 16, 24, 32, 48, 8, 12, 16, 24, 32, 44}));
}

TEST(TypographyTokens, Sizes)
{
    EXPECT_EQ((QList<int>{Typography::largeTitleSize, Typography::titleSize, Typography::title2Size,
                          Typography::title3Size, Typography::headlineSize, Typography::bodySize,
                          Typography::calloutSize, Typography::subheadlineSize, Typography::footnoteSize,
                          Typography::captionSize, Typography::caption2Size}),
              (QList<int>{28, 22, 20, 18, 17, 15, 14, 13, 12, 11, 10}));
}

TEST(TypographyTokens, FamiliesAndScaledWeights)
{
    EXPECT_EQ(Typography::displayFont, QStringLiteral("SF Pro Display"));
    EXPECT_EQ(Typography::textFont, QStringLiteral("SF Pro Text"));
    EXPECT_EQ(Typography::titleXL().weight(), QFont::Bold);
    EXPECT_EQ(Typography::statValue().weight(), QFont::DemiBold);
}

TEST(TypographyTokens, WeightsIncreaseFromUltraLightToBlack)
{
    const QList<int> weights{Typography::ultraLight, Typography::thin,   Typography::light,
                             Typography::regular,    Typography::medium, Typography::semibold,
                             Typography::bold,       Typography::heavy,  Typography::black};
    for (qsizetype index = 1; index < weights.size(); ++index) {
        EXPECT_LT(weights[index - 1], weights[index]);
    }
}

TEST(TypographyTokens, ScaledFontHasTheSizeWeightAndDesign)
{
    const QFont font = Typography::scaledFont(17, Typography::heavy);
    EXPECT_EQ(font.pixelSize(), 17);
    EXPECT_EQ(font.weight(), QFont::ExtraBold);
    EXPECT_EQ(font.family(), Typography::family());
    const QFont monospaced = Typography::scaledFont(12, Typography::regular, Typography::Design::monospaced);
    EXPECT_EQ(monospaced.styleHint(), QFont::Monospace);
    EXPECT_EQ(monospaced.pixelSize(), 12);
    EXPECT_EQ(Typography::scaledFont(12, Typography::regular, Typography::Design::serif).styleHint(), QFont::Serif);
}

TEST(TypographyTokens, ThePropertiesAreMultipliedByTheScaleAndRounded)
{
    Typography typography;
    QSignalSpy changes(&typography, &Typography::scaleChanged);
    EXPECT_EQ(typography.property("bodySize").toInt(), Typography::bodySize);
    EXPECT_EQ(typography.property("titleXL").value<QFont>(), Typography::titleXL());
    typography.setScale(1.5);
    typography.setScale(1.5);
    EXPECT_EQ(changes.count(), 1);
    EXPECT_EQ(typography.property("bodySize").toInt(), 23);
    EXPECT_EQ(typography.property("caption2Size").toInt(), 15);
    EXPECT_EQ(typography.property("titleXL").value<QFont>().pixelSize(), 33);
    EXPECT_EQ(typography.property("settingLabel").value<QFont>(), Typography::settingLabel(1.5));
}

TEST(TypographyTokens, EverySizeAndFontOfTheScreensFollowsTheScale)
{
    Typography typography;
    const auto values = [&typography] {
        QVariantMap all;
        const QMetaObject *meta = typography.metaObject();
        for (int index = meta->propertyOffset(); index < meta->propertyCount(); ++index) {
            if (!meta->property(index).isConstant()) {
                const QVariant value = meta->property(index).read(&typography);
                all.insert(QString::fromLatin1(meta->property(index).name()),
                           value.canConvert<QFont>() && value.typeId() == QMetaType::QFont
                               ? value.value<QFont>().pixelSize()
                               : value.toDouble());
            }
        }
        return all;
    };
    const QVariantMap before = values();
    typography.setScale(2);
    const QVariantMap after = values();
    EXPECT_EQ(after.size(), 23);
    for (const QString &name : before.keys()) {
        EXPECT_EQ(after[name].toDouble(), 2 * before[name].toDouble()) << qUtf8Printable(name);
    }
}

TEST(TextScale, WhatTheScreenAlreadyEnlargesIsNotEnlargedAgain)
{
    EXPECT_EQ(textScaleBeside(1, 1.5), 1.5);
    EXPECT_EQ(textScaleBeside(1.5, 1.5), 1);
    EXPECT_EQ(textScaleBeside(1.49, 1.5), 1) << "the desktop rounds the resolution";
    EXPECT_EQ(textScaleBeside(2.5, 1.25), 1) << "a scale of everything times that of the text";
    EXPECT_EQ(textScaleBeside(1.25, 2), 2);
    EXPECT_EQ(textScaleBeside(2, 1), 1);
    EXPECT_EQ(textScaleBeside(2, 0.8), 0.8);
}

TEST(DesignSystemTokens, CornerRadii)
{
    using Radius = DesignSystem::CornerRadius;
    EXPECT_EQ((QList<int>{Radius::small, Radius::medium, Radius::large, Radius::extraLarge, Radius::modal}),
              (QList<int>{4, 8, 12, 16, 18}));
}

TEST(DesignSystemTokens, Shadows)
{
    using Shadow = DesignSystem::Shadow;
    EXPECT_EQ(Shadow::small, (ShadowToken{4, 0, 0}));
    EXPECT_EQ(Shadow::medium, (ShadowToken{8, 0, 4}));
    EXPECT_EQ(Shadow::large, (ShadowToken{16, 0, 8}));
    EXPECT_EQ(Shadow::modal, (ShadowToken{24, 0, 8}));
}

TEST(DesignSystemTokens, AnimationsInMilliseconds)
{
    using Animation = DesignSystem::Animation;
    EXPECT_EQ(Animation::quick, 200);
    EXPECT_EQ(Animation::standard, 300);
    EXPECT_EQ(Animation::slow, 500);
    EXPECT_EQ(Animation::spring, (Animation::Spring{0.5, 0.8, 0}));
}

TEST(DesignSystemTokens, Layout)
{
    using Layout = DesignSystem::Layout;
    EXPECT_EQ((QList<int>{Layout::modalWidth, Layout::modalMaxHeight, Layout::sectionMaxWidth, Layout::buttonHeight,
                          Layout::toggleSize}),
              (QList<int>{600, 700, 500, 36, 24}));
    EXPECT_DOUBLE_EQ(DesignSystem::hoverBrightness, 0.06);
}

} // namespace
} // namespace quillhaven
