#pragma once

#include "platform/linux/CloudFolders.h"
#include "platform/linux/SystemCredentialStore.h"
#include "support/EngineHarness.h"
#include "support/HookedSeam.h"

namespace quillhaven::testing {

/// A platform over a home folder that outlives the process: real files, real settings databases, the real credential
/// store of the session. Every change passes the hooks.
class OperationPlatform
{
public:
    OperationPlatform(const UserDirectories &userDirectories, const SeamHooks &hooks)
        : directories(userDirectories),
          realDefaults(userDirectories.configuration),
          realCredentials(userDirectories.configuration),
          files(realFiles, hooks),
          defaults(realDefaults, hooks),
          credentials(realCredentials, hooks)
    {
        queue.setMaxThreadCount(1);
    }
    ~OperationPlatform() { queue.waitForDone(); }

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
    LinuxFileManager realFiles;
    SqliteUserDefaultsProvider realDefaults;
    SystemCredentialStore realCredentials;
    HookedFileManager files;
    HookedUserDefaultsProvider defaults;
    HookedCredentialStore credentials;
    QThreadPool queue;
    FakeBiometricAuthenticator biometrics;
    FakeFilePanels panels;
    CloudFolders cloud{directories};
    ManualClock clock;
    OpenSslRandomSource random;
};

} // namespace quillhaven::testing
