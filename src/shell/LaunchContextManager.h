// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QStringList>

#include <array>

namespace quillhaven {

class ApplicationPresence;

/// How the process was started.
enum class LaunchContext { userActivation, loginItem, systemRestart, unknown };

/// All values, in order.
inline constexpr std::array allLaunchContexts{LaunchContext::userActivation, LaunchContext::loginItem,
                                              LaunchContext::systemRestart, LaunchContext::unknown};

/// The machine-readable form of a context, such as "loginItem".
[[nodiscard]] QString description(LaunchContext context);

/// Distinguishes a start by the user from one at login, and decides accordingly whether the window is shown.
class LaunchContextManager : public QObject
{
    Q_OBJECT

public:
    /// Whether the desktop has started the program at login.
    [[nodiscard]] static bool hasLoginItemArguments(const QStringList &arguments);

    /// `arguments` are those of the process, starting with its name. The reference must outlive this object.
    LaunchContextManager(const QStringList &arguments, ApplicationPresence &presence, QObject *parent = nullptr);

    /// Defined in the program only.
    static LaunchContextManager &shared();

    [[nodiscard]] LaunchContext currentContext() const { return m_currentContext; }
    [[nodiscard]] bool shouldStartInBackground() const { return m_shouldStartInBackground; }
    [[nodiscard]] bool shouldShowMainWindow() const { return m_shouldShowMainWindow; }
    void setShouldShowMainWindow(bool value);

    /// Marks the window as wanted and brings the application to the foreground.
    void showMainWindow();
    /// Marks the window as unwanted and hides the application.
    void hideMainWindow();
    /// Sets the context and decides again.
    void updateContext(LaunchContext context);
    /// The context in readable form, such as "Login Item".
    [[nodiscard]] QString contextDescription() const;

Q_SIGNALS:
    void currentContextChanged();
    void shouldStartInBackgroundChanged();
    void shouldShowMainWindowChanged();

private:
    void configureLaunchBehavior();

    ApplicationPresence &m_presence;
    LaunchContext m_currentContext = LaunchContext::unknown;
    bool m_shouldStartInBackground = false;
    bool m_shouldShowMainWindow = true;
};

} // namespace quillhaven
