// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/ApplicationPresence.h"

namespace quillhaven::test {

/// Records the calls to the desktop.
class RecordingPresence : public ApplicationPresence
{
public:
    [[nodiscard]] ActivationPolicy activationPolicy() const override { return policy; }
    void setActivationPolicy(ActivationPolicy newPolicy) override { policy = newPolicy; }
    void activate() override { ++activations; }
    void hide() override { isHidden = true; }
    void minimize() override { isMinimized = true; }
    bool makeKeyAndOrderFront(const QString &title) override
    {
        if (title != windowTitle) {
            return false;
        }
        isHidden = false;
        ++ordersToFront;
        return true;
    }
    [[nodiscard]] bool hasVisibleWindows() const override { return !isHidden; }
    void terminate() override { hasTerminated = true; }

    ActivationPolicy policy = ActivationPolicy::Regular;
    QString windowTitle = QStringLiteral("Quillhaven");
    bool isHidden = false;
    bool isMinimized = false;
    bool hasTerminated = false;
    int activations = 0;
    int ordersToFront = 0;
};

} // namespace quillhaven::test
