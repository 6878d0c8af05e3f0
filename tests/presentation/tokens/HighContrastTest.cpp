// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/tokens/HighContrast.h"
#include "presentation/tokens/DesignSystem.h"
#include "presentation/tokens/Metrics.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace quillhaven {
namespace {

const ColorTokens colors = highContrastTokens();

/// What is seen where a colour is laid over an opaque one.
QColor over(const QColor &top, const QColor &bottom)
{
    const auto mix = [&](float above, float below) { return above * top.alphaF() + below * (1 - top.alphaF()); };
    return QColor::fromRgbF(mix(top.redF(), bottom.redF()), mix(top.greenF(), bottom.greenF()),
                            mix(top.blueF(), bottom.blueF()));
}

QColor pale(const QColor &color, double opacity)
{
    return withOpacity(color, static_cast<float>(opacity));
}

/// https://www.w3.org/TR/WCAG21/#dfn-relative-luminance
double luminance(const QColor &color)
{
    const auto linear = [](double value) {
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

/// https://www.w3.org/TR/WCAG21/#dfn-contrast-ratio
double contrast(const QColor &ink, const QColor &surface)
{
    const double first = luminance(over(ink, surface));
    const double second = luminance(surface);
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

struct Named
{
    const char *name;
    QColor color;
};

void expectContrast(double least, const std::vector<Named> &inks, const std::vector<Named> &surfaces)
{
    for (const Named &surface : surfaces) {
        ASSERT_EQ(surface.color.alpha(), 255) << surface.name;
        for (const Named &ink : inks) {
            EXPECT_GE(contrast(ink.color, surface.color), least) << ink.name << " on " << surface.name;
        }
    }
}

constexpr double forText = 7;
constexpr double forMarks = 3;

const std::vector<Named> plainSurfaces{{"the window", colors.windowBackground}, {"a panel", colors.bgPanel},
                                       {"a card", colors.cardBackground},       {"a sheet", colors.modalBackground},
                                       {"a field", colors.backgroundSecondary}, {"a tool tip", colors.background}};

/// Each plain surface under a pale layer.
std::vector<Named> under(const char *name, const QColor &layer)
{
    std::vector<Named> surfaces;
    for (const Named &each : plainSurfaces) {
        surfaces.push_back({name, over(layer, each.color)});
    }
    return surfaces;
}

QColor brightened(const QColor &fill, double brightness = DesignSystem::hoverBrightness)
{
    return over(pale(colors.brightening, brightness), fill);
}

const std::vector<Named> texts{{"text", colors.text},
                               {"primary text", colors.textPrimary},
                               {"secondary text", colors.textSecondary},
                               {"tertiary text", colors.textTertiary}};
const std::vector<Named> statusInks{{"enabled", colors.statusEnabled}, {"disabled", colors.statusDisabled},
                                    {"warning", colors.statusWarning}, {"error", colors.statusError},
                                    {"info", colors.statusInfo},       {"accent", colors.primaryAccent}};

TEST(HighContrast, TheFormulaGivesTheKnownRatios)
{
    EXPECT_NEAR(contrast(Qt::white, Qt::black), 21, 0.001);
    EXPECT_NEAR(contrast(QColor(0x76, 0x76, 0x76), Qt::white), 4.54, 0.01);
    EXPECT_NEAR(contrast(withOpacity(Qt::white, 0), Qt::black), 1, 0.001);
}

TEST(HighContrast, TextsAndStatesAreReadableOnEverySurface)
{
    expectContrast(forText, texts, plainSurfaces);
    expectContrast(forText, statusInks, plainSurfaces);
    // Selected rows, waiting notices, the version, the bar of the selected items, the target of a drop; rows under the
    // pointer
    for (const auto &[name, layer] : {Named{"the selection", colors.selection}, Named{"a hovered row", colors.hover}}) {
        expectContrast(forText, texts, under(name, layer));
        expectContrast(forText, {{"success", colors.success}, {"accent", colors.primaryAccent}}, under(name, layer));
    }
    expectContrast(forText, texts, {{"a hovered panel", colors.panelHover}});
}

TEST(HighContrast, TextsOfButtonsAndMenusAreReadableInEachState)
{
    std::vector<Named> fills{{"a gradient's start", colors.primaryGradient.from},
                             {"a gradient's end", colors.primaryGradient.to},
                             {"a menu's current entry", colors.primary},
                             {"a selected text", colors.primary},
                             {"a panel's button", colors.panelButton}};
    for (const Named &fill : {Named{"the main button", colors.cta}, Named{"a destructive button", colors.destructive},
                              Named{"a secondary button", colors.bgPanel}}) {
        fills.push_back(fill);
        fills.push_back({fill.name, brightened(fill.color)});
        fills.push_back({fill.name, over(colors.pressed, fill.color)});
    }
    expectContrast(forText, {{"primary text", colors.textPrimary}}, fills);
    expectContrast(forText, {{"error", colors.error}}, {{"the shred button", brightened(colors.background)}});
    expectContrast(forText, {{"disabled text", colors.panelDisabledText}}, {{"a panel", colors.bgPanel}});
}

// A disabled button has no fill, so that its text is on one of the surfaces, or over a layer of one.
TEST(HighContrast, DisabledTextsAndMarksAreReadable)
{
    const auto faded = [](const QColor &ink) { return pale(ink, Metrics::highContrastDisabledOpacity); };
    const Named text{"disabled text", faded(colors.textPrimary)};
    expectContrast(forText, {text}, plainSurfaces);
    expectContrast(forText, {text}, under("a hovered row", colors.hover));
    expectContrast(forMarks, {text}, under("a selected row", colors.selection));
    for (const Named &ink : {Named{"shred", colors.error}, Named{"remove", colors.warning},
                             Named{"copy", colors.iconMuted}, Named{"a switch's border", colors.border}}) {
        expectContrast(forMarks, {{ink.name, faded(ink.color)}}, plainSurfaces);
        expectContrast(forMarks, {{ink.name, faded(ink.color)}}, under("a selected row", colors.selection));
    }
    expectContrast(forText, {{"a stepper's end", colors.disabled}}, plainSurfaces);
}

TEST(HighContrast, BadgesAreReadable)
{
    expectContrast(forText, {{"locked", colors.primary}}, {{"its badge", colors.badgeLockedFill}});
    expectContrast(forText, {{"unlocked", colors.badgeUnlockedText}}, {{"its badge", colors.badgeUnlockedFill}});
    expectContrast(forText, {{"warning", colors.badgeWarning}, {"text", colors.textPrimary}},
                   under("its badge", colors.badgeWarningBg));
    expectContrast(forText, {{"error", colors.error}}, under("its badge", colors.badgeErrorBg));
    expectContrast(forText, {{"info", colors.info}}, under("its badge", colors.badgeInfoBg));
    for (const Named &ink : statusInks) {
        expectContrast(forText, {ink}, under(ink.name, pale(ink.color, Metrics::badgeOpacity)));
        expectContrast(forText, texts, under(ink.name, pale(ink.color, Metrics::tintOpacity)));
    }
    // Those of the popover
    expectContrast(forText, {{"the popover's badge", colors.bgBody}},
                   {{"unlocked", colors.badgeUnlocked}, {"locked", colors.badgeWarning}});
}

TEST(HighContrast, MarksBordersAndRingsAreVisibleOnEverySurface)
{
    std::vector<Named> marks = statusInks;
    for (const Named &mark :
         {Named{"a border", colors.border}, Named{"a faint border", colors.borderSubtle},
          Named{"a line", colors.divider}, Named{"the focus ring", colors.focusRingHighContrast},
          Named{"the focus", colors.focus}, Named{"a muted icon", colors.iconMuted},
          Named{"the scroll bar", colors.textTertiary}, Named{"the accessible border", colors.borderHighContrast},
          Named{"unlocked", colors.badgeUnlocked}}) {
        marks.push_back(mark);
    }
    expectContrast(forMarks, marks, plainSurfaces);
    expectContrast(forMarks, marks, under("the selection", colors.selection));
    for (const Named &ink : statusInks) {
        expectContrast(forMarks, {ink}, under(ink.name, pale(ink.color, Metrics::tintOpacity)));
    }
    const QColor card = colors.primaryGradient.to;
    expectContrast(
        forMarks, {{"the symbol of the main card", colors.textPrimary}},
        {{"its tile", over(pale(colors.textPrimary, Metrics::badgeOpacity), card)}, {"a tick's box", colors.primary}});
}

TEST(HighContrast, TheAccessibleColoursAreReadableOnTheirBackground)
{
    expectContrast(forText, {{"text", colors.textHighContrast}},
                   {{"its background", colors.backgroundHighContrast}, {"the window", colors.windowBackground}});
}

} // namespace
} // namespace quillhaven
