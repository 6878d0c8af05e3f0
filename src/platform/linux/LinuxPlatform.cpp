// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/LinuxPlatform.h"

#include "async/OffMainThread.h"
#include "platform/linux/links/UrlSchemeHandler.h"

#include <QCoreApplication>

namespace quillhaven {

LinuxPlatform::LinuxPlatform(const UserDirectories &directories)
    : m_directories(directories),
      m_defaults(directories.configuration),
      m_credentials(directories.configuration, m_random, &m_clock),
      m_credentialStoreState(m_credentials, m_credentialQueue, m_clock),
      m_cloud(m_directories),
      m_globalInput(m_clock, m_watched),
      m_loginItem(autostartFolders(SqliteUserDefaultsProvider::standardDomain, QCoreApplication::applicationFilePath()),
                  m_watched),
      m_session(m_notifications, m_watched, m_clock),
      m_urlSession(m_clock),
      m_volumes(m_directories)
{
    m_credentialQueue.setMaxThreadCount(1);
}

LinuxPlatform::~LinuxPlatform()
{
    m_credentials.close();
    m_credentialQueue.waitForDone();
}

Platform LinuxPlatform::platform(FilePanels &panels, UserInput &input, UrlOpener &opener, FileViewer &fileViewer,
                                 const BundleInformation &bundle)
{
    return {.fileManager = m_fileManager,
            .directories = m_directories,
            .defaults = m_defaults,
            .credentials = m_credentials,
            .credentialQueue = m_credentialQueue,
            .credentialStoreState = m_credentialStoreState,
            .biometrics = m_biometrics,
            .panels = panels,
            .cloud = m_cloud,
            .clock = m_clock,
            .random = m_random,
            .notifications = m_notifications,
            .input = input,
            .opener = opener,
            .loginItem = m_loginItem,
            .watched = m_watched,
            .bundle = bundle,
            .urlSession = m_urlSession,
            .machine = m_machine,
            .display = m_display,
            .fileViewer = fileViewer,
            .desktopNotifications = m_desktopNotifications,
            .volumes = m_volumes};
}

QCoro::Task<> LinuxPlatform::openLinks(QString scheme)
{
    const EntryFolders folders =
        applicationFolders(SqliteUserDefaultsProvider::standardDomain, QCoreApplication::applicationFilePath());
    const auto look = [folders, scheme] { return registerUrlScheme(folders, scheme); };
    const WatchedSources::State state = co_await offMainThread(look);
    m_watched.setState(WatchedSources::Source::Links, state);
}

} // namespace quillhaven
