// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "support/LocalizedError.h"

#include <QJsonObject>

namespace quillhaven {

/// A JSON document does not have the expected form. The description names what is missing or wrong, and where.
class JsonError : public LocalizedError
{
public:
    explicit JsonError(const QString &description) : LocalizedError(description) {}
};

/// Reads the required keys of one JSON object. Further keys are ignored, and of several equal ones the last counts.
/// Every function throws a JsonError for a missing key or a value of another type; null is another type.
class JsonReader
{
public:
    /// Reads a document whose top level is an object, in UTF-8. Throws a JsonError if it is anything else.
    explicit JsonReader(const QByteArray &document);

    [[nodiscard]] QString string(QLatin1String key) const;
    [[nodiscard]] bool boolean(QLatin1String key) const;
    [[nodiscard]] JsonReader object(QLatin1String key) const;

private:
    JsonReader(const QJsonObject &object, const QString &place) : m_object(object), m_place(place) {}
    /// The value of a key with this type.
    [[nodiscard]] QJsonValue value(QLatin1String key, QJsonValue::Type type) const;
    /// The key as the errors name it.
    [[nodiscard]] QString named(QLatin1String key) const;

    QJsonObject m_object;
    QString m_place; ///< the keys that lead to the object, each with a dot after it
};

} // namespace quillhaven
