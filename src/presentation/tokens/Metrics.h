// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace quillhaven {

/// Sizes of symbols, rows and controls, the sizes at which a screen changes its arrangement, opacities and delays.
/// Lengths are device-independent pixels. The constants are those of text of the usual size. Of the properties, which
/// the screens use, those that leave room for text and those of symbols beside it grow with it; a height that is the
/// least one of a control does not, since the control itself grows with its text.
class Metrics : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(int symbolTiny READ grownSymbolTiny NOTIFY textScaleChanged)
    Q_PROPERTY(int symbolSmall READ grownSymbolSmall NOTIFY textScaleChanged)
    Q_PROPERTY(int symbolText READ grownSymbolText NOTIFY textScaleChanged)
    Q_PROPERTY(int symbolControl READ grownSymbolControl NOTIFY textScaleChanged)
    Q_PROPERTY(int symbolEntry MEMBER symbolEntry CONSTANT)
    Q_PROPERTY(int symbolStandard READ grownSymbolStandard NOTIFY textScaleChanged)
    Q_PROPERTY(int symbolRow MEMBER symbolRow CONSTANT)
    Q_PROPERTY(int symbolLarge MEMBER symbolLarge CONSTANT)
    Q_PROPERTY(int badgeHeight MEMBER badgeHeight CONSTANT)
    Q_PROPERTY(int menuRowHeight MEMBER menuRowHeight CONSTANT)
    Q_PROPERTY(int entryHeight MEMBER entryHeight CONSTANT)
    Q_PROPERTY(int listRowHeight MEMBER listRowHeight CONSTANT)
    Q_PROPERTY(int listHeight READ grownListHeight NOTIFY textScaleChanged)
    Q_PROPERTY(int statCardHeight MEMBER statCardHeight CONSTANT)
    Q_PROPERTY(int compactStatCardHeight MEMBER compactStatCardHeight CONSTANT)
    Q_PROPERTY(int dropAreaHeight READ grownDropAreaHeight NOTIFY textScaleChanged)
    Q_PROPERTY(int titleLines MEMBER titleLines CONSTANT)
    Q_PROPERTY(int stepCircle MEMBER stepCircle CONSTANT)
    Q_PROPERTY(int emptyCircle MEMBER emptyCircle CONSTANT)
    Q_PROPERTY(int emptyStateWidth READ grownEmptyStateWidth NOTIFY textScaleChanged)
    Q_PROPERTY(int searchWidth READ grownSearchWidth NOTIFY textScaleChanged)
    Q_PROPERTY(int badgeColumnWidth READ grownBadgeColumnWidth NOTIFY textScaleChanged)
    Q_PROPERTY(int cardHeight MEMBER cardHeight CONSTANT)
    Q_PROPERTY(int inputHeight MEMBER inputHeight CONSTANT)
    Q_PROPERTY(int smallButton MEMBER smallButton CONSTANT)
    Q_PROPERTY(int checkBoxSize READ grownCheckBoxSize NOTIFY textScaleChanged)
    Q_PROPERTY(int menuWidth READ grownMenuWidth NOTIFY textScaleChanged)
    Q_PROPERTY(int wideMenuWidth READ grownWideMenuWidth NOTIFY textScaleChanged)
    Q_PROPERTY(int pickerMinimumWidth READ grownPickerMinimumWidth NOTIFY textScaleChanged)
    Q_PROPERTY(int buttonMinimumWidth MEMBER buttonMinimumWidth CONSTANT)
    Q_PROPERTY(int revealButtonWidth READ grownRevealButtonWidth NOTIFY textScaleChanged)
    Q_PROPERTY(int firstFrames MEMBER firstFrames CONSTANT)
    Q_PROPERTY(int closeButton MEMBER closeButton CONSTANT)
    Q_PROPERTY(int stepperField READ grownStepperField NOTIFY textScaleChanged)
    Q_PROPERTY(int sheetMinimumWidth READ grownSheetMinimumWidth NOTIFY textScaleChanged)
    Q_PROPERTY(int sheetMaximumWidth READ grownSheetMaximumWidth NOTIFY textScaleChanged)
    Q_PROPERTY(int smallSheetMinimumWidth READ grownSmallSheetMinimumWidth NOTIFY textScaleChanged)
    Q_PROPERTY(int warningSheetMinimumWidth READ grownWarningSheetMinimumWidth NOTIFY textScaleChanged)
    Q_PROPERTY(int sheetBodyWidth READ grownSheetBodyWidth NOTIFY textScaleChanged)
    Q_PROPERTY(int sheetFieldWidth READ grownSheetFieldWidth NOTIFY textScaleChanged)
    Q_PROPERTY(int sheetButtonWidth READ grownSheetButtonWidth NOTIFY textScaleChanged)
    Q_PROPERTY(int sheetSymbolCircle MEMBER sheetSymbolCircle CONSTANT)
    Q_PROPERTY(int largeSheetSymbolCircle MEMBER largeSheetSymbolCircle CONSTANT)
    Q_PROPERTY(int shortListHeight READ grownShortListHeight NOTIFY textScaleChanged)
    Q_PROPERTY(int tallListHeight READ grownTallListHeight NOTIFY textScaleChanged)
    Q_PROPERTY(int nameRowHeight MEMBER nameRowHeight CONSTANT)
    Q_PROPERTY(int nameListHeight READ grownNameListHeight NOTIFY textScaleChanged)
    Q_PROPERTY(int compactNameListHeight READ grownCompactNameListHeight NOTIFY textScaleChanged)
    Q_PROPERTY(int windowWidth MEMBER windowWidth CONSTANT)
    Q_PROPERTY(int windowMinimumWidth MEMBER windowMinimumWidth CONSTANT)
    Q_PROPERTY(int contentMaximumWidth MEMBER contentMaximumWidth CONSTANT)
    Q_PROPERTY(int windowHeight MEMBER windowHeight CONSTANT)
    Q_PROPERTY(int windowMinimumHeight MEMBER windowMinimumHeight CONSTANT)
    Q_PROPERTY(int focusRingGap MEMBER focusRingGap CONSTANT)
    Q_PROPERTY(int compactList READ grownCompactList NOTIFY textScaleChanged)
    Q_PROPERTY(int compactSheet READ grownCompactSheet NOTIFY textScaleChanged)
    Q_PROPERTY(int compactWindow READ grownCompactWindow NOTIFY textScaleChanged)
    Q_PROPERTY(int roomyWindow READ grownRoomyWindow NOTIFY textScaleChanged)
    Q_PROPERTY(int narrowBar READ grownNarrowBar NOTIFY textScaleChanged)
    Q_PROPERTY(int narrowToolbar READ grownNarrowToolbar NOTIFY textScaleChanged)
    Q_PROPERTY(int popoverWidth READ grownPopoverWidth NOTIFY textScaleChanged)
    Q_PROPERTY(int popoverHeight READ grownPopoverHeight NOTIFY textScaleChanged)
    Q_PROPERTY(int popoverContentWidth READ grownPopoverContentWidth NOTIFY textScaleChanged)
    Q_PROPERTY(int popoverListHeight READ grownPopoverListHeight NOTIFY textScaleChanged)
    Q_PROPERTY(int popoverFooterHeight MEMBER popoverFooterHeight CONSTANT)
    Q_PROPERTY(int popoverRowHeight MEMBER popoverRowHeight CONSTANT)
    Q_PROPERTY(int popoverSymbolFrame MEMBER popoverSymbolFrame CONSTANT)
    Q_PROPERTY(int popoverBadgePadding MEMBER popoverBadgePadding CONSTANT)
    Q_PROPERTY(double popoverRule MEMBER popoverRule CONSTANT)
    Q_PROPERTY(double popoverHoverOpacity MEMBER popoverHoverOpacity CONSTANT)
    Q_PROPERTY(double tintOpacity MEMBER tintOpacity CONSTANT)
    Q_PROPERTY(double smallIndicatorScale MEMBER smallIndicatorScale CONSTANT)
    Q_PROPERTY(double badgeOpacity MEMBER badgeOpacity CONSTANT)
    Q_PROPERTY(int springDuration MEMBER springDuration CONSTANT)
    Q_PROPERTY(int toolTipDelay MEMBER toolTipDelay CONSTANT)

