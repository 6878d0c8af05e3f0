// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/CredentialStore.h"
#include "platform/UserDefaults.h"
#include "support/FileManagerDecorator.h"

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string_view>

namespace quillhaven::test {

/// Hooks for every call of a platform service that changes something. `before` can throw instead of the call.
struct SeamHooks
{
    using Hook = std::function<void(const char *call, const QString &path)>;

    Hook before;
    Hook after;
    std::function<std::shared_ptr<void>()> scope; ///< its result exists during the call

    template <typename Call>
    auto around(const char *name, const QString &path, Call call) const
    {
        const std::shared_ptr<void> kept = scope ? scope() : nullptr;
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

/// A file manager that reports every change, and the calls that read whole files and folders. Writing a whole file is
/// reported as "writeFile", before the file is opened and after it is closed.
class HookedFileManager : public FileManagerDecorator
{
public:
    HookedFileManager(FileManager &next, const SeamHooks &hooks) : FileManagerDecorator(next), m_hooks(hooks) {}

protected:
    void around(const FileCall &call, const std::function<void()> &next) const override
    {
        static const std::set<std::string_view> reported{
            "createDirectory",    "moveItem",   "replaceItemAt", "renameItem",      "copyItem", "regularFilesBelow",
            "openForOverwriting", "removeItem", "writeThrough",  "synchronizeFile", "trashItem"};
        const std::string_view name = call.name;
        if (reported.contains(name)) {
            m_hooks.around(call.name, call.path, next);
        } else if (name == "openForReading") {
            m_hooks.around("readFile", call.path, next);
        } else if ((name == "openForWriting" || name == "createForWriting") && m_hooks.before) {
            m_hooks.before("writeFile", call.path);
            next();
        } else if (name == "close" && m_hooks.after) {
            next();
            m_hooks.after("writeFile", call.path);
        } else {
            next();
        }
    }

private:
    const SeamHooks &m_hooks;
};

/// A credential store that reports every change.
class HookedCredentialStore : public CredentialStore
{
public:
    HookedCredentialStore(CredentialStore &next, const SeamHooks &hooks) : m_next(next), m_hooks(hooks) {}

    [[nodiscard]] CredentialStatus prepareForWriting() override { return m_next.prepareForWriting(); }
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
    [[nodiscard]] Place place() const override { return m_next.place(); }

private:
    CredentialStore &m_next;
    const SeamHooks &m_hooks;
};

/// A settings domain that reports every change.
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

/// The hooked domains of another provider.
class HookedUserDefaultsProvider : public UserDefaultsProvider
{
public:
    HookedUserDefaultsProvider(UserDefaultsProvider &next, const SeamHooks &hooks)
        : m_next(next), m_hooks(hooks), m_standard(next.standard(), hooks)
    {
    }

    [[nodiscard]] UserDefaults &standard() override { return m_standard; }
    [[nodiscard]] std::optional<QString> problem() const override { return m_next.problem(); }
    [[nodiscard]] bool reopen() override { return m_next.reopen(); }
    [[nodiscard]] UserDefaults *suite(const QString &name) override
    {
        const std::shared_ptr<void> kept = m_hooks.scope ? m_hooks.scope() : nullptr;
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

} // namespace quillhaven::test
