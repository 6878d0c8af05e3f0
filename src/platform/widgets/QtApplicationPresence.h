// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/ApplicationPresence.h"

#include <QList>
#include <QPointer>
#include <QWindow>

namespace quillhaven {

/// The windows of this Qt application.
class QtApplicationPresence : public ApplicationPresence
{
public:
    [[nodiscard]] ActivationPolicy activationPolicy() const override { return m_policy; }
    void setActivationPolicy(ActivationPolicy policy) override { m_policy = policy; }
    void activate() override;
    void hide() override;
    bool makeKeyAndOrderFront(const QString &title) override;
    [[nodiscard]] bool hasVisibleWindows() const override;
    void terminate() override;

private:
    void showDialogsAgain();

    // A window of ours is in the task list exactly while it is on the screen, so that hiding is all that the policy
    // needs; it is kept for whoever asks.
    ActivationPolicy m_policy = ActivationPolicy::Regular;
    // The dialogs that `hide` took from the screen; they come back with the window that is shown next.
    QList<QPointer<QWindow>> m_hiddenDialogs;
};

} // namespace quillhaven