public:
    using QObject::QObject;

    // Symbols
    static constexpr int symbolTiny = 12;
    static constexpr int symbolSmall = 14;
    static constexpr int symbolText = 16;    ///< next to a line of text
    static constexpr int symbolControl = 18; ///< in a control
    static constexpr int symbolEntry = 20;
    static constexpr int symbolStandard = 22;
    static constexpr int symbolRow = 24; ///< of a row of the list
    static constexpr int symbolLarge = 32;

    // Rows and controls
    static constexpr int badgeHeight = 24;
    static constexpr int menuRowHeight = 34;
    static constexpr int entryHeight = 40; ///< a row of a short list
    static constexpr int listRowHeight = 60;
    static constexpr int listHeight = 120; ///< at least, of the list
    static constexpr int statCardHeight = 104;
    static constexpr int compactStatCardHeight = 78;
    static constexpr int dropAreaHeight = 130;
    static constexpr int titleLines = 12; ///< enough for the longest file name
    static constexpr int stepCircle = 28; ///< around the number of a step
    static constexpr int emptyCircle = 72;
    static constexpr int emptyStateWidth = 480; ///< at most
    static constexpr int searchWidth = 360;     ///< at most
    static constexpr int badgeColumnWidth = 104;
    static constexpr int cardHeight = 76;
    static constexpr int firstFrames = 60; ///< milliseconds
    static constexpr int closeButton = 24;
    static constexpr int stepperField = 44; ///< the number of a stepper, without its buttons
    static constexpr int inputHeight = 40;  ///< a field of a sheet
    static constexpr int smallButton = 30;  ///< within a field or a card
    static constexpr int checkBoxSize = 20;
    static constexpr int menuWidth = 260;
    static constexpr int wideMenuWidth = 300;
    static constexpr int pickerMinimumWidth = 160;
    static constexpr int buttonMinimumWidth = 64;
    static constexpr int revealButtonWidth = 92;
    static constexpr int focusRingGap = 3; ///< between a control and the ring around it

    // The main window
    static constexpr int windowWidth = 1200;
    static constexpr int contentMaximumWidth = 1440; ///< in a wider window the content is in the middle
    static constexpr int windowHeight = 900;
    static constexpr int windowMinimumWidth = 760;
    static constexpr int windowMinimumHeight = 560;

    // Sheets and their lists
    static constexpr int sheetMinimumWidth = 400;
    static constexpr int sheetMaximumWidth = 500;
    static constexpr int smallSheetMinimumWidth = 350;
    static constexpr int warningSheetMinimumWidth = 450;
    static constexpr int sheetBodyWidth = 336;   ///< at least, of a body without text
    static constexpr int sheetFieldWidth = 360;  ///< at least
    static constexpr int sheetButtonWidth = 120; ///< at least, of a button that is not stretched
    static constexpr int sheetSymbolCircle = 64;
    static constexpr int largeSheetSymbolCircle = 80;
    static constexpr int shortListHeight = 200; ///< at most
    static constexpr int tallListHeight = 320;  ///< at most
    static constexpr int nameRowHeight = 24;
    static constexpr int nameListHeight = 108; ///< at most
    static constexpr int compactNameListHeight = 52;

    // The popover of the status item
    static constexpr int popoverWidth = 300;
    static constexpr int popoverHeight = 400;
    static constexpr int popoverContentWidth = 280;
    static constexpr int popoverListHeight = 300; ///< at most
    static constexpr int popoverFooterHeight = 35;
    static constexpr int popoverRowHeight = 44;
    static constexpr int popoverSymbolFrame = 20;
    static constexpr int popoverBadgePadding = 6;
    static constexpr double popoverRule = 0.5;

    // A screen with less room than this uses its compact layout. Heights:
    static constexpr int compactList = 260;   ///< of the list, for its text while it is empty
    static constexpr int compactSheet = 640;  ///< of the window, for its sheets
    static constexpr int compactWindow = 720; ///< of the window, for its cards
    static constexpr int roomyWindow = 820;   ///< of the window, for the drop area
    // Widths of the window:
    static constexpr int narrowBar = 760; ///< for the actions on selected items, and for all texts of the toolbar
    static constexpr int narrowToolbar = 860;

    static constexpr double smallIndicatorScale = 0.8; ///< of an activity indicator beside a text

    // Opacities
    static constexpr double disabledOpacity = 0.45; ///< QML uses `Colors.disabledOpacity`
    static constexpr double highContrastDisabledOpacity = 0.65;
    static constexpr double tintOpacity = 0.16; ///< of the circle behind a symbol
    static constexpr double badgeOpacity = 0.18;
    static constexpr double popoverHoverOpacity = 0.8;

    // Milliseconds
    static constexpr int springDuration = 600; ///< of a symbol that grows to its full size
    static constexpr int toolTipDelay = 600;

    /// How large texts are, as `Typography` has it.
    void setTextScale(double scale)
    {
        if (m_textScale != scale) {
            m_textScale = scale;
            Q_EMIT textScaleChanged();
        }
    }

