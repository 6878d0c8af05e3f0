// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/linux/credentials/SystemCredentialStore.h"
#include "support/EngineHarness.h"
#include "support/HookedSeam.h"

namespace quillhaven::testing {

/// A FolderPlatform with the real credential store of the session, in which every change passes the hooks.
class OperationPlatform
{
public:
    OperationPlatform(const UserDirectories &directories, const SeamHooks &hooks)
        : m_services(directories),
          realCredentials(directories.configuration),
          m_files(m_services.fileManager, hooks),
          m_defaults(m_services.defaults, hooks),
          m_credentials(realCredentials, hooks)
    {
    }
    ~OperationPlatform() { m_services.credentialQueue.waitForDone(); }
    OperationPlatform(const OperationPlatform &) = delete;
    OperationPlatform &operator=(const OperationPlatform &) = delete;

    [[nodiscard]] Platform platform() { return m_services.platform(m_files, m_defaults, m_credentials); }

private:
    FolderPlatform m_services;

public:
    SystemCredentialStore realCredentials;

private:
    HookedFileManager m_files;
    HookedUserDefaultsProvider m_defaults;
    HookedCredentialStore m_credentials;
};

} // namespace quillhaven::testing
