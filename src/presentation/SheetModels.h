// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "credentials/MasterPasswordDialogManager.h"
#include "credentials/PasswordInputDialogManager.h"
#include "credentials/PasswordInputDialogModel.h"
#include "platform/BiometricAuthenticator.h"
#include "presentation/QuestionWindow.h"
#include "presentation/dashboard/DashboardViewModel.h"
#include "presentation/dialogs/BulkFilePickerModel.h"
#include "presentation/dialogs/ConfirmationDialogManager.h"
#include "presentation/dialogs/DeleteConfirmationModel.h"
#include "presentation/dialogs/ErrorDialogManager.h"
#include "presentation/dialogs/ErrorDialogSheetModel.h"
#include "presentation/dialogs/KeyboardShortcutsModel.h"
#include "presentation/dialogs/OperationProgress.h"
#include "presentation/dialogs/ProtectionMethodDialogManager.h"
#include "presentation/dialogs/RecoveryDialogManager.h"
#include "presentation/dialogs/RemoveProtectionDialogManager.h"
#include "presentation/dialogs/RescueDialogModel.h"
#include "presentation/dialogs/ShredConfirmationDialogModel.h"
#include "presentation/onboarding/OnboardingManager.h"
#include "presentation/preferences/PreferencesModel.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <functional>

namespace quillhaven {

/// Everything that a sheet can show, in one place for all windows.
struct Sheets
{
    ConfirmationDialogManager &confirmation;
    ProtectionMethodDialogManager &protectionMethod;
    PasswordInputDialogManager &passwordInput;
    PasswordInputDialogModel &passwordInputState;
    MasterPasswordDialogManager &masterPassword;
    DashboardViewModel &dashboard; ///< with the dialogs of its own, as the next
    PreferencesModel &preferences;
    OnboardingManager &onboarding;
    BiometricAuthenticator &biometrics;
    ErrorDialogManager &menuBarError;
};

/// What a SheetHost shows: the models of all sheets, and the window in which the questions among them appear.
class SheetModels : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Created in C++")
    Q_PROPERTY(quillhaven::ConfirmationDialogManager *confirmationDialogManager READ confirmationDialogManager CONSTANT)
    Q_PROPERTY(quillhaven::ProtectionMethodDialogManager *protectionMethodDialogManager READ
                   protectionMethodDialogManager CONSTANT)
    Q_PROPERTY(
        quillhaven::PasswordInputDialogManager *passwordInputDialogManager READ passwordInputDialogManager CONSTANT)
    Q_PROPERTY(quillhaven::PasswordInputDialogModel *passwordInputState READ passwordInputState CONSTANT)
    Q_PROPERTY(
        quillhaven::MasterPasswordDialogManager *masterPasswordDialogManager READ masterPasswordDialogManager CONSTANT)
    Q_PROPERTY(quillhaven::RemoveProtectionDialogManager *removeProtectionDialogManager READ
                   removeProtectionDialogManager CONSTANT)
    Q_PROPERTY(quillhaven::RecoveryDialogManager *recoveryDialogManager READ recoveryDialogManager CONSTANT)
    Q_PROPERTY(quillhaven::RescueDialogModel *rescue READ rescue CONSTANT)
    Q_PROPERTY(quillhaven::ErrorDialogManager *errorDialogManager READ errorDialogManager CONSTANT)
    Q_PROPERTY(quillhaven::BulkFilePickerModel *bulkFilePicker READ bulkFilePicker CONSTANT)
    Q_PROPERTY(quillhaven::OperationProgress *bulkProgress READ bulkProgress CONSTANT)
    Q_PROPERTY(quillhaven::ShredConfirmationDialogModel *shredConfirmation READ shredConfirmation CONSTANT)
    Q_PROPERTY(quillhaven::OperationProgress *shredProgress READ shredProgress CONSTANT)
    Q_PROPERTY(quillhaven::DeleteConfirmationModel *deleteConfirmation READ deleteConfirmation CONSTANT)
    Q_PROPERTY(quillhaven::ErrorDialogSheetModel *errorDialogSheet READ errorDialogSheet CONSTANT)
    Q_PROPERTY(quillhaven::ItemDetailModel *itemDetails READ itemDetails CONSTANT)
    Q_PROPERTY(quillhaven::OnboardingManager *onboardingManager READ onboardingManager CONSTANT)
    Q_PROPERTY(quillhaven::KeyboardShortcutsModel *keyboardShortcuts READ keyboardShortcuts CONSTANT)
    Q_PROPERTY(quillhaven::PreferencesModel *preferences READ preferences CONSTANT)
    Q_PROPERTY(quillhaven::ConfirmationDialogManager *preferencesConfirmation READ preferencesConfirmation CONSTANT)
    Q_PROPERTY(quillhaven::PasswordInputDialogManager *preferencesPasswordInput READ preferencesPasswordInput CONSTANT)
    Q_PROPERTY(
        quillhaven::PasswordInputDialogModel *preferencesPasswordInputState READ preferencesPasswordInputState CONSTANT)
    Q_PROPERTY(quillhaven::ErrorDialogManager *preferencesError READ preferencesError CONSTANT)
    Q_PROPERTY(quillhaven::BiometricAuthenticator *biometrics READ biometrics CONSTANT)
    Q_PROPERTY(quillhaven::ErrorDialogManager *menuBarErrorDialogManager READ menuBarErrorDialogManager CONSTANT)
    Q_PROPERTY(quillhaven::Announcer *announcer READ announcer CONSTANT)
    Q_PROPERTY(quillhaven::QuestionWindow *questionWindow READ questionWindow CONSTANT)
    Q_PROPERTY(bool isAnyPresented READ isAnyPresented NOTIFY isAnyPresentedChanged)

public:
    /// `bringMainWindowForward` shows the main window, for whatever reason it is hidden. The references must outlive
    /// this object, and this object must outlive the windows.
    SheetModels(const Sheets &sheets, std::function<void()> bringMainWindowForward, QObject *parent = nullptr);

