// SPDX-License-Identifier: GPL-3.0-or-later

#include "catalogue/ItemCatalogue.h"

#include "catalogue/CatalogueJson.h"
#include "platform/UserDefaults.h"
#include "settings/Settings.h"
#include "support/printLogger.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace quillhaven {

ItemCatalogue::ItemCatalogue(UserDefaultsProvider &defaults, QObject *parent) : QObject(parent), m_defaults(defaults)
{
    connect(&m_leases, &ItemLeases::leaseChanged, this, &ItemCatalogue::leaseChanged);
}

ItemCatalogue::~ItemCatalogue() = default;

ProtectedItem *ItemCatalogue::find(const QString &id)
{
    const auto found = m_index.constFind(id);
    // The list is detached only when there is something to change.
    return found == m_index.cend() ? nullptr : &m_items[*found];
}

void ItemCatalogue::rebuildIndex()
{
    m_index.clear();
    for (qsizetype index = m_items.size() - 1; index >= 0; --index) {
        m_index.insert(m_items.at(index).id, index);
    }
}

const ProtectedItem *ItemCatalogue::item(const QString &id) const
{
    const auto found = m_index.constFind(id);
    return found == m_index.cend() ? nullptr : &m_items.at(*found);
}

QList<ProtectedItem> ItemCatalogue::items(const QStringList &ids) const
{
    QList<ProtectedItem> found;
    for (const QString &id : ids) {
        if (const ProtectedItem *known = item(id)) {
            found.append(*known);
        }
    }
    return found;
}

const ProtectedItem *ItemCatalogue::itemAt(const QString &originalPath) const
{
    const auto found = std::ranges::find(m_items, originalPath, &ProtectedItem::originalPath);
    return found == m_items.cend() ? nullptr : &*found;
}

ItemCatalogue::Loaded ItemCatalogue::load()
{
    std::optional<QByteArray> data;
    m_readFailure.reset();
    try {
        data = m_defaults.standard().dataForKey(settings::protectedItems.key);
    } catch (const UserDefaultsError &error) {
        printLogger(QStringLiteral("❌ ") + error.errorDescription());
        m_readFailure = error.errorDescription();
        return Loaded::Unreadable;
    }
    if (!data) {
        return Loaded::Nothing;
    }
    const auto decoded = decodeProtectedItems(*data);
    if (!decoded) {
        return Loaded::Undecodable;
    }
    m_items = *decoded;
    rebuildIndex();
    m_applicationBacklog = {.isWhole = false, .changed = {}, .removed = {}};
    Q_EMIT reset();
    Q_EMIT changed();
    return Loaded::Items;
}

std::optional<QString> ItemCatalogue::problem() const
{
    const QString consequence = QStringLiteral(" Nothing can be protected until this is put right.");
    if (m_readFailure) {
        return *m_readFailure + QLatin1Char('.') + consequence;
    }
    const auto problem = m_defaults.problem();
    return problem ? std::optional(*problem + consequence) : std::nullopt;
}

bool ItemCatalogue::retry()
{
    if (!problem()) {
        return true;
    }
    const QList<ProtectedItem> changed = items(QStringList(m_applicationBacklog.changed.values()));
    const QSet<QString> removed = m_applicationBacklog.removed;
    if (m_defaults.reopen() && load() != Loaded::Unreadable) {
        reapply(changed, removed);
        save();
    }
    Q_EMIT problemChanged();
    return !problem();
}

void ItemCatalogue::reapply(const QList<ProtectedItem> &changed, const QSet<QString> &removed)
{
    for (const ProtectedItem &item : changed) {
        updateUnsaved(item.id, [&item](ProtectedItem &live) { live = item; });
    }
    remove(removed);
}

void ItemCatalogue::append(const ProtectedItem &item)
{
    m_items.append(item);
    if (!m_index.contains(item.id)) {
        m_index.insert(item.id, m_items.size() - 1);
    }
    noteChanged(item.id);
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
    noteChanged(id);
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
    if (!removed.isEmpty()) {
        rebuildIndex();
    }
    for (const QString &id : std::as_const(removed)) {
        noteRemoved(id);
        Q_EMIT itemRemoved(id);
    }
    if (!removed.isEmpty()) {
        Q_EMIT changed();
    }
}

