// SPDX-License-Identifier: GPL-3.0-or-later

// The components follow the display settings of the desktop while they are shown.

#include "presentation/tokens/Design.h"
#include "presentation/tokens/HighContrast.h"
#include "presentation/tokens/Styles.h"
#include "support/FakeDisplayPreferences.h"
#include "support/RunTask.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <gtest/gtest.h>

namespace quillhaven::test {
namespace {

using Contrast = DisplayPreferences::Contrast;

/// A window with a component, whose id is `shown`.
class DisplayWishes : public ::testing::Test
{
protected:
    DisplayWishes()
    {
        installDesign(m_engine);
        followDisplay(m_engine, display);
    }

    void show(const QString &qml)
    {
        QQmlComponent component(&m_engine);
        component.setData(QStringLiteral("import QtQuick\nimport QtQuick.Controls.Basic\nimport Quillhaven.Controls\n"
                                         "import Quillhaven.Design\n"
                                         "ApplicationWindow {\nwidth: 800; height: 700; visible: true\n"
                                         "property alias tested: shown\n%1\n}")
                              .arg(qml)
                              .toUtf8(),
                          QUrl());
        window.reset(qobject_cast<QQuickWindow *>(component.create()));
        ASSERT_TRUE(window) << qUtf8Printable(component.errorString());
        ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
        tested = window->property("tested").value<QObject *>();
        ASSERT_TRUE(tested);
    }
    /// The first item below the tested one with this value of a property.
    [[nodiscard]] QQuickItem *with(const char *property, const QVariant &value) const
    {
        return with(qobject_cast<QQuickItem *>(tested), property, value);
    }
    static QQuickItem *with(QQuickItem *root, const char *property, const QVariant &value)
    {
        for (QQuickItem *child : root->childItems()) {
            if (child->property(property) == value && !child->property("status").isValid()) {
                return child;
            }
            if (QQuickItem *found = with(child, property, value)) {
                return found;
            }
        }
        return nullptr;
    }

