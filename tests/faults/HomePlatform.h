// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "faults/SystemCallFaults.h"
#include "platform/linux/credentials/EmbeddedCredentialStore.h"
#include "support/TestPlatform.h"

namespace quillhaven::testing {

/// A FolderPlatform with the embedded credential store, within which system calls count, and a user who allows
/// everything.
class HomePlatform
{
public:
    explicit HomePlatform(const QString &home)
        : m_services(directoriesBelow(home)),
          m_files(m_services.fileManager),
          m_credentials(m_services.directories.configuration)
    {
        m_services.panels.answer = [home](const OpenPanelRequest &request) -> std::optional<QString> {
            return request.preselected.isEmpty() ? home + QStringLiteral("/Recovered")
                                                 : request.directory + QLatin1Char('/') + request.preselected;
        };
    }
    ~HomePlatform() { m_services.credentialQueue.waitForDone(); }
    HomePlatform(const HomePlatform &) = delete;
    HomePlatform &operator=(const HomePlatform &) = delete;

    [[nodiscard]] Platform platform() { return m_services.platform(m_files, m_services.defaults, m_credentials); }

private:
    FolderPlatform m_services;
    FaultyFileManager m_files;
    EmbeddedCredentialStore m_credentials;
};

} // namespace quillhaven::testing
