// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QVariant>

#include <optional>

namespace quillhaven {

/// One domain of settings: a keyed store of typed values that survives restarts and that another process may read
/// while this one runs. Writes need no flush and never fail to their caller; a failing one is logged. Main thread only.
class UserDefaults : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// The value with its own type (bool, qlonglong, double, QString, QByteArray, QDateTime or QVariantMap), or an
    /// invalid QVariant when the key is absent.
    [[nodiscard]] virtual QVariant objectForKey(const QString &key) const = 0;
    /// Stores a value of one of those types. An `int` is stored as an integer.
    virtual void setObject(const QString &key, const QVariant &value) = 0;
    virtual void removeObject(const QString &key) = 0;

    /// The typed readers: absent when the key is absent or holds another type.
    [[nodiscard]] std::optional<bool> boolForKey(const QString &key) const;
    [[nodiscard]] std::optional<qlonglong> integerForKey(const QString &key) const;
    [[nodiscard]] std::optional<double> doubleForKey(const QString &key) const;
    [[nodiscard]] std::optional<QString> stringForKey(const QString &key) const;
    [[nodiscard]] std::optional<QByteArray> dataForKey(const QString &key) const;
    [[nodiscard]] std::optional<QDateTime> dateForKey(const QString &key) const;
    [[nodiscard]] std::optional<QVariantMap> dictionaryForKey(const QString &key) const;

    void setBool(const QString &key, bool value) { setObject(key, value); }
    void setInteger(const QString &key, qlonglong value) { setObject(key, value); }
    void setString(const QString &key, const QString &value) { setObject(key, value); }
    void setData(const QString &key, const QByteArray &value) { setObject(key, value); }

Q_SIGNALS:
    /// A key was set or removed, by this process (at once) or by another one.
    void valueChanged(const QString &key);
};

/// Opens the domains of settings by name.
class UserDefaultsProvider
{
public:
    UserDefaultsProvider() = default;
    virtual ~UserDefaultsProvider() = default;
    UserDefaultsProvider(const UserDefaultsProvider &) = delete;
    UserDefaultsProvider &operator=(const UserDefaultsProvider &) = delete;

    /// The program's own domain; lives as long as the provider.
    [[nodiscard]] virtual UserDefaults &standard() = 0;
    /// A domain shared with other programs, or nullptr when it cannot be opened; owned by the provider.
    [[nodiscard]] virtual UserDefaults *suite(const QString &name) = 0;
};

} // namespace quillhaven
