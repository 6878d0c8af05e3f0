// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "credentials/DialogModel.h"

#include <QString>
#include <QtQml/qqmlregistration.h>

namespace quillhaven {

/// The model of the dialog that asks for the master password before all files are recovered from their backups. It
/// remains open during the recovery; the code that runs the recovery closes it.
class RecoveryDialogManager : public quillhaven::DialogModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Created in C++")
    Q_PROPERTY(bool isRecovering READ isRecovering WRITE setIsRecovering NOTIFY isRecoveringChanged)
    Q_PROPERTY(QString recoverTitle READ recoverTitle NOTIFY isRecoveringChanged)

public:
    explicit RecoveryDialogManager(QObject *parent = nullptr) : DialogModel(parent) {}

    [[nodiscard]] bool isRecovering() const { return m_isRecovering; }
    /// The label of the second button.
    [[nodiscard]] QString recoverTitle() const;
    void setIsRecovering(bool value);

    /// Stores the actions, then presents the dialog, with `isRecovering` false.
    void show(std::function<void(const QString &masterPassword)> recoverAction, std::function<void()> cancelAction);

    /// The buttons. `recover` does nothing for an empty password or during a recovery.
    Q_INVOKABLE void recover(const QString &masterPassword);
    Q_INVOKABLE void cancel();

    std::function<void(const QString &masterPassword)> onRecover;
    std::function<void()> onCancel;

Q_SIGNALS:
    void isRecoveringChanged();

private:
    bool m_isRecovering = false;
};

} // namespace quillhaven
