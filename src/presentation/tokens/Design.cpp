#include "presentation/tokens/Design.h"

#include "presentation/tokens/Symbols.h"

#include <QQmlEngine>

// Generated for the module; the reference keeps the linker from leaving the registration out of a static library.
void qml_register_types_Quillhaven_Design();

namespace quillhaven {

void installDesign(QQmlEngine &engine)
{
    qml_register_types_Quillhaven_Design();
    engine.addImportPath(QStringLiteral("qrc:/"));
    engine.addImageProvider(QStringLiteral("symbols"), new SymbolImageProvider);
}

} // namespace quillhaven
