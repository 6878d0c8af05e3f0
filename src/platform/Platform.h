// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/BundleInformation.h"
#include "platform/UserDirectories.h"

QT_BEGIN_NAMESPACE
class QThreadPool;
QT_END_NAMESPACE

namespace quillhaven {

class BiometricAuthenticator;
class Clock;
class CloudStorage;
class CredentialStore;
class CredentialStoreState;
class DesktopNotifications;
class DisplayPreferences;
class FileManager;
class FilePanels;
class FileViewer;
class LoginItem;
class MachineInformation;
class RandomSource;
class UrlOpener;
class UrlSession;
class UserDefaultsProvider;
class UserInput;
class VolumeInspector;
class WatchedSources;
struct NotificationCenters;

/// The services of the desktop, by reference: the owner keeps them alive for as long as the program runs.
struct Platform
{
    FileManager &fileManager;
    UserDirectories directories;
    UserDefaultsProvider &defaults;
    CredentialStore &credentials;
    QThreadPool &credentialQueue; ///< one thread: the credential store is asked one thing at a time
    CredentialStoreState &credentialStoreState;
    BiometricAuthenticator &biometrics;
    FilePanels &panels;
    CloudStorage &cloud;
    Clock &clock;
    RandomSource &random;
    NotificationCenters &notifications;
    UserInput &input;
    UrlOpener &opener;
    LoginItem &loginItem;
    WatchedSources &watched;
    BundleInformation bundle;
    UrlSession &urlSession;
    MachineInformation &machine;
    DisplayPreferences &display;
    FileViewer &fileViewer;
    DesktopNotifications &desktopNotifications;
    VolumeInspector &volumes;
};

} // namespace quillhaven
