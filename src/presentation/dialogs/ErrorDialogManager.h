// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QString>

namespace quillhaven {

class ConfirmationDialogManager;

/// The model of the error dialog: one sentence, and a hint found by the words of the sentence alone.
class ErrorDialogManager : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isPresented READ isPresented NOTIFY changed)
    Q_PROPERTY(QString errorMessage READ errorMessage NOTIFY changed)
    Q_PROPERTY(QString errorTitle READ errorTitle NOTIFY changed)
    Q_PROPERTY(bool showTroubleshooting READ showTroubleshooting NOTIFY changed)
    Q_PROPERTY(QString troubleshootingMessage READ troubleshootingMessage NOTIFY changed)

public:
    struct TroubleshootingInfo
    {
        bool isFound = false;
        QString hint;
    };

    using QObject::QObject;

    [[nodiscard]] bool isPresented() const { return m_isPresented; }
    [[nodiscard]] QString errorMessage() const { return m_errorMessage; }
    [[nodiscard]] QString errorTitle() const { return m_errorTitle; }
    [[nodiscard]] bool showTroubleshooting() const { return m_showTroubleshooting; }
    [[nodiscard]] QString troubleshootingMessage() const { return m_troubleshootingMessage; }

    /// Stores the sentence, the title and the hint that its words call for, then presents the dialog.
    void showErrorWithAutoTroubleshooting(const QString &message, const QString &title);
    /// Closes the dialog and empties its fields.
    Q_INVOKABLE void hideError();
    /// The hint of the first row of words that the sentence holds one of. The order of the rows counts.
    [[nodiscard]] static TroubleshootingInfo detectTroubleshootingInfo(const QString &message);
    /// Puts the hint into a confirmation dialog and presents that. Its second button stays blank.
    void showDefaultTroubleshooting(ConfirmationDialogManager *confirmation) const;

Q_SIGNALS:
    void changed();

private:
    bool m_isPresented = false;
    QString m_errorMessage;
    QString m_errorTitle = QStringLiteral("Error");
    bool m_showTroubleshooting = false;
    QString m_troubleshootingMessage;
};

} // namespace quillhaven
