// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "credentials/DialogModel.h"

#include <QString>
#include <QtQml/qqmlregistration.h>

namespace quillhaven {

/// The model of the question how an item is to be deleted.
class DeleteConfirmationModel : public quillhaven::DialogModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Created in C++")
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString trashNote READ trashNote NOTIFY changed)

public:
    explicit DeleteConfirmationModel(QObject *parent = nullptr) : DialogModel(parent) {}

    [[nodiscard]] QString itemName() const { return m_itemName; }
    [[nodiscard]] QString title() const;
    /// What the trash gets, where that is not the item itself; else empty.
    [[nodiscard]] QString trashNote() const;

    /// Asks about an item. What the trash gets of a locked one is its placeholder.
    void show(const QString &itemName, bool isLocked);

    /// The buttons. Each closes the dialog first, then calls the stored action, if there is one.
    Q_INVOKABLE void secureDelete();
    Q_INVOKABLE void moveToTrash();
    Q_INVOKABLE void cancel();

    std::function<void()> onSecureDelete;
    std::function<void()> onMoveToTrash;
    std::function<void()> onCancel;

Q_SIGNALS:
    void changed();

private:
    QString m_itemName;
    bool m_isLocked = false;
};

} // namespace quillhaven