    FakeDisplayPreferences display;

private:
    QQmlEngine m_engine;

protected:
    std::unique_ptr<QQuickWindow> window;
    QObject *tested = nullptr;
};

TEST_F(DisplayWishes, TheColoursFollowTheContrast)
{
    show(QStringLiteral("StatusBadge { id: shown; style: BadgeStyle.Locked; text: \"B\" }"));
    const auto fill = [this] { return tested->property("color").value<QColor>(); };
    EXPECT_EQ(fill(), ColorTokens().badgeLockedFill);
    display.setValues({.colorSchemeContrast = Contrast::Increased});
    EXPECT_EQ(fill(), highContrastTokens().badgeLockedFill);
    display.setValues({});
    EXPECT_EQ(fill(), ColorTokens().badgeLockedFill);
}

TEST_F(DisplayWishes, AWishThatExistsBeforeTheWindowCountsFromTheStart)
{
    display.setValues({.reduceMotion = true, .colorSchemeContrast = Contrast::Increased});
    show(QStringLiteral("Rectangle { id: shown; color: Colors.bgBody; property int pace: DesignSystem.animationSlow\n"
                        "property bool isHigh: Colors.isHighContrast }"));
    EXPECT_EQ(tested->property("color").value<QColor>(), highContrastTokens().bgBody);
    EXPECT_EQ(tested->property("pace").toInt(), 0);
    EXPECT_TRUE(tested->property("isHigh").toBool());
}

TEST_F(DisplayWishes, ButtonsHaveAnOutlineOnlyWithMoreContrastAndOnlyAroundAFill)
{
    show(QStringLiteral("FilledButton { id: shown; text: \"T\"; property color bare: icon.outline\n"
                        "IconButton { id: icon; symbol: \"plus\"; helpText: \"Add\" } }"));
    const auto outline = [this](const char *name) { return tested->property(name).value<QColor>(); };
    EXPECT_EQ(outline("outline").alpha(), 0);
    display.setValues({.colorSchemeContrast = Contrast::Increased});
    EXPECT_EQ(outline("outline"), highContrastTokens().border);
    EXPECT_EQ(outline("bare").alpha(), 0);
}

TEST_F(DisplayWishes, TheDurationsAreZeroWhileNothingIsToMove)
{
    show(QStringLiteral(
        "Item { id: shown; property var paces: [DesignSystem.animationQuick, DesignSystem.animationStandard,"
        " DesignSystem.animationSlow] }"));
    const auto paces = [this] { return tested->property("paces").toList(); };
    EXPECT_EQ(paces(), (QVariantList{200, 300, 500}));
    display.setValues({.reduceMotion = true});
    EXPECT_EQ(paces(), (QVariantList{0, 0, 0}));
    display.setValues({});
    EXPECT_EQ(paces(), (QVariantList{200, 300, 500}));
}

TEST_F(DisplayWishes, ASheetOpensAndClosesWithoutMotion)
{
    display.setValues({.reduceMotion = true});
    show(QStringLiteral("Sheet { id: shown; title: \"T\"; symbol: \"plus\"; symbolSpringsIn: true\n"
                        "buttons: SecondaryButton { text: \"OK\" } }"));
    for (int round = 0; round < 2; ++round) {
        tested->setProperty("presented", true);
        EXPECT_TRUE(spinUntil([this] { return tested->property("opened").toBool(); }, 10'000));
        EXPECT_EQ(tested->property("opacity").toDouble(), 1);
        EXPECT_EQ(tested->property("panelScale").toDouble(), 1);
        tested->setProperty("presented", false);
        EXPECT_TRUE(spinUntil([this] { return !tested->property("visible").toBool(); }, 10'000));
        EXPECT_EQ(tested->property("panelScale").toDouble(), 0.96);
    }
}

TEST_F(DisplayWishes, NoValueIsLeftBetweenItsEndsWhenTheMotionEndsMidway)
{
    show(QStringLiteral("Sheet { id: shown; title: \"T\"; symbol: \"plus\"; symbolSpringsIn: true\n"
                        "buttons: SecondaryButton { text: \"OK\" } }"));
    tested->setProperty("presented", true);
    spinOnce();
    display.setValues({.reduceMotion = true});
    EXPECT_TRUE(spinUntil(
        [this] {
            return tested->property("opacity").toDouble() == 1 && tested->property("panelScale").toDouble() == 1;
        },
        10'000));
    tested->setProperty("presented", false);
    EXPECT_TRUE(spinUntil([this] { return !tested->property("visible").toBool(); }, 10'000));
}

TEST_F(DisplayWishes, ASymbolNeitherSpringsNorPulses)
{
    display.setValues({.reduceMotion = true});
    show(QStringLiteral(
        "SheetSymbol { id: shown; implicitWidth: 64; symbol: \"plus\"; springsIn: true; pulses: true }"));
    QQuickItem *symbol = with("symbol", QStringLiteral("plus"));
    ASSERT_TRUE(symbol);
    double largest = 0;
    QObject::connect(symbol, &QQuickItem::scaleChanged, symbol, [&] { largest = std::max(largest, symbol->scale()); });
    EXPECT_EQ(tested->property("scale").toDouble(), 0.3);
    tested->setProperty("showing", true);
    spinOnce();
    EXPECT_EQ(tested->property("scale").toDouble(), 1);
    EXPECT_EQ(largest, 0);
    display.setValues({});
    EXPECT_TRUE(spinUntil([&] { return largest > 1; }, 10'000));
    display.setValues({.reduceMotion = true});
    EXPECT_TRUE(spinUntil([&] { return symbol->scale() == 1; }, 10'000));
}

TEST_F(DisplayWishes, AnActivityIndicatorShowsDotsInsteadOfARingThatTurns)
{
    show(QStringLiteral("ActivityIndicator { id: shown }"));
    const auto turns = [this] { return with("running", true) != nullptr; };
    const auto dots = [this] {
        QQuickItem *row = with("spacing", tested->property("width").toDouble() / 8);
        return row && row->isVisible();
    };
    EXPECT_TRUE(turns());
    EXPECT_FALSE(dots());
    display.setValues({.reduceMotion = true});
    EXPECT_FALSE(turns());
    EXPECT_TRUE(dots());
    display.setValues({});
    EXPECT_TRUE(turns());
    EXPECT_FALSE(dots());
}

TEST_F(DisplayWishes, AStatusThatOnlyAColourShowsGetsItsSymbol)
{
    for (const char *qml : {"StatusDot { id: shown; status: StatusType.Warning }",
                            "LegacyStatusBadge { id: shown; status: StatusType.Warning; text: \"Old\" }",
                            "StatusIndicator { id: shown; status: StatusType.Warning; showIcon: false; text: \"Old\" }",
                            "StatusBadge { id: shown; style: BadgeStyle.Warning; text: \"Old\"; showIcon: false }"}) {
        SCOPED_TRACE(qml);
        display.setValues({});
        show(QString::fromUtf8(qml));
        const auto hasSymbol = [this] {
            QQuickItem *symbol = with("symbol", QStringLiteral("exclamationmark.triangle.fill"));
            return symbol && symbol->isVisible();
        };
        EXPECT_FALSE(hasSymbol());
        display.setValues({.differentiateWithoutColor = true});
        EXPECT_TRUE(hasSymbol());
        display.setValues({});
        EXPECT_FALSE(hasSymbol());
    }
}

TEST_F(DisplayWishes, ControlsGrowWithTheirTextsAndKeepTheirHeightAtTheUsualSize)
{
    const std::pair<const char *, int> usualHeights[] = {
        {"SecondaryButton { id: shown; text: \"T\"; symbol: \"plus\" }", 36},
        {"InputField { id: shown; placeholderText: \"P\" }", 40},
        {"SearchField { id: shown; placeholderText: \"P\" }", 36},
        {"StatusBadge { id: shown; text: \"T\" }", 24},
        {"PopMenuItem { id: shown; text: \"T\"; symbol: \"plus\" }", 34},
        {"Stepper { id: shown }", 36},
        {"CustomToggleStyle { id: shown; text: \"T\" }", 24}};
    for (const auto &[qml, height] : usualHeights) {
        SCOPED_TRACE(qml);
        display.setValues({});
        show(QString::fromUtf8(qml));
        const auto shownHeight = [this] { return tested->property("height").toInt(); };
        EXPECT_EQ(shownHeight(), height);
        for (const double scale : {1.5, 2.0, 3.0}) {
            display.setValues({.textScale = scale});
            const double leastHeight = 14 * scale;
            EXPECT_TRUE(spinUntil([&] { return shownHeight() >= leastHeight; }, 10'000)) << scale;
        }
        display.setValues({});
        EXPECT_TRUE(spinUntil([&] { return shownHeight() == height; }, 10'000));
    }
}

TEST_F(DisplayWishes, ItemsThatHaveNoRoomInARowAreWrapped)
{
    show(QStringLiteral(
        "Column { id: shown; width: 300; property alias first: one; property alias last: two\n"
        "WrappingRow { width: parent.width; spacing: 8\n"
        "SecondaryButton { id: one; text: \"Give back\" } SecondaryButton { id: two; text: \"Add\" } } }"));
    const auto y = [this](const char *name) { return tested->property(name).value<QQuickItem *>()->y(); };
    EXPECT_EQ(y("last"), y("first"));
    display.setValues({.textScale = 3});
    EXPECT_TRUE(spinUntil([&] { return y("last") > y("first"); }, 10'000));
}

TEST_F(DisplayWishes, AMirroredFieldHasItsPromptAndItsCaretAtTheRight)
{
    show(QStringLiteral("Item { id: shown; width: 400; height: 40; property alias caret: field.cursorRectangle\n"
                        "LayoutMirroring.enabled: true; LayoutMirroring.childrenInherit: true\n"
                        "InputField { id: field; anchors.fill: parent; placeholderText: \"Prompt\" } }"));
    QQuickItem *prompt = with("text", QStringLiteral("Prompt"));
    ASSERT_TRUE(prompt);
    EXPECT_GT(tested->property("caret").toRectF().x(), 350);
    EXPECT_EQ(prompt->property("effectiveHorizontalAlignment").toInt(), int(Qt::AlignRight));
}

TEST_F(DisplayWishes, AMirroredSwitchAndProgressBeginAtTheRight)
{
    display.setValues({.differentiateWithoutColor = true});
    show(QStringLiteral("CustomToggleStyle { id: shown; text: \"T\"; LayoutMirroring.enabled: true }"));
    QQuickItem *shape = with("objectName", QStringLiteral("shape"));
    ASSERT_TRUE(shape);
    const double off = shape->x();
    tested->setProperty("checked", true);
    EXPECT_GT(shape->x(), off);

    show(QStringLiteral("ProgressLine { id: shown; width: 200; value: 0.25; LayoutMirroring.enabled: true\n"
                        "LayoutMirroring.childrenInherit: true; property color mark: tint }"));
    QQuickItem *done = with("color", tested->property("mark"));
    ASSERT_TRUE(done);
    EXPECT_TRUE(spinUntil([&] { return done->width() == 50; }, 10'000));
    EXPECT_EQ(done->x(), 150);
}

TEST_F(DisplayWishes, TheDotGivesWayToItsSymbol)
{
    show(QStringLiteral("StatusDot { id: shown; status: StatusType.Error }"));
    QQuickItem *dot = with("radius", tested->property("pointSize").toInt() * 2 / 3 / 2.0);
    ASSERT_TRUE(dot);
    EXPECT_TRUE(dot->isVisible());
    display.setValues({.differentiateWithoutColor = true});
    EXPECT_FALSE(dot->isVisible());
}

TEST_F(DisplayWishes, ASwitchShowsABarForOnAndARingForOff)
{
    show(QStringLiteral("CustomToggleStyle { id: shown; text: \"T\" }"));
    QQuickItem *shape = with("objectName", QStringLiteral("shape"));
    ASSERT_TRUE(shape);
    EXPECT_FALSE(shape->isVisible());
    display.setValues({.differentiateWithoutColor = true});
    EXPECT_TRUE(shape->isVisible());
    const double ring = shape->width();
    const double right = shape->x();
    tested->setProperty("checked", true);
    EXPECT_LT(shape->width(), ring);
    EXPECT_LT(shape->x(), right);
}

} // namespace
} // namespace quillhaven::test
