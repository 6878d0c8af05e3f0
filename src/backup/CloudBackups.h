// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <QStringList>

namespace quillhaven {

class CloudStorage;
class FileManager;

/// The folder of the recovery backups, which a tool of the user's keeps in step with other machines:
/// `<container>/Documents/QuillhavenBackups/<item's id>.backup`. It is looked for again at each call. Main thread only.
class CloudBackups
{
public:
    /// The references must outlive this object.
    CloudBackups(CloudStorage &cloud, FileManager &fileManager);

    /// Whether there is a container; logs what was found.
    [[nodiscard]] bool isiCloudAvailable() const;
    /// The folder, which is made when it is missing. Throws QuillhavenError::accessDenied without a container, or
    /// FileError.
    [[nodiscard]] QString getiCloudBackupDirectory() const;
    /// Where the backup of an item goes. Throws as the function above.
    [[nodiscard]] QString backupPath(const QString &itemId) const;
    /// The id of the item whose backup the file is.
    [[nodiscard]] static QString itemId(const QString &backupPath);
    /// Every backup there is. Throws QuillhavenError::iCloudNotAvailable without a container,
    /// QuillhavenError::itemNotFound when there is none, or FileError.
    [[nodiscard]] QStringList backupPaths() const;

private:
    CloudStorage &m_cloud;
    FileManager &m_fileManager;
};

} // namespace quillhaven
