// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "credentials/DialogModel.h"

#include <QString>
#include <QtQml/qqmlregistration.h>

namespace quillhaven {

/// The model of the question before an item's protection is removed.
class RemoveProtectionDialogManager : public quillhaven::DialogModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Created in C++")
    Q_PROPERTY(QString itemName READ itemName NOTIFY itemNameChanged)
    Q_PROPERTY(QString message READ message NOTIFY itemNameChanged)

public:
    explicit RemoveProtectionDialogManager(QObject *parent = nullptr) : DialogModel(parent) {}

    /// Defined in the program only.
    static RemoveProtectionDialogManager &shared();

    [[nodiscard]] QString itemName() const { return m_itemName; }
    /// Explains what removing the protection of the item does.
    [[nodiscard]] QString message() const;

    /// Stores the name and the actions, then presents the dialog.
    void show(const QString &itemName, std::function<void()> removeAction, std::function<void()> cancelAction);

    /// The buttons. Both close the dialog first, then call the stored action, if there is one.
    Q_INVOKABLE void remove();
    Q_INVOKABLE void cancel();

    std::function<void()> onRemove;
    std::function<void()> onCancel;

Q_SIGNALS:
    void itemNameChanged();

private:
    QString m_itemName;
};

} // namespace quillhaven
