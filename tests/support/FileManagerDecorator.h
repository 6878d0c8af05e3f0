// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/FileManager.h"

#include <functional>
#include <type_traits>

namespace quillhaven {

/// A call of a FileManager or of a file that it opened.
struct FileCall
{
    const char *name = ""; ///< of the function
    QString path;          ///< what it works on; empty if it is not a single item
    QString detail = {};   ///< the second path of a move, the offset of a seek, the size of a write
};

/// Forwards every call to another FileManager, so that a test or a fuzzer only overrides what it changes: one function,
/// or `around` for all of them, including those of opened files. It must outlive those files.
class FileManagerDecorator : public FileManager
{
public:
    explicit FileManagerDecorator(FileManager &next) : m_next(next) {}

    [[nodiscard]] bool fileExists(const QString &path) const override
    {
        return forward({"fileExists", path}, [&] { return m_next.fileExists(path); });
    }
    [[nodiscard]] bool isDirectory(const QString &path) const override
    {
        return forward({"isDirectory", path}, [&] { return m_next.isDirectory(path); });
    }
    [[nodiscard]] std::optional<FileIdentity> identityOfItem(const QString &path, Links links) const override
    {
        return forward({"identityOfItem", path}, [&] { return m_next.identityOfItem(path, links); });
    }
    [[nodiscard]] QString resolvedPath(const QString &path) const override
    {
        return forward({"resolvedPath", path}, [&] { return m_next.resolvedPath(path); });
    }
    [[nodiscard]] bool isWritableFile(const QString &path) const override
    {
        return forward({"isWritableFile", path}, [&] { return m_next.isWritableFile(path); });
    }
    void requireReadableAndMovable(const QString &path, size_t headroom) const override
    {
        forward({"requireReadableAndMovable", path}, [&] { m_next.requireReadableAndMovable(path, headroom); });
    }
    [[nodiscard]] QStringList contentsOfDirectory(const QString &path) const override
    {
        return forward({"contentsOfDirectory", path}, [&] { return m_next.contentsOfDirectory(path); });
    }
    void createDirectory(const QString &path) override
    {
        forward({"createDirectory", path}, [&] { m_next.createDirectory(path); });
    }
    void moveItem(const QString &source, const QString &target) override
    {
        forward({"moveItem", source, target}, [&] { m_next.moveItem(source, target); });
    }
    void replaceItemAt(const QString &original, const QString &replacement) override
    {
        forward({"replaceItemAt", original, replacement}, [&] { m_next.replaceItemAt(original, replacement); });
    }
    void renameItem(const QString &path, const QString &newPath) override
    {
        forward({"renameItem", path, newPath}, [&] { m_next.renameItem(path, newPath); });
    }
    void copyItem(const QString &source, const QString &target) override
    {
        forward({"copyItem", source, target}, [&] { m_next.copyItem(source, target); });
    }
    void removeItem(const QString &path) override
    {
        forward({"removeItem", path}, [&] { m_next.removeItem(path); });
    }
    void trashItem(const QString &path) override
    {
        forward({"trashItem", path}, [&] { m_next.trashItem(path); });
    }
    void discardAbandonedItems(const QString &folder) override
    {
        forward({"discardAbandonedItems", folder}, [&] { m_next.discardAbandonedItems(folder); });
    }
    [[nodiscard]] std::unique_ptr<FileReader> openForReading(const QString &path) const override
    {
        auto reader = forward({"openForReading", path}, [&] { return m_next.openForReading(path); });
        return std::make_unique<Reader>(std::move(reader), path, *this);
    }
    [[nodiscard]] std::unique_ptr<FileWriter> openForWriting(const QString &path) override
    {
        auto writer = forward({"openForWriting", path}, [&] { return m_next.openForWriting(path); });
        return std::make_unique<Writer>(std::move(writer), path, *this);
    }
    [[nodiscard]] std::unique_ptr<FileWriter> createForWriting(const QString &path) override
    {
        auto writer = forward({"createForWriting", path}, [&] { return m_next.createForWriting(path); });
        return std::make_unique<Writer>(std::move(writer), path, *this);
    }
    [[nodiscard]] int64_t sizeOfItem(const QString &path) const override
    {
        return forward({"sizeOfItem", path}, [&] { return m_next.sizeOfItem(path); });
    }
    [[nodiscard]] QDateTime modificationDateOfItem(const QString &path) const override
    {
        return forward({"modificationDateOfItem", path}, [&] { return m_next.modificationDateOfItem(path); });
    }
    [[nodiscard]] bool contentsEqual(const QString &path, const QString &other) const override
    {
        return forward({"contentsEqual", path, other}, [&] { return m_next.contentsEqual(path, other); });
    }
    [[nodiscard]] int64_t availableSpace(const QString &path) const override
    {
        return forward({"availableSpace", path}, [&] { return m_next.availableSpace(path); });
    }
    [[nodiscard]] QList<FileEntry> regularFilesBelow(const QString &folder) const override
    {
        return forward({"regularFilesBelow", folder}, [&] { return m_next.regularFilesBelow(folder); });
    }
    [[nodiscard]] std::unique_ptr<FileHandle> openForOverwriting(const QString &path) override
    {
        auto handle = forward({"openForOverwriting", path}, [&] { return m_next.openForOverwriting(path); });
        return std::make_unique<Handle>(std::move(handle), path, *this);
    }
    void sync() override
    {
        forward({"sync", {}}, [&] { m_next.sync(); });
    }

protected:
    /// Called for every call, on the thread that makes it; `next` makes the call. The caller receives any exception.
    virtual void around(const FileCall & /*call*/, const std::function<void()> &next) const { next(); }

private:
    /// An open file of the other manager.
    template <typename File>
    class Opened : public File
    {
    public:
        Opened(std::unique_ptr<File> next, const QString &path, const FileManagerDecorator &files)
            : m_next(std::move(next)), m_path(path), m_files(files)
        {
        }
        ~Opened() override
        {
            forward("closeAtEnd", [this] { m_next.reset(); });
        }
        Opened(const Opened &) = delete;
        Opened &operator=(const Opened &) = delete;

