// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "presentation/PopoverWindow.h"
#include "presentation/dashboard/DashboardWindowFixture.h"
#include "presentation/popover/MenuBarHarness.h"

namespace quillhaven::test {

/// The windows of the program with three items in a new home, for scenes to set up.
class Stage : public DashboardWindow
{
public:
    using DashboardWindow::press;
    using DashboardWindow::services;
    using DashboardWindow::showsOnboarding;
    using DashboardWindow::started;
    using DashboardWindow::tabToList;

    /// Stores another list. Only before the first other call.
    void store(const QList<ProtectedItem> &items) { storeCatalogue(services, items); }
    /// The models of the sheets in the main window, which is shown first.
    SheetModels &sheets()
    {
        shown();
        return DashboardWindow::sheets();
    }
    /// Shows the popover in place of the main window.
    void openPopover()
    {
        bringForward = [] {};
        m_menuBar.emplace(started(), services);
        m_popover = makePopoverWindow(engine(), m_menuBar->model, DashboardWindow::sheets());
        m_popover->show();
    }
    /// Saves a picture for each of the sizes; of the popover, one picture.
    void draw(const QString &name, const QList<QSize> &sizes);

protected:
    Stage() { storeThree(); }
    void TearDown() override
    {
        m_popover.reset();
        DashboardWindow::TearDown();
        m_menuBar.reset();
    }

private:
    static void save(QQuickWindow &window, const QString &name);

    std::optional<MenuBarHarness> m_menuBar;
    std::unique_ptr<QQuickWindow> m_popover;
};

/// A state of the program: its name, and what leads to it.
struct Scene
{
    const char *name;
    void (*setUp)(Stage &);
};

[[nodiscard]] const QList<Scene> &allScenes();

} // namespace quillhaven::test
