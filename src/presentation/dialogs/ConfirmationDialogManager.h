// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "async/Answer.h"
#include "credentials/TitledDialogModel.h"

#include <QtQml/qqmlregistration.h>

namespace quillhaven {

/// The model of a yes-or-no question.
class ConfirmationDialogManager : public quillhaven::TitledDialogModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Created in C++")
    Q_PROPERTY(QString confirmTitle READ confirmTitle NOTIFY buttonsChanged)
    Q_PROPERTY(QString cancelTitle READ cancelTitle NOTIFY buttonsChanged)
    Q_PROPERTY(bool isDestructive READ isDestructive NOTIFY buttonsChanged)
    Q_PROPERTY(bool showCancelButton READ showCancelButton NOTIFY buttonsChanged)

public:
    struct Question
    {
        QString title;
        QString message;
        QString confirmTitle = QStringLiteral("Confirm");
        QString cancelTitle = QStringLiteral("Cancel");
        bool isDestructive = false;
        bool showCancelButton = true;
    };

    explicit ConfirmationDialogManager(QObject *parent = nullptr) : TitledDialogModel(parent) {}

    /// Defined in the program only.
    static ConfirmationDialogManager &shared();

    [[nodiscard]] QString confirmTitle() const { return m_confirmTitle; }
    [[nodiscard]] QString cancelTitle() const { return m_cancelTitle; }
    [[nodiscard]] bool isDestructive() const { return m_isDestructive; }
    [[nodiscard]] bool showCancelButton() const { return m_showCancelButton; }

    void setConfirmTitle(const QString &value);
    void setCancelTitle(const QString &value);
    void setIsDestructive(bool value);
    void setShowCancelButton(bool value);

    /// Sets every field from the question and presents the dialog. Without actions the dialog is only a message.
    void show(const Question &question, std::function<void()> confirmAction = {},
              std::function<void()> cancelAction = {});
    /// The same for a coroutine, which awaits the outcome.
    [[nodiscard]] Answer<DialogEnd> ask(const Question &question);

    /// The buttons. Both close the dialog first, then call the stored action, if there is one.
    Q_INVOKABLE void confirm();
    Q_INVOKABLE void cancel();

    std::function<void()> onConfirm;
    std::function<void()> onCancel;

Q_SIGNALS:
    void buttonsChanged();

private:
    QString m_confirmTitle = Question().confirmTitle;
    QString m_cancelTitle = Question().cancelTitle;
    bool m_isDestructive = false;
    bool m_showCancelButton = true;
};

} // namespace quillhaven
