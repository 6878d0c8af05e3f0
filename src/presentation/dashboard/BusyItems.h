// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/QuillhavenManager.h"
#include "presentation/dashboard/DashboardContext.h"
#include "presentation/dashboard/ProtectedItemsModel.h"

#include <functional>
#include <utility>

namespace quillhaven {

/// Marks the rows of some items as busy during its lifetime, so that the window starts no second job for any of them. A
/// job that never continues, since its question for a password was replaced by another one, holds no marks.
class BusyItems
{
public:
    /// `onGivenUp` is called when the job never continues.
    BusyItems(const DashboardContext &context, const QList<ProtectedItem> &items, std::function<void()> onGivenUp = {})
        : m_items(context.rows), m_onGivenUp(std::move(onGivenUp))
    {
        for (const ProtectedItem &item : items) {
            m_ids.insert(item.id);
        }
        m_items.setBusy(m_ids, true);
        m_connection = QObject::connect(&context.quillhavenManager, &QuillhavenManager::questionReplaced, &m_items,
                                        [this](const QString &id) { giveUpIfItHas(id); });
    }
    ~BusyItems()
    {
        QObject::disconnect(m_connection);
        release();
    }
    BusyItems(const BusyItems &) = delete;
    BusyItems &operator=(const BusyItems &) = delete;

private:
    void release() { m_items.setBusy(std::exchange(m_ids, {}), false); }
    void giveUpIfItHas(const QString &id)
    {
        if (m_ids.contains(id)) {
            release();
            if (m_onGivenUp) {
                m_onGivenUp();
            }
        }
    }

    ProtectedItemsModel &m_items;
    QSet<QString> m_ids;
    std::function<void()> m_onGivenUp;
    QMetaObject::Connection m_connection;
};

} // namespace quillhaven
