// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dialogs/FingerprintNote.h"

#include "async/Jobs.h"
#include "platform/BiometricAuthenticator.h"
#include "presentation/dialogs/ProtectionMethodDialogManager.h"

namespace quillhaven {

FingerprintNote::FingerprintNote(ProtectionMethodDialogManager &dialog, BiometricAuthenticator &biometrics,
                                 QObject *parent)
    : QObject(parent), m_dialog(dialog), m_biometrics(biometrics)
{
    connect(&dialog, &ProtectionMethodDialogManager::asked, this,
            [this] { startJob([self = QPointer(this)] { return look(self); }); });
}

QCoro::Task<> FingerprintNote::look(QPointer<FingerprintNote> self)
{
    if (!self) {
        co_return;
    }
    const bool isSetUp = co_await self->m_biometrics.hasEnrolledFinger();
    if (self) {
        self->m_dialog.setTouchIDNote(isSetUp ? QString()
                                              : QStringLiteral("No fingerprint is set up on this computer. Until one is, an "
                                                               "item that is protected this way cannot be unlocked."));
    }
}

} // namespace quillhaven
