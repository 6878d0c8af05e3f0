#pragma once

#include "faults/Operations.h"
#include "faults/SystemCallFaults.h"
#include "platform/linux/EmbeddedCredentialStore.h"
#include "support/EngineHarness.h"

#include <QThreadPool>

namespace quillhaven::testing {

/// A platform over a home folder that outlives the process, with the embedded credential store and a user who allows
/// everything.
class HomePlatform
{
public:
    explicit HomePlatform(const QString &home)
        : m_directories{.home = home,
                        .applicationSupport = home + QStringLiteral("/.local/share"),
                        .documents = home + QStringLiteral("/Documents"),
                        .temporary = home + QStringLiteral("/tmp"),
                        .configuration = home + QStringLiteral("/.config/quillhaven")},
          m_files(m_realFiles),
          m_defaults(m_directories.configuration),
          m_credentials(m_directories.configuration),
          m_cloud(m_directories)
    {
        m_queue.setMaxThreadCount(1);
        m_panels.answer = [home](const OpenPanelRequest &request) -> std::optional<QString> {
            return request.preselected.isEmpty() ? home + QStringLiteral("/Recovered")
                                                 : request.directory + QLatin1Char('/') + request.preselected;
        };
    }
    ~HomePlatform() { m_queue.waitForDone(); }
    HomePlatform(const HomePlatform &) = delete;
    HomePlatform &operator=(const HomePlatform &) = delete;

    [[nodiscard]] Platform platform()
    {
        return {.fileManager = m_files,
                .directories = m_directories,
                .defaults = m_defaults,
                .credentials = m_credentials,
                .credentialQueue = m_queue,
                .biometrics = m_biometrics,
                .panels = m_panels,
                .cloud = m_cloud,
                .clock = m_clock,
                .random = m_random};
    }

private:
    UserDirectories m_directories;
    LinuxFileManager m_realFiles;
    FaultyFileManager m_files;
    SqliteUserDefaultsProvider m_defaults;
    EmbeddedCredentialStore m_credentials;
    QThreadPool m_queue;
    FakeBiometricAuthenticator m_biometrics;
    FakeFilePanels m_panels;
    CloudFolders m_cloud;
    ManualClock m_clock;
    OpenSslRandomSource m_random;
};

} // namespace quillhaven::testing