QCoro::Task<ItemLease> ItemCatalogue::lease(QString id)
{
    const ProtectedItem *known = item(id);
    return m_leases.acquire(id, known ? known->originalPath : QString());
}

void ItemCatalogue::noteChanged(const QString &id)
{
    for (Backlog *backlog : {&m_applicationBacklog, &m_sharedBacklog}) {
        backlog->changed.insert(id);
    }
}

void ItemCatalogue::noteRemoved(const QString &id)
{
    for (Backlog *backlog : {&m_applicationBacklog, &m_sharedBacklog}) {
        backlog->changed.remove(id);
        backlog->removed.insert(id);
    }
}

QList<qsizetype> ItemCatalogue::due(const Backlog &backlog) const
{
    QList<qsizetype> indexes;
    if (backlog.isWhole) {
        indexes.resize(m_items.size());
        std::iota(indexes.begin(), indexes.end(), 0);
        return indexes;
    }
    for (const QString &id : backlog.changed) {
        if (const ProtectedItem *changed = item(id)) {
            indexes.append(changed - m_items.constData());
        }
    }
    std::ranges::sort(indexes); // New elements go to the end in the order of the list.
    return indexes;
}

std::optional<QList<ArrayElement>> ItemCatalogue::encoded(const Backlog &backlog, Encode encode) const
{
    QList<ArrayElement> elements;
    for (const qsizetype index : due(backlog)) {
        const ProtectedItem &item = m_items.at(index);
        elements.append({.id = item.id, .value = encode(item)});
        if (elements.constLast().value.isEmpty()) {
            return std::nullopt;
        }
    }
    return elements;
}

bool ItemCatalogue::write(UserDefaults &store, Backlog &backlog, Encode encode)
{
    const auto elements = encoded(backlog, encode);
    if (!elements) {
        return false;
    }
    if (!backlog.isWhole &&
        store.changeArray(settings::protectedItems.key, {.put = *elements, .removed = backlog.removed.values()})) {
        backlog = {.isWhole = false, .changed = {}, .removed = {}};
        return true;
    }
    if (!std::exchange(backlog.isWhole, true)) {
        return write(store, backlog, encode); // It held another form of the list, or has missed a change.
    }
    if (store.setArray(settings::protectedItems.key, *elements)) {
        backlog = {.isWhole = false, .changed = {}, .removed = {}};
    }
    return true;
}

void ItemCatalogue::save()
{
    m_isUnsaved = true;
    if (m_readFailure || !write(m_defaults.standard(), m_applicationBacklog, encodeProtectedItem)) {
        return;
    }
    UserDefaults *suite = m_defaults.suite(settings::sharedSuite);
    if (suite) {
        write(*suite, m_sharedBacklog, encodeProtectedItemInfo);
    }
    m_isUnsaved = m_applicationBacklog.isWhole || (suite && m_sharedBacklog.isWhole);
}

void ItemCatalogue::publish()
{
    UserDefaults *suite = m_defaults.suite(settings::sharedSuite);
    const auto elements = encoded({}, encodeProtectedItemInfo);
    if (!suite || !elements) {
        return;
    }
    QByteArrayList texts;
    for (const ArrayElement &element : *elements) {
        texts.append(element.value);
    }
    const auto held = settings::protectedItems.read(*suite);
    if (held == QByteArray('[' + texts.join(',') + ']')) {
        m_sharedBacklog = {.isWhole = false, .changed = {}, .removed = {}};
    } else {
        write(*suite, m_sharedBacklog, encodeProtectedItemInfo);
    }
}

void ItemCatalogue::saveUnsaved()
{
    if (!m_isUnsaved) {
        return;
    }
    if (problem()) {
        retry();
    } else {
        save();
    }
    if (m_isUnsaved) {
        printLogger(QStringLiteral("❌ The last changes of the list of protected items could not be saved"));
    }
}

} // namespace quillhaven
