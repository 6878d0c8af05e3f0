// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QString>

#include <functional>

namespace quillhaven {

/// The model of a yes-or-no question: one pending question at a time, whose texts and actions the next caller replaces.
class ConfirmationDialogManager : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isPresented READ isPresented WRITE setIsPresented NOTIFY changed)
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString message READ message NOTIFY changed)
    Q_PROPERTY(QString confirmTitle READ confirmTitle NOTIFY changed)
    Q_PROPERTY(QString cancelTitle READ cancelTitle NOTIFY changed)
    Q_PROPERTY(bool isDestructive READ isDestructive NOTIFY changed)
    Q_PROPERTY(bool showCancelButton READ showCancelButton NOTIFY changed)

public:
    using QObject::QObject;

    /// Defined by the program alone.
    static ConfirmationDialogManager &shared();

    [[nodiscard]] bool isPresented() const { return m_isPresented; }
    [[nodiscard]] QString title() const { return m_title; }
    [[nodiscard]] QString message() const { return m_message; }
    [[nodiscard]] QString confirmTitle() const { return m_confirmTitle; }
    [[nodiscard]] QString cancelTitle() const { return m_cancelTitle; }
    [[nodiscard]] bool isDestructive() const { return m_isDestructive; }
    [[nodiscard]] bool showCancelButton() const { return m_showCancelButton; }

    void setIsPresented(bool value);
    void setTitle(const QString &value);
    void setMessage(const QString &value);
    void setConfirmTitle(const QString &value);
    void setCancelTitle(const QString &value);
    void setIsDestructive(bool value);
    void setShowCancelButton(bool value);

    /// The buttons: close the dialog first, then call the stored action, if there is one.
    Q_INVOKABLE void confirm();
    Q_INVOKABLE void cancel();

    std::function<void()> onConfirm;
    std::function<void()> onCancel;

Q_SIGNALS:
    void changed();

private:
    template <typename Value>
    void assign(Value &field, const Value &value);

    bool m_isPresented = false;
    QString m_title;
    QString m_message;
    QString m_confirmTitle = QStringLiteral("Confirm");
    QString m_cancelTitle = QStringLiteral("Cancel");
    bool m_isDestructive = false;
    bool m_showCancelButton = true;
};

} // namespace quillhaven
