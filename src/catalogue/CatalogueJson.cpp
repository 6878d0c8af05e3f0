// SPDX-License-Identifier: GPL-3.0-or-later

#include "catalogue/CatalogueJson.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringConverter>

// Looks for characters to escape sixteen at a time, where the machine can.
#ifdef __SSE2__
#define RAPIDJSON_SSE2
#endif
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

namespace quillhaven {

namespace {

using Buffer = rapidjson::StringBuffer;
using Writer = rapidjson::Writer<Buffer>;

bool write(Writer &writer, const QString &text)
{
    QStringEncoder encoder(QStringEncoder::Utf8, QStringEncoder::Flag::Stateless);
    const QByteArray utf8 = encoder.encode(text);
    // A lone surrogate would turn into a question mark, and a path with one would name another file.
    return !encoder.hasError() && writer.String(utf8.constData(), static_cast<rapidjson::SizeType>(utf8.size()));
}

bool write(Writer &writer, bool value)
{
    return writer.Bool(value);
}

template <typename Value>
bool writeField(Writer &writer, const char *key, const Value &value)
{
    return writer.Key(key) && write(writer, value);
}

bool writeItem(Writer &writer, const ProtectedItem &item)
{
    return writer.StartObject() && writeField(writer, "id", item.id) &&
           writeField(writer, "originalName", item.originalName) &&
           writeField(writer, "originalPath", item.originalPath) &&
           writeField(writer, "containerPath", item.containerPath) &&
           writeField(writer, "originalBackupPath", item.originalBackupPath) &&
           writeField(writer, "isFolder", item.isFolder) && writeField(writer, "useTouchID", item.useTouchID) &&
           writeField(writer, "isMounted", item.isMounted) &&
           (!item.mountedPath || writeField(writer, "mountedPath", *item.mountedPath)) &&
           writeField(writer, "isProcessing", item.isProcessing) && writer.EndObject();
}

bool writeInfo(Writer &writer, const ProtectedItem &item)
{
    const ProtectedItemInfo info(item);
    return writer.StartObject() && writeField(writer, "id", info.id) &&
           writeField(writer, "originalName", info.originalName) &&
           writeField(writer, "originalPath", info.originalPath) && writeField(writer, "isFolder", info.isFolder) &&
           writeField(writer, "isMounted", info.isMounted) && writer.EndObject();
}

QByteArray encodeOne(const ProtectedItem &item, bool (*writeOne)(Writer &, const ProtectedItem &))
{
    Buffer buffer;
    Writer writer(buffer);
    if (!writeOne(writer, item)) {
        return {};
    }
    return {buffer.GetString(), static_cast<qsizetype>(buffer.GetSize())};
}

/// Reads the fields of one object; `isComplete` turns false at the first one that is missing, of another type, or a
/// text that could not be written again: a list with such a record could not be saved any more.
struct FieldReader
{
    const QJsonObject &object;
    bool isComplete = true;

    QString string(QLatin1String key)
    {
        const QJsonValue value = object.value(key);
        const QString text = value.toString();
        isComplete = isComplete && value.isString() && text.isValidUtf16();
        return text;
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

QByteArray encodeProtectedItem(const ProtectedItem &item)
{
    return encodeOne(item, writeItem);
}

QByteArray encodeProtectedItemInfo(const ProtectedItem &item)
{
    return encodeOne(item, writeInfo);
}

QByteArray encodeProtectedItems(const QList<ProtectedItem> &items)
{
    QByteArrayList texts;
    for (const ProtectedItem &item : items) {
        texts.append(encodeProtectedItem(item));
        if (texts.constLast().isEmpty()) {
            return {};
        }
    }
    return '[' + texts.join(',') + ']';
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
