// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/tokens/Design.h"

#include "platform/DisplayPreferences.h"
#include "presentation/tokens/Colors.h"
#include "presentation/tokens/DesignSystem.h"
#include "presentation/tokens/HighContrast.h"
#include "presentation/tokens/Metrics.h"
#include "presentation/tokens/Symbols.h"
#include "presentation/tokens/Typography.h"

#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QScreen>

#include <cmath>

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

double textScaleBeside(double screenScale, double textScale)
{
    constexpr double tolerance = 0.02;
    return screenScale > 1 && textScale > 1 && screenScale >= textScale - tolerance ? 1 : textScale;
}

double shownTextScale(const DisplayPreferences &display)
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    if (QGuiApplication::platformName() != QLatin1String("xcb") || !screen) {
        return display.textScale();
    }
    bool isSet = false;
    const double ownFactor = qEnvironmentVariable("QT_SCALE_FACTOR").toDouble(&isSet);
    return textScaleBeside(screen->devicePixelRatio() / (isSet && ownFactor > 0 ? ownFactor : 1), display.textScale());
}

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
    auto &typography = singleton<Typography>(engine, "Typography");
    auto &metrics = singleton<Metrics>(engine, "Metrics");
    const auto follow = [&display, &colors, &design, &typography, &metrics] {
        apply(display.values(), colors, design);
        const double scale = shownTextScale(display);
        metrics.setTextScale(scale);
        typography.setScale(scale);
    };
    QObject::connect(&display, &DisplayPreferences::changed, &colors, follow);
    follow();
}

} // namespace quillhaven
