// SPDX-License-Identifier: GPL-3.0-or-later

#include "updates/JsonReader.h"

#include <QJsonDocument>
#include <QJsonParseError>

namespace quillhaven {

namespace {

QString typeName(QJsonValue::Type type)
{
    switch (type) {
    case QJsonValue::Null:
        return QStringLiteral("null");
    case QJsonValue::Bool:
        return QStringLiteral("true or false");
    case QJsonValue::Double:
        return QStringLiteral("a number");
    case QJsonValue::String:
        return QStringLiteral("a text");
    case QJsonValue::Array:
        return QStringLiteral("a list");
    case QJsonValue::Object:
        return QStringLiteral("an object");
    case QJsonValue::Undefined:
        break;
    }
    return QStringLiteral("nothing");
}

QJsonObject topLevelObject(const QByteArray &document)
{
    QJsonParseError error;
    const QJsonDocument parsed = QJsonDocument::fromJson(document, &error);
    if (error.error != QJsonParseError::NoError) {
        throw JsonError(QStringLiteral("The data couldn't be read because it isn't valid JSON: at byte %1, %2.")
                            .arg(error.offset)
                            .arg(error.errorString()));
    }
    if (!parsed.isObject()) {
        throw JsonError(QStringLiteral("The data couldn't be read because it is a list instead of an object."));
    }
    return parsed.object();
}

} // namespace

JsonReader::JsonReader(const QByteArray &document) : JsonReader(topLevelObject(document), QString()) {}

QString JsonReader::string(QLatin1String key) const
{
    return value(key, QJsonValue::String).toString();
}

bool JsonReader::boolean(QLatin1String key) const
{
    return value(key, QJsonValue::Bool).toBool();
}

JsonReader JsonReader::object(QLatin1String key) const
{
    return {value(key, QJsonValue::Object).toObject(), m_place + key + QLatin1Char('.')};
}

QJsonValue JsonReader::value(QLatin1String key, QJsonValue::Type type) const
{
    const auto found = m_object.constFind(key);
    if (found == m_object.constEnd()) {
        throw JsonError(QStringLiteral("The data couldn't be read because \"%1\" is missing.").arg(named(key)));
    }
    if (found->type() != type) {
        throw JsonError(QStringLiteral("The data couldn't be read because \"%1\" should be %2, but is %3.")
                            .arg(named(key), typeName(type), typeName(found->type())));
    }
    return *found;
}

QString JsonReader::named(QLatin1String key) const
{
    return m_place + key;
}

} // namespace quillhaven
