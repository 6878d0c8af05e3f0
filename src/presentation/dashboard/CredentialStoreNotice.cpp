// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dashboard/CredentialStoreNotice.h"

#include "presentation/dashboard/NoticesModel.h"
#include "presentation/dialogs/ConfirmationDialogManager.h"

namespace quillhaven {

namespace {

const QString noticeId = QStringLiteral("credential store");

} // namespace

CredentialStoreNotice::CredentialStoreNotice(CredentialStoreState &state, NoticesModel &notices,
                                             ConfirmationDialogManager &confirmation, QObject *parent)
    : QObject(parent), m_state(state), m_notices(notices), m_confirmation(confirmation)
{
    connect(&m_state, &CredentialStoreState::changed, this, &CredentialStoreNotice::update);
    update();
}

void CredentialStoreNotice::update()
{
    switch (m_state.phase()) {
    case CredentialStoreState::Phase::Usable:
        m_notices.remove(noticeId);
        break;
    case CredentialStoreState::Phase::Waiting:
        m_notices.show({.id = noticeId,
                        .text = QStringLiteral("Waiting for the keyring. It may be asking you something in another "
                                               "window."),
                        .isWaiting = true});
        break;
    case CredentialStoreState::Phase::Missing:
        m_notices.show({.id = noticeId,
                        .text = m_state.sentence() +
                                QStringLiteral(" Until they can be reached, no password can be checked or stored."),
                        .actionTitle = QStringLiteral("Try Again"),
                        .action = [this] { m_state.tryAgain(); },
                        .otherActionTitle = QStringLiteral("Use Another Store..."),
                        .otherAction = [this] { askToReplace(); }});
        break;
    }
}

void CredentialStoreNotice::askToReplace()
{
    m_confirmation.show(
        {.title = QStringLiteral("Use Another Store for Passwords?"),
         .message = QStringLiteral(
             "Quillhaven will no longer look for the passwords in the former store. Items that are protected with a "
             "password cannot be unlocked then, only be given back by removing their protection, and the master "
             "password is no longer asked for.\n\nDo this only if the former store is gone for good."),
         .confirmTitle = QStringLiteral("Use Another Store"),
         .isDestructive = true},
        [&state = m_state] { state.useStoreAtHand(); });
}

} // namespace quillhaven
