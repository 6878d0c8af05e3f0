// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/FileManager.h"
#include "platform/linux/files/FileMoves.h"

namespace quillhaven {

/// The file operations over Linux system calls. Moves between file systems run the system's `cp`, whose result is
/// compared with the source before the source is removed.
class LinuxFileManager : public FileManager
{
public:
    [[nodiscard]] bool fileExists(const QString &path) const override;
    [[nodiscard]] bool isDirectory(const QString &path) const override;
    [[nodiscard]] std::optional<FileIdentity> identityOfItem(const QString &path, Links links) const override;
    [[nodiscard]] QString resolvedPath(const QString &path) const override;
    [[nodiscard]] bool isWritableFile(const QString &path) const override;
    void requireReadableAndMovable(const QString &path, size_t headroom) const override;
    [[nodiscard]] QStringList contentsOfDirectory(const QString &path) const override;
    void createDirectory(const QString &path) override;
    void moveItem(const QString &source, const QString &target) override;
    void replaceItemAt(const QString &original, const QString &replacement) override;
    void renameItem(const QString &path, const QString &newPath) override;
    void copyItem(const QString &source, const QString &target) override;
    void removeItem(const QString &path) override;
    void trashItem(const QString &path) override;
    void discardAbandonedItems(const QString &folder) override;
    [[nodiscard]] std::unique_ptr<FileReader> openForReading(const QString &path) const override;
    [[nodiscard]] std::unique_ptr<FileWriter> openForWriting(const QString &path) override;
    [[nodiscard]] std::unique_ptr<FileWriter> createForWriting(const QString &path) override;
    [[nodiscard]] int64_t sizeOfItem(const QString &path) const override;
    [[nodiscard]] QDateTime modificationDateOfItem(const QString &path) const override;
    [[nodiscard]] bool contentsEqual(const QString &path, const QString &other) const override;
    [[nodiscard]] int64_t availableSpace(const QString &path) const override;
    [[nodiscard]] QList<FileEntry> regularFilesBelow(const QString &folder) const override;
    [[nodiscard]] std::unique_ptr<FileHandle> openForOverwriting(const QString &path) override;
    void sync() override;

private:
    FileMoves m_moves;
};

} // namespace quillhaven
