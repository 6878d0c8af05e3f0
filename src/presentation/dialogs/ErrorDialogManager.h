// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "credentials/DialogModel.h"

#include <QString>
#include <QtQml/qqmlregistration.h>

namespace quillhaven {

class ConfirmationDialogManager;

/// The model of the error dialog: a message, and a hint that is found by the words of the message.
class ErrorDialogManager : public quillhaven::DialogModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Created in C++")
    Q_PROPERTY(QString errorMessage READ errorMessage NOTIFY errorChanged)
    Q_PROPERTY(QString errorTitle READ errorTitle NOTIFY errorChanged)
    Q_PROPERTY(bool showTroubleshooting READ showTroubleshooting NOTIFY errorChanged)
    Q_PROPERTY(QString troubleshootingMessage READ troubleshootingMessage NOTIFY errorChanged)

public:
    struct TroubleshootingInfo
    {
        bool isFound = false;
        QString hint;
    };

    explicit ErrorDialogManager(QObject *parent = nullptr) : DialogModel(parent) {}

    [[nodiscard]] QString errorMessage() const { return m_errorMessage; }
    [[nodiscard]] QString errorTitle() const { return m_errorTitle; }
    [[nodiscard]] bool showTroubleshooting() const { return m_troubleshooting.isFound; }
    [[nodiscard]] QString troubleshootingMessage() const { return m_troubleshooting.hint; }

    /// Stores the message, the title and the hint for the message, then presents the dialog.
    void showErrorWithAutoTroubleshooting(const QString &message, const QString &title);
    /// Closes the dialog and clears its fields.
    Q_INVOKABLE void hideError();
    /// The hint of the first row of the table that has one of its words in the message. The order of the rows matters.
    [[nodiscard]] static TroubleshootingInfo detectTroubleshootingInfo(const QString &message);
    /// The rule for the error sheet of a single row: the hint of the table's first row for two of its words, else
    /// nothing.
    [[nodiscard]] static QString permissionHint(const QString &message);
    /// Presents the hint in a confirmation dialog. The dialog's second button has no text.
    void showDefaultTroubleshooting(ConfirmationDialogManager *confirmation) const;

Q_SIGNALS:
    void errorChanged();

private:
    QString m_errorMessage;
    QString m_errorTitle = QStringLiteral("Error");
    TroubleshootingInfo m_troubleshooting;
};

} // namespace quillhaven
