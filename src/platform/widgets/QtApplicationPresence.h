// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/ApplicationPresence.h"

#include <QList>
#include <QPointer>
#include <QWindow>

#include <functional>

namespace quillhaven {

/// The main window of this Qt application, and the dialogs that belong to it. Other windows are not touched. Until
/// there is a main window, nothing is visible and nothing happens.
class QtApplicationPresence : public ApplicationPresence
{
public:
    /// The window may be deleted at any time.
    void setMainWindow(QWindow *window) { m_mainWindow = window; }
    /// Makes a main window when one is to be shown and there is none yet.
    void setBuilder(std::function<QWindow *()> build) { m_build = std::move(build); }

    [[nodiscard]] ActivationPolicy activationPolicy() const override { return m_policy; }
    void setActivationPolicy(ActivationPolicy policy) override { m_policy = policy; }
    void activate() override;
    void hide() override;
    void minimize() override;
    bool makeKeyAndOrderFront(const QString &title) override;
    [[nodiscard]] bool hasVisibleWindows() const override;
    void terminate() override;
    /// Whether the user works in the main window or in one of its dialogs.
    [[nodiscard]] bool isInFront() const;

private:
    /// The dialogs of the main window that are on the screen, and theirs.
    [[nodiscard]] QList<QWindow *> visibleDialogs() const;
    /// The same and the main window, if it is on the screen.
    [[nodiscard]] QList<QWindow *> windowsOnScreen() const;
    void showDialogsAgain();
    /// False if there is no main window and none can be built.
    bool buildMainWindow();

    std::function<QWindow *()> m_build;
    QPointer<QWindow> m_mainWindow;
    // Only kept: a window is in the task list exactly while it is on the screen, so hiding it is all that a policy
    // needs.
    ActivationPolicy m_policy = ActivationPolicy::Regular;
    // The dialogs that `hide` took from the screen; they come back with the main window.
    QList<QPointer<QWindow>> m_hiddenDialogs;
};

} // namespace quillhaven
