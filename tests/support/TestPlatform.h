#pragma once

#include "platform/Platform.h"
#include "platform/linux/CloudFolders.h"
#include "platform/linux/LinuxFileManager.h"
#include "platform/linux/OpenSslRandomSource.h"
#include "platform/linux/SqliteUserDefaults.h"
#include "support/FakeBiometricAuthenticator.h"
#include "support/FakeFilePanels.h"
#include "support/InMemoryCredentialStore.h"
#include "support/ManualClock.h"
#include "support/TemporaryHome.h"

#include <QThreadPool>

namespace quillhaven::testing {

/// A platform over a temporary home: real files and real settings databases; credentials, panels, finger and time are
/// the test's to decide.
class TestPlatform
{
public:
    TestPlatform();
    ~TestPlatform();

    /// The seam over these services. `fileManager` may be replaced by a decorator.
    [[nodiscard]] Platform platform();
    /// The same with another file manager, such as one that fails.
    [[nodiscard]] Platform platform(FileManager &fileManager);

    TemporaryHome home;
    LinuxFileManager fileManager;
    SqliteUserDefaultsProvider defaults;
    InMemoryCredentialStore credentials;
    QThreadPool credentialQueue;
    FakeBiometricAuthenticator biometrics;
    FakeFilePanels panels;
    CloudFolders cloud;
    ManualClock clock;
    OpenSslRandomSource random;
};

} // namespace quillhaven::testing
