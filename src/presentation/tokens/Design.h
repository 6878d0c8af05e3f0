// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QtGlobal>

QT_BEGIN_NAMESPACE
class QQmlEngine;
QT_END_NAMESPACE

namespace quillhaven {

/// Makes the program's QML modules and the symbols known to an engine. Call it before loading anything.
void installDesign(QQmlEngine &engine);

} // namespace quillhaven
