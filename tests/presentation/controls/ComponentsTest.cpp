// SPDX-License-Identifier: GPL-3.0-or-later

// Each component of the module, built once; any QML warning fails the test.

#include "presentation/tokens/Design.h"

#include <QAccessible>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>

#include <gtest/gtest.h>

#include <memory>

namespace quillhaven {
namespace {

/// One piece of QML in a window of its own.
class Component
{
public:
    explicit Component(const QByteArray &qml)
    {
        QAccessible::setActive(true);
        installDesign(m_engine);
        QQmlComponent component(&m_engine);
        component.setData("import QtQuick\nimport Quillhaven.Controls\nimport Quillhaven.Design\n" + qml, QUrl());
        item.reset(qobject_cast<QQuickItem *>(component.create()));
        EXPECT_TRUE(item) << qUtf8Printable(component.errorString());
        if (item) {
            item->setParentItem(m_window.contentItem());
        }
    }
    ~Component() { item.reset(); }
    Component(const Component &) = delete;
    Component &operator=(const Component &) = delete;

    [[nodiscard]] QString heard(QAccessible::Text kind, QQuickItem *of = nullptr) const
    {
        QAccessibleInterface *node = QAccessible::queryAccessibleInterface(of ? of : item.get());
        return node ? node->text(kind) : QString();
    }
    [[nodiscard]] QQuickItem *withText(const QString &text) const { return withText(item.get(), text); }

private:
    static QQuickItem *withText(QQuickItem *root, const QString &text)
    {
        for (QQuickItem *child : root->childItems()) {
            if (child->property("text").toString() == text) {
                return child;
            }
            if (QQuickItem *found = withText(child, text)) {
                return found;
            }
        }
        return nullptr;
    }

