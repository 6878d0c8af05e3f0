// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "presentation/dialogs/ErrorDialogManager.h"

#include <QObject>

#include <exception>

namespace quillhaven {

/// Reports the failures of operations in one error sheet, which the window or sheet that started them owns.
class OperationErrors : public QObject
{
    Q_OBJECT

public:
    explicit OperationErrors(QObject *parent = nullptr);

    /// Shows the description of the failure; a cancelled authentication is only logged.
    void report(const std::exception_ptr &failure);
    void showError(const QString &message);

    [[nodiscard]] bool showingError() const { return m_dialog.isPresented(); }
    /// The latest message, even after its dialog was closed.
    [[nodiscard]] QString errorMessage() const { return m_errorMessage; }
    [[nodiscard]] ErrorDialogManager &dialog() { return m_dialog; }

Q_SIGNALS:
    void changed();

private:
    ErrorDialogManager m_dialog;
    QString m_errorMessage;
};

} // namespace quillhaven
