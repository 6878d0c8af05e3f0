// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "DashboardHarness.h"
#include "PreferencesHarness.h"

#include "presentation/MainWindow.h"
#include "presentation/SheetModels.h"
#include "presentation/WindowEngine.h"

#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

namespace quillhaven::test {

/// Every visible item below `root`, depth first.
inline QList<QQuickItem *> visibleItems(QQuickItem *root)
{
    QList<QQuickItem *> all;
    for (QQuickItem *child : root->childItems()) {
        if (child->isVisible() && child->opacity() > 0) {
            all.append(child);
            all.append(visibleItems(child));
        }
    }
    return all;
}

/// The real window with a dashboard in a new home.
class DashboardWindow : public DashboardTest
{
protected:
    void TearDown() override
    {
        m_window.reset();
        m_sheets.reset();
        m_engine.reset();
        m_preferences.reset();
    }

    /// The engine of all windows.
    QQmlEngine &engine()
    {
        if (!m_engine) {
            m_engine = makeWindowEngine(services.display);
        }
        return *m_engine;
    }
    /// What the sheets show. `bringForward` brings a hidden main window forward.
    SheetModels &sheets()
    {
        if (!m_sheets) {
            DashboardHarness &harness = started();
            m_sheets.emplace(Sheets{.confirmation = harness.confirmationDialog,
                                    .protectionMethod = harness.protectionMethodDialog,
                                    .passwordInput = harness.passwordDialog,
                                    .passwordInputState = harness.passwordInput,
                                    .masterPassword = harness.masterPasswordDialog,
                                    .dashboard = harness.dashboard,
                                    .preferences = preferences().model,
                                    .onboarding = harness.onboarding,
                                    .biometrics = services.biometrics,
                                    .menuBarError = *menuBarError},
                             [this] { bringForward(); });
        }
        return *m_sheets;
    }
    /// The window as it is created, hidden. The user has read the introduction, unless the test says otherwise.
    MainWindow &built()
    {
        if (!m_window) {
            if (!showsOnboarding) {
                started().onboarding.close();
            }
            m_window.emplace(engine(), started().dashboard, sheets());
        }
        return *m_window;
    }
    /// The window on the screen, with the keyboard focus.
    MainWindow &shown()
    {
        if (!m_isShown) {
            m_isShown = true;
            built().show();
            EXPECT_TRUE(QTest::qWaitForWindowActive(m_window->window()));
            render();
        }
        return *m_window;
    }

    std::function<void()> bringForward = [this] { m_window->show(); };
    bool showsOnboarding = false;
    ErrorDialogManager noMenuBarError;
    ErrorDialogManager *menuBarError = &noMenuBarError; ///< of the popover, if there is one
    PreferencesHarness &preferences()
    {
        if (!m_preferences) {
            m_preferences.emplace(started());
        }
        return *m_preferences;
    }

    /// Updates bindings, layouts and short animations, and draws the window.
    void render()
    {
        spinOnce();
        m_window->window()->grabWindow();
        spinOnce();
    }

    QStringList texts()
    {
        shown();
        render();
        QStringList all;
        for (QQuickItem *item : visibleItems(m_window->window()->contentItem())) {
            const QVariant text = item->property("text");
            if (text.metaType() == QMetaType::fromType<QString>() && !text.toString().isEmpty()) {
                all.append(text.toString());
            }
        }
        return all;
    }
    bool shows(const char *text) { return texts().contains(QString::fromUtf8(text)); }
    bool eventuallyShows(const char *text)
    {
        return spinUntil([&] { return shows(text); });
    }

    /// Waits until no sheet or menu covers the window, also none that fades out.
    bool isUncovered()
    {
        return spinUntil([this] {
            render();
            return std::ranges::none_of(visibleItems(m_window->window()->contentItem()),
                                        [](QQuickItem *each) { return each->inherits("QQuickOverlay"); });
        });
    }

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(shown().window(), key, modifiers);
        spinOnce();
    }
    /// Presses the tab key until the list has the keyboard focus.
    bool tabToList()
    {
        for (int presses = 0; presses < 30; ++presses) {
            if (!focusedRow().isEmpty()) {
                return true;
            }
            press(Qt::Key_Tab);
        }
        return false;
    }
    QString focusedRow()
    {
        for (QQuickItem *item = shown().window()->activeFocusItem(); item; item = item->parentItem()) {
            if (item->property("itemId").isValid()) {
                return item->property("originalName").toString();
            }
        }
        return {};
    }

    /// Changes a record like an operation.
    void setMounted(const QString &id, bool value)
    {
        started().manager.catalogue().updateUnsaved(id, [value](ProtectedItem &item) { item.isMounted = value; });
    }

    void storeThree()
    {
        QList<ProtectedItem> items{namedItem(QStringLiteral("alpha.txt")), namedItem(QStringLiteral("bravo.png"), true),
                                   namedItem(QStringLiteral("charlie"))};
        items[2].isFolder = true;
        items[2].useTouchID = true;
        storeCatalogue(services, items);
    }

private:
    std::unique_ptr<QQmlEngine> m_engine;
    std::optional<PreferencesHarness> m_preferences;
    std::optional<SheetModels> m_sheets;
    std::optional<MainWindow> m_window;
    bool m_isShown = false;
};

} // namespace quillhaven::test