Q_SIGNALS:
    void textScaleChanged();

private:
    [[nodiscard]] int grown(int length) const { return qRound(length * m_textScale); }
    [[nodiscard]] int grownSymbolTiny() const { return grown(symbolTiny); }
    [[nodiscard]] int grownSymbolSmall() const { return grown(symbolSmall); }
    [[nodiscard]] int grownSymbolText() const { return grown(symbolText); }
    [[nodiscard]] int grownSymbolControl() const { return grown(symbolControl); }
    [[nodiscard]] int grownSymbolStandard() const { return grown(symbolStandard); }
    [[nodiscard]] int grownCheckBoxSize() const { return grown(checkBoxSize); }
    [[nodiscard]] int grownListHeight() const { return grown(listHeight); }
    [[nodiscard]] int grownDropAreaHeight() const { return grown(dropAreaHeight); }
    [[nodiscard]] int grownEmptyStateWidth() const { return grown(emptyStateWidth); }
    [[nodiscard]] int grownSearchWidth() const { return grown(searchWidth); }
    [[nodiscard]] int grownBadgeColumnWidth() const { return grown(badgeColumnWidth); }
    [[nodiscard]] int grownStepperField() const { return grown(stepperField); }
    [[nodiscard]] int grownMenuWidth() const { return grown(menuWidth); }
    [[nodiscard]] int grownWideMenuWidth() const { return grown(wideMenuWidth); }
    [[nodiscard]] int grownPickerMinimumWidth() const { return grown(pickerMinimumWidth); }
    [[nodiscard]] int grownRevealButtonWidth() const { return grown(revealButtonWidth); }
    [[nodiscard]] int grownSheetMinimumWidth() const { return grown(sheetMinimumWidth); }
    [[nodiscard]] int grownSheetMaximumWidth() const { return grown(sheetMaximumWidth); }
    [[nodiscard]] int grownSmallSheetMinimumWidth() const { return grown(smallSheetMinimumWidth); }
    [[nodiscard]] int grownWarningSheetMinimumWidth() const { return grown(warningSheetMinimumWidth); }
    [[nodiscard]] int grownSheetBodyWidth() const { return grown(sheetBodyWidth); }
    [[nodiscard]] int grownSheetFieldWidth() const { return grown(sheetFieldWidth); }
    [[nodiscard]] int grownSheetButtonWidth() const { return grown(sheetButtonWidth); }
    [[nodiscard]] int grownShortListHeight() const { return grown(shortListHeight); }
    [[nodiscard]] int grownTallListHeight() const { return grown(tallListHeight); }
    [[nodiscard]] int grownNameListHeight() const { return grown(nameListHeight); }
    [[nodiscard]] int grownCompactNameListHeight() const { return grown(compactNameListHeight); }
    [[nodiscard]] int grownCompactList() const { return grown(compactList); }
    [[nodiscard]] int grownCompactSheet() const { return grown(compactSheet); }
    [[nodiscard]] int grownCompactWindow() const { return grown(compactWindow); }
    [[nodiscard]] int grownRoomyWindow() const { return grown(roomyWindow); }
    [[nodiscard]] int grownNarrowBar() const { return grown(narrowBar); }
    [[nodiscard]] int grownNarrowToolbar() const { return grown(narrowToolbar); }
    [[nodiscard]] int grownPopoverWidth() const { return grown(popoverWidth); }
    [[nodiscard]] int grownPopoverHeight() const { return grown(popoverHeight); }
    [[nodiscard]] int grownPopoverContentWidth() const { return grown(popoverContentWidth); }
    [[nodiscard]] int grownPopoverListHeight() const { return grown(popoverListHeight); }

    double m_textScale = 1;
};

} // namespace quillhaven
