// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "PanelUser.h"

#include "platform/widgets/QtFilePanels.h"
#include "support/TemporaryHome.h"

#include <optional>

namespace quillhaven::test {

/// A real panel with real folders, driven by key presses and clicks like those of the window system.
class PanelFixture : public ::testing::Test, public PanelUser
{
protected:
    using Opened = RunningTask<std::optional<QString>>;

    [[nodiscard]] OpenPanelRequest request() const
    {
        return {.canChooseFiles = true,
                .canChooseDirectories = true,
                .message = QStringLiteral("Please choose an item"),
                .prompt = QStringLiteral("Choose Item"),
                .directory = home.path(QStringLiteral("work"))};
    }

    /// Opens the panel and waits until it has the keyboard focus.
    [[nodiscard]] Opened open(const OpenPanelRequest &asked)
    {
        Opened opened(panels.open(asked));
        panel = onScreen<OpenPanelDialog>();
        if (!panel) {
            throw std::runtime_error("no panel on the screen");
        }
        EXPECT_TRUE(spinUntil([this] { return panel->isActiveWindow() && QApplication::focusWidget(); }));
        return opened;
    }

    /// The result of the panel; nothing if it is still open.
    [[nodiscard]] static QString chosen(const Opened &opened)
    {
        if (!spinUntil([&] { return opened.isFinished(); })) {
            ADD_FAILURE() << "the panel is still open";
            return {};
        }
        return opened.wait().value_or(QStringLiteral("(declined)"));
    }

    ~PanelFixture() override
    {
        for (QWidget *widget : QApplication::topLevelWidgets()) {
            if (qobject_cast<OpenPanelDialog *>(widget)) {
                widget->close();
            }
        }
        spinOnce();
    }

    TemporaryHome home;
    QtFilePanels panels;
};

} // namespace quillhaven::test
