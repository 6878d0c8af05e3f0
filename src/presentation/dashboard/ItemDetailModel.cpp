// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dashboard/ItemDetailModel.h"

#include "async/Jobs.h"
#include "engine/QuillhavenManager.h"
#include "presentation/dashboard/FinderRowTexts.h"
#include "presentation/dashboard/ItemActions.h"
#include "presentation/dashboard/ProtectedItemsModel.h"
#include "presentation/dialogs/ConfirmationDialogManager.h"
#include "support/DisplayName.h"

namespace quillhaven {

ItemDetailModel::ItemDetailModel(const DashboardContext &context, ItemActions &actions, QObject *parent)
    : DialogModel(parent), m_context(context), m_actions(actions)
{
    connect(&context.rows, &QAbstractItemModel::dataChanged, this, &ItemDetailModel::readAgain);
    connect(&context.rows, &ProtectedItemsModel::itemsChanged, this, &ItemDetailModel::readAgain);
}

void ItemDetailModel::show(const QString &id)
{
    if (const ProtectedItem *item = m_context.quillhavenManager.catalogue().item(id)) {
        m_selectedItem = *item;
        Q_EMIT changed();
        setIsPresented(true);
    }
}

void ItemDetailModel::readAgain()
{
    if (!m_selectedItem) {
        return;
    }
    const ProtectedItem *item = m_context.quillhavenManager.catalogue().item(m_selectedItem->id);
    if (!item) {
        done();
        return;
    }
    m_selectedItem = *item;
    Q_EMIT changed();
}

QString ItemDetailModel::itemName() const
{
    return m_selectedItem ? displayName(m_selectedItem->originalName) : QString();
}

QString ItemDetailModel::icon() const
{
    return m_selectedItem && m_selectedItem->isFolder ? QStringLiteral("folder.fill") : QStringLiteral("doc.fill");
}

QString ItemDetailModel::status() const
{
    return m_selectedItem ? finder_row::statusText(*m_selectedItem) : QString();
}

QString ItemDetailModel::type() const
{
    return m_selectedItem && m_selectedItem->isFolder ? QStringLiteral("Folder") : QStringLiteral("File");
}

QString ItemDetailModel::authentication() const
{
    return m_selectedItem && m_selectedItem->useTouchID ? QStringLiteral("Touch ID") : QStringLiteral("Password");
}

bool ItemDetailModel::isBusy() const
{
    return m_selectedItem && m_context.rows.isBusy(m_selectedItem->id);
}

void ItemDetailModel::toggleLock()
{
    if (m_selectedItem) {
        m_actions.onToggleLock(m_selectedItem->id);
    }
}

void ItemDetailModel::removeProtection()
{
    if (!m_selectedItem) {
        return;
    }
    const auto answer = m_context.dialogs.confirmation.ask(
        {.title = QStringLiteral("Remove Protection"),
         .message =
             QStringLiteral("Are you sure you want to remove protection from '") + itemName() +
             QStringLiteral("'? This will RESTORE your original file/folder and delete the encrypted container."),
         .confirmTitle = QStringLiteral("Remove Protection")});
    startJob([this, id = m_selectedItem->id, answer] { return removeOnceConfirmed(id, answer); });
}

QCoro::Task<> ItemDetailModel::removeOnceConfirmed(QString id, Answer<DialogEnd> answer)
{
    if (co_await answer == DialogEnd::Confirmed) {
        m_actions.onRemove(id);
    }
}

void ItemDetailModel::done()
{
    setIsPresented(false);
    m_selectedItem.reset();
}

} // namespace quillhaven
