// SPDX-License-Identifier: GPL-3.0-or-later

#include "autolock/SmartAutoLockRules.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>

namespace quillhaven {

namespace {

/// Calls `visit(key, field)` for every field.
template <typename Rules, typename Visitor>
void visitFields(Rules &rules, Visitor visit)
{
    visit(QLatin1String("lockOnSleep"), rules.lockOnSleep);
    visit(QLatin1String("lockOnLogout"), rules.lockOnLogout);
    visit(QLatin1String("lockOnUserSwitch"), rules.lockOnUserSwitch);
    visit(QLatin1String("lockOnScreenSaver"), rules.lockOnScreenSaver);
    visit(QLatin1String("lockOnSystemLock"), rules.lockOnSystemLock);
    visit(QLatin1String("enhancedIdleDetection"), rules.enhancedIdleDetection);
    visit(QLatin1String("idleThresholdMinutes"), rules.idleThresholdMinutes);
    visit(QLatin1String("exceptions"), rules.exceptions);
}

QJsonValue toJson(bool value)
{
    return value;
}

QJsonValue toJson(qlonglong value)
{
    return value;
}

QJsonValue toJson(const QStringList &value)
{
    return QJsonArray::fromStringList(value);
}

bool read(const QJsonValue &json, bool &field)
{
    field = json.toBool();
    return json.isBool();
}

bool read(const QJsonValue &json, qlonglong &field)
{
    // A value that is no whole number gives the default, and no number gives both.
    field = json.toInteger(0);
    return json.isDouble() && field == json.toInteger(1);
}

bool read(const QJsonValue &json, QStringList &field)
{
    const QJsonArray array = json.toArray();
    for (const QJsonValue &element : array) {
        if (!element.isString()) {
            return false;
        }
        field.append(element.toString());
    }
    return json.isArray();
}

} // namespace

QByteArray encodeSmartAutoLockRules(const SmartAutoLockRules &rules)
{
    QJsonObject object;
    visitFields(rules, [&object](QLatin1String key, const auto &field) { object.insert(key, toJson(field)); });
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

std::optional<SmartAutoLockRules> decodeSmartAutoLockRules(const QByteArray &json)
{
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (!document.isObject()) {
        return std::nullopt;
    }
    const QJsonObject object = document.object();
    SmartAutoLockRules rules;
    bool isComplete = true;
    visitFields(rules,
                [&](QLatin1String key, auto &field) { isComplete = read(object.value(key), field) && isComplete; });
    return isComplete ? std::optional(rules) : std::nullopt;
}

} // namespace quillhaven
