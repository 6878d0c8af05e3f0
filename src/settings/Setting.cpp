// SPDX-License-Identifier: GPL-3.0-or-later

#include "settings/Setting.h"

#include "support/printLogger.h"

namespace quillhaven {

QVariant SettingKey::stored(const UserDefaults &defaults) const
{
    try {
        return defaults.objectForKey(key);
    } catch (const UserDefaultsError &error) {
        printLogger(QStringLiteral("❌ ") + error.errorDescription());
        return {};
    }
}

} // namespace quillhaven
