// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/UserDefaults.h"

#include <QLatin1String>

#include <optional>
#include <utility>

namespace quillhaven {

/// The key of a setting, and how its changes are noticed. Main thread only, as the store.
struct SettingKey
{
    QLatin1String key;

    /// Calls `action` after each change of the value by this process or another one, for as long as `context` lives.
    template <typename Action>
    void onChange(const UserDefaults &defaults, QObject *context, Action action) const
    {
        const auto actionForKey = [wanted = key, action = std::move(action)](const QString &changed) {
            if (changed == wanted) {
                action();
            }
        };
        QObject::connect(&defaults, &UserDefaults::valueChanged, context, actionForKey);
    }

    /// The stored value: invalid when there is none or, which is logged, when the store cannot be read.
    [[nodiscard]] QVariant stored(const UserDefaults &defaults) const;
};

/// A setting without a default: a key and the type of its value.
template <typename Value>
struct OptionalSetting : SettingKey
{
    constexpr explicit OptionalSetting(const char *name) : SettingKey{QLatin1String(name)} {}

    /// The value; nothing when the key is absent or holds another type.
    [[nodiscard]] std::optional<Value> read(const UserDefaults &defaults) const
    {
        const QVariant value = stored(defaults);
        return value.metaType() == QMetaType::fromType<Value>() ? std::optional(value.value<Value>()) : std::nullopt;
    }
    void write(UserDefaults &defaults, const Value &value) const
    {
        defaults.setObject(key, QVariant::fromValue(value));
    }
};

/// A setting whose reader gets a default when the key is absent or holds another type.
template <typename Value, typename Default = Value>
struct Setting : OptionalSetting<Value>
{
    constexpr Setting(const char *name, Default value) : OptionalSetting<Value>(name), defaultValue(value) {}

    Default defaultValue;

    [[nodiscard]] Value read(const UserDefaults &defaults) const
    {
        return OptionalSetting<Value>::read(defaults).value_or(Value(defaultValue));
    }
};

} // namespace quillhaven
