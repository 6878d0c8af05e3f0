// SPDX-License-Identifier: GPL-3.0-or-later

// Each component of the module is created once; any QML warning fails the test.

#include "presentation/tokens/Colors.h"
#include "presentation/tokens/Design.h"
#include "presentation/tokens/Styles.h"

#include <QAccessible>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <gtest/gtest.h>

#include <memory>

namespace quillhaven {
namespace {

/// A piece of QML in its own window.
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
    [[nodiscard]] QQuickWindow &window() const { return m_window; }
    [[nodiscard]] QQmlEngine &engine() { return m_engine; }
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
    mutable QQuickWindow m_window;

public:
    std::unique_ptr<QQuickItem> item;
};

/// Presses the item like a screen reader.
void press(QQuickItem *item)
{
    QAccessibleInterface *node = QAccessible::queryAccessibleInterface(item);
    ASSERT_TRUE(node);
    ASSERT_TRUE(node->actionInterface());
    node->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
}

TEST(Components, EachOneIsCreatedWithoutAWarning)
{
    for (const char *qml :
         {"ActivityIndicator { color: Colors.info }",
          "StatusIndicator { text: \"On\" }",
          "StatusDot { status: StatusType.Error; size: StatusSize.Small }",
          "LegacyStatusBadge { status: StatusType.Warning; text: \"Old\"; size: StatusSize.Large }",
          "SettingRow { title: \"T\"; icon: \"lock\"; CustomToggleStyle { } }",
          "SettingsSection { title: \"T\"; SettingRow { title: \"A\" } }",
          "RoundedCorner { width: 40; height: 20; radius: 8; corners: RectCorner.TopLeft | RectCorner.BottomRight }",
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
          "ButtonStyleModifier { text: \"T\"; type: ButtonStyleType.Destructive }",
          "StatusBadge { style: BadgeStyle.Locked; text: \"Locked\" }",
          "PopPicker { label: \"L\"; options: [\"a\"] }",
          "SearchField { placeholderText: \"Search\" }",
          "PasswordField { label: \"L\"; prompt: \"P\" }",
          "DestructiveButton { text: \"T\"; busy: true }",
          "IconButton { symbol: \"plus\"; helpText: \"Add\" }",
          "CheckMark { text: \"T\"; ticked: true }",
          "ProgressLine { value: 0.5 }",
          "SlimScrollBar { size: 0.2 }",
          "TextLabel { text: \"T\" }",
          "InputField { placeholderText: \"P\" }",
          "PopMenuItem { text: \"T\"; checkable: true }"}) {
        SCOPED_TRACE(qml);
        const Component component(qml);
        EXPECT_GE(component.item->implicitHeight(), 0);
    }
}

TEST(StatusIndicator, AccessibleTextDescribesTheStatus)
{
    const Component indicator("StatusIndicator { }");
    for (const auto &[status, heard] : {std::pair{StatusType::Enabled, "Enabled status"},
                                        {StatusType::Disabled, "Disabled status"},
                                        {StatusType::Warning, "Warning status"},
                                        {StatusType::Info, "Information status"},
                                        {StatusType::Error, "Error status"}}) {
        indicator.item->setProperty("status", status);
        EXPECT_EQ(indicator.heard(QAccessible::Name), QString::fromUtf8(heard));
    }
}

TEST(StatusIndicator, ShowsOneOfTwoTextsForOnAndOff)
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
    press(mark.item.get());
    EXPECT_EQ(mark.item->property("asked").toInt(), 1);
    EXPECT_FALSE(mark.item->property("checked").toBool());
    mark.item->setProperty("ticked", true);
    EXPECT_TRUE(mark.item->property("checked").toBool());
    EXPECT_EQ(node->role(), QAccessible::CheckBox);
    EXPECT_TRUE(node->state().checked);
    EXPECT_EQ(node->text(QAccessible::Name), QStringLiteral("Understood"));
}

TEST(FilledButton, TextThatIsNotDrawnIsStillTheAccessibleName)
{
    const Component button("FilledButton { text: \"Backup\"; symbol: \"icloud.fill\"; showsText: false }");
    EXPECT_EQ(button.heard(QAccessible::Name), QStringLiteral("Backup"));
    QQuickItem *drawn = button.withText(QStringLiteral("Backup"));
    ASSERT_TRUE(drawn);
    EXPECT_FALSE(drawn->isVisible());
}

