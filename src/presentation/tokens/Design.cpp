// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/tokens/Design.h"

#include "platform/DisplayPreferences.h"
#include "presentation/tokens/Colors.h"
#include "presentation/tokens/DesignSystem.h"
#include "presentation/tokens/HighContrast.h"
#include "presentation/tokens/Symbols.h"

#include <QQmlComponent>
#include <QQmlEngine>

namespace quillhaven {

namespace {

template <typename Singleton>
Singleton &singleton(QQmlEngine &engine, const char *name)
{
    const int type = qmlTypeId("Quillhaven.Design", 1, 0, name);
    auto *found = engine.singletonInstance<Singleton *>(type);
    Q_ASSERT(found);
    return *found;
}

void apply(const DisplayPreferences::Values &wishes, Colors &colors, DesignSystem &design)
{
    const bool isHighContrast = wishes.colorSchemeContrast == DisplayPreferences::Contrast::Increased;
    colors.setTokens(isHighContrast ? highContrastTokens() : ColorTokens());
    colors.setIsHighContrast(isHighContrast);
    design.setReduceMotion(wishes.reduceMotion);
    design.setDifferentiateWithoutColor(wishes.differentiateWithoutColor);
}

} // namespace

void installDesign(QQmlEngine &engine)
{
    engine.addImportPath(QStringLiteral("qrc:/"));
    engine.addImageProvider(QStringLiteral("symbols"), new SymbolImageProvider);
}

void followDisplay(QQmlEngine &engine, const DisplayPreferences &display)
{
    // The types of a module are known from its first import on.
    QQmlComponent imports(&engine);
    imports.setData("import QtQml\nimport Quillhaven.Design\nQtObject {}", QUrl());
    auto &colors = singleton<Colors>(engine, "Colors");
    auto &design = singleton<DesignSystem>(engine, "DesignSystem");
    const auto follow = [&display, &colors, &design] { apply(display.values(), colors, design); };
    QObject::connect(&display, &DisplayPreferences::changed, &colors, follow);
    follow();
}

} // namespace quillhaven
