// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "catalogue/ProtectedItem.h"

#include <QStringList>

namespace quillhaven {

enum class StatusFilter { all, locked, unlocked };
enum class AuthFilter { all, password, touchID };
enum class TypeFilter { all, files, folders };
enum class SortOption { name, status };

/// What the search and filter bar narrows the list by, and the order of what is left.
struct SearchFilterBar
{
    QString searchText; ///< as typed: a lone space is a search
    StatusFilter statusFilter = StatusFilter::all;
    AuthFilter authFilter = AuthFilter::all;
    TypeFilter typeFilter = TypeFilter::all;
    SortOption sortOption = SortOption::name;

    bool operator==(const SearchFilterBar &) const = default;

    /// Whether anything narrows the list; the order does not count.
    [[nodiscard]] bool hasActiveFilters() const;
    /// The label of the button that lifts what narrows the list.
    [[nodiscard]] QString getAdaptiveCTAText() const;
    /// Lifts what narrows the list; the order stays.
    void clearAllFilters();
    /// The items that pass, in the chosen order. Items that compare the same keep the order of `items`.
    [[nodiscard]] QList<ProtectedItem> filteredAndSortedItems(const QList<ProtectedItem> &items) const;
};

/// The labels of an enumeration's cases, in its order.
[[nodiscard]] const QStringList &statusFilterLabels();
[[nodiscard]] const QStringList &authFilterLabels();
[[nodiscard]] const QStringList &typeFilterLabels();
[[nodiscard]] const QStringList &sortOptionLabels();

} // namespace quillhaven