    [[nodiscard]] ConfirmationDialogManager *confirmationDialogManager() const { return &m_sheets.confirmation; }
    [[nodiscard]] ProtectionMethodDialogManager *protectionMethodDialogManager() const
    {
        return &m_sheets.protectionMethod;
    }
    [[nodiscard]] PasswordInputDialogManager *passwordInputDialogManager() const { return &m_sheets.passwordInput; }
    [[nodiscard]] PasswordInputDialogModel *passwordInputState() const { return &m_sheets.passwordInputState; }
    [[nodiscard]] MasterPasswordDialogManager *masterPasswordDialogManager() const { return &m_sheets.masterPassword; }
    [[nodiscard]] RemoveProtectionDialogManager *removeProtectionDialogManager() const
    {
        return m_sheets.dashboard.removeProtectionDialogManager();
    }
    [[nodiscard]] RecoveryDialogManager *recoveryDialogManager() const
    {
        return m_sheets.preferences.backup()->recoveryDialogManager();
    }
    [[nodiscard]] RescueDialogModel *rescue() const { return m_sheets.dashboard.rescue()->dialog(); }
    [[nodiscard]] ErrorDialogManager *errorDialogManager() const { return m_sheets.dashboard.errorDialogManager(); }
    [[nodiscard]] BulkFilePickerModel *bulkFilePicker() const { return m_sheets.dashboard.bulk()->picker(); }
    [[nodiscard]] OperationProgress *bulkProgress() const { return m_sheets.dashboard.bulk()->progress(); }
    [[nodiscard]] ShredConfirmationDialogModel *shredConfirmation() const
    {
        return m_sheets.dashboard.shredding()->confirmation();
    }
    [[nodiscard]] OperationProgress *shredProgress() const { return m_sheets.dashboard.shredding()->progress(); }
    [[nodiscard]] DeleteConfirmationModel *deleteConfirmation() const
    {
        return &m_sheets.dashboard.rowActions()->deleteConfirmation();
    }
    [[nodiscard]] ErrorDialogSheetModel *errorDialogSheet() const
    {
        return &m_sheets.dashboard.rowActions()->errorSheet();
    }
    [[nodiscard]] ItemDetailModel *itemDetails() const { return m_sheets.dashboard.itemDetails(); }
    [[nodiscard]] OnboardingManager *onboardingManager() const { return &m_sheets.onboarding; }
    [[nodiscard]] KeyboardShortcutsModel *keyboardShortcuts() { return &m_keyboardShortcuts; }
    [[nodiscard]] PreferencesModel *preferences() const { return &m_sheets.preferences; }
    [[nodiscard]] ConfirmationDialogManager *preferencesConfirmation() const
    {
        return &m_sheets.preferences.confirmationDialogManager();
    }
    [[nodiscard]] PasswordInputDialogManager *preferencesPasswordInput() const
    {
        return &m_sheets.preferences.passwordInputDialogManager();
    }
    [[nodiscard]] PasswordInputDialogModel *preferencesPasswordInputState() const
    {
        return &m_sheets.preferences.passwordInputState();
    }
    [[nodiscard]] ErrorDialogManager *preferencesError() const { return &m_sheets.preferences.errors().dialog(); }
    [[nodiscard]] BiometricAuthenticator *biometrics() const { return &m_sheets.biometrics; }
    [[nodiscard]] ErrorDialogManager *menuBarErrorDialogManager() const { return &m_sheets.menuBarError; }
    [[nodiscard]] Announcer *announcer() const { return m_sheets.dashboard.announcer(); }
    [[nodiscard]] QuestionWindow *questionWindow() { return &m_questionWindow; }
    /// Whether any window shows a sheet.
    [[nodiscard]] bool isAnyPresented() const;

    /// Shows the hint of an error in a dialog of its own.
    Q_INVOKABLE void showDefaultTroubleshooting(quillhaven::ErrorDialogManager *error);

Q_SIGNALS:
    void isAnyPresentedChanged();

private:
    Sheets m_sheets;
    KeyboardShortcutsModel m_keyboardShortcuts;
    QList<const DialogModel *> m_dialogs;
    QuestionWindow m_questionWindow;
};

} // namespace quillhaven
