// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/Platform.h"

#include <QCoroTask>
#include <QStringList>

#include <functional>

namespace quillhaven {

/// Registers the extension for the file managers, whose menus then have the program's entries, at each launch. Every
/// failure is only logged. Main thread only; must live for as long as the main loop runs.
class FinderExtension
{
public:
    /// A program with the arguments that come before all others.
    struct Tool
    {
        QString program;
        QStringList arguments{};
    };
    struct Places
    {
        QString bundle; ///< the folder with `extensionInBundle`
        Tool pluginkit; ///< lists, removes, adds and enables extensions
        Tool restart;   ///< makes running file managers load the extension, and lists those that cannot yet
    };
    /// A question with two answers.
    struct Question
    {
        QString title;
        QString message;
        QString confirmTitle;
        QString cancelTitle;
    };
    /// Asks the user, and calls the action when the answer is to confirm.
    using Ask = std::function<void(Question, std::function<void()>)>;

    FinderExtension(const Platform &platform, Places places, Ask ask);

    /// The places of the installation, or the build, to which a program in this folder belongs.
    [[nodiscard]] static Places placesBeside(const QString &programFolder);

    /// Starts a job that registers the extension, if it is in the bundle.
    void activateFinderExtension();

    /// Registers the extension at this path, unless it is registered and enabled already.
    [[nodiscard]] QCoro::Task<> activateExtensionAsync(QString path);
    /// Whether the extension is registered and enabled; false when that cannot be found out.
    [[nodiscard]] QCoro::Task<bool> checkExtensionStatus();
    /// Logs how the registration ended. An enabled extension is loaded, and for a disabled one the user is notified.
    [[nodiscard]] QCoro::Task<> verifyExtensionStatusAsync();
    /// Makes the running file managers load the extension.
    [[nodiscard]] QCoro::Task<> restartFinder();
    /// Shows the user where to enable the extension, once in the life of the settings.
    void showExtensionActivationNotification();

    static inline const QString extensionInBundle = QStringLiteral("/Contents/PlugIns/FinderSyncExtension.appex");

private:
    void describe(const QString &listing) const;
    void addToDescription(const QString &managers) const;

    Platform m_platform;
    Places m_places;
    Ask m_ask;
};

} // namespace quillhaven
