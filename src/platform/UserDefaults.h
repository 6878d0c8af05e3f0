// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "support/LocalizedError.h"

#include <QList>
#include <QObject>
#include <QStringList>
#include <QVariant>

#include <optional>

namespace quillhaven {

/// An element of an array value: its JSON text, and an id for changes of it.
struct ArrayElement
{
    QString id;
    QByteArray value;

    bool operator==(const ArrayElement &) const = default;
};

/// What changes in an array value in one step. What is removed goes first: an element that is in both lists moves to
/// the end.
struct ArrayChange
{
    QList<ArrayElement> put; ///< each replaces the element with its id, or is appended
    QStringList removed;     ///< ids
};

/// The store of the settings could not be read.
class UserDefaultsError : public LocalizedError
{
public:
    UserDefaultsError(const QString &key, const QString &reason)
        : LocalizedError(QStringLiteral("Could not read the setting ") + key + QStringLiteral(": ") + reason)
    {
    }
};

/// One domain of settings: a keyed store of typed values that survives restarts and that another process may read
/// while this one runs. Writes need no flush and never fail to their caller; a failing one is logged. Main thread only.
class UserDefaults : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// The value with its own type (bool, qlonglong, double, QString, QByteArray, QDateTime or QVariantMap), or an
    /// invalid QVariant when the key is absent. Throws UserDefaultsError when the store cannot be read.
    [[nodiscard]] virtual QVariant objectForKey(const QString &key) const = 0;
    /// Stores a value of one of those types. An `int` is stored as an integer.
    virtual void setObject(const QString &key, const QVariant &value) = 0;
    virtual void removeObject(const QString &key) = 0;

    /// Stores a data value, a JSON array, element by element, so that a later change of a few costs only those. Its
    /// value is "[", the elements' texts joined by "," and "]"; the other functions work on it as on every key. The ids
    /// should be unique; of several equal ones a change replaces the first and removes all. False, and logged, when the
    /// array could not be written.
    [[nodiscard]] virtual bool setArray(const QString &key, const QList<ArrayElement> &elements) = 0;
    /// Changes some elements of such an array, in one step. False, with nothing changed, when the key is absent or
    /// holds a value that `setArray` did not store, or when the write failed, which is logged. The stored array lacks
    /// this change then, and a caller that has the whole puts that right with `setArray`.
    [[nodiscard]] virtual bool changeArray(const QString &key, const ArrayChange &change) = 0;

    /// The typed readers: nothing when the key is absent or holds another type. They throw like `objectForKey`.
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
    /// A sentence for the user that names what is wrong when the program's own domain cannot be written, or not be
    /// read; it then holds what could be read, and no array in it can be changed.
    [[nodiscard]] virtual std::optional<QString> problem() const = 0;
    /// Tries to open such a domain again, and reports the values that are different now. Whether it can be written.
    [[nodiscard]] virtual bool reopen() = 0;
    /// A domain shared with other programs, or nullptr when it cannot be opened; owned by the provider.
    [[nodiscard]] virtual UserDefaults *suite(const QString &name) = 0;
};

} // namespace quillhaven
