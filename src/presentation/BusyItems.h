#pragma once

#include "presentation/ProtectedItemsModel.h"

namespace quillhaven {

/// Marks the rows of some items busy for as long as it lives, so that no second job of the window begins for one.
class BusyItems
{
public:
    BusyItems(ProtectedItemsModel &items, QStringList ids) : m_items(items), m_ids(std::move(ids)) { mark(true); }
    ~BusyItems() { mark(false); }
    BusyItems(const BusyItems &) = delete;
    BusyItems &operator=(const BusyItems &) = delete;

private:
    void mark(bool isBusy)
    {
        for (const QString &id : std::as_const(m_ids)) {
            m_items.setBusy(id, isBusy);
        }
    }

    ProtectedItemsModel &m_items;
    QStringList m_ids;
};

} // namespace quillhaven
