// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QtGlobal>

QT_BEGIN_NAMESPACE
class QQmlEngine;
QT_END_NAMESPACE

namespace quillhaven {

/// Registers the program's QML modules and the symbols with an engine. Call it before loading any QML.
void installDesign(QQmlEngine &engine);

} // namespace quillhaven
