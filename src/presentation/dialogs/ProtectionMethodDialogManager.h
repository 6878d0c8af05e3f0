// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QString>

#include <functional>

namespace quillhaven {

/// The model of the choice between a password and the fingerprint reader for a new item.
class ProtectionMethodDialogManager : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isPresented READ isPresented WRITE setIsPresented NOTIFY changed)
    Q_PROPERTY(QString title READ title NOTIFY changed)

public:
    using QObject::QObject;

    /// Defined by the program alone.
    static ProtectionMethodDialogManager &shared();

    [[nodiscard]] bool isPresented() const { return m_isPresented; }
    [[nodiscard]] QString title() const { return m_title; }
    void setIsPresented(bool value);
    void setTitle(const QString &value);

    /// The two cards and the cancel button: close the dialog first, then call the stored action, if there is one.
    Q_INVOKABLE void choosePasswordProtection();
    Q_INVOKABLE void chooseTouchIDProtection();
    Q_INVOKABLE void cancel();

    std::function<void()> onPasswordProtection;
    std::function<void()> onTouchIDProtection;
    std::function<void()> onCancel;

Q_SIGNALS:
    void changed();

private:
    void closeAndCall(const std::function<void()> &action);

    bool m_isPresented = false;
    QString m_title;
};

} // namespace quillhaven
