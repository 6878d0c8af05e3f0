// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/NotificationCenter.h"
#include "platform/Platform.h"
#include "platform/WatchedSources.h"
#include "platform/linux/OpenSslRandomSource.h"
#include "platform/linux/credentials/SystemCredentialStore.h"
#include "platform/linux/credentials/SystemCredentialStoreState.h"
#include "platform/linux/desktop/NotificationService.h"
#include "platform/linux/files/CloudFolders.h"
#include "platform/linux/files/LinuxFileManager.h"
#include "platform/linux/login/AutostartLoginItem.h"
#include "platform/linux/machine/LinuxMachine.h"
#include "platform/linux/network/HttpsSession.h"
#include "platform/linux/session/DesktopDisplayPreferences.h"
#include "platform/linux/session/EventLoopClock.h"
#include "platform/linux/session/FprintAuthenticator.h"
#include "platform/linux/session/SessionInput.h"
#include "platform/linux/session/SessionWatch.h"
#include "platform/linux/settings/SqliteUserDefaultsProvider.h"
#include "platform/linux/volumes/LinuxVolumes.h"

#include <QThreadPool>

namespace quillhaven {

/// The real services of a Linux desktop, but for those that need a toolkit, which come from the caller.
class LinuxPlatform
{
public:
    explicit LinuxPlatform(const UserDirectories &directories);
    /// Ends what the credential store was still asked.
    ~LinuxPlatform();
    LinuxPlatform(const LinuxPlatform &) = delete;
    LinuxPlatform &operator=(const LinuxPlatform &) = delete;

    /// References to the services; this object and those of the toolkit must outlive them.
    [[nodiscard]] Platform platform(FilePanels &panels, UserInput &input, UrlOpener &opener, FileViewer &fileViewer,
                                    const BundleInformation &bundle);
    [[nodiscard]] Clock &clock() { return m_clock; }
    [[nodiscard]] NotificationCenters &notifications() { return m_notifications; }
    [[nodiscard]] GlobalInput &globalInput() { return m_globalInput; }
    [[nodiscard]] WatchedSources &watched() { return m_watched; }

    /// Lets the desktop open links of this scheme with the program; see registerUrlScheme.
    [[nodiscard]] QCoro::Task<> openLinks(QString scheme);

private:
    UserDirectories m_directories;
    OpenSslRandomSource m_random;
    LinuxFileManager m_fileManager;
    SqliteUserDefaultsProvider m_defaults;
    EventLoopClock m_clock;
    SystemCredentialStore m_credentials;
    QThreadPool m_credentialQueue;
    SystemCredentialStoreState m_credentialStoreState;
    FprintAuthenticator m_biometrics;
    CloudFolders m_cloud;
    NotificationCenters m_notifications;
    WatchedSources m_watched;
    SessionInput m_globalInput;
    AutostartLoginItem m_loginItem;
    SessionWatch m_session;
    HttpsSession m_urlSession;
    LinuxMachine m_machine;
    DesktopDisplayPreferences m_display;
    NotificationService m_desktopNotifications;
    LinuxVolumes m_volumes;
};

} // namespace quillhaven
