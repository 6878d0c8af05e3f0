// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "credentials/DialogModel.h"

#include <QString>
#include <QtQml/qqmlregistration.h>

namespace quillhaven {

/// The model of the smaller error dialog, for the failures of a single row.
class ErrorDialogSheetModel : public quillhaven::DialogModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Created in C++")
    Q_PROPERTY(QString errorMessage READ errorMessage NOTIFY errorMessageChanged)
    /// Advice for two words of the message, else empty; with it goes a button that shows more of it.
    Q_PROPERTY(QString hint READ hint NOTIFY errorMessageChanged)

public:
    explicit ErrorDialogSheetModel(QObject *parent = nullptr) : DialogModel(parent) {}

    [[nodiscard]] QString errorMessage() const { return m_errorMessage; }
    [[nodiscard]] QString hint() const;

    void show(const QString &errorMessage);

    /// The buttons. Both close the dialog first, then call the stored action, if there is one.
    Q_INVOKABLE void ok();
    Q_INVOKABLE void showTroubleshooting();

    std::function<void()> onOK;
    std::function<void()> onShowTroubleshooting;

Q_SIGNALS:
    void errorMessageChanged();

private:
    QString m_errorMessage;
};

} // namespace quillhaven
