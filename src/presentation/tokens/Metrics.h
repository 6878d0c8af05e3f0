// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace quillhaven {

/// Sizes of symbols, rows and controls, the sizes at which a screen changes its arrangement, opacities and delays.
/// Lengths are device-independent pixels.
class Metrics : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(int symbolTiny MEMBER symbolTiny CONSTANT)
    Q_PROPERTY(int symbolSmall MEMBER symbolSmall CONSTANT)
    Q_PROPERTY(int symbolText MEMBER symbolText CONSTANT)
    Q_PROPERTY(int symbolControl MEMBER symbolControl CONSTANT)
    Q_PROPERTY(int symbolEntry MEMBER symbolEntry CONSTANT)
    Q_PROPERTY(int symbolStandard MEMBER symbolStandard CONSTANT)
    Q_PROPERTY(int symbolRow MEMBER symbolRow CONSTANT)
    Q_PROPERTY(int symbolLarge MEMBER symbolLarge CONSTANT)
    Q_PROPERTY(int badgeHeight MEMBER badgeHeight CONSTANT)
    Q_PROPERTY(int menuRowHeight MEMBER menuRowHeight CONSTANT)
    Q_PROPERTY(int entryHeight MEMBER entryHeight CONSTANT)
    Q_PROPERTY(int listRowHeight MEMBER listRowHeight CONSTANT)
    Q_PROPERTY(int statCardHeight MEMBER statCardHeight CONSTANT)
    Q_PROPERTY(int compactStatCardHeight MEMBER compactStatCardHeight CONSTANT)
    Q_PROPERTY(int dropAreaHeight MEMBER dropAreaHeight CONSTANT)
    Q_PROPERTY(int stepCircle MEMBER stepCircle CONSTANT)
    Q_PROPERTY(int emptyCircle MEMBER emptyCircle CONSTANT)
    Q_PROPERTY(int emptyStateWidth MEMBER emptyStateWidth CONSTANT)
    Q_PROPERTY(int searchWidth MEMBER searchWidth CONSTANT)
    Q_PROPERTY(int badgeColumnWidth MEMBER badgeColumnWidth CONSTANT)
    Q_PROPERTY(int cardHeight MEMBER cardHeight CONSTANT)
    Q_PROPERTY(int inputHeight MEMBER inputHeight CONSTANT)
    Q_PROPERTY(int smallButton MEMBER smallButton CONSTANT)
    Q_PROPERTY(int checkBoxSize MEMBER checkBoxSize CONSTANT)
    Q_PROPERTY(int menuWidth MEMBER menuWidth CONSTANT)
    Q_PROPERTY(int wideMenuWidth MEMBER wideMenuWidth CONSTANT)
    Q_PROPERTY(int pickerMinimumWidth MEMBER pickerMinimumWidth CONSTANT)
    Q_PROPERTY(int buttonMinimumWidth MEMBER buttonMinimumWidth CONSTANT)
    Q_PROPERTY(int revealButtonWidth MEMBER revealButtonWidth CONSTANT)
    Q_PROPERTY(int firstFrames MEMBER firstFrames CONSTANT)
    Q_PROPERTY(int closeButton MEMBER closeButton CONSTANT)
    Q_PROPERTY(int stepperField MEMBER stepperField CONSTANT)
    Q_PROPERTY(int sheetMinimumWidth MEMBER sheetMinimumWidth CONSTANT)
    Q_PROPERTY(int sheetMaximumWidth MEMBER sheetMaximumWidth CONSTANT)
    Q_PROPERTY(int smallSheetMinimumWidth MEMBER smallSheetMinimumWidth CONSTANT)
    Q_PROPERTY(int warningSheetMinimumWidth MEMBER warningSheetMinimumWidth CONSTANT)
    Q_PROPERTY(int sheetBodyWidth MEMBER sheetBodyWidth CONSTANT)
    Q_PROPERTY(int sheetFieldWidth MEMBER sheetFieldWidth CONSTANT)
    Q_PROPERTY(int sheetButtonWidth MEMBER sheetButtonWidth CONSTANT)
    Q_PROPERTY(int sheetSymbolCircle MEMBER sheetSymbolCircle CONSTANT)
    Q_PROPERTY(int largeSheetSymbolCircle MEMBER largeSheetSymbolCircle CONSTANT)
    Q_PROPERTY(int shortListHeight MEMBER shortListHeight CONSTANT)
    Q_PROPERTY(int tallListHeight MEMBER tallListHeight CONSTANT)
    Q_PROPERTY(int nameRowHeight MEMBER nameRowHeight CONSTANT)
    Q_PROPERTY(int nameListHeight MEMBER nameListHeight CONSTANT)
    Q_PROPERTY(int compactNameListHeight MEMBER compactNameListHeight CONSTANT)
    Q_PROPERTY(int windowWidth MEMBER windowWidth CONSTANT)
    Q_PROPERTY(int windowHeight MEMBER windowHeight CONSTANT)
    Q_PROPERTY(int windowMinimumHeight MEMBER windowMinimumHeight CONSTANT)
    Q_PROPERTY(int focusRingGap MEMBER focusRingGap CONSTANT)
    Q_PROPERTY(int compactList MEMBER compactList CONSTANT)
    Q_PROPERTY(int compactSheet MEMBER compactSheet CONSTANT)
    Q_PROPERTY(int compactWindow MEMBER compactWindow CONSTANT)
    Q_PROPERTY(int roomyWindow MEMBER roomyWindow CONSTANT)
    Q_PROPERTY(int narrowBar MEMBER narrowBar CONSTANT)
    Q_PROPERTY(int narrowToolbar MEMBER narrowToolbar CONSTANT)
    Q_PROPERTY(int popoverWidth MEMBER popoverWidth CONSTANT)
    Q_PROPERTY(int popoverHeight MEMBER popoverHeight CONSTANT)
    Q_PROPERTY(int popoverContentWidth MEMBER popoverContentWidth CONSTANT)
    Q_PROPERTY(int popoverListHeight MEMBER popoverListHeight CONSTANT)
    Q_PROPERTY(int popoverFooterHeight MEMBER popoverFooterHeight CONSTANT)
    Q_PROPERTY(int popoverRowHeight MEMBER popoverRowHeight CONSTANT)
    Q_PROPERTY(int popoverSymbolFrame MEMBER popoverSymbolFrame CONSTANT)
    Q_PROPERTY(int popoverBadgePadding MEMBER popoverBadgePadding CONSTANT)
    Q_PROPERTY(double popoverRule MEMBER popoverRule CONSTANT)
    Q_PROPERTY(double popoverHoverOpacity MEMBER popoverHoverOpacity CONSTANT)
    Q_PROPERTY(double disabledOpacity MEMBER disabledOpacity CONSTANT)
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
    static constexpr int statCardHeight = 104;
    static constexpr int compactStatCardHeight = 78;
    static constexpr int dropAreaHeight = 130;
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
    static constexpr int windowHeight = 900;
    static constexpr int windowMinimumHeight = 560; ///< the minimum width is `narrowBar`

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
    static constexpr int narrowBar = 760; ///< for the actions on selected items; also the minimum width
    static constexpr int narrowToolbar = 860;

    static constexpr double smallIndicatorScale = 0.8; ///< of an activity indicator beside a text

    // Opacities
    static constexpr double disabledOpacity = 0.45;
    static constexpr double tintOpacity = 0.16; ///< of the circle behind a symbol
    static constexpr double badgeOpacity = 0.18;
    static constexpr double popoverHoverOpacity = 0.8;

    // Milliseconds
    static constexpr int springDuration = 600; ///< of a symbol that grows to its full size
    static constexpr int toolTipDelay = 600;
};

} // namespace quillhaven
