// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <QVariantMap>

#include <optional>

namespace quillhaven {

/// What the program was built as.
struct BundleInformation
{
    std::optional<QString> identifier; ///< such as "com.example.program"
    QVariantMap values;                ///< by the keys below; a key may be missing

    /// The version that users read, such as "1.2.0".
    static inline const QString shortVersionKey = QStringLiteral("CFBundleShortVersionString");
    /// Distinguishes builds of one version.
    static inline const QString buildKey = QStringLiteral("CFBundleVersion");

    /// The value of a key when it is a string.
    [[nodiscard]] std::optional<QString> string(const QString &key) const
    {
        const QVariant value = values.value(key);
        return value.typeId() == QMetaType::QString ? std::optional(value.toString()) : std::nullopt;
    }
};

} // namespace quillhaven
