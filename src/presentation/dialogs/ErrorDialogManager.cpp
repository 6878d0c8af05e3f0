// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dialogs/ErrorDialogManager.h"

#include "presentation/dialogs/ConfirmationDialogManager.h"

#include <QStringList>

namespace quillhaven {

namespace {

struct HintRow
{
    QStringList words;
    QString hint;
};

const QString permissionHintText =
    QStringLiteral("Try closing any applications that might be using this file, or move it to a different location.");

const QList<HintRow> &hintRows()
{
    static const QList<HintRow> rows{
        {{QStringLiteral("permission"), QStringLiteral("access"), QStringLiteral("denied")}, permissionHintText},
        {{QStringLiteral("weak password"), QStringLiteral("password must be at least")},
         QStringLiteral("Your password must be at least 8 characters long and contain uppercase letters, lowercase "
                        "letters, and numbers.")},
        {{QStringLiteral("not found"), QStringLiteral("could not be found")},
         QStringLiteral("The file may have been moved, deleted, or renamed. Check the file location and try again.")},
        {{QStringLiteral("encryption failed"), QStringLiteral("failed to create")},
         QStringLiteral("Ensure you have sufficient disk space and that the file is not corrupted or in use by another "
                        "application.")},
        {{QStringLiteral("touch id"), QStringLiteral("biometric")},
         QStringLiteral("Make sure Touch ID is enabled in System Preferences and that your fingerprint is "
                        "registered.")},
        {{QStringLiteral("network"), QStringLiteral("connection")},
         QStringLiteral("Check your internet connection and try again. If the problem persists, the service may be "
                        "temporarily unavailable.")},
        {{QStringLiteral("keychain"), QStringLiteral("secure storage")},
         QStringLiteral("There was an issue accessing secure storage. Try restarting the app or check your system's "
                        "keychain access.")},
        {{QStringLiteral("authentication"), QStringLiteral("login")},
         QStringLiteral("Authentication failed. Please check your credentials and try again.")},
        {{QStringLiteral("bulk operation"), QStringLiteral("multiple files")},
         QStringLiteral("Bulk operations may fail if some files are in use or have permission issues. Try processing "
                        "files individually.")},
    };
    return rows;
}

} // namespace

void ErrorDialogManager::showErrorWithAutoTroubleshooting(const QString &message, const QString &title)
{
    m_errorMessage = message;
    m_errorTitle = title;
    m_troubleshooting = detectTroubleshootingInfo(message);
    Q_EMIT errorChanged();
    setIsPresented(true);
}

void ErrorDialogManager::hideError()
{
    setIsPresented(false);
    m_errorMessage.clear();
    m_errorTitle = QStringLiteral("Error");
    m_troubleshooting = {};
    Q_EMIT errorChanged();
}

ErrorDialogManager::TroubleshootingInfo ErrorDialogManager::detectTroubleshootingInfo(const QString &message)
{
    const QString lowered = message.toLower();
    for (const HintRow &row : hintRows()) {
        for (const QString &word : row.words) {
            if (lowered.contains(word)) {
                return {true, row.hint};
            }
        }
    }
    return {};
}

QString ErrorDialogManager::permissionHint(const QString &message)
{
    const QString lowered = message.toLower();
    const bool isFound = lowered.contains(QStringLiteral("permission")) || lowered.contains(QStringLiteral("access"));
    return isFound ? permissionHintText : QString();
}

void ErrorDialogManager::showDefaultTroubleshooting(ConfirmationDialogManager *confirmation) const
{
    confirmation->show({.title = QStringLiteral("Troubleshooting"),
                        .message = troubleshootingMessage(),
                        .confirmTitle = QStringLiteral("OK"),
                        .cancelTitle = QString()});
}

} // namespace quillhaven
