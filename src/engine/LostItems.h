// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "catalogue/ProtectedItem.h"
#include "platform/UserDirectories.h"

#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>

namespace quillhaven {

class FileManager;

/// Data in private storage that belongs to no record: the program ended, or failed, while it was protecting the item.
struct LostItem
{
    QString privatePath;
    QString id; ///< of the item whose private copy this is
    bool isFolder = false;
    int64_t size = 0;      ///< in bytes; of a folder, the sum of its files
    QDateTime modified;    ///< of the file or the folder itself
    QString name;          ///< what it was probably called: that of the container which fits; may be empty
    QString containerPath; ///< the container which fits; may be empty
    QString probablePlace; ///< a placeholder of that name which belongs to no record; may be empty

    bool operator==(const LostItem &) const = default;
};

/// What an interrupted run has left in a state that the list does not show.
struct RescueFindings
{
    QList<LostItem> lostItems;    ///< the newest first
    QStringList returnedItems;    ///< ids of records that say locked, whose data is back at the original place
    QStringList interruptedLocks; ///< ids of records that say unlocked, whose data is in private storage

    [[nodiscard]] qsizetype count() const { return lostItems.size() + returnedItems.size() + interruptedLocks.size(); }
    bool operator==(const RescueFindings &) const = default;
};

/// Compares private storage with the records, the containers and the placeholders; also removes what interrupted moves
/// left in the folders of the items. Changes nothing else. Blocks; what cannot be read is passed over.
[[nodiscard]] RescueFindings findLostItems(FileManager &files, const UserDirectories &directories,
                                           const QString &secureStorage, const QList<ProtectedItem> &items);

/// Whether a record says locked while there is no private copy and the item itself is at its place.
[[nodiscard]] bool isReturned(const FileManager &files, const ProtectedItem &item);

/// Whether a record says unlocked while its data is in private storage, and nothing or a placeholder is at its place.
[[nodiscard]] bool isLockUnfinished(const FileManager &files, const ProtectedItem &item);

} // namespace quillhaven