    protected:
        template <typename Call>
        auto forward(const char *name, Call make, const QString &detail = {}) const
        {
            return m_files.forward({name, m_path, detail}, make);
        }

        std::unique_ptr<File> m_next;

    private:
        QString m_path;
        const FileManagerDecorator &m_files;
    };

    class Reader : public Opened<FileReader>
    {
    public:
        using Opened::Opened;
        [[nodiscard]] size_t size() const override
        {
            return forward("size", [this] { return m_next->size(); });
        }
        [[nodiscard]] size_t read(uint64_t offset, std::span<std::byte> bytes) override
        {
            return forward("read", [&] { return m_next->read(offset, bytes); });
        }
    };

    class Writer : public Opened<FileWriter>
    {
    public:
        using Opened::Opened;
        void write(std::span<const std::byte> bytes) override
        {
            forward("write", [&] { m_next->write(bytes); });
        }
        void close() override
        {
            forward("close", [this] { m_next->close(); });
        }
    };

    class Handle : public Opened<FileHandle>
    {
    public:
        using Opened::Opened;
        void seek(uint64_t offset) override
        {
            forward("seek", [&] { m_next->seek(offset); }, QString::number(offset));
        }
        void writeThrough(std::span<const std::byte> bytes) override
        {
            forward("writeThrough", [&] { m_next->writeThrough(bytes); }, QString::number(bytes.size()));
        }
        void synchronizeFile() override
        {
            forward("synchronizeFile", [this] { m_next->synchronizeFile(); });
        }
        void closeFile() override
        {
            forward("closeFile", [this] { m_next->closeFile(); });
        }
    };

    template <typename Call>
    std::invoke_result_t<Call> forward(const FileCall &call, Call make) const
    {
        if constexpr (std::is_void_v<std::invoke_result_t<Call>>) {
            around(call, make);
        } else {
            std::optional<std::invoke_result_t<Call>> result;
            around(call, [&] { result.emplace(make()); });
            return std::move(*result);
        }
    }

    FileManager &m_next;
};

} // namespace quillhaven
