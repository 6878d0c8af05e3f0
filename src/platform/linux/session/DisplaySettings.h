// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/DisplayPreferences.h"

#include <QHash>
#include <QStringList>
#include <QVariant>

namespace quillhaven {

/// The settings of the desktops that say how programs should look, as the settings portal publishes them.
class DisplaySettings
{
public:
    /// Where the portal has them.
    [[nodiscard]] static QStringList namespaces();

    /// Settings that are not about the look are ignored, and so are values of another type.
    void set(const QString &space, const QString &key, const QVariant &value);
    void add(const DisplaySettings &other) { m_values.insert(other.m_values); }

    /// The keys that all desktops share count, and the keys of single desktops where these are absent. No desktop has a
    /// setting for all that `differentiateWithoutColor` asks for: the nearest one draws a shape on a switch that is on,
    /// and who needs more contrast sees less of a difference between colours, so that either of them turns it on.
    [[nodiscard]] DisplayPreferences::Values values() const;

private:
    QHash<int, QVariant> m_values; ///< by an entry of the list of known settings
};

} // namespace quillhaven
