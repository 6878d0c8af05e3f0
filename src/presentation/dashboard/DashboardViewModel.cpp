// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dashboard/DashboardViewModel.h"

#include "credentials/MasterPasswordManager.h"
#include "engine/QuillhavenManager.h"
#include "platform/Clock.h"
#include "platform/UserDefaults.h"

#include <QCoreApplication>

#include <algorithm>

namespace quillhaven {

namespace {

template <typename Case>
QString labelOf(Case value, const QStringList &labels)
{
    return labels.at(static_cast<qsizetype>(value));
}

template <typename Case>
void assignByLabel(Case &field, const QString &label, const QStringList &labels)
{
    const qsizetype position = labels.indexOf(label);
    if (position >= 0) {
        field = static_cast<Case>(position);
    }
}

template <typename Condition>
int countOf(const QList<ProtectedItem> &items, Condition condition)
{
    return static_cast<int>(std::count_if(items.begin(), items.end(), condition));
}

} // namespace

DashboardViewModel::DashboardViewModel(const Platform &platform, QuillhavenManager &quillhavenManager,
                                       MasterPasswordManager &masterPasswordManager, const DashboardDialogs &dialogs,
                                       QObject *parent)
    : QObject(parent),
      m_platform(platform),
      m_quillhavenManager(quillhavenManager),
      m_masterPasswordManager(masterPasswordManager),
      m_dialogs(dialogs),
      m_items(platform.directories.home),
      m_selection(m_items),
      m_bulk(context(), platform.panels),
      m_shredding(context()),
      m_backup(context(), platform.defaults.standard())
{
    connect(&quillhavenManager, &QuillhavenManager::protectedItemsChanged, this, &DashboardViewModel::refresh);
    connect(&masterPasswordManager, &MasterPasswordManager::hasMasterPasswordChanged, this,
            &DashboardViewModel::masterPasswordTextChanged);
    connect(&m_errors, &DashboardErrors::changed, this, &DashboardViewModel::errorChanged);
    refresh();
}

DashboardViewModel::~DashboardViewModel() = default;

DashboardContext DashboardViewModel::context()
{
    return {.quillhavenManager = m_quillhavenManager,
            .masterPasswordManager = m_masterPasswordManager,
            .dialogs = m_dialogs,
            .items = m_items,
            .selection = m_selection,
            .errors = m_errors};
}

template <typename Change>
void DashboardViewModel::changeFilters(Change change)
{
    const SearchFilterBar before = m_filters;
    change(m_filters);
    if (m_filters != before) {
        refresh();
    }
}

void DashboardViewModel::refresh()
{
    m_items.setItems(filteredAndSortedItems());
    Q_EMIT stateChanged();
}

QString DashboardViewModel::statusFilter() const
{
    return labelOf(m_filters.statusFilter, statusFilterLabels());
}

QString DashboardViewModel::authFilter() const
{
    return labelOf(m_filters.authFilter, authFilterLabels());
}

QString DashboardViewModel::typeFilter() const
{
    return labelOf(m_filters.typeFilter, typeFilterLabels());
}

QString DashboardViewModel::sortOption() const
{
    return labelOf(m_filters.sortOption, sortOptionLabels());
}

void DashboardViewModel::setSearchText(const QString &value)
{
    changeFilters([&value](SearchFilterBar &filters) { filters.searchText = value; });
}

void DashboardViewModel::setStatusFilter(const QString &label)
{
    changeFilters(
        [&label](SearchFilterBar &filters) { assignByLabel(filters.statusFilter, label, statusFilterLabels()); });
}

void DashboardViewModel::setAuthFilter(const QString &label)
{
    changeFilters([&label](SearchFilterBar &filters) { assignByLabel(filters.authFilter, label, authFilterLabels()); });
}

void DashboardViewModel::setTypeFilter(const QString &label)
{
    changeFilters([&label](SearchFilterBar &filters) { assignByLabel(filters.typeFilter, label, typeFilterLabels()); });
}

void DashboardViewModel::setSortOption(const QString &label)
{
    changeFilters([&label](SearchFilterBar &filters) { assignByLabel(filters.sortOption, label, sortOptionLabels()); });
}

void DashboardViewModel::clearAllFilters()
{
    changeFilters([](SearchFilterBar &filters) { filters.clearAllFilters(); });
}

QList<ProtectedItem> DashboardViewModel::filteredAndSortedItems() const
{
    return m_filters.filteredAndSortedItems(m_quillhavenManager.protectedItems());
}

bool DashboardViewModel::showFilters() const
{
    return !m_quillhavenManager.protectedItems().isEmpty();
}

bool DashboardViewModel::hasNoResults() const
{
    return showFilters() && m_items.items().isEmpty();
}

const QList<ProtectedItem> &DashboardViewModel::countedItems() const
{
    return hasActiveFilters() ? m_items.items() : m_quillhavenManager.protectedItems();
}

int DashboardViewModel::protectedItemsCount() const
{
    return static_cast<int>(countedItems().size());
}

int DashboardViewModel::currentlyUnlockedCount() const
{
    return countOf(countedItems(), [](const ProtectedItem &item) { return item.isMounted; });
}

int DashboardViewModel::touchIDProtectedCount() const
{
    return countOf(countedItems(), [](const ProtectedItem &item) { return item.useTouchID; });
}

int DashboardViewModel::passwordProtectedCount() const
{
    return countOf(countedItems(), [](const ProtectedItem &item) { return !item.useTouchID; });
}

QString DashboardViewModel::statisticsNote() const
{
    if (!hasActiveFilters()) {
        return QStringLiteral("Includes both locked and unlocked items currently managed by Quillhaven.");
    }
    return QStringLiteral("Showing filtered results from ") +
           QString::number(m_quillhavenManager.protectedItems().size()) + QStringLiteral(" total items.");
}

QString DashboardViewModel::versionText() const
{
    const QString version = QCoreApplication::applicationVersion();
    return QLatin1Char('v') + (version.isEmpty() ? QStringLiteral("1.0") : version);
}

QString DashboardViewModel::masterPasswordText() const
{
    return m_masterPasswordManager.hasMasterPassword() ? QStringLiteral("Change Master Password")
                                                       : QStringLiteral("Set Master Password");
}

QString DashboardViewModel::protectingText() const
{
    if (m_protectingNames.isEmpty()) {
        return {};
    }
    if (m_protectingNames.size() == 1) {
        return QStringLiteral("Protecting “") + m_protectingNames.first() + QStringLiteral("”…");
    }
    return QStringLiteral("Protecting ") + QString::number(m_protectingNames.size()) + QStringLiteral(" items…");
}

std::optional<ProtectedItem> DashboardViewModel::liveItem(const QString &id) const
{
    const QList<ProtectedItem> &items = m_quillhavenManager.protectedItems();
    const auto found =
        std::find_if(items.begin(), items.end(), [&id](const ProtectedItem &item) { return item.id == id; });
    if (found == items.end()) {
        return std::nullopt;
    }
    return *found;
}

} // namespace quillhaven
