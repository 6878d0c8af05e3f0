// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "credentials/DialogModel.h"
#include "platform/Platform.h"
#include "presentation/preferences/AutoLockSectionModel.h"
#include "presentation/preferences/BackupSectionModel.h"
#include "presentation/preferences/LaunchAtLoginToggleModel.h"
#include "presentation/preferences/SecuritySectionModel.h"
#include "presentation/preferences/SupportSectionModel.h"
#include "presentation/preferences/UpdateSectionModel.h"
#include "presentation/preferences/WatchedSourcesModel.h"

#include <memory>

namespace quillhaven {

/// The sections of the preferences.
namespace PreferencesSectionType { // NOLINT(readability-identifier-naming): the name in QML, of a type
Q_NAMESPACE
QML_ELEMENT
enum Case { General, Security, Backup };
Q_ENUM_NS(Case)
} // namespace PreferencesSectionType

/// A tab of the preferences.
class PreferencesTab : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Created in C++")
    Q_PROPERTY(quillhaven::PreferencesSectionType::Case section READ section CONSTANT)
    Q_PROPERTY(QString name READ name CONSTANT)
    Q_PROPERTY(QString systemImage READ systemImage CONSTANT)

public:
    PreferencesTab(PreferencesSectionType::Case section, const QString &name, const QString &systemImage)
        : m_section(section), m_name(name), m_systemImage(systemImage)
    {
    }

    [[nodiscard]] PreferencesSectionType::Case section() const { return m_section; }
    [[nodiscard]] QString name() const { return m_name; }
    [[nodiscard]] QString systemImage() const { return m_systemImage; }

private:
    PreferencesSectionType::Case m_section;
    QString m_name;
    QString m_systemImage;
};

/// What the preferences switch and show. All of it must outlive them and their jobs.
struct PreferencesContext
{
    Platform platform;
    QuillhavenManager &quillhavenManager;
    MasterPasswordManager &masterPasswordManager;
    AutoLockManager &autoLockManager;
    SmartAutoLockManager &smartAutoLockManager;
    LaunchAtLoginServiceManager &launchAtLoginManager;
    SupportManager &supportManager;
    UpdateManager &updateManager;
    ConfirmationDialogManager &confirmationDialogManager; ///< the window's
    std::function<void()> lockEverything;
    std::function<void()> lookForLostItems;
    std::function<void()> restart; ///< starts the program again and ends this process
    WatchedSourcesModel::Repairs repairs;
};

/// The sheet with the preferences: its sections, its tabs and the dialogs that it asks with. Every change takes effect
/// at once, so that there is nothing to save. Main thread only.
class PreferencesModel : public quillhaven::DialogModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Created in C++")
    Q_PROPERTY(int modalWidth MEMBER modalWidth CONSTANT)
    Q_PROPERTY(QVariantList availableSections READ availableSections NOTIFY availableSectionsChanged)
    Q_PROPERTY(quillhaven::PreferencesSectionType::Case selectedSection READ selectedSection WRITE setSelectedSection
                   NOTIFY selectedSectionChanged)
    Q_PROPERTY(bool showingCloseConfirmation READ showingCloseConfirmation NOTIFY showingCloseConfirmationChanged)
    Q_PROPERTY(quillhaven::PreferencesModel::FocusedField focusedField READ focusedField NOTIFY focusChanged)
    Q_PROPERTY(quillhaven::LaunchAtLoginToggleModel *launchAtLogin READ launchAtLogin CONSTANT)
    Q_PROPERTY(quillhaven::AutoLockSectionModel *autoLock READ autoLock CONSTANT)
    Q_PROPERTY(quillhaven::WatchedSourcesModel *watchedSources READ watchedSources CONSTANT)
    Q_PROPERTY(quillhaven::SecuritySectionModel *security READ security CONSTANT)
    Q_PROPERTY(quillhaven::BackupSectionModel *backup READ backup CONSTANT)
    Q_PROPERTY(quillhaven::SupportSectionModel *support READ support CONSTANT)
    Q_PROPERTY(quillhaven::UpdateSectionModel *updates READ updates CONSTANT)

