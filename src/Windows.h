// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "presentation/MainWindow.h"
#include "presentation/SheetModels.h"
#include "presentation/dashboard/CredentialStoreNotice.h"
#include "presentation/dashboard/DashboardViewModel.h"
#include "presentation/dialogs/FingerprintNote.h"
#include "presentation/preferences/PreferencesModel.h"

#include <QObject>

#include <functional>
#include <memory>

QT_BEGIN_NAMESPACE
class QQmlEngine;
class QQuickWindow;
QT_END_NAMESPACE

namespace quillhaven {

class DisplayPreferences;
class MenuBarViewModel;

/// The models of what the windows show, and the windows. A window is built when it is first needed, so that a program
/// that only lives in the status bar costs no scene and no QML engine.
class Windows : public QObject
{
    Q_OBJECT

public:
    struct Actions
    {
        std::function<void()> bringMainWindowForward; ///< for whatever reason it is hidden
        std::function<void()> restart;                ///< starts the program again and ends this process
        WatchedSourcesModel::Repairs repairs;         ///< of what connects the program with the desktop
    };

    /// The references must outlive this object.
    Windows(const Platform &platform, MenuBarViewModel &menuBar, const Actions &actions);
    ~Windows() override;

    [[nodiscard]] DashboardViewModel &dashboard() { return m_dashboard; }
    /// Built by the first call.
    [[nodiscard]] MainWindow &mainWindow();
    /// Builds another window for the popover, which must not outlive this object.
    [[nodiscard]] std::unique_ptr<QQuickWindow> makePopoverWindow();

Q_SIGNALS:
    // Those of the main window.
    void contentAppeared();
    void closeRequested();
    void quitRequested();

private:
    [[nodiscard]] PreferencesContext preferencesContext(const Platform &platform, const Actions &actions);
    [[nodiscard]] Sheets sheets(const Platform &platform);
    [[nodiscard]] QQmlEngine &engine();

    const DisplayPreferences &m_display;
    MenuBarViewModel &m_menuBar;
    PasswordInputDialogModel m_passwordInput;
    DashboardViewModel m_dashboard;
    CredentialStoreNotice m_storeNotice;
    FingerprintNote m_fingerprintNote;
    PreferencesModel m_preferences;
    SheetModels m_sheetModels;
    std::unique_ptr<QQmlEngine> m_engine;
    std::unique_ptr<MainWindow> m_mainWindow;
};

} // namespace quillhaven
