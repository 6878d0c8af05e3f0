// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/CredentialStore.h"
#include "platform/UserDefaults.h"
#include "support/FileManagerDecorator.h"

#include <functional>
#include <map>
#include <memory>

namespace quillhaven::testing {

/// What happens around every call of the seam that changes something. `before` may throw in place of the call.
struct SeamHooks
{
    using Hook = std::function<void(const char *call, const QString &path)>;

    Hook before;
    Hook after;

    template <typename Call>
    auto around(const char *name, const QString &path, Call call) const
    {
        if (before) {
            before(name, path);
        }
        if constexpr (std::is_void_v<std::invoke_result_t<Call>>) {
            call();
            if (after) {
                after(name, path);
            }
        } else {
            auto result = call();
            if (after) {
                after(name, path);
            }
            return result;
        }
    }
};

/// An open file that tells of every change.
class HookedFileHandle : public FileHandle
{
public:
    HookedFileHandle(std::unique_ptr<FileHandle> next, const QString &path, const SeamHooks &hooks)
        : m_next(std::move(next)), m_path(path), m_hooks(hooks)
    {
    }

    void seek(uint64_t offset) override { m_next->seek(offset); }
    void writeThrough(std::span<const std::byte> bytes) override
    {
        m_hooks.around("writeThrough", m_path, [&] { m_next->writeThrough(bytes); });
    }
    void synchronizeFile() override
    {
        m_hooks.around("synchronizeFile", m_path, [&] { m_next->synchronizeFile(); });
    }
    void closeFile() override { m_next->closeFile(); }

private:
    std::unique_ptr<FileHandle> m_next;
    QString m_path;
    const SeamHooks &m_hooks;
};

/// A file that reports the end of its writing.
class HookedFileWriter : public FileWriter
{
public:
    HookedFileWriter(std::unique_ptr<FileWriter> next, const QString &path, const SeamHooks &hooks)
        : m_next(std::move(next)), m_path(path), m_hooks(hooks)
    {
    }

    void write(std::span<const std::byte> bytes) override { m_next->write(bytes); }
    void close() override
    {
        m_next->close();
        if (m_hooks.after) {
            m_hooks.after("writeFile", m_path);
        }
    }

private:
    std::unique_ptr<FileWriter> m_next;
    QString m_path;
    const SeamHooks &m_hooks;
};

/// A file manager that tells of every change.
class HookedFileManager : public FileManagerDecorator
{
public:
    HookedFileManager(FileManager &next, const SeamHooks &hooks) : FileManagerDecorator(next), m_hooks(hooks) {}

    void createDirectory(const QString &path) override
    {
        m_hooks.around("createDirectory", path, [&] { FileManagerDecorator::createDirectory(path); });
    }
    void moveItem(const QString &source, const QString &target) override
    {
        m_hooks.around("moveItem", source, [&] { FileManagerDecorator::moveItem(source, target); });
    }
    void replaceItemAt(const QString &original, const QString &replacement) override
    {
        m_hooks.around("replaceItemAt", original, [&] { FileManagerDecorator::replaceItemAt(original, replacement); });
    }
    void renameItem(const QString &path, const QString &newPath) override
    {
        m_hooks.around("renameItem", path, [&] { FileManagerDecorator::renameItem(path, newPath); });
    }
    void copyItem(const QString &source, const QString &target) override
    {
        m_hooks.around("copyItem", source, [&] { FileManagerDecorator::copyItem(source, target); });
    }
    [[nodiscard]] QList<FileEntry> regularFilesBelow(const QString &folder) const override
    {
        return m_hooks.around("regularFilesBelow", folder,
                              [&] { return FileManagerDecorator::regularFilesBelow(folder); });
    }
    [[nodiscard]] std::unique_ptr<FileHandle> openForOverwriting(const QString &path) override
    {
        auto handle =
            m_hooks.around("openForOverwriting", path, [&] { return FileManagerDecorator::openForOverwriting(path); });
        return std::make_unique<HookedFileHandle>(std::move(handle), path, m_hooks);
    }
    void removeItem(const QString &path) override
    {
        m_hooks.around("removeItem", path, [&] { FileManagerDecorator::removeItem(path); });
    }
    [[nodiscard]] std::unique_ptr<FileReader> openForReading(const QString &path) const override
    {
        return m_hooks.around("readFile", path, [&] { return FileManagerDecorator::openForReading(path); });
    }
    [[nodiscard]] std::unique_ptr<FileWriter> openForWriting(const QString &path) override
    {
        if (m_hooks.before) {
            m_hooks.before("writeFile", path);
        }
        return std::make_unique<HookedFileWriter>(FileManagerDecorator::openForWriting(path), path, m_hooks);
    }

private:
    const SeamHooks &m_hooks;
};

/// A credential store that tells of every change.
class HookedCredentialStore : public CredentialStore
{
public:
    HookedCredentialStore(CredentialStore &next, const SeamHooks &hooks) : m_next(next), m_hooks(hooks) {}

