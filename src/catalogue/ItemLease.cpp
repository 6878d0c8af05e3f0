// SPDX-License-Identifier: GPL-3.0-or-later

#include "catalogue/ItemLease.h"

#include <algorithm>
#include <utility>

namespace quillhaven {

ItemLease::ItemLease(ItemLeases &leases, QString id) : m_leases(&leases), m_id(std::move(id)) {}

ItemLease::ItemLease(ItemLease &&other) noexcept
    : m_leases(std::exchange(other.m_leases, nullptr)), m_id(std::move(other.m_id))
{
}

ItemLease &ItemLease::operator=(ItemLease &&other) noexcept
{
    if (this != &other) {
        release();
        m_leases = std::exchange(other.m_leases, nullptr);
        m_id = std::move(other.m_id);
    }
    return *this;
}

ItemLease::~ItemLease()
{
    release();
}

void ItemLease::release()
{
    if (ItemLeases *leases = std::exchange(m_leases, nullptr)) {
        leases->release(m_id);
    }
}

namespace {

bool isBelow(const QString &path, const QString &folder)
{
    return !folder.isEmpty() && path.size() > folder.size() && path.startsWith(folder) &&
           path.at(folder.size()) == QLatin1Char('/');
}

} // namespace

ItemLeases::ItemLeases(QObject *parent) : QObject(parent) {}

QCoro::Task<ItemLease> ItemLeases::acquire(QString id, QString path)
{
    const Turn turn{.id = id, .path = std::move(path), .answer = {}};
    if (isBlocked(turn, m_waiting.cend())) {
        m_waiting.push_back(turn);
        (void)co_await turn.answer;
    } else {
        m_held.push_back(turn);
        Q_EMIT leaseChanged(id);
    }
    co_return ItemLease(*this, id);
}

bool ItemLeases::isLeased(const QString &id) const
{
    return std::ranges::find(m_held, id, &Turn::id) != m_held.end();
}

bool ItemLeases::Turn::conflictsWith(const Turn &other) const
{
    return id == other.id || isBelow(path, other.path) || isBelow(other.path, path);
}

bool ItemLeases::isBlocked(const Turn &turn, std::vector<Turn>::const_iterator endOfWaiting) const
{
    const auto conflicts = [&turn](const Turn &other) { return turn.conflictsWith(other); };
    return std::ranges::any_of(m_held, conflicts) || std::any_of(m_waiting.cbegin(), endOfWaiting, conflicts);
}

void ItemLeases::release(const QString &id)
{
    m_held.erase(std::ranges::find(m_held, id, &Turn::id));
    QStringList changed{id};
    for (auto waiting = m_waiting.begin(); waiting != m_waiting.end();) {
        if (isBlocked(*waiting, waiting)) {
            ++waiting;
            continue;
        }
        m_held.push_back(*waiting);
        changed.append(waiting->id);
        waiting->answer.give(true); // It continues from the event loop.
        waiting = m_waiting.erase(waiting);
    }
    if (changed.count(id) > 1) {
        changed.removeAll(id); // It goes from one operation to the next.
    }
    for (const QString &each : std::as_const(changed)) {
        Q_EMIT leaseChanged(each);
    }
}

} // namespace quillhaven
