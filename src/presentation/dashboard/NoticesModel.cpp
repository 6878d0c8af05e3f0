// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dashboard/NoticesModel.h"

#include <algorithm>

namespace quillhaven {

qsizetype NoticesModel::indexOf(const QString &id) const
{
    const auto found = std::ranges::find(m_notices, id, &Notice::id);
    return found == m_notices.cend() ? -1 : found - m_notices.cbegin();
}

void NoticesModel::show(const Notice &notice)
{
    if (const qsizetype row = indexOf(notice.id); row >= 0) {
        m_notices[row] = notice;
        const QModelIndex changed = index(static_cast<int>(row));
        Q_EMIT dataChanged(changed, changed);
        return;
    }
    beginInsertRows({}, count(), count());
    m_notices.append(notice);
    endInsertRows();
    Q_EMIT countChanged();
}

void NoticesModel::remove(const QString &id)
{
    if (const qsizetype row = indexOf(id); row >= 0) {
        removeAt(row);
    }
}

void NoticesModel::removeAt(qsizetype row)
{
    beginRemoveRows({}, static_cast<int>(row), static_cast<int>(row));
    m_notices.removeAt(row);
    endRemoveRows();
    Q_EMIT countChanged();
}

void NoticesModel::act(int row)
{
    if (const auto action = m_notices.value(row).action) {
        action();
    }
}

void NoticesModel::actOtherwise(int row)
{
    if (const auto action = m_notices.value(row).otherAction) {
        action();
    }
}

void NoticesModel::dismiss(int row)
{
    if (m_notices.value(row).isDismissible) {
        removeAt(row);
    }
}

int NoticesModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant NoticesModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= count()) {
        return {};
    }
    const Notice &notice = m_notices.at(index.row());
    switch (role) {
    case TextRole:
    case Qt::DisplayRole:
        return notice.text;
    case ActionTitleRole:
        return notice.actionTitle;
    case OtherActionTitleRole:
        return notice.otherActionTitle;
    case IsDismissibleRole:
        return notice.isDismissible;
    case IsWaitingRole:
        return notice.isWaiting;
    default:
        return {};
    }
}

QHash<int, QByteArray> NoticesModel::roleNames() const
{
    return {{TextRole, "text"},
            {ActionTitleRole, "actionTitle"},
            {OtherActionTitleRole, "otherActionTitle"},
            {IsDismissibleRole, "isDismissible"},
            {IsWaitingRole, "isWaiting"}};
}

} // namespace quillhaven
