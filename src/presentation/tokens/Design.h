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

} // namespace quillhaven
