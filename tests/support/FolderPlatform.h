// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/NotificationCenter.h"
#include "platform/Platform.h"
#include "platform/WatchedSources.h"
#include "platform/linux/OpenSslRandomSource.h"
#include "platform/linux/files/CloudFolders.h"
#include "platform/linux/files/LinuxFileManager.h"
#include "platform/linux/login/AutostartLoginItem.h"
#include "platform/linux/settings/SqliteUserDefaultsProvider.h"
#include "support/FakeBiometricAuthenticator.h"
#include "support/FakeCredentialStoreState.h"
#include "support/FakeDesktopNotifications.h"
#include "support/FakeDisplayPreferences.h"
#include "support/FakeFilePanels.h"
#include "support/FakeFileViewer.h"
#include "support/FakeMachine.h"
#include "support/FakeUrlOpener.h"
#include "support/FakeUrlSession.h"
#include "support/FakeUserInput.h"
#include "support/FakeVolumes.h"
#include "support/InMemoryCredentialStore.h"
#include "support/ManualClock.h"

#include <QThreadPool>

namespace quillhaven::test {

/// A platform for existing user folders: real files and real settings databases, while the test controls credentials,
/// panels, the fingerprint reader and the time.
class FolderPlatform
{
public:
    explicit FolderPlatform(const UserDirectories &userDirectories);
    ~FolderPlatform();
    FolderPlatform(const FolderPlatform &) = delete;
    FolderPlatform &operator=(const FolderPlatform &) = delete;

    /// The platform with these services.
    [[nodiscard]] Platform platform();
    /// The same with another file manager, such as one that fails.
    [[nodiscard]] Platform platform(FileManager &otherFiles);
    /// The same with other stores too.
    [[nodiscard]] Platform platform(FileManager &otherFiles, UserDefaultsProvider &otherDefaults,
                                    CredentialStore &otherCredentials);

    UserDirectories directories;
    LinuxFileManager fileManager;
    SqliteUserDefaultsProvider defaults;
    InMemoryCredentialStore credentials;
    QThreadPool credentialQueue;
    FakeCredentialStoreState credentialStoreState;
    FakeBiometricAuthenticator biometrics;
    FakeFilePanels panels;
    CloudFolders cloud;
    ManualClock clock;
    OpenSslRandomSource random;
    NotificationCenters notifications;
    FakeUserInput input;
    FakeUrlOpener opener;
    WatchedSources watched;
    AutostartLoginItem loginItem;
    BundleInformation bundle{.identifier = QStringLiteral("com.example.program"),
                             .values = {{BundleInformation::shortVersionKey, QStringLiteral("1.2.0")},
                                        {BundleInformation::buildKey, QStringLiteral("34")}}};
    FakeUrlSession urlSession;
    FakeMachine machine;
    FakeDisplayPreferences display;
    FakeFileViewer fileViewer;
    FakeDesktopNotifications desktopNotifications;
    FakeVolumes volumes;
};

} // namespace quillhaven::test
