// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QtGlobal>

QT_BEGIN_NAMESPACE
class QQmlEngine;
QT_END_NAMESPACE

namespace quillhaven {

class DisplayPreferences;

/// Registers the program's QML modules and the symbols with an engine. Call it before loading any QML.
void installDesign(QQmlEngine &engine);

/// After installDesign: the design follows how the user wants programs to look, now and from then on.
void followDisplay(QQmlEngine &engine, const DisplayPreferences &display);

/// How much larger texts are to be drawn where everything is already drawn `screenScale` times as large. On X11 the
/// settings services of the desktops multiply the resolution that they report by the scale of texts, and the toolkit
/// enlarges everything by it: a text that was enlarged so is not enlarged again.
[[nodiscard]] double textScaleBeside(double screenScale, double textScale);

/// The scale at which the program draws texts, beside that of everything else.
[[nodiscard]] double shownTextScale(const DisplayPreferences &display);

} // namespace quillhaven
