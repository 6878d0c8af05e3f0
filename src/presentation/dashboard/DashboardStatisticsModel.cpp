// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dashboard/DashboardStatisticsModel.h"

#include "autolock/AutoLockManager.h"
#include "presentation/dashboard/FilteredItemsModel.h"
#include "presentation/dashboard/ProtectedItemsModel.h"
#include "presentation/dashboard/SearchFilterBarModel.h"

namespace quillhaven {

DashboardStatisticsModel::DashboardStatisticsModel(const FilteredItemsModel &items, const SearchFilterBarModel &filters,
                                                   const AutoLockManager &autoLockManager, QObject *parent)
    : QObject(parent), m_items(items), m_filters(filters), m_autoLockManager(autoLockManager)
{
    connect(&items, &FilteredItemsModel::itemsChanged, this, &DashboardStatisticsModel::countLater);
    connect(&autoLockManager, &AutoLockManager::isAutoLockEnabledChanged, this,
            &DashboardStatisticsModel::autoLockStatusChanged);
    connect(&autoLockManager, &AutoLockManager::autoLockMinutesChanged, this,
            &DashboardStatisticsModel::autoLockStatusChanged);
    count();
}

void DashboardStatisticsModel::countLater()
{
    if (!m_willCount) {
        m_willCount = true;
        QMetaObject::invokeMethod(this, &DashboardStatisticsModel::count, Qt::QueuedConnection);
    }
}

void DashboardStatisticsModel::count()
{
    m_willCount = false;
    Figures figures{
        .shown = m_items.count(), .total = m_items.rows().rowCount(), .isFiltered = m_filters.hasActiveFilters()};
    for (int row = 0; row < figures.shown; ++row) {
        const ProtectedItem &item = m_items.itemAt(row);
        figures.unlocked += item.isMounted ? 1 : 0;
        figures.withTouchID += item.useTouchID ? 1 : 0;
    }
    if (m_figures != figures) {
        m_figures = figures;
        Q_EMIT changed();
    }
}

QString DashboardStatisticsModel::getAutoLockStatus() const
{
    if (!m_autoLockManager.isAutoLockEnabled()) {
        return QStringLiteral("Disabled");
    }
    constexpr qlonglong hour = 60;
    const qlonglong minutes = m_autoLockManager.getEffectiveAutoLockMinutes();
    if (minutes < hour) {
        return QStringLiteral("(%1m)").arg(minutes);
    }
    if (minutes % hour == 0) {
        return QStringLiteral("(%1h)").arg(minutes / hour);
    }
    return QStringLiteral("(%1h %2m)").arg(minutes / hour).arg(minutes % hour);
}

QString DashboardStatisticsModel::statisticsNote() const
{
    if (!m_figures.isFiltered) {
        return QStringLiteral("Includes both locked and unlocked items currently managed by Quillhaven.");
    }
    return QStringLiteral("Showing filtered results from ") + QString::number(m_figures.total) +
           QStringLiteral(" total items.");
}

} // namespace quillhaven
