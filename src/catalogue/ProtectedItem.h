// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QList>
#include <QMetaType>
#include <QString>

#include <optional>

namespace quillhaven {

/// The record of one protected file or folder. While it is locked its data is at `originalBackupPath` and a placeholder
/// is at `originalPath`; while it is unlocked (`isMounted`) its data is at `originalPath` and nothing exists at
/// `originalBackupPath`.
struct ProtectedItem
{
    QString id;                 ///< upper-case UUID text: the item's identity everywhere
    QString originalName;       ///< last path component at protection
    QString originalPath;       ///< where the item was at protection
    QString containerPath;      ///< its container in the documents folder
    QString originalBackupPath; ///< the one live copy of a locked item, in private storage
    bool isFolder = false;
    bool useTouchID = false;
    bool isMounted = false;             ///< unlocked
    std::optional<QString> mountedPath; ///< where the last unlock put it; absent while locked
    bool isProcessing = false;          ///< a lock or an unlock of this item is running

    bool operator==(const ProtectedItem &) const = default;
};

/// What other programs of the user may know of an item.
struct ProtectedItemInfo
{
    QString id;
    QString originalName;
    QString originalPath;
    bool isFolder = false;
    bool isMounted = false;

    explicit ProtectedItemInfo(const ProtectedItem &item)
        : id(item.id),
          originalName(item.originalName),
          originalPath(item.originalPath),
          isFolder(item.isFolder),
          isMounted(item.isMounted)
    {
    }
    bool operator==(const ProtectedItemInfo &) const = default;
};

} // namespace quillhaven

Q_DECLARE_METATYPE(quillhaven::ProtectedItem)
