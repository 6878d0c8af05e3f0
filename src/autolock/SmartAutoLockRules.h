// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QStringList>

#include <optional>

namespace quillhaven {

/// At which events of the system all items are locked. The fields without a reader are kept as they are in the store.
struct SmartAutoLockRules
{
    bool lockOnSleep = true;
    bool lockOnLogout = true; ///< read by nothing
    bool lockOnUserSwitch = true;
    bool lockOnScreenSaver = false;
    bool lockOnSystemLock = true;
    bool enhancedIdleDetection = true;  ///< read by nothing
    qlonglong idleThresholdMinutes = 5; ///< read by nothing
    QStringList exceptions = {};        ///< read by nothing

    bool operator==(const SmartAutoLockRules &) const = default;
};

/// A JSON object with a key of its name for each field.
[[nodiscard]] QByteArray encodeSmartAutoLockRules(const SmartAutoLockRules &rules);
/// Nothing when a key is missing or its value has another type; further keys are ignored.
[[nodiscard]] std::optional<SmartAutoLockRules> decodeSmartAutoLockRules(const QByteArray &json);

} // namespace quillhaven
