#pragma once

#include <QtGlobal>

QT_BEGIN_NAMESPACE
class QQmlEngine;
QT_END_NAMESPACE

namespace quillhaven {

/// Makes the QML module `Quillhaven.Design` and the symbols known to an engine. Call it before loading anything.
void installDesign(QQmlEngine &engine);

} // namespace quillhaven
