// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dialogs/StorageNote.h"

#include <QStringList>

namespace quillhaven {

namespace {

QStringList placesOf(const StorageFacts &facts)
{
    const std::pair<bool, QString> all[] = {
        {facts.isSolidState, QStringLiteral("in parts of the solid-state disk that no program can reach")},
        {facts.isCopyOnWrite, QStringLiteral("in free space that the file system does not overwrite")},
        {facts.sharesBlocks, QStringLiteral("in copies of the files that share their space")},
        {facts.hasSnapshots, QStringLiteral("in snapshots of the disk")},
        {facts.isRemote, QStringLiteral("on the server or in the program that stores it")},
        {facts.isSynced, QStringLiteral("wherever the folder is synchronized to")}};
    QStringList places;
    for (const auto &[isOne, place] : all) {
        if (isOne) {
            places.append(place);
        }
    }
    return places;
}

QString listed(QStringList parts)
{
    const QString last = parts.takeLast();
    return parts.isEmpty() ? last : parts.join(QStringLiteral(", ")) + QStringLiteral(" and ") + last;
}

/// What protects against what may survive.
QString advice(const StorageFacts &facts)
{
    const bool isHidden = facts.isSolidState || facts.isCopyOnWrite;
    const bool isOnDisk = isHidden || facts.sharesBlocks || facts.hasSnapshots;
    const bool isElsewhere = facts.isRemote || facts.isSynced;
    if (!isOnDisk) {
        return QStringLiteral("Encrypting the disk of this computer does not protect against that.");
    }
    if (isElsewhere) {
        return facts.isUnencrypted ? QStringLiteral("Encrypting the whole disk protects only what is on this computer.")
                                   : QStringLiteral("The disk's encryption protects only what is on this computer.");
    }
    if (isHidden) {
        return facts.isUnencrypted ? QStringLiteral("Only encrypting the whole disk protects against that.")
                                   : QStringLiteral("The disk's encryption protects it while the disk is locked.");
    }
    return facts.isUnencrypted ? QStringLiteral("Delete those too, or encrypt the whole disk.")
                               : QStringLiteral("Delete those too.");
}

} // namespace

QString storageNote(const StorageFacts &facts)
{
    if (!facts.isAnythingKnown()) {
        return {};
    }
    return QStringLiteral("Even so, the data may survive %1. %2").arg(listed(placesOf(facts)), advice(facts));
}

} // namespace quillhaven
