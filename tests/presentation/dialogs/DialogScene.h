// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "presentation/tokens/Design.h"
#include "support/RunTask.h"

#include <QAccessible>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <gtest/gtest.h>

#include <memory>

namespace quillhaven::test {

/// A window with a button behind the tested dialogs, on the screen and with the keyboard focus.
class DialogScene
{
public:
    /// `dialogs` is the QML of the dialogs; `models` are the objects that it uses, by their names.
    DialogScene(const QString &dialogs, const QVariantMap &models)
    {
        installDesign(m_engine);
        QString properties;
        for (const QString &name : models.keys()) {
            properties += QStringLiteral("required property QtObject %1\n").arg(name);
        }
        QQmlComponent component(&m_engine);
        component.setData(
            QStringLiteral(
                "import QtQuick\nimport QtQuick.Controls.Basic\nimport Quillhaven.Controls\nimport Quillhaven.Design\n"
                "import Quillhaven.Dialogs\n"
                "ApplicationWindow {\nid: scene\n%1\nwidth: 1200; height: 900; visible: true\n"
                "color: Colors.windowBackground\n"
                "LayoutMirroring.enabled: Application.layoutDirection === Qt.RightToLeft\n"
                "LayoutMirroring.childrenInherit: true\n"
                "FilledButton { text: \"Behind\"; focus: true; x: 40; y: 40 }\n"
                "FilledButton { text: \"Also behind\"; x: 40; y: 100 }\n%2\n}")
                .arg(properties, dialogs)
                .toUtf8(),
            QUrl());
        EXPECT_TRUE(component.isReady()) << qUtf8Printable(component.errorString());
        m_window.reset(qobject_cast<QQuickWindow *>(component.createWithInitialProperties(models)));
        EXPECT_TRUE(m_window) << qUtf8Printable(component.errorString());
        if (m_window) {
            m_window->requestActivate();
            EXPECT_TRUE(QTest::qWaitForWindowActive(m_window.get()));
            EXPECT_TRUE(getsFocus("Behind"));
        }
    }

    [[nodiscard]] QQuickWindow *window() const { return m_window.get(); }

    /// The name of the control that has the keyboard focus: its own text, or the label of its field.
    [[nodiscard]] QString focused() const
    {
        QQuickItem *item = m_window->activeFocusItem();
        for (QQuickItem *each = item; each; each = each->parentItem()) {
            const QString label = each->property("label").toString();
            if (!label.isEmpty()) {
                return label +
                       (each == item || item->inherits("QQuickTextField") ? QString() : QStringLiteral(" toggle"));
            }
        }
        return item ? item->property("text").toString() : QString();
    }
    /// Waits until that control has the keyboard focus and its sheet has stopped moving.
    bool getsFocus(const char *name)
    {
        const bool isReached = spinUntil(
            [&] { return focused() == QString::fromUtf8(name) && isFullyShown(m_window->activeFocusItem()); });
        EXPECT_TRUE(isReached) << "the focus is on: " << qUtf8Printable(focused());
        return isReached;
    }

    /// The panel of the sheet that the keyboard is in; null when it is in none.
    [[nodiscard]] QQuickItem *sheet() const
    {
        QQuickItem *item = m_window->activeFocusItem();
        while (item && !item->inherits("QQuickPopupItem")) {
            item = item->parentItem();
        }
        return item;
    }

    /// Whether the control with the keyboard focus shows a focus ring.
    [[nodiscard]] bool showsRing() const { return m_window->activeFocusItem()->property("visualFocus").toBool(); }

    void press(Qt::Key key)
    {
        QTest::keyClick(m_window.get(), key);
        spinOnce();
    }
    void type(const char *text)
    {
        for (const char *letter = text; *letter; ++letter) {
            QTest::keyClick(m_window.get(), *letter);
        }
        spinOnce();
    }
    /// Presses the tab key through all controls, until the first one has the focus again.
    QStringList tabRound(Qt::Key key = Qt::Key_Tab)
    {
        const QString first = focused();
        QStringList round{first};
        for (int presses = 0; presses < 20; ++presses) {
            press(key);
            if (focused() == first) {
                return round;
            }
            round += focused();
        }
        ADD_FAILURE() << "the first control was not reached again: " << qUtf8Printable(round.join(QLatin1Char(',')));
        return round;
    }

    /// Visible items with this text, and whether they can be pressed.
    [[nodiscard]] QQuickItem *find(const char *text) const
    {
        return find(m_window->contentItem(), "text", QString::fromUtf8(text), true);
    }
    [[nodiscard]] QQuickItem *findSymbol(const char *symbol) const
    {
        return find(m_window->contentItem(), "symbol", QString::fromUtf8(symbol), true);
    }
    /// Whether any field, visible or not, still contains this text.
    [[nodiscard]] bool holdsTypedText(const char *text) const
    {
        return find(m_window->contentItem(), "text", QString::fromUtf8(text), false) != nullptr;
    }
    [[nodiscard]] bool shows(const char *text) const { return find(text) != nullptr; }
    void click(const char *text)
    {
        QQuickItem *item = find(text);
        ASSERT_TRUE(item) << text;
        // The sheet has stopped moving if its control no longer moves.
        QPointF before;
        ASSERT_TRUE(spinUntil([&] {
            const QPointF now = item->mapToScene({item->width() / 2, item->height() / 2});
            const bool isStill = now == before;
            before = now;
            m_window->grabWindow();
            return isStill;
        }));
        QTest::mouseClick(m_window.get(), Qt::LeftButton, Qt::NoModifier, before.toPoint());
        spinOnce();
    }

    /// Everything that a screen reader can read: all names, and texts of any kind.
    struct Heard
    {
        QStringList names;
        QStringList texts;
    };
    [[nodiscard]] Heard heard() const
    {
        Heard all;
        listen(QAccessible::queryAccessibleInterface(m_window.get()), all);
        return all;
    }

private:
    static bool isFullyShown(QQuickItem *item)
    {
        for (; item; item = item->parentItem()) {
            if (!item->isVisible() || item->opacity() < 1) {
                return false;
            }
        }
        return true;
    }

    static QQuickItem *find(QQuickItem *root, const char *property, const QString &value, bool isSeen)
    {
        for (QQuickItem *child : root->childItems()) {
            if (isSeen && (!child->isVisible() || child->opacity() <= 0)) {
                continue;
            }
            if (child->property(property).toString() == value) {
                return child;
            }
            if (QQuickItem *found = find(child, property, value, isSeen)) {
                return found;
            }
        }
        return nullptr;
    }

    static void listen(QAccessibleInterface *node, Heard &all)
    {
        if (!node) {
            return;
        }
        if (!node->state().invisible) {
            // The toolkit hides the name of a password.
            all.names += node->text(node->state().passwordEdit ? QAccessible::Description : QAccessible::Name);
        }
        for (const QAccessible::Text kind : {QAccessible::Name, QAccessible::Description, QAccessible::Value,
                                             QAccessible::Help, QAccessible::Accelerator}) {
            all.texts += node->text(kind);
        }
        if (QAccessibleTextInterface *text = node->textInterface()) {
            all.texts += text->text(0, text->characterCount());
        }
        if (QAccessibleValueInterface *value = node->valueInterface()) {
            all.texts += value->currentValue().toString();
        }
        for (int index = 0; index < node->childCount(); ++index) {
            listen(node->child(index), all);
        }
    }

    QQmlEngine m_engine;
    std::unique_ptr<QQuickWindow> m_window;
};

} // namespace quillhaven::test