    [[nodiscard]] CredentialStatus add(const QString &service, const QString &account, const QByteArray &value) override
    {
        return m_hooks.around("add", account, [&] { return m_next.add(service, account, value); });
    }
    [[nodiscard]] CredentialStatus update(const QString &service, const QString &account,
                                          const QByteArray &value) override
    {
        return m_hooks.around("update", account, [&] { return m_next.update(service, account, value); });
    }
    [[nodiscard]] Match copyMatching(const QString &service, const QString &account) override
    {
        return m_next.copyMatching(service, account);
    }
    [[nodiscard]] CredentialStatus remove(const QString &service, const QString &account) override
    {
        return m_hooks.around("remove", account, [&] { return m_next.remove(service, account); });
    }
    [[nodiscard]] QString displayName() const override { return m_next.displayName(); }

private:
    CredentialStore &m_next;
    const SeamHooks &m_hooks;
};

/// A settings domain that tells of every change.
class HookedUserDefaults : public UserDefaults
{
public:
    HookedUserDefaults(UserDefaults &next, const SeamHooks &hooks) : m_next(next), m_hooks(hooks)
    {
        connect(&next, &UserDefaults::valueChanged, this, &UserDefaults::valueChanged);
    }

    [[nodiscard]] QVariant objectForKey(const QString &key) const override { return m_next.objectForKey(key); }
    void setObject(const QString &key, const QVariant &value) override
    {
        m_hooks.around("setObject", key, [&] { m_next.setObject(key, value); });
    }
    void removeObject(const QString &key) override
    {
        m_hooks.around("removeObject", key, [&] { m_next.removeObject(key); });
    }
    [[nodiscard]] bool setArray(const QString &key, const QList<ArrayElement> &elements) override
    {
        return m_hooks.around("setArray", key, [&] { return m_next.setArray(key, elements); });
    }
    [[nodiscard]] bool changeArray(const QString &key, const ArrayChange &change) override
    {
        return m_hooks.around("changeArray", key, [&] { return m_next.changeArray(key, change); });
    }

private:
    UserDefaults &m_next;
    const SeamHooks &m_hooks;
};

/// The domains of another provider, hooked.
class HookedUserDefaultsProvider : public UserDefaultsProvider
{
public:
    HookedUserDefaultsProvider(UserDefaultsProvider &next, const SeamHooks &hooks)
        : m_next(next), m_hooks(hooks), m_standard(next.standard(), hooks)
    {
    }

    [[nodiscard]] UserDefaults &standard() override { return m_standard; }
    [[nodiscard]] UserDefaults *suite(const QString &name) override
    {
        UserDefaults *suite = m_next.suite(name);
        if (!suite) {
            return nullptr;
        }
        auto &hooked = m_suites[name];
        if (!hooked) {
            hooked = std::make_unique<HookedUserDefaults>(*suite, m_hooks);
        }
        return hooked.get();
    }

private:
    UserDefaultsProvider &m_next;
    const SeamHooks &m_hooks;
    HookedUserDefaults m_standard;
    std::map<QString, std::unique_ptr<HookedUserDefaults>> m_suites;
};

} // namespace quillhaven::testing
