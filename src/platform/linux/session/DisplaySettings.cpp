// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/session/DisplaySettings.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace quillhaven {

namespace {

enum Setting {
    Contrast,
    ReducedMotion,
    HighContrast,
    StatusShapes,
    EnableAnimations,
    GtkTheme,
    TextScalingFactor,
    DurationFactor
};

struct Row
{
    Setting setting;
    const char *space;
    const char *key;
    QMetaType::Type type;
};

constexpr std::array rows{
    // The settings of https://flatpak.github.io/xdg-desktop-portal/docs/doc-org.freedesktop.portal.Settings.html
    Row{Contrast, "org.freedesktop.appearance", "contrast", QMetaType::UInt},
    Row{ReducedMotion, "org.freedesktop.appearance", "reduced-motion", QMetaType::UInt},
    // Those of GNOME and of the desktops that share its schemas
    Row{HighContrast, "org.gnome.desktop.a11y.interface", "high-contrast", QMetaType::Bool},
    Row{StatusShapes, "org.gnome.desktop.a11y.interface", "show-status-shapes", QMetaType::Bool},
    Row{EnableAnimations, "org.gnome.desktop.interface", "enable-animations", QMetaType::Bool},
    Row{GtkTheme, "org.gnome.desktop.interface", "gtk-theme", QMetaType::QString},
    Row{TextScalingFactor, "org.gnome.desktop.interface", "text-scaling-factor", QMetaType::Double},
    // Plasma publishes the entries of its files as strings.
    Row{DurationFactor, "org.kde.kdeglobals.KDE", "AnimationDurationFactor", QMetaType::QString},
};

constexpr uint wished = 1;

double textScale(const QVariant &factor)
{
    constexpr double least = 0.5;
    constexpr double most = 3;
    const double scale = factor.toDouble();
    return std::isfinite(scale) && scale > 0 ? std::clamp(scale, least, most) : 1;
}

} // namespace

QStringList DisplaySettings::namespaces()
{
    QStringList spaces;
    for (const Row &row : rows) {
        spaces << QString::fromLatin1(row.space);
    }
    spaces.removeDuplicates();
    return spaces;
}

void DisplaySettings::set(const QString &space, const QString &key, const QVariant &value)
{
    const auto *row = std::ranges::find_if(rows, [&](const Row &each) {
        return space == QLatin1String(each.space) && key == QLatin1String(each.key) && value.typeId() == each.type;
    });
    if (row != rows.end()) {
        m_values.insert(row->setting, value);
    }
}

DisplayPreferences::Values DisplaySettings::values() const
{
    const auto isOff = [this](Setting setting) { return m_values.contains(setting) && !m_values[setting].toBool(); };
    const auto isNone = [this](Setting factor) {
        bool isNumber = false;
        return m_values.value(factor).toString().toDouble(&isNumber) == 0 && isNumber;
    };

    const bool reducesMotion = m_values.contains(ReducedMotion) ? m_values[ReducedMotion].toUInt() == wished
                                                                : isOff(EnableAnimations) || isNone(DurationFactor);
    const bool hasMoreContrast =
        m_values.contains(Contrast) ? m_values[Contrast].toUInt() == wished
                                    : m_values.value(HighContrast).toBool() ||
                                          m_values.value(GtkTheme).toString().startsWith(QLatin1String("HighContrast"));
    return {.reduceMotion = reducesMotion,
            .differentiateWithoutColor = hasMoreContrast || m_values.value(StatusShapes).toBool(),
            .colorSchemeContrast =
                hasMoreContrast ? DisplayPreferences::Contrast::Increased : DisplayPreferences::Contrast::Standard,
            .textScale = textScale(m_values.value(TextScalingFactor))};
}

} // namespace quillhaven
