// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/FolderPlatform.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace quillhaven::test {

FolderPlatform::FolderPlatform(const UserDirectories &userDirectories)
    : directories(userDirectories),
      defaults(directories.configuration),
      cloud(directories),
      loginItem({.user = QFileInfo(directories.configuration).path() + QStringLiteral("/autostart"),
                 .system = {},
                 .fileName = QStringLiteral("com.tarnwick.quillhaven.desktop"),
                 .executable = QCoreApplication::applicationFilePath(),
                 .desktops = {}},
                watched)
{
    credentialQueue.setMaxThreadCount(1);
}

FolderPlatform::~FolderPlatform()
{
    credentialQueue.waitForDone();
}

Platform FolderPlatform::platform()
{
    return platform(fileManager);
}

Platform FolderPlatform::platform(FileManager &otherFiles)
{
    return platform(otherFiles, defaults, credentials);
}

Platform FolderPlatform::platform(FileManager &otherFiles, UserDefaultsProvider &otherDefaults,
                                  CredentialStore &otherCredentials)
{
    return {.fileManager = otherFiles,
            .directories = directories,
            .defaults = otherDefaults,
            .credentials = otherCredentials,
            .credentialQueue = credentialQueue,
            .credentialStoreState = credentialStoreState,
            .biometrics = biometrics,
            .panels = panels,
            .cloud = cloud,
            .clock = clock,
            .random = random,
            .notifications = notifications,
            .input = input,
            .opener = opener,
            .loginItem = loginItem,
            .watched = watched,
            .bundle = bundle,
            .urlSession = urlSession,
            .machine = machine,
            .display = display,
            .fileViewer = fileViewer,
            .desktopNotifications = desktopNotifications,
            .volumes = volumes};
}

} // namespace quillhaven::test
