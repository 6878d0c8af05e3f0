// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dialogs/RescueDialogModel.h"

#include <QVariantMap>

namespace quillhaven {

QVariantList RescueDialogModel::entries() const
{
    QVariantList entries;
    for (const RescueEntry &entry : m_entries) {
        entries.append(QVariantMap{{QStringLiteral("title"), entry.title},
                                   {QStringLiteral("details"), entry.details},
                                   {QStringLiteral("symbol"), entry.symbol},
                                   {QStringLiteral("choices"), entry.choices}});
    }
    return entries;
}

QString RescueDialogModel::summary() const
{
    if (m_isBusy) {
        return QStringLiteral("Working…");
    }
    if (m_entries.isEmpty()) {
        return QStringLiteral("Nothing is lost: everything in private storage belongs to an item of the list.");
    }
    return m_entries.size() == 1 ? QStringLiteral("1 item needs your decision.")
                                 : QStringLiteral("%1 items need your decision.").arg(m_entries.size());
}

void RescueDialogModel::setEntries(const QList<RescueEntry> &entries)
{
    if (m_entries != entries) {
        m_entries = entries;
        Q_EMIT entriesChanged();
    }
    Q_EMIT summaryChanged();
}

void RescueDialogModel::setIsBusy(bool value)
{
    assign(m_isBusy, value, &RescueDialogModel::isBusyChanged);
    Q_EMIT summaryChanged();
}

void RescueDialogModel::choose(int entry, int choice)
{
    if (!m_isBusy && entry >= 0 && entry < count() && choice >= 0 && choice < m_entries.at(entry).choices.size() &&
        onChosen) {
        onChosen(entry, choice);
    }
}

void RescueDialogModel::lookAgain()
{
    if (!m_isBusy && onLookAgain) {
        onLookAgain();
    }
}

} // namespace quillhaven
