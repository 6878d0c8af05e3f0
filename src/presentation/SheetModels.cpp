// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/SheetModels.h"

#include <algorithm>

namespace quillhaven {

SheetModels::SheetModels(const Sheets &sheets, std::function<void()> bringMainWindowForward, QObject *parent)
    : QObject(parent),
      m_sheets(sheets),
      m_dialogs{&sheets.confirmation,
                &sheets.protectionMethod,
                &sheets.passwordInput,
                &sheets.masterPassword,
                removeProtectionDialogManager(),
                recoveryDialogManager(),
                rescue(),
                errorDialogManager(),
                bulkFilePicker(),
                shredConfirmation(),
                deleteConfirmation(),
                errorDialogSheet(),
                itemDetails(),
                keyboardShortcuts(),
                &sheets.preferences,
                preferencesConfirmation(),
                preferencesPasswordInput(),
                preferencesError(),
                &sheets.menuBarError},
      m_questionWindow(std::move(bringMainWindowForward))
{
    for (const DialogModel *dialog : std::as_const(m_dialogs)) {
        connect(dialog, &DialogModel::isPresentedChanged, this, &SheetModels::isAnyPresentedChanged);
        m_questionWindow.follow(*dialog);
    }
    for (const OperationProgress *progress : {bulkProgress(), shredProgress()}) {
        connect(progress, &OperationProgress::changed, this, &SheetModels::isAnyPresentedChanged);
    }
    connect(onboardingManager(), &OnboardingManager::shouldShowOnboardingChanged, this,
            &SheetModels::isAnyPresentedChanged);
    connect(biometrics(), &BiometricAuthenticator::promptChanged, this, &SheetModels::isAnyPresentedChanged);
    m_questionWindow.follow(*biometrics());
}

bool SheetModels::isAnyPresented() const
{
    return onboardingManager()->shouldShowOnboarding() || bulkProgress()->isPresented() ||
           shredProgress()->isPresented() || biometrics()->isPrompting() ||
           std::ranges::any_of(m_dialogs, [](const DialogModel *dialog) { return dialog->isPresented(); });
}

void SheetModels::showDefaultTroubleshooting(ErrorDialogManager *error)
{
    error->showDefaultTroubleshooting(confirmationDialogManager());
}

} // namespace quillhaven
