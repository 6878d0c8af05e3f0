#pragma once

#include "platform/linux/CloudFolders.h"
#include "platform/linux/LinuxFileManager.h"
#include "platform/linux/OpenSslRandomSource.h"
#include "platform/linux/SqliteUserDefaults.h"
#include "support/EngineHarness.h"

#include <QDir>
#include <QThreadPool>

namespace quillhaven::testing {

/// A platform below a given folder, kept afterwards.
class BenchPlatform
{
public:
    explicit BenchPlatform(const QString &home)
        : directories{.home = home,
                      .applicationSupport = home + QStringLiteral("/data"),
                      .documents = home + QStringLiteral("/Documents"),
                      .temporary = home + QStringLiteral("/tmp"),
                      .configuration = home + QStringLiteral("/config")},
          defaults(directories.configuration)
    {
        for (const QString &folder : {directories.applicationSupport, directories.documents, directories.temporary}) {
            QDir().mkpath(folder);
        }
        queue.setMaxThreadCount(1);
    }

    [[nodiscard]] Platform platform()
    {
        return {.fileManager = files,
                .directories = directories,
                .defaults = defaults,
                .credentials = credentials,
                .credentialQueue = queue,
                .biometrics = biometrics,
                .panels = panels,
                .cloud = cloud,
                .clock = clock,
                .random = random};
    }

    UserDirectories directories;
    LinuxFileManager files;
    SqliteUserDefaultsProvider defaults;
    InMemoryCredentialStore credentials;
    QThreadPool queue;
    FakeBiometricAuthenticator biometrics;
    FakeFilePanels panels;
    CloudFolders cloud{directories};
    ManualClock clock;
    OpenSslRandomSource random;
};

} // namespace quillhaven::testing
