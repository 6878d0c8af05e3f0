// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QtGlobal>

QT_BEGIN_NAMESPACE
class QQuickWindow;
QT_END_NAMESPACE

namespace quillhaven {

/// Lets a key that is held down act only once in the window: a held Return would answer the questions that it asks for.
/// Keys that move repeat as usual, and so does everything that a text field understands.
void ignoreHeldKeys(QQuickWindow &window);

} // namespace quillhaven
