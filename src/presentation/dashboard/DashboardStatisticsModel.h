// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace quillhaven {

class AutoLockManager;
class FilteredItemsModel;
class SearchFilterBarModel;

/// The figures on the statistics cards. They count all items, or the shown ones while a filter is active. Main thread
/// only.
class DashboardStatisticsModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Part of the dashboard")
    Q_PROPERTY(int protectedItems READ protectedItems NOTIFY changed)
    Q_PROPERTY(int currentlyUnlocked READ currentlyUnlocked NOTIFY changed)
    Q_PROPERTY(int touchIDProtected READ touchIDProtected NOTIFY changed)
    Q_PROPERTY(int passwordProtected READ passwordProtected NOTIFY changed)
    Q_PROPERTY(QString autoLockStatus READ getAutoLockStatus NOTIFY autoLockStatusChanged)
    Q_PROPERTY(QString statisticsNote READ statisticsNote NOTIFY changed)

public:
    /// The references must outlive this object.
    DashboardStatisticsModel(const FilteredItemsModel &items, const SearchFilterBarModel &filters,
                             const AutoLockManager &autoLockManager, QObject *parent = nullptr);

    [[nodiscard]] int protectedItems() const { return m_figures.shown; }
    [[nodiscard]] int currentlyUnlocked() const { return m_figures.unlocked; }
    [[nodiscard]] int touchIDProtected() const { return m_figures.withTouchID; }
    [[nodiscard]] int passwordProtected() const { return m_figures.shown - m_figures.withTouchID; }
    /// After how long without input the items are locked, such as "(1h 30m)".
    [[nodiscard]] QString getAutoLockStatus() const;
    /// Says what the figures count.
    [[nodiscard]] QString statisticsNote() const;

Q_SIGNALS:
    void changed();
    void autoLockStatusChanged();

private:
    struct Figures
    {
        int shown = 0;
        int unlocked = 0;
        int withTouchID = 0;
        int total = 0;
        bool isFiltered = false;

        bool operator==(const Figures &) const = default;
    };

    void count();
    /// Counts from the event loop, once for many changes of the list.
    void countLater();

    const FilteredItemsModel &m_items;
    const SearchFilterBarModel &m_filters;
    const AutoLockManager &m_autoLockManager;
    Figures m_figures;
    bool m_willCount = false;
};

} // namespace quillhaven
