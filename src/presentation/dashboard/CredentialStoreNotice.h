// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/CredentialStoreState.h"

#include <QObject>

namespace quillhaven {

class ConfirmationDialogManager;
class NoticesModel;

/// Shows the user that the store of the passwords is waited for or missing, and offers what can be done. Main thread
/// only.
class CredentialStoreNotice : public QObject
{
    Q_OBJECT

public:
    /// The references must outlive this object.
    CredentialStoreNotice(CredentialStoreState &state, NoticesModel &notices, ConfirmationDialogManager &confirmation,
                          QObject *parent = nullptr);

private:
    void update();
    void askToReplace();

    CredentialStoreState &m_state;
    NoticesModel &m_notices;
    ConfirmationDialogManager &m_confirmation;
};

} // namespace quillhaven
