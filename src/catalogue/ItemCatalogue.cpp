// SPDX-License-Identifier: GPL-3.0-or-later

#include "catalogue/ItemCatalogue.h"

#include "catalogue/CatalogueJson.h"
#include "platform/UserDefaults.h"
#include "settings/DefaultsKeys.h"

#include <algorithm>

namespace quillhaven {

ItemCatalogue::ItemCatalogue(UserDefaultsProvider &defaults, QObject *parent) : QObject(parent), m_defaults(defaults) {}

ItemCatalogue::~ItemCatalogue() = default;

ProtectedItem *ItemCatalogue::find(const QString &id)
{
    const auto found = std::ranges::find(std::as_const(m_items), id, &ProtectedItem::id);
    // The list is detached only when there is something to change.
    return found == m_items.cend() ? nullptr : &m_items[found - m_items.cbegin()];
}

const ProtectedItem *ItemCatalogue::item(const QString &id) const
{
    const auto found = std::ranges::find(m_items, id, &ProtectedItem::id);
    return found == m_items.cend() ? nullptr : &*found;
}

const ProtectedItem *ItemCatalogue::itemAt(const QString &originalPath) const
{
    const auto found = std::ranges::find(m_items, originalPath, &ProtectedItem::originalPath);
    return found == m_items.cend() ? nullptr : &*found;
}

ItemCatalogue::Loaded ItemCatalogue::load()
{
    const auto data = m_defaults.standard().dataForKey(defaults_keys::protectedItems);
    if (!data) {
        return Loaded::Nothing;
    }
    const auto decoded = decodeProtectedItems(*data);
    if (!decoded) {
        return Loaded::Undecodable;
    }
    m_items = *decoded;
    Q_EMIT reset();
    Q_EMIT changed();
    return Loaded::Items;
}

void ItemCatalogue::append(const ProtectedItem &item)
{
    m_items.append(item);
    Q_EMIT itemAdded(item.id);
    Q_EMIT changed();
    save();
}

bool ItemCatalogue::updateUnsaved(const QString &id, const Change &change)
{
    ProtectedItem *item = find(id);
    if (!item) {
        return false;
    }
    change(*item);
    Q_EMIT itemChanged(id);
    Q_EMIT changed();
    return true;
}

bool ItemCatalogue::update(const QString &id, const Change &change)
{
    const bool isFound = updateUnsaved(id, change);
    if (isFound) {
        save();
    }
    return isFound;
}

void ItemCatalogue::remove(const QSet<QString> &ids)
{
    QStringList removed;
    m_items.removeIf([&](const ProtectedItem &item) {
        const bool isRemoved = ids.contains(item.id);
        if (isRemoved) {
            removed.append(item.id);
        }
        return isRemoved;
    });
    for (const QString &id : std::as_const(removed)) {
        Q_EMIT itemRemoved(id);
    }
    if (!removed.isEmpty()) {
        Q_EMIT changed();
    }
}

void ItemCatalogue::save()
{
    const QByteArray items = encodeProtectedItems(m_items);
    if (items.isEmpty()) {
        return;
    }
    m_defaults.standard().setData(defaults_keys::protectedItems, items);

    UserDefaults *suite = m_defaults.suite(defaults_keys::sharedSuite);
    const QByteArray infos = encodeProtectedItemInfos(m_items);
    if (suite && !infos.isEmpty()) {
        suite->setData(defaults_keys::protectedItems, infos);
    }
}

} // namespace quillhaven
