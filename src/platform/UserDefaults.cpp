// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/UserDefaults.h"

#include <QDateTime>

namespace quillhaven {

namespace {

template <typename T>
std::optional<T> valueOfType(const QVariant &value, QMetaType::Type type)
{
    if (value.typeId() != type) {
        return std::nullopt;
    }
    return value.value<T>();
}

} // namespace

std::optional<bool> UserDefaults::boolForKey(const QString &key) const
{
    return valueOfType<bool>(objectForKey(key), QMetaType::Bool);
}

std::optional<qlonglong> UserDefaults::integerForKey(const QString &key) const
{
    return valueOfType<qlonglong>(objectForKey(key), QMetaType::LongLong);
}

std::optional<double> UserDefaults::doubleForKey(const QString &key) const
{
    return valueOfType<double>(objectForKey(key), QMetaType::Double);
}

std::optional<QString> UserDefaults::stringForKey(const QString &key) const
{
    return valueOfType<QString>(objectForKey(key), QMetaType::QString);
}

std::optional<QByteArray> UserDefaults::dataForKey(const QString &key) const
{
    return valueOfType<QByteArray>(objectForKey(key), QMetaType::QByteArray);
}

std::optional<QDateTime> UserDefaults::dateForKey(const QString &key) const
{
    return valueOfType<QDateTime>(objectForKey(key), QMetaType::QDateTime);
}

std::optional<QVariantMap> UserDefaults::dictionaryForKey(const QString &key) const
{
    return valueOfType<QVariantMap>(objectForKey(key), QMetaType::QVariantMap);
}

} // namespace quillhaven
