// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "credentials/DialogModel.h"

#include <QStringList>
#include <QtQml/qqmlregistration.h>

namespace quillhaven {

/// The model of the demanding question before items are destroyed: a box to tick and a phrase to type.
class ShredConfirmationDialogModel : public quillhaven::DialogModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the program")
    Q_PROPERTY(QStringList itemNames READ itemNames NOTIFY changed)
    Q_PROPERTY(QString confirmationText READ confirmationText WRITE setConfirmationText NOTIFY changed)
    Q_PROPERTY(bool hasReadWarning READ hasReadWarning WRITE setHasReadWarning NOTIFY changed)
    Q_PROPERTY(bool isConfirmEnabled READ isConfirmEnabled NOTIFY changed)

public:
    explicit ShredConfirmationDialogModel(QObject *parent = nullptr) : DialogModel(parent) {}

    [[nodiscard]] QStringList itemNames() const { return m_itemNames; }
    [[nodiscard]] QString confirmationText() const { return m_confirmationText; }
    [[nodiscard]] bool hasReadWarning() const { return m_hasReadWarning; }
    /// The box is ticked, and the phrase is typed in any case of letters; nothing is trimmed.
    [[nodiscard]] bool isConfirmEnabled() const;

    void setConfirmationText(const QString &value);
    void setHasReadWarning(bool value);

    /// Asks about these, with an empty field and the box unticked.
    void show(const QStringList &itemNames);

    /// The buttons: close the dialog first, then call the stored action. Nothing is confirmed while that is disabled.
    Q_INVOKABLE void confirm();
    Q_INVOKABLE void cancel();

    std::function<void()> onConfirm;
    std::function<void()> onCancel;

Q_SIGNALS:
    void changed();

private:
    QStringList m_itemNames;
    QString m_confirmationText;
    bool m_hasReadWarning = false;
};

} // namespace quillhaven
