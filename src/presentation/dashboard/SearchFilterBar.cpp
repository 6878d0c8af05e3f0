// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dashboard/SearchFilterBar.h"

#include <QCollator>

#include <algorithm>
#include <functional>
#include <iterator>
#include <numeric>
#include <vector>

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

/// Sorts by the keys, without moving items whose keys compare the same. (libstdc++'s own stable sort needs what C++20
/// deprecates.)
template <typename Key, typename Comparison>
QList<ProtectedItem> stablySorted(const QList<ProtectedItem> &items, const std::vector<Key> &keys, Comparison compare)
{
    std::vector<size_t> order(keys.size());
    std::iota(order.begin(), order.end(), 0);
    std::sort(order.begin(), order.end(), [&keys, &compare](size_t left, size_t right) {
        const int result = compare(keys[left], keys[right]);
        return result != 0 ? result < 0 : left < right;
    });
    QList<ProtectedItem> sorted;
    sorted.reserve(items.size());
    for (const size_t position : order) {
        sorted.append(items.at(static_cast<qsizetype>(position)));
    }
    return sorted;
}

QList<ProtectedItem> sortedByName(const QList<ProtectedItem> &items)
{
    QCollator collator;
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    // Without a language a key tells cases apart all the same. With one, folding would lose its own rules.
    const bool hasLanguage = collator.locale().language() != QLocale::C;
    std::vector<QCollatorSortKey> keys;
    keys.reserve(static_cast<size_t>(items.size()));
    for (const ProtectedItem &item : items) {
        keys.push_back(collator.sortKey(hasLanguage ? item.originalName : item.originalName.toCaseFolded()));
    }
    return stablySorted(
        items, keys, [](const QCollatorSortKey &left, const QCollatorSortKey &right) { return left.compare(right); });
}

QList<ProtectedItem> sortedByStatus(const QList<ProtectedItem> &items)
{
    std::vector<int> keys;
    keys.reserve(static_cast<size_t>(items.size()));
    for (const ProtectedItem &item : items) {
        keys.push_back(static_cast<int>(item.isMounted));
    }
    return stablySorted(items, keys, std::minus<int>());
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
    return sortOption == SortOption::name ? sortedByName(result) : sortedByStatus(result);
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
