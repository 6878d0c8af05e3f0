// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dialogs/OperationErrors.h"

#include "catalogue/QuillhavenError.h"
#include "support/printLogger.h"

namespace quillhaven {

namespace {

bool isCancelledAuthentication(const std::exception_ptr &failure)
{
    try {
        std::rethrow_exception(failure);
    } catch (const QuillhavenError &error) {
        return error.errorCase() == QuillhavenError::authenticationCancelled;
    } catch (...) {
        return false;
    }
}

} // namespace

OperationErrors::OperationErrors(QObject *parent) : QObject(parent)
{
    connect(&m_dialog, &ErrorDialogManager::isPresentedChanged, this, &OperationErrors::changed);
}

void OperationErrors::report(const std::exception_ptr &failure)
{
    if (isCancelledAuthentication(failure)) {
        printLogger(QStringLiteral("Authentication cancelled by user"));
    } else {
        showError(localizedDescription(failure));
    }
}

void OperationErrors::showError(const QString &message)
{
    m_errorMessage = message;
    m_dialog.showErrorWithAutoTroubleshooting(message, QStringLiteral("Error"));
    Q_EMIT changed();
}

} // namespace quillhaven
