// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "async/Answer.h"
#include "credentials/TitledDialogModel.h"

namespace quillhaven {

/// The model of the password dialog.
class PasswordInputDialogManager : public quillhaven::TitledDialogModel
{
    Q_OBJECT
    Q_PROPERTY(bool requiresConfirmation READ requiresConfirmation NOTIFY requiresConfirmationChanged)

public:
    explicit PasswordInputDialogManager(QObject *parent = nullptr) : TitledDialogModel(parent) {}

    /// Defined in the program only.
    static PasswordInputDialogManager &shared();

    /// Whether a new password is being chosen: a second field is shown, and the rules apply.
    [[nodiscard]] bool requiresConfirmation() const { return m_requiresConfirmation; }
    void setRequiresConfirmation(bool value);

    struct Question
    {
        QString title;
        QString message;
        bool requiresConfirmation = false;
    };
    struct Reply
    {
        DialogEnd end = DialogEnd::Replaced;
        QString password = {}; ///< the accepted password if confirmed, else empty
    };
    /// Sets every field from the question and presents the dialog.
    void show(const Question &question, std::function<void(const QString &password)> confirmAction,
              std::function<void()> cancelAction);
    /// The same for a coroutine, which awaits the reply.
    [[nodiscard]] Answer<Reply> ask(const Question &question);

    /// Both close the dialog, then call the stored action if there is one.
    void confirm(const QString &password) { closeThen(onConfirm, password); }
    void cancel() { closeThen(onCancel); }

    std::function<void(const QString &password)> onConfirm;
    std::function<void()> onCancel;

Q_SIGNALS:
    void requiresConfirmationChanged();

private:
    bool m_requiresConfirmation = false;
};

} // namespace quillhaven
