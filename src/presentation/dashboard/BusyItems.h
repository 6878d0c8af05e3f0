// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "presentation/dashboard/ProtectedItemsModel.h"

namespace quillhaven {

/// Marks the rows of some items as busy during its lifetime, so that the window starts no second job for any of them.
class BusyItems
{
public:
    BusyItems(ProtectedItemsModel &items, const QStringList &ids) : m_items(items), m_ids(ids.begin(), ids.end())
    {
        m_items.setBusy(m_ids, true);
    }
    ~BusyItems() { m_items.setBusy(m_ids, false); }
    BusyItems(const BusyItems &) = delete;
    BusyItems &operator=(const BusyItems &) = delete;

private:
    ProtectedItemsModel &m_items;
    QSet<QString> m_ids;
};

} // namespace quillhaven
