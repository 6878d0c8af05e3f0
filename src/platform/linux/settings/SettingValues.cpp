// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/settings/SettingValues.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>

namespace quillhaven {

namespace {

using Row = SqliteDatabase::Row;

QVariant decodedInteger(const QByteArray &bytes)
{
    bool isNumber = false;
    const qlonglong number = bytes.toLongLong(&isNumber);
    return isNumber ? QVariant(number) : QVariant();
}

QVariant decodedReal(const QByteArray &bytes)
{
    bool isNumber = false;
    const double number = bytes.toDouble(&isNumber);
    return isNumber ? QVariant(number) : QVariant();
}

} // namespace

SqliteDatabase::Row encodedSetting(const QString &key, const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Bool:
        return {key, QStringLiteral("bool"), value.toBool() ? "1" : "0"};
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
        return {key, QStringLiteral("integer"), QByteArray::number(value.toLongLong())};
    case QMetaType::Double:
        return {key, QStringLiteral("real"), QByteArray::number(value.toDouble(), 'g', 17)};
    case QMetaType::QString:
        return {key, QStringLiteral("string"), value.toString().toUtf8()};
    case QMetaType::QByteArray:
        return {key, QStringLiteral("data"), value.toByteArray()};
    case QMetaType::QDateTime:
        return {key, QStringLiteral("date"), value.toDateTime().toUTC().toString(Qt::ISODateWithMs).toLatin1()};
    case QMetaType::QVariantMap: {
        const QJsonDocument document(QJsonObject::fromVariantMap(value.toMap()));
        return {key, QStringLiteral("dictionary"), document.toJson(QJsonDocument::Compact)};
    }
    default:
        return {key, {}, {}};
    }
}

QVariant decodedSetting(const SqliteDatabase::Row &row)
{
    if (row.type == QStringLiteral("bool")) {
        return row.value == "1" || row.value == "0" ? QVariant(row.value == "1") : QVariant();
    }
    if (row.type == QStringLiteral("integer")) {
        return decodedInteger(row.value);
    }
    if (row.type == QStringLiteral("real")) {
        return decodedReal(row.value);
    }
    if (row.type == QStringLiteral("string")) {
        return QString::fromUtf8(row.value);
    }
    if (row.type == QStringLiteral("data")) {
        return row.value;
    }
    if (row.type == QStringLiteral("date")) {
        const QDateTime date = QDateTime::fromString(QString::fromLatin1(row.value), Qt::ISODateWithMs);
        return date.isValid() ? QVariant(date) : QVariant();
    }
    if (row.type == QStringLiteral("dictionary")) {
        const QJsonDocument document = QJsonDocument::fromJson(row.value);
        return document.isObject() ? QVariant(document.object().toVariantMap()) : QVariant();
    }
    return {};
}

} // namespace quillhaven
