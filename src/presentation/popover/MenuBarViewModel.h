// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "catalogue/ProtectedItem.h"
#include "platform/StatusBar.h"
#include "presentation/dialogs/ErrorDialogManager.h"
#include "presentation/popover/MenuBarItemsModel.h"

#include <QCoroTask>
#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <chrono>
#include <functional>
#include <list>
#include <memory>
#include <vector>

namespace quillhaven {

class ApplicationPresence;
class Clock;
class LaunchContextManager;
class MasterPasswordManager;
class NotificationCenter;
class QuillhavenManager;
class RunningTimer;

/// What the popover and the menu of the status item act on.
struct MenuBarContext
{
    QuillhavenManager &quillhavenManager;
    MasterPasswordManager &masterPasswordManager;
    LaunchContextManager &launchContext;
    ApplicationPresence &presence;
    Clock &clock;
    NotificationCenter &notifications; ///< the program's own
    std::function<void()> lockAll;     ///< locks every unlocked item
    std::function<void()> terminate;   ///< asks for the end of the program
};

/// The state and the operations of the popover. Main thread only.
class MenuBarViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Created in C++")
    Q_PROPERTY(quillhaven::MenuBarItemsModel *items READ items CONSTANT)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY itemsChanged)
    Q_PROPERTY(QString countText READ countText NOTIFY itemsChanged)
    Q_PROPERTY(QString activeText READ activeText NOTIFY itemsChanged)
    Q_PROPERTY(QString securedText READ securedText NOTIFY itemsChanged)

public:
    /// The references must outlive this object, and it must outlive every job that it has started.
    explicit MenuBarViewModel(MenuBarContext context, QObject *parent = nullptr);
    ~MenuBarViewModel() override;

    [[nodiscard]] MenuBarItemsModel *items() { return &m_items; }
    [[nodiscard]] bool isEmpty() const { return m_items.items().isEmpty(); }
    /// Such as "3 items".
    [[nodiscard]] QString countText() const;
    /// Such as "1 Active": how many items are unlocked.
    [[nodiscard]] QString activeText() const;
    /// Such as "2 Secured": how many are not.
    [[nodiscard]] QString securedText() const;

    [[nodiscard]] bool showingError() const { return m_errorDialogManager.isPresented(); }
    [[nodiscard]] QString errorMessage() const { return m_errorMessage; }
    [[nodiscard]] ErrorDialogManager *errorDialogManager() { return &m_errorDialogManager; }

    /// Locks the item of a row if the row shows it as unlocked, and unlocks it otherwise.
    Q_INVOKABLE void onToggleLock(int row);
    /// Activates the application, and brings the main window to the front 0.1 seconds later.
    Q_INVOKABLE void bringMainWindowForward();
    /// The same, and asks for the preferences after 0.2 seconds.
    Q_INVOKABLE void showPreferences();
    Q_INVOKABLE void quit() { m_context.terminate(); }
    /// The menu of the status item: the same for a desktop that only shows a menu.
    [[nodiscard]] std::vector<StatusItem::MenuEntry> menuEntries();

Q_SIGNALS:
    void itemsChanged();
    /// The main window is about to come forward.
    void mainWindowWanted();

private:
    [[nodiscard]] QCoro::Task<> toggleLock(ProtectedItem item);
    [[nodiscard]] qsizetype activeCount() const;
    void showError(const std::exception_ptr &failure);
    /// Runs an action later, unless this object is destroyed before.
    void after(std::chrono::milliseconds delay, std::function<void()> action);

    MenuBarContext m_context;
    MenuBarItemsModel m_items;
    QString m_errorMessage;
    ErrorDialogManager m_errorDialogManager;
    std::list<std::unique_ptr<RunningTimer>> m_timers;
};

} // namespace quillhaven
