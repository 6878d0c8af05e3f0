// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

namespace quillhaven {

struct ProtectedItem;

/// The search text, the filters and the order that the search and filter bar sets. Main thread only.
class SearchFilterBarModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Part of the dashboard")
    Q_PROPERTY(QString searchText READ searchText WRITE setSearchText NOTIFY filtersChanged)
    Q_PROPERTY(StatusFilter statusFilter READ statusFilter WRITE setStatusFilter NOTIFY filtersChanged)
    Q_PROPERTY(AuthFilter authFilter READ authFilter WRITE setAuthFilter NOTIFY filtersChanged)
    Q_PROPERTY(TypeFilter typeFilter READ typeFilter WRITE setTypeFilter NOTIFY filtersChanged)
    Q_PROPERTY(SortOption sortOption READ sortOption WRITE setSortOption NOTIFY sortOptionChanged)
    Q_PROPERTY(bool hasActiveFilters READ hasActiveFilters NOTIFY filtersChanged)
    Q_PROPERTY(QString adaptiveCTAText READ getAdaptiveCTAText NOTIFY filtersChanged)
    // The labels of the values of each enumeration, in the order of the values
    Q_PROPERTY(QList<QString> statusFilters READ statusFilters CONSTANT)
    Q_PROPERTY(QList<QString> authFilters READ authFilters CONSTANT)
    Q_PROPERTY(QList<QString> typeFilters READ typeFilters CONSTANT)
    Q_PROPERTY(QList<QString> sortOptions READ sortOptions CONSTANT)

public:
    enum class StatusFilter { all, locked, unlocked };
    Q_ENUM(StatusFilter)
    enum class AuthFilter { all, password, touchID };
    Q_ENUM(AuthFilter)
    enum class TypeFilter { all, files, folders };
    Q_ENUM(TypeFilter)
    enum class SortOption { name, status };
    Q_ENUM(SortOption)

    explicit SearchFilterBarModel(QObject *parent = nullptr);

    /// Exactly as typed: even a single space is a search text.
    [[nodiscard]] QString searchText() const { return m_filters.searchText; }
    [[nodiscard]] StatusFilter statusFilter() const { return m_filters.status; }
    [[nodiscard]] AuthFilter authFilter() const { return m_filters.auth; }
    [[nodiscard]] TypeFilter typeFilter() const { return m_filters.type; }
    [[nodiscard]] SortOption sortOption() const { return m_sortOption; }
    void setSearchText(const QString &value);
    void setStatusFilter(StatusFilter value);
    void setAuthFilter(AuthFilter value);
    void setTypeFilter(TypeFilter value);
    void setSortOption(SortOption value);

    /// Whether a search text or a filter is set.
    [[nodiscard]] bool hasActiveFilters() const { return m_filters != Filters(); }
    /// The label of the button that clears the search text and the filters.
    [[nodiscard]] QString getAdaptiveCTAText() const;
    /// Clears the search text and the filters, but not the order.
    Q_INVOKABLE void clearAllFilters();
    [[nodiscard]] bool passes(const ProtectedItem &item) const;

    [[nodiscard]] static QStringList statusFilters();
    [[nodiscard]] static QStringList authFilters();
    [[nodiscard]] static QStringList typeFilters();
    [[nodiscard]] static QStringList sortOptions();

Q_SIGNALS:
    void filtersChanged();
    void sortOptionChanged();

private:
    struct Filters
    {
        QString searchText;
        StatusFilter status = StatusFilter::all;
        AuthFilter auth = AuthFilter::all;
        TypeFilter type = TypeFilter::all;

        bool operator==(const Filters &) const = default;
    };

    void setFilters(const Filters &filters);

    Filters m_filters;
    SortOption m_sortOption = SortOption::name;
};

} // namespace quillhaven
