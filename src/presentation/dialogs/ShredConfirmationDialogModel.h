// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "credentials/DialogModel.h"

#include <QStringList>
#include <QtQml/qqmlregistration.h>

namespace quillhaven {

/// The model of the confirmation before items are destroyed: a box to tick and a phrase to type.
class ShredConfirmationDialogModel : public quillhaven::DialogModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Created in C++")
    Q_PROPERTY(QStringList itemNames READ itemNames NOTIFY changed)
    Q_PROPERTY(QString confirmationText READ confirmationText WRITE setConfirmationText NOTIFY changed)
    Q_PROPERTY(bool hasReadWarning READ hasReadWarning WRITE setHasReadWarning NOTIFY changed)
    Q_PROPERTY(QString storageNote READ storageNote NOTIFY changed)
    Q_PROPERTY(bool isConfirmEnabled READ isConfirmEnabled NOTIFY changed)

public:
    explicit ShredConfirmationDialogModel(QObject *parent = nullptr) : DialogModel(parent) {}

    [[nodiscard]] QStringList itemNames() const { return m_itemNames; }
    [[nodiscard]] QString confirmationText() const { return m_confirmationText; }
    [[nodiscard]] bool hasReadWarning() const { return m_hasReadWarning; }
    /// Whether the box is ticked and the phrase was typed, in upper or lower case. Spaces are not trimmed.
    [[nodiscard]] bool isConfirmEnabled() const;

    /// Where the content of the items may survive. Empty until that is known, and when it is not.
    [[nodiscard]] QString storageNote() const { return m_storageNote; }

    void setConfirmationText(const QString &value);
    void setHasReadWarning(bool value);
    void setStorageNote(const QString &value);

    /// Asks about these items, with an empty field, the box unticked and no note.
    void show(const QStringList &itemNames);

    /// The buttons. Both close the dialog first, then call the stored action. `confirm` does nothing while it is
    /// disabled.
    Q_INVOKABLE void confirm();
    Q_INVOKABLE void cancel();

    std::function<void()> onConfirm;
    std::function<void()> onCancel;

Q_SIGNALS:
    void changed();

private:
    QStringList m_itemNames;
    QString m_confirmationText;
    QString m_storageNote;
    bool m_hasReadWarning = false;
};

} // namespace quillhaven
