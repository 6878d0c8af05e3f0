// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "async/Answer.h"
#include "catalogue/ProtectedItem.h"
#include "credentials/DialogModel.h"
#include "presentation/dashboard/DashboardContext.h"

#include <QCoroTask>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace quillhaven {

class ItemActions;

/// The model of the details of one item. It follows the item's record, and closes when the record is gone. Main thread
/// only.
class ItemDetailModel : public quillhaven::DialogModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Part of the dashboard")
    Q_PROPERTY(QString itemName READ itemName NOTIFY changed)
    Q_PROPERTY(QString icon READ icon NOTIFY changed)
    Q_PROPERTY(QString status READ status NOTIFY changed)
    Q_PROPERTY(QString type READ type NOTIFY changed)
    Q_PROPERTY(QString authentication READ authentication NOTIFY changed)
    Q_PROPERTY(bool isMounted READ isMounted NOTIFY changed)
    Q_PROPERTY(bool isBusy READ isBusy NOTIFY changed)

public:
    /// The objects that the context refers to, and the actions, must outlive this object.
    ItemDetailModel(const DashboardContext &context, ItemActions &actions, QObject *parent = nullptr);

    /// The item that is shown; nothing while the sheet is closed.
    [[nodiscard]] const std::optional<ProtectedItem> &selectedItem() const { return m_selectedItem; }
    /// Opens the sheet for an item of the list.
    void show(const QString &id);

    [[nodiscard]] QString itemName() const;
    [[nodiscard]] QString icon() const;
    [[nodiscard]] QString status() const;
    [[nodiscard]] QString type() const;
    [[nodiscard]] QString authentication() const;
    [[nodiscard]] bool isMounted() const { return m_selectedItem && m_selectedItem->isMounted; }
    [[nodiscard]] bool isBusy() const;

    Q_INVOKABLE void toggleLock();
    /// Asks, then gives the item back.
    Q_INVOKABLE void removeProtection();
    Q_INVOKABLE void done();

Q_SIGNALS:
    void changed();

private:
    void readAgain();
    [[nodiscard]] QCoro::Task<> removeOnceConfirmed(QString id, Answer<DialogEnd> answer);

    DashboardContext m_context;
    ItemActions &m_actions;
    std::optional<ProtectedItem> m_selectedItem;
};

} // namespace quillhaven
