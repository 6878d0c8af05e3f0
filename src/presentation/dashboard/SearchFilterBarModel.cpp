// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dashboard/SearchFilterBarModel.h"

#include "catalogue/ProtectedItem.h"

#include <QLocale>

namespace quillhaven {

namespace {

/// The text without its cases, as the user's language has them, and with each accented letter in one form.
QString folded(const QString &text)
{
    return QLocale().toLower(text.normalized(QString::NormalizationForm_C));
}

bool localizedCaseInsensitiveContains(const QString &text, const QString &part)
{
    return folded(text).contains(folded(part));
}

} // namespace

SearchFilterBarModel::SearchFilterBarModel(QObject *parent) : QObject(parent) {}

void SearchFilterBarModel::setSearchText(const QString &value)
{
    Filters filters = m_filters;
    filters.searchText = value;
    setFilters(filters);
}

void SearchFilterBarModel::setStatusFilter(StatusFilter value)
{
    Filters filters = m_filters;
    filters.status = value;
    setFilters(filters);
}

void SearchFilterBarModel::setAuthFilter(AuthFilter value)
{
    Filters filters = m_filters;
    filters.auth = value;
    setFilters(filters);
}

void SearchFilterBarModel::setTypeFilter(TypeFilter value)
{
    Filters filters = m_filters;
    filters.type = value;
    setFilters(filters);
}

void SearchFilterBarModel::setSortOption(SortOption value)
{
    if (m_sortOption != value) {
        m_sortOption = value;
        Q_EMIT sortOptionChanged();
    }
}

void SearchFilterBarModel::clearAllFilters()
{
    setFilters({});
}

void SearchFilterBarModel::setFilters(const Filters &filters)
{
    if (m_filters != filters) {
        m_filters = filters;
        Q_EMIT filtersChanged();
    }
}

QString SearchFilterBarModel::getAdaptiveCTAText() const
{
    if (!m_filters.searchText.isEmpty()) {
        return QStringLiteral("Clear Search");
    }
    return hasActiveFilters() ? QStringLiteral("Clear Filters") : QStringLiteral("Clear All");
}

bool SearchFilterBarModel::passes(const ProtectedItem &item) const
{
    const auto &[searchText, status, auth, type] = m_filters;
    return (status == StatusFilter::all || item.isMounted == (status == StatusFilter::unlocked)) &&
           (auth == AuthFilter::all || item.useTouchID == (auth == AuthFilter::touchID)) &&
           (type == TypeFilter::all || item.isFolder == (type == TypeFilter::folders)) &&
           (searchText.isEmpty() || localizedCaseInsensitiveContains(item.originalName, searchText));
}

QStringList SearchFilterBarModel::statusFilters()
{
    return {QStringLiteral("All"), QStringLiteral("Locked"), QStringLiteral("Unlocked")};
}

QStringList SearchFilterBarModel::authFilters()
{
    return {QStringLiteral("All"), QStringLiteral("Password"), QStringLiteral("Touch ID")};
}

QStringList SearchFilterBarModel::typeFilters()
{
    return {QStringLiteral("All"), QStringLiteral("Files"), QStringLiteral("Folders")};
}

QStringList SearchFilterBarModel::sortOptions()
{
    return {QStringLiteral("Name"), QStringLiteral("Status")};
}

} // namespace quillhaven
