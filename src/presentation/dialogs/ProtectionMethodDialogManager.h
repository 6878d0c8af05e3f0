// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "async/Answer.h"
#include "credentials/DialogModel.h"

#include <QtQml/qqmlregistration.h>

namespace quillhaven {

/// The model of the choice between a password and the fingerprint reader for a new item.
class ProtectionMethodDialogManager : public quillhaven::DialogModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Created in C++")
    Q_PROPERTY(QString touchIDNote READ touchIDNote NOTIFY touchIDNoteChanged)
    Q_PROPERTY(QString title READ title WRITE setTitle NOTIFY titleChanged)

public:
    enum class Choice { Password, TouchID, Cancelled, Replaced };

    explicit ProtectionMethodDialogManager(QObject *parent = nullptr) : DialogModel(parent) {}

    /// Defined in the program only.
    static ProtectionMethodDialogManager &shared();

    [[nodiscard]] QString title() const { return m_title; }
    void setTitle(const QString &value);
    /// What the user should know before choosing the fingerprint reader; empty for nothing.
    [[nodiscard]] QString touchIDNote() const { return m_touchIDNote; }
    void setTouchIDNote(const QString &value);

    /// Presents the dialog with this title; a coroutine awaits the choice.
    [[nodiscard]] Answer<Choice> ask(const QString &title);

    /// The two cards and the cancel button. They close the dialog first, then call the stored action, if there is one.
    Q_INVOKABLE void choosePasswordProtection();
    Q_INVOKABLE void chooseTouchIDProtection();
    Q_INVOKABLE void cancel();

    std::function<void()> onPasswordProtection;
    std::function<void()> onTouchIDProtection;
    std::function<void()> onCancel;

Q_SIGNALS:
    void titleChanged();
    void touchIDNoteChanged();

private:
    QString m_title;
    QString m_touchIDNote;
};

} // namespace quillhaven