public:
    /// Device-independent pixels.
    static constexpr int modalWidth = 580;

    /// The control that the sheet has given the keyboard to.
    enum class FocusedField {
        None,
        CloseButton,
        StartAtLogin,
        EnableTouchID,
        EnforceStrongPasswords,
        MasterPasswordButton
    };
    Q_ENUM(FocusedField)

    /// The sheet is also shown on the notification `showPreferences`.
    explicit PreferencesModel(const PreferencesContext &context, QObject *parent = nullptr);
    ~PreferencesModel() override;

    /// The tabs of General and Security; and that of Backup while there was a folder for backups when the sheet was
    /// shown.
    [[nodiscard]] QVariantList availableSections();
    [[nodiscard]] PreferencesSectionType::Case selectedSection() const { return m_selectedSection; }
    void setSelectedSection(PreferencesSectionType::Case value);
    /// Selects a section by its place among the available ones, or the nearest one, and returns that place.
    Q_INVOKABLE int selectAt(int index);

    /// Nothing sets it at present, since every change is stored at once.
    [[nodiscard]] bool hasUnsavedChanges() const { return m_hasUnsavedChanges; }
    void setHasUnsavedChanges(bool value) { m_hasUnsavedChanges = value; }
    [[nodiscard]] bool showingCloseConfirmation() const { return m_showingCloseConfirmation; }

    /// Whether the sheet has taken the keyboard, 0.1 seconds after it appeared.
    [[nodiscard]] bool isModalFocused() const { return m_isModalFocused; }
    /// The first control gets the keyboard 0.3 seconds later.
    [[nodiscard]] FocusedField focusedField() const { return m_focusedField; }

    [[nodiscard]] LaunchAtLoginToggleModel *launchAtLogin() { return &m_launchAtLogin; }
    [[nodiscard]] AutoLockSectionModel *autoLock() { return &m_autoLock; }
    [[nodiscard]] WatchedSourcesModel *watchedSources() { return &m_watchedSources; }
    [[nodiscard]] SecuritySectionModel *security() { return &m_security; }
    [[nodiscard]] BackupSectionModel *backup() { return &m_backup; }
    [[nodiscard]] SupportSectionModel *support() { return &m_support; }
    [[nodiscard]] UpdateSectionModel *updates() { return &m_updates; }

    [[nodiscard]] ConfirmationDialogManager &confirmationDialogManager() { return m_confirmationDialogManager; }
    [[nodiscard]] PasswordInputDialogManager &passwordInputDialogManager() { return m_passwordInputDialogManager; }
    [[nodiscard]] PasswordInputDialogModel &passwordInputState() { return m_passwordInputState; }
    [[nodiscard]] OperationErrors &errors() { return m_errors; }

    Q_INVOKABLE void show() { setIsPresented(true); }
    /// Closes the sheet, or asks first when there are changes that were not saved.
    Q_INVOKABLE void handleCloseAttempt();
    /// The answers to that question.
    Q_INVOKABLE void discardChanges();
    Q_INVOKABLE void keepEditing();
    /// Looks for what interrupted runs have left.
    Q_INVOKABLE void lookForLostItems();

Q_SIGNALS:
    void availableSectionsChanged();
    void selectedSectionChanged();
    void showingCloseConfirmationChanged();
    void focusChanged();

private:
    [[nodiscard]] QList<PreferencesTab *> tabs();
    void appear();
    void disappear();
    void leaveMissingSection();
    void setShowingCloseConfirmation(bool value);
    void setFocus(bool isModalFocused, FocusedField field);

    PreferencesContext m_context;
    ConfirmationDialogManager m_confirmationDialogManager;
    PasswordInputDialogManager m_passwordInputDialogManager;
    PasswordInputDialogModel m_passwordInputState;
    OperationErrors m_errors;
    LaunchAtLoginToggleModel m_launchAtLogin;
    AutoLockSectionModel m_autoLock;
    WatchedSourcesModel m_watchedSources;
    SecuritySectionModel m_security;
    BackupSectionModel m_backup;
    SupportSectionModel m_support;
    UpdateSectionModel m_updates;
    PreferencesTab m_generalTab{PreferencesSectionType::General, QStringLiteral("General"), QStringLiteral("gear")};
    PreferencesTab m_securityTab{PreferencesSectionType::Security, QStringLiteral("Security"),
                                 QStringLiteral("lock.shield")};
    PreferencesTab m_backupTab{PreferencesSectionType::Backup, QStringLiteral("Backup"), QStringLiteral("icloud")};
    PreferencesSectionType::Case m_selectedSection = PreferencesSectionType::General;
    bool m_hasUnsavedChanges = false;
    bool m_showingCloseConfirmation = false;
    bool m_isModalFocused = false;
    FocusedField m_focusedField = FocusedField::None;
    std::unique_ptr<RunningTimer> m_focusTimer;
};

} // namespace quillhaven
