// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "faults/Operations.h"
#include "faults/SystemCallFaults.h"
#include "platform/linux/credentials/EmbeddedCredentialStore.h"
#include "platform/linux/credentials/SystemCredentialStore.h"
#include "support/HookedSeam.h"

namespace quillhaven::test {

/// A FolderPlatform for an existing home, with a real credential store and a user who allows everything. Every change
/// passes through the hooks. System calls are counted while the file manager works and while a store changes.
class HomePlatform
{
public:
    enum class Credentials { OfTheSession, Embedded };

    explicit HomePlatform(const QString &home, Credentials credentials = Credentials::Embedded,
                          const SeamHooks &hooks = noHooks())
        : m_services(directoriesBelow(home)),
          m_realCredentials(makeCredentials(credentials, m_services)),
          m_countedFiles(m_services.fileManager),
          m_countedDefaults(m_services.defaults, m_counting),
          m_countedCredentials(*m_realCredentials, m_counting),
          m_files(m_countedFiles, hooks),
          m_defaults(m_countedDefaults, hooks),
          m_credentials(m_countedCredentials, hooks)
    {
        m_services.panels.answer = [home](const OpenPanelRequest &) { return home + QStringLiteral("/Recovered"); };
    }
    ~HomePlatform() { m_services.credentialQueue.waitForDone(); }
    HomePlatform(const HomePlatform &) = delete;
    HomePlatform &operator=(const HomePlatform &) = delete;

    [[nodiscard]] const UserDirectories &directories() const { return m_services.directories; }
    [[nodiscard]] Platform platform() { return m_services.platform(m_files, m_defaults, m_credentials); }
    [[nodiscard]] CredentialStore &realCredentials() { return *m_realCredentials; }

private:
    static const SeamHooks &noHooks()
    {
        static const SeamHooks none;
        return none;
    }
    static std::unique_ptr<CredentialStore> makeCredentials(Credentials credentials, FolderPlatform &services)
    {
        if (credentials == Credentials::Embedded) {
            return std::make_unique<EmbeddedCredentialStore>(services.directories.configuration, services.random);
        }
        return std::make_unique<SystemCredentialStore>(services.directories.configuration, services.random);
    }

    FolderPlatform m_services;
    std::unique_ptr<CredentialStore> m_realCredentials;
    const SeamHooks m_counting{.before = {}, .after = {}, .scope = system_call_faults::scope};
    FaultyFileManager m_countedFiles;
    HookedUserDefaultsProvider m_countedDefaults;
    HookedCredentialStore m_countedCredentials;
    HookedFileManager m_files;
    HookedUserDefaultsProvider m_defaults;
    HookedCredentialStore m_credentials;
};

} // namespace quillhaven::test
