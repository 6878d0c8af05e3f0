// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QString>

#include <functional>

namespace quillhaven {

/// The model of the question before an item's protection is removed.
class RemoveProtectionDialogManager : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isPresented READ isPresented WRITE setIsPresented NOTIFY changed)
    Q_PROPERTY(QString itemName READ itemName NOTIFY changed)
    Q_PROPERTY(QString message READ message NOTIFY changed)

public:
    using QObject::QObject;

    /// Defined by the program alone.
    static RemoveProtectionDialogManager &shared();

    [[nodiscard]] bool isPresented() const { return m_isPresented; }
    [[nodiscard]] QString itemName() const { return m_itemName; }
    /// What removing the protection of this item does.
    [[nodiscard]] QString message() const;
    void setIsPresented(bool value);

    /// Stores the three, then presents the dialog.
    void show(const QString &itemName, std::function<void()> removeAction, std::function<void()> cancelAction);

    /// The buttons: close the dialog first, then call the stored action, if there is one.
    Q_INVOKABLE void remove();
    Q_INVOKABLE void cancel();

    std::function<void()> onRemove;
    std::function<void()> onCancel;

Q_SIGNALS:
    void changed();

private:
    bool m_isPresented = false;
    QString m_itemName;
};

} // namespace quillhaven
