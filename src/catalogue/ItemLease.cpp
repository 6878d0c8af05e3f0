// SPDX-License-Identifier: GPL-3.0-or-later

#include "catalogue/ItemLease.h"

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

ItemLeases::ItemLeases(QObject *parent) : QObject(parent) {}

QCoro::Task<ItemLease> ItemLeases::acquire(QString id)
{
    if (m_waiting.contains(id)) {
        const Answer<bool> turn;
        m_waiting[id].push_back(turn);
        (void)co_await turn;
    } else {
        m_waiting.insert(id, {});
        Q_EMIT leaseChanged(id);
    }
    co_return ItemLease(*this, id);
}

void ItemLeases::release(const QString &id)
{
    const auto found = m_waiting.find(id);
    if (found->empty()) {
        m_waiting.erase(found);
        Q_EMIT leaseChanged(id);
        return;
    }
    const Answer<bool> next = found->front();
    found->pop_front();
    next.give(true); // the item stays leased: the one that waited goes on from the event loop
}

} // namespace quillhaven
