// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QString>

#include <functional>

namespace quillhaven {

/// The model of the password dialog: one pending question at a time, whose actions the next caller replaces.
class PasswordInputDialogManager : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isPresented READ isPresented WRITE setIsPresented NOTIFY changed)
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString message READ message NOTIFY changed)
    Q_PROPERTY(bool requiresConfirmation READ requiresConfirmation NOTIFY changed)

public:
    using QObject::QObject;

    /// Defined by the program alone.
    static PasswordInputDialogManager &shared();

    [[nodiscard]] bool isPresented() const { return m_isPresented; }
    [[nodiscard]] QString title() const { return m_title; }
    [[nodiscard]] QString message() const { return m_message; }
    /// A new password is being chosen: a second field shows, and the rules apply.
    [[nodiscard]] bool requiresConfirmation() const { return m_requiresConfirmation; }

    void setIsPresented(bool value);
    void setTitle(const QString &value);
    void setMessage(const QString &value);
    void setRequiresConfirmation(bool value);

    std::function<void(const QString &password)> onConfirm;
    std::function<void()> onCancel;

Q_SIGNALS:
    void changed();

private:
    template <typename Value>
    void assign(Value &field, const Value &value);

    bool m_isPresented = false;
    QString m_title;
    QString m_message;
    bool m_requiresConfirmation = false;
};

} // namespace quillhaven
