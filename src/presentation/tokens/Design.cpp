// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/tokens/Design.h"

#include "presentation/tokens/Symbols.h"

#include <QQmlEngine>

namespace quillhaven {

void installDesign(QQmlEngine &engine)
{
    engine.addImportPath(QStringLiteral("qrc:/"));
    engine.addImageProvider(QStringLiteral("symbols"), new SymbolImageProvider);
}

} // namespace quillhaven
