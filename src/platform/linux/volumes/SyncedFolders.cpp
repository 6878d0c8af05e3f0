// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/volumes/SyncedFolders.h"

#include "support/Paths.h"

#include <QDir>
#include <QFileInfo>

namespace quillhaven {

namespace {

bool hasSyncMark(const QString &folder)
{
    const auto isFile = [&](const char *name) {
        return QFileInfo(pathInDirectory(folder, QLatin1String(name))).isFile();
    };
    // The home has a folder ".dropbox", with Dropbox's settings; in the folder that is kept in step it is a file.
    return QFileInfo::exists(pathInDirectory(folder, QStringLiteral(".stfolder"))) ||
           QFileInfo(pathInDirectory(folder, QStringLiteral(".dropbox.cache"))).isDir() || isFile(".dropbox") ||
           isFile(".sync/ID") || isFile(".owncloudsync.log") || isFile(".nextcloudsync.log") ||
           !QDir(folder)
                .entryList({QStringLiteral(".sync_*.db"), QStringLiteral("._sync_*.db")}, QDir::Files | QDir::Hidden)
                .isEmpty();
}

QStringList targetsOf(const QString &links)
{
    QStringList targets;
    for (const QFileInfo &link : QDir(links).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        targets.append(link.canonicalFilePath());
    }
    return targets;
}

} // namespace

bool isSynced(const QString &path, const QString &known)
{
    const QStringList folders = targetsOf(known);
    for (QString folder = path;; folder = parentDirectory(folder)) {
        if (folders.contains(folder) || hasSyncMark(folder)) {
            return true;
        }
        if (folder == parentDirectory(folder)) {
            return false;
        }
    }
}

} // namespace quillhaven