    QQmlEngine m_engine;
    QQuickWindow m_window;

public:
    std::unique_ptr<QQuickItem> item;
};

TEST(Components, EachOneBuildsWithoutAWarning)
{
    for (const char *qml :
         {"StatusIndicator { text: \"On\" }",
          "StatusDot { status: \"error\"; size: \"small\" }",
          "LegacyStatusBadge { status: \"warning\"; text: \"Old\"; size: \"large\" }",
          "SettingRow { title: \"T\"; icon: \"lock\"; CustomToggleStyle { } }",
          "SettingsSection { title: \"T\"; SettingRow { title: \"A\" } }",
          "RoundedCorner { width: 40; height: 20; radius: 8; corners: [\"topLeft\"] }",
          "CardModifier { }",
          "SectionModifier { backgroundColor: Colors.bgBody }",
          "CustomToggleStyle { text: \"T\"; checked: true }",
          "PrimaryFilledButtonStyle { text: \"T\"; gradient: Colors.primaryGradient }",
          "PrimaryFilledButtonStyle { text: \"T\" }",
          "ClearedButtonStyle { text: \"T\" }",
          "CustomFilledButtonStyle { text: \"T\"; fill: Colors.info; cornerRadius: 4; hoverBrightness: 0.1 }",
          "FilledBtnStyle { text: \"T\" }",
          "BodyFilledButtonStyle { text: \"T\" }",
          "SecondaryButtonStyle { text: \"T\" }",
          "ButtonStyleModifier { text: \"T\"; type: \"destructive\" }",
          "StatusBadge { style: \"locked\"; text: \"Locked\" }",
          "PopPicker { label: \"L\"; options: [\"a\"] }",
          "SearchField { placeholderText: \"Search\" }",
          "PasswordField { label: \"L\"; prompt: \"P\" }",
          "DestructiveButton { text: \"T\"; busy: true }",
          "IconButton { symbol: \"plus\"; helpText: \"Add\" }",
          "CheckMark { text: \"T\"; ticked: true }",
          "ProgressLine { value: 0.5 }",
          "SlimScrollBar { size: 0.2 }",
          "PopMenuItem { text: \"T\"; checkable: true }"}) {
        SCOPED_TRACE(qml);
        const Component component(qml);
        EXPECT_GE(component.item->implicitHeight(), 0);
    }
}

TEST(StatusIndicator, AccessibilityTextIsTheStatusInWords)
{
    const Component indicator("StatusIndicator { }");
    for (const auto &[status, heard] : {std::pair{"enabled", "Enabled status"},
                                        {"disabled", "Disabled status"},
                                        {"warning", "Warning status"},
                                        {"info", "Information status"},
                                        {"error", "Error status"}}) {
        indicator.item->setProperty("status", QString::fromUtf8(status));
        EXPECT_EQ(indicator.heard(QAccessible::Name), QString::fromUtf8(heard));
    }
}

TEST(StatusIndicator, OnOrOffTakesOneOfTwoTexts)
{
    const Component indicator("StatusIndicator { Component.onCompleted: show(false, \"Running\", \"Stopped\") }");
    EXPECT_EQ(indicator.item->property("text").toString(), QStringLiteral("Stopped"));
    EXPECT_EQ(indicator.heard(QAccessible::Name), QStringLiteral("Disabled status"));
}

TEST(CheckMark, IsACheckBoxThatLeavesTheDecisionToItsOwner)
{
    const Component mark("CheckMark { property int asked: 0; text: \"Understood\"; onToggleRequested: asked += 1 }");
    QAccessibleInterface *node = QAccessible::queryAccessibleInterface(mark.item.get());
    ASSERT_TRUE(node);
    ASSERT_TRUE(node->actionInterface());
    node->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(mark.item->property("asked").toInt(), 1);
    EXPECT_FALSE(mark.item->property("checked").toBool());
    mark.item->setProperty("ticked", true);
    EXPECT_TRUE(mark.item->property("checked").toBool());
    EXPECT_EQ(node->role(), QAccessible::CheckBox);
    EXPECT_TRUE(node->state().checked);
    EXPECT_EQ(node->text(QAccessible::Name), QStringLiteral("Understood"));
}

TEST(FilledButton, TextThatIsNotDrawnIsStillTheName)
{
    const Component button("FilledButton { text: \"Backup\"; symbol: \"icloud.fill\"; showsText: false }");
    EXPECT_EQ(button.heard(QAccessible::Name), QStringLiteral("Backup"));
    QQuickItem *drawn = button.withText(QStringLiteral("Backup"));
    ASSERT_TRUE(drawn);
    EXPECT_FALSE(drawn->isVisible());
}

TEST(SettingRow, ShowsAWarningOnlyWithItsMessage)
{
    const Component row("SettingRow { title: \"T\"; warningMessage: \"Careful\" }");
    QQuickItem *warning = row.withText(QStringLiteral("Careful"));
    ASSERT_TRUE(warning);
    EXPECT_FALSE(warning->isVisible());
    row.item->setProperty("showsWarning", true);
    EXPECT_TRUE(warning->isVisible());
    row.item->setProperty("warningMessage", QString());
    EXPECT_FALSE(warning->isVisible());
}

TEST(SettingsSection, HeadingSaysHowToCollapseAndExpand)
{
    const Component section("SettingsSection { title: \"Backup\"; isCollapsible: true }");
    QQuickItem *header = section.withText(QStringLiteral("Backup"));
    ASSERT_TRUE(header);
    EXPECT_EQ(section.heard(QAccessible::Description, header), QStringLiteral("Double tap to collapse"));
    EXPECT_TRUE(QMetaObject::invokeMethod(header, "press"));
    EXPECT_FALSE(section.item->property("isExpanded").toBool());
    EXPECT_EQ(section.heard(QAccessible::Description, header), QStringLiteral("Double tap to expand"));
}

TEST(SettingsSection, OneThatIsNotCollapsibleStaysOpen)
{
    const Component section("SettingsSection { title: \"Backup\" }");
    EXPECT_TRUE(QMetaObject::invokeMethod(section.withText(QStringLiteral("Backup")), "press"));
    EXPECT_TRUE(section.item->property("isExpanded").toBool());
}

} // namespace
} // namespace quillhaven
