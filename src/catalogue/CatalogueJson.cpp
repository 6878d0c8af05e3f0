#include "catalogue/CatalogueJson.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

namespace quillhaven {

namespace {

// RapidJSON encodes from UTF-16 without an intermediate copy, and reports a lone surrogate.
using Buffer = rapidjson::StringBuffer;
using Writer = rapidjson::Writer<Buffer, rapidjson::UTF16<char16_t>, rapidjson::UTF8<>>;

bool write(Writer &writer, const QString &text)
{
    return writer.String(reinterpret_cast<const char16_t *>(text.utf16()),
                         static_cast<rapidjson::SizeType>(text.size()));
}

bool write(Writer &writer, bool value)
{
    return writer.Bool(value);
}

template <typename Value>
bool writeField(Writer &writer, const char16_t *key, const Value &value)
{
    return writer.Key(key) && write(writer, value);
}

bool writeItem(Writer &writer, const ProtectedItem &item)
{
    return writer.StartObject() && writeField(writer, u"id", item.id) &&
           writeField(writer, u"originalName", item.originalName) &&
           writeField(writer, u"originalPath", item.originalPath) &&
           writeField(writer, u"containerPath", item.containerPath) &&
           writeField(writer, u"originalBackupPath", item.originalBackupPath) &&
           writeField(writer, u"isFolder", item.isFolder) && writeField(writer, u"useTouchID", item.useTouchID) &&
           writeField(writer, u"isMounted", item.isMounted) &&
           (!item.mountedPath || writeField(writer, u"mountedPath", *item.mountedPath)) &&
           writeField(writer, u"isProcessing", item.isProcessing) && writer.EndObject();
}

bool writeInfo(Writer &writer, const ProtectedItem &item)
{
    const ProtectedItemInfo info(item);
    return writer.StartObject() && writeField(writer, u"id", info.id) &&
           writeField(writer, u"originalName", info.originalName) &&
           writeField(writer, u"originalPath", info.originalPath) && writeField(writer, u"isFolder", info.isFolder) &&
           writeField(writer, u"isMounted", info.isMounted) && writer.EndObject();
}

QByteArray encodeArray(const QList<ProtectedItem> &items, bool (*writeOne)(Writer &, const ProtectedItem &))
{
    Buffer buffer;
    Writer writer(buffer);
    if (!writer.StartArray()) {
        return {};
    }
    for (const ProtectedItem &item : items) {
        if (!writeOne(writer, item)) {
            return {};
        }
    }
    if (!writer.EndArray()) {
        return {};
    }
    return {buffer.GetString(), static_cast<qsizetype>(buffer.GetSize())};
}

/// Reads the fields of one object; `isComplete` turns false at the first one that is missing or of another type.
struct FieldReader
{
    const QJsonObject &object;
    bool isComplete = true;

    QString string(QLatin1String key)
    {
        const QJsonValue value = object.value(key);
        isComplete = isComplete && value.isString();
        return value.toString();
    }
    bool boolean(QLatin1String key)
    {
        const QJsonValue value = object.value(key);
        isComplete = isComplete && value.isBool();
        return value.toBool();
    }
    std::optional<QString> optionalString(QLatin1String key)
    {
        const QJsonValue value = object.value(key);
        if (value.isUndefined() || value.isNull()) {
            return std::nullopt;
        }
        return string(key);
    }
};

} // namespace

QByteArray encodeProtectedItems(const QList<ProtectedItem> &items)
{
    return encodeArray(items, writeItem);
}

QByteArray encodeProtectedItemInfos(const QList<ProtectedItem> &items)
{
    return encodeArray(items, writeInfo);
}

std::optional<QList<ProtectedItem>> decodeProtectedItems(const QByteArray &json)
{
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (!document.isArray()) {
        return std::nullopt;
    }
    QList<ProtectedItem> items;
    const QJsonArray array = document.array();
    items.reserve(array.size());
    for (const QJsonValue &value : array) {
        const QJsonObject object = value.toObject();
        FieldReader read{object};
        ProtectedItem item;
        item.id = read.string(QLatin1String("id"));
        item.originalName = read.string(QLatin1String("originalName"));
        item.originalPath = read.string(QLatin1String("originalPath"));
        item.containerPath = read.string(QLatin1String("containerPath"));
        item.originalBackupPath = read.string(QLatin1String("originalBackupPath"));
        item.isFolder = read.boolean(QLatin1String("isFolder"));
        item.useTouchID = read.boolean(QLatin1String("useTouchID"));
        item.isMounted = read.boolean(QLatin1String("isMounted"));
        item.mountedPath = read.optionalString(QLatin1String("mountedPath"));
        item.isProcessing = read.boolean(QLatin1String("isProcessing"));
        if (!read.isComplete) {
            return std::nullopt;
        }
        items.append(std::move(item));
    }
    return items;
}

} // namespace quillhaven
