// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QString>

#include <functional>

namespace quillhaven {

/// The model of the dialog that asks for the master password before all files are recovered from their backups. It
/// stays on the screen while the recovery runs; whoever runs it closes the dialog.
class RecoveryDialogManager : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isPresented READ isPresented WRITE setIsPresented NOTIFY changed)
    Q_PROPERTY(bool isRecovering READ isRecovering WRITE setIsRecovering NOTIFY changed)
    Q_PROPERTY(QString recoverTitle READ recoverTitle NOTIFY changed)

public:
    using QObject::QObject;

    [[nodiscard]] bool isPresented() const { return m_isPresented; }
    [[nodiscard]] bool isRecovering() const { return m_isRecovering; }
    [[nodiscard]] QString recoverTitle() const;
    void setIsPresented(bool value);
    void setIsRecovering(bool value);

    /// Stores the two, then presents the dialog, at rest.
    void show(std::function<void(const QString &masterPassword)> recoverAction, std::function<void()> cancelAction);

    /// The buttons. An empty password and a press while it recovers do nothing.
    Q_INVOKABLE void recover(const QString &masterPassword);
    Q_INVOKABLE void cancel();

    std::function<void(const QString &masterPassword)> onRecover;
    std::function<void()> onCancel;

Q_SIGNALS:
    void changed();

private:
    bool m_isPresented = false;
    bool m_isRecovering = false;
};

} // namespace quillhaven
