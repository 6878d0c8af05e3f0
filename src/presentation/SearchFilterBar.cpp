#include "presentation/SearchFilterBar.h"

#include <QCollator>

#include <algorithm>

namespace quillhaven {

namespace {

bool passesSearch(const ProtectedItem &item, const QString &searchText)
{
    return searchText.isEmpty() || item.originalName.contains(searchText, Qt::CaseInsensitive);
}

bool passes(const ProtectedItem &item, StatusFilter filter)
{
    return filter == StatusFilter::all || item.isMounted == (filter == StatusFilter::unlocked);
}

bool passes(const ProtectedItem &item, AuthFilter filter)
{
    return filter == AuthFilter::all || item.useTouchID == (filter == AuthFilter::touchID);
}

bool passes(const ProtectedItem &item, TypeFilter filter)
{
    return filter == TypeFilter::all || item.isFolder == (filter == TypeFilter::folders);
}

void sortByName(QList<ProtectedItem> &items)
{
    QCollator collator;
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    std::stable_sort(items.begin(), items.end(), [&collator](const ProtectedItem &left, const ProtectedItem &right) {
        return collator.compare(left.originalName, right.originalName) < 0;
    });
}

void sortByStatus(QList<ProtectedItem> &items)
{
    std::stable_partition(items.begin(), items.end(), [](const ProtectedItem &item) { return !item.isMounted; });
}

} // namespace

bool SearchFilterBar::hasActiveFilters() const
{
    return !searchText.isEmpty() || statusFilter != StatusFilter::all || authFilter != AuthFilter::all ||
           typeFilter != TypeFilter::all;
}

QString SearchFilterBar::getAdaptiveCTAText() const
{
    if (!searchText.isEmpty()) {
        return QStringLiteral("Clear Search");
    }
    return hasActiveFilters() ? QStringLiteral("Clear Filters") : QStringLiteral("Clear All");
}

void SearchFilterBar::clearAllFilters()
{
    const SortOption order = sortOption;
    *this = SearchFilterBar();
    sortOption = order;
}

QList<ProtectedItem> SearchFilterBar::filteredAndSortedItems(const QList<ProtectedItem> &items) const
{
    QList<ProtectedItem> result;
    std::copy_if(items.begin(), items.end(), std::back_inserter(result), [this](const ProtectedItem &item) {
        return passesSearch(item, searchText) && passes(item, statusFilter) && passes(item, authFilter) &&
               passes(item, typeFilter);
    });
    if (sortOption == SortOption::name) {
        sortByName(result);
    } else {
        sortByStatus(result);
    }
    return result;
}

const QStringList &statusFilterLabels()
{
    static const QStringList labels{QStringLiteral("All"), QStringLiteral("Locked"), QStringLiteral("Unlocked")};
    return labels;
}

const QStringList &authFilterLabels()
{
    static const QStringList labels{QStringLiteral("All"), QStringLiteral("Password"), QStringLiteral("Touch ID")};
    return labels;
}

const QStringList &typeFilterLabels()
{
    static const QStringList labels{QStringLiteral("All"), QStringLiteral("Files"), QStringLiteral("Folders")};
    return labels;
}

const QStringList &sortOptionLabels()
{
    static const QStringList labels{QStringLiteral("Name"), QStringLiteral("Status")};
    return labels;
}

} // namespace quillhaven
