// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace quillhaven {

class CloudStorage;
class FileManager;

/// The folder of the recovery backups, which the user's own tool synchronizes with other machines:
/// `<container>/Documents/QuillhavenBackups/<item's id>.backup`. Each call looks for it again. Main thread only.
class CloudBackups
{
public:
    /// The references must outlive this object.
    CloudBackups(CloudStorage &cloud, FileManager &fileManager);

    /// The container, if there is one.
    [[nodiscard]] std::optional<QString> containerDirectory() const;
    /// Makes an existing folder the container. Throws FileError.
    void useContainerDirectory(const QString &folder);
    /// Whether there is a container; logs what was found.
    [[nodiscard]] bool isiCloudAvailable() const;
    /// The folder, which is created if it does not exist. Throws QuillhavenError::accessDenied if there is no
    /// container, or FileError.
    [[nodiscard]] QString getiCloudBackupDirectory() const;
    /// The path of the backup of an item. Throws like the function above.
    [[nodiscard]] QString backupPath(const QString &itemId) const;
    /// The id of the item whose backup the file is.
    [[nodiscard]] static QString itemId(const QString &backupPath);
    /// All existing backups. Throws QuillhavenError::iCloudNotAvailable if there is no container,
    /// QuillhavenError::itemNotFound if there is no backup, or FileError.
    [[nodiscard]] QStringList backupPaths() const;

private:
    CloudStorage &m_cloud;
    FileManager &m_fileManager;
};

} // namespace quillhaven