TEST(FilledButton, ReturnAndEnterPressItUnlessItIsBusyOrDisabled)
{
    const Component button(
        "FilledButton { property int presses: 0; text: \"Go\"; focus: true; onClicked: presses += 1 }");
    button.window().show();
    button.window().requestActivate();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&button.window()));
    for (const auto key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) {
        QTest::keyClick(&button.window(), key);
    }
    press(button.item.get());
    EXPECT_EQ(button.item->property("presses").toInt(), 4);
    button.item->setProperty("busy", true);
    QTest::keyClick(&button.window(), Qt::Key_Return);
    press(button.item.get());
    EXPECT_EQ(button.item->property("presses").toInt(), 4);
    button.item->setProperty("busy", false);
    button.item->setEnabled(false);
    press(button.item.get());
    EXPECT_EQ(button.item->property("presses").toInt(), 4);
}

TEST(CustomToggleStyle, TheScreenReaderTogglesItOnce)
{
    const Component toggle("CustomToggleStyle { property int turns: 0; text: \"T\"; onToggled: turns += 1 }");
    press(toggle.item.get());
    EXPECT_TRUE(toggle.item->property("checked").toBool());
    EXPECT_EQ(toggle.item->property("turns").toInt(), 1);
}

TEST(StatusBadge, AppearanceDependsOnTheStyle)
{
    const Colors colors;
    const Component badge("StatusBadge { text: \"B\" }");
    struct Row
    {
        BadgeStyle::Case style;
        QColor fill;
        QColor ink;
        const char *symbol;
    };
    for (const Row &row : std::initializer_list<Row>{
             {BadgeStyle::Locked, QColor(0xB6, 0xB2, 0xF7), QColor(0x55, 0x4D, 0xDD), "lock.fill"},
             {BadgeStyle::Unlocked, QColor(0x2D, 0x4D, 0x41), QColor(0x27, 0xCD, 0x41), "lock.open.fill"},
             {BadgeStyle::Warning, colors.badgeWarningBg(), colors.badgeWarning(), "exclamationmark.triangle.fill"},
             {BadgeStyle::Error, withOpacity(colors.error(), 0.18F), colors.error(), "exclamationmark.octagon.fill"},
             {BadgeStyle::Info, withOpacity(colors.info(), 0.18F), colors.info(), "info.circle.fill"}}) {
        badge.item->setProperty("style", row.style);
        EXPECT_EQ(badge.item->property("color").value<QColor>(), row.fill) << row.symbol;
        EXPECT_EQ(badge.item->property("ink").value<QColor>(), row.ink) << row.symbol;
        EXPECT_EQ(badge.item->property("symbol").toString(), QString::fromUtf8(row.symbol));
    }
}

TEST(RoundedCorner, RoundsOnlyTheCornersOfItsSet)
{
    const Component shape(
        "RoundedCorner { width: 40; height: 40; radius: 8; corners: RectCorner.TopLeft | RectCorner.BottomRight }");
    for (const auto &[corner, radius] : {std::pair{RectCorner::TopLeft, 8.0},
                                         {RectCorner::TopRight, 0.0},
                                         {RectCorner::BottomLeft, 0.0},
                                         {RectCorner::BottomRight, 8.0}}) {
        double found = -1;
        ASSERT_TRUE(QMetaObject::invokeMethod(shape.item.get(), "radiusOf", Q_RETURN_ARG(double, found),
                                              Q_ARG(int, int(corner))));
        EXPECT_EQ(found, radius);
    }
}

TEST(Controls, FollowAChangeOfTheScheme)
{
    Component badge("StatusBadge { style: BadgeStyle.Locked; text: \"B\" }");
    auto *colors = badge.engine().singletonInstance<Colors *>(qmlTypeId("Quillhaven.Design", 1, 0, "Colors"));
    ASSERT_TRUE(colors);
    ColorTokens light;
    light.badgeLockedFill = QColor(Qt::white);
    colors->setTokens(light);
    EXPECT_EQ(badge.item->property("color").value<QColor>(), QColor(Qt::white));
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
    press(header);
    EXPECT_FALSE(section.item->property("isExpanded").toBool());
    EXPECT_EQ(section.heard(QAccessible::Description, header), QStringLiteral("Double tap to expand"));
}

TEST(SettingsSection, ASectionThatIsNotCollapsibleStaysOpen)
{
    const Component section("SettingsSection { title: \"Backup\" }");
    press(section.withText(QStringLiteral("Backup")));
    EXPECT_TRUE(section.item->property("isExpanded").toBool());
}

} // namespace
} // namespace quillhaven
