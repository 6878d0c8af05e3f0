// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dashboard/DashboardViewModel.h"

#include "credentials/MasterPasswordManager.h"
#include "engine/QuillhavenManager.h"
#include "platform/Clock.h"
#include "platform/UserDefaults.h"

#include <QCoreApplication>

namespace quillhaven {

DashboardViewModel::DashboardViewModel(const Platform &platform, QuillhavenManager &quillhavenManager,
                                       MasterPasswordManager &masterPasswordManager, const DashboardDialogs &dialogs,
                                       QObject *parent)
    : QObject(parent),
      m_platform(platform),
      m_quillhavenManager(quillhavenManager),
      m_masterPasswordManager(masterPasswordManager),
      m_dialogs(dialogs),
      m_rows(quillhavenManager.catalogue(), platform.directories.home),
      m_items(m_rows, m_filters),
      m_statistics(m_items, m_filters),
      m_selection(m_items),
      m_bulk(context(), platform.panels),
      m_shredding(context()),
      m_backup(context(), platform.defaults.standard())
{
    connect(&masterPasswordManager, &MasterPasswordManager::hasMasterPasswordChanged, this,
            &DashboardViewModel::masterPasswordTextChanged);
    connect(&m_errors, &DashboardErrors::changed, this, &DashboardViewModel::errorChanged);
}

DashboardViewModel::~DashboardViewModel() = default;

DashboardContext DashboardViewModel::context()
{
    return {.quillhavenManager = m_quillhavenManager,
            .masterPasswordManager = m_masterPasswordManager,
            .dialogs = m_dialogs,
            .items = m_rows,
            .selection = m_selection,
            .errors = m_errors};
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
    const ProtectedItem *item = m_quillhavenManager.catalogue().item(id);
    return item ? std::optional(*item) : std::nullopt;
}

} // namespace quillhaven
