// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/preferences/PreferencesModel.h"

#include "credentials/MasterPasswordManager.h"
#include "platform/NotificationCenter.h"

#include <algorithm>

namespace quillhaven {

using namespace std::chrono_literals;

PreferencesModel::PreferencesModel(const PreferencesContext &context, QObject *parent)
    : DialogModel(parent),
      m_context(context),
      m_passwordInputState(m_passwordInputDialogManager, context.platform.defaults.standard()),
      m_launchAtLogin(context.launchAtLoginManager, context.confirmationDialogManager, context.platform,
                      context.restart),
      m_autoLock(context.autoLockManager, context.smartAutoLockManager, context.masterPasswordManager,
                 context.platform.defaults.standard(), context.platform.watched),
      m_watchedSources(context.platform.watched, context.lockEverything, context.repairs),
      m_security(context.platform, context.masterPasswordManager, m_passwordInputDialogManager,
                 m_confirmationDialogManager, m_errors),
      m_backup(context.platform, context.quillhavenManager, context.masterPasswordManager, m_confirmationDialogManager,
               m_errors),
      m_support(context.supportManager),
      m_updates(context.updateManager, context.platform.opener, m_errors)
{
    context.platform.notifications.standard.observe(notifications::showPreferences, this,
                                                    [this](const QVariantMap & /*userInfo*/) { show(); });
    connect(this, &DialogModel::isPresentedChanged, this, [this] { isPresented() ? appear() : disappear(); });
    connect(&m_backup, &BackupSectionModel::folderChanged, this, &PreferencesModel::leaveMissingSection);
    connect(&m_launchAtLogin, &LaunchAtLoginToggleModel::changeFailed, this, [this](const QString &description) {
        m_errors.showError(QStringLiteral("Failed to set launch at login: ") + description);
    });
}

PreferencesModel::~PreferencesModel() = default;

QVariantList PreferencesModel::availableSections()
{
    QVariantList list;
    for (PreferencesTab *tab : tabs()) {
        list.append(QVariant::fromValue(tab));
    }
    return list;
}

int PreferencesModel::selectAt(int index)
{
    const QList<PreferencesTab *> all = tabs();
    const int nearest = std::clamp(index, 0, int(all.size()) - 1);
    setSelectedSection(all.at(nearest)->section());
    return nearest;
}

QList<PreferencesTab *> PreferencesModel::tabs()
{
    QList<PreferencesTab *> all{&m_generalTab, &m_securityTab};
    if (m_backup.isiCloudAvailable()) {
        all.append(&m_backupTab);
    }
    return all;
}

void PreferencesModel::setSelectedSection(PreferencesSectionType::Case value)
{
    assign(m_selectedSection, value, &PreferencesModel::selectedSectionChanged);
}

void PreferencesModel::appear()
{
    m_backup.refresh();
    m_security.refresh();
    Clock &clock = m_context.platform.clock;
    m_focusTimer = clock.startOneShot(100ms, [this, &clock] {
        setFocus(true, FocusedField::None);
        m_focusTimer = clock.startOneShot(300ms, [this] { setFocus(true, FocusedField::CloseButton); });
    });
}

void PreferencesModel::disappear()
{
    m_focusTimer.reset();
    setFocus(false, FocusedField::None);
}

void PreferencesModel::leaveMissingSection()
{
    const QList<PreferencesTab *> all = tabs();
    const auto isSelected = [this](const PreferencesTab *tab) { return tab->section() == m_selectedSection; };
    if (std::ranges::none_of(all, isSelected)) {
        setSelectedSection(all.first()->section());
    }
    Q_EMIT availableSectionsChanged();
}

void PreferencesModel::handleCloseAttempt()
{
    if (m_hasUnsavedChanges) {
        setShowingCloseConfirmation(true);
    } else {
        setIsPresented(false);
    }
}

void PreferencesModel::discardChanges()
{
    m_hasUnsavedChanges = false;
    setShowingCloseConfirmation(false);
    setIsPresented(false);
}

void PreferencesModel::keepEditing()
{
    setShowingCloseConfirmation(false);
}

void PreferencesModel::lookForLostItems()
{
    m_context.lookForLostItems();
}

void PreferencesModel::setShowingCloseConfirmation(bool value)
{
    assign(m_showingCloseConfirmation, value, &PreferencesModel::showingCloseConfirmationChanged);
}

void PreferencesModel::setFocus(bool isModalFocused, FocusedField field)
{
    m_isModalFocused = isModalFocused;
    m_focusedField = field;
    Q_EMIT focusChanged();
}

} // namespace quillhaven
