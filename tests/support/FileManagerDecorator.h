// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/FileManager.h"

namespace quillhaven {

/// Forwards every call to another FileManager, so that a test or a bench overrides only what it changes.
class FileManagerDecorator : public FileManager
{
public:
    explicit FileManagerDecorator(FileManager &next) : m_next(next) {}

    [[nodiscard]] bool fileExists(const QString &path) const override { return m_next.fileExists(path); }
    [[nodiscard]] bool isDirectory(const QString &path) const override { return m_next.isDirectory(path); }
    [[nodiscard]] std::optional<FileIdentity> identityOfItem(const QString &path, Links links) const override
    {
        return m_next.identityOfItem(path, links);
    }
    [[nodiscard]] bool isWritableFile(const QString &path) const override { return m_next.isWritableFile(path); }
    void requireReadableAndMovable(const QString &path, size_t headroom) const override
    {
        m_next.requireReadableAndMovable(path, headroom);
    }
    [[nodiscard]] QStringList contentsOfDirectory(const QString &path) const override
    {
        return m_next.contentsOfDirectory(path);
    }
    void createDirectory(const QString &path) override { m_next.createDirectory(path); }
    void moveItem(const QString &source, const QString &target) override { m_next.moveItem(source, target); }
    void replaceItemAt(const QString &original, const QString &replacement) override
    {
        m_next.replaceItemAt(original, replacement);
    }
    void renameItem(const QString &path, const QString &newPath) override { m_next.renameItem(path, newPath); }
    void copyItem(const QString &source, const QString &target) override { m_next.copyItem(source, target); }
    [[nodiscard]] int64_t sizeOfItem(const QString &path) const override { return m_next.sizeOfItem(path); }
    [[nodiscard]] QList<FileEntry> regularFilesBelow(const QString &folder) const override
    {
        return m_next.regularFilesBelow(folder);
    }
    [[nodiscard]] std::unique_ptr<FileHandle> openForOverwriting(const QString &path) override
    {
        return m_next.openForOverwriting(path);
    }
    void sync() override { m_next.sync(); }
    void removeItem(const QString &path) override { m_next.removeItem(path); }
    void discardAbandonedItems(const QString &folder) override { m_next.discardAbandonedItems(folder); }
    [[nodiscard]] std::unique_ptr<FileReader> openForReading(const QString &path) const override
    {
        return m_next.openForReading(path);
    }
    [[nodiscard]] std::unique_ptr<FileWriter> openForWriting(const QString &path) override
    {
        return m_next.openForWriting(path);
    }

private:
    FileManager &m_next;
};

} // namespace quillhaven
