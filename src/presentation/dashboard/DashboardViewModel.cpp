// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dashboard/DashboardViewModel.h"

#include "async/Jobs.h"
#include "credentials/MasterPasswordDialogManager.h"
#include "credentials/MasterPasswordManager.h"
#include "engine/QuillhavenManager.h"
#include "platform/NotificationCenter.h"
#include "platform/UserDefaults.h"

#include <QCoreApplication>

namespace quillhaven {

DashboardViewModel::DashboardViewModel(const Platform &platform, QuillhavenManager &quillhavenManager,
                                       MasterPasswordManager &masterPasswordManager, const DashboardDialogs &dialogs,
                                       UpdateManager &updateManager, AutoLockManager &autoLockManager, QObject *parent)
    : QObject(parent),
      m_quillhavenManager(quillhavenManager),
      m_masterPasswordManager(masterPasswordManager),
      m_dialogs(dialogs),
      m_rows(quillhavenManager.catalogue(), platform.directories.home),
      m_items(m_rows, m_filters),
      m_statistics(m_items, m_filters, autoLockManager),
      m_announcer(platform.clock, m_items, m_filters, m_notices),
      m_keptAside(quillhavenManager, m_notices),
      m_selection(m_items),
      m_bulk(context(), platform.panels, platform.clock),
      m_protecting(context(), m_bulk, platform.panels),
      m_dropping(context(), m_protecting, m_bulk),
      m_itemActions(context(), m_bulk),
      m_rowActions(context(), platform),
      m_itemDetails(context(), m_itemActions),
      m_shredding(context(), platform),
      m_rescue(context(), platform.panels, m_notices, platform.directories.home),
      m_updateBadge(updateManager, platform.opener, m_errors)
{
    m_rowActions.onShred = [this](const QString &id) { m_shredding.onShred(id); };
    platform.notifications.standard.observe(notifications::handleFinderAction, this,
                                            [this](const QVariantMap &userInfo) { handleFinderAction(userInfo); });
    connect(&m_protecting, &ProtectActions::protectingTextChanged, this, &DashboardViewModel::activityTextChanged);
}

DashboardViewModel::~DashboardViewModel() = default;

DashboardContext DashboardViewModel::context()
{
    return {.quillhavenManager = m_quillhavenManager,
            .masterPasswordManager = m_masterPasswordManager,
            .dialogs = m_dialogs,
            .rows = m_rows,
            .items = m_items,
            .selection = m_selection,
            .errors = m_errors};
}

QString DashboardViewModel::versionText() const
{
    const QString version = QCoreApplication::applicationVersion();
    return QLatin1Char('v') + (version.isEmpty() ? QStringLiteral("1.0") : version);
}

QString DashboardViewModel::activityText() const
{
    const QString protecting = m_protecting.protectingText();
    return protecting.isEmpty() ? m_backgroundActivity : protecting;
}

void DashboardViewModel::setBackgroundActivity(const QString &text)
{
    m_backgroundActivity = text;
    Q_EMIT activityTextChanged();
}

void DashboardViewModel::handleFinderAction(const QVariantMap &userInfo)
{
    const QVariant action = userInfo.value(QStringLiteral("action"));
    const QVariant path = userInfo.value(QStringLiteral("path"));
    if (action.metaType() != QMetaType::fromType<QString>() || path.metaType() != QMetaType::fromType<QString>()) {
        return;
    }
    if (action == QStringLiteral("protect")) {
        m_protecting.showProtectionDialog(path.toString());
    } else if (action == QStringLiteral("unlock")) {
        m_itemActions.handleUnlockAction(path.toString());
    } else if (action == QStringLiteral("lock")) {
        m_itemActions.handleLockAction(path.toString());
    } else if (action == QStringLiteral("shred")) {
        m_shredding.handleShredAction(path.toString());
    }
}

} // namespace quillhaven
