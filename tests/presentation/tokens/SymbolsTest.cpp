// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/tokens/Symbols.h"
#include "presentation/tokens/Colors.h"

#include <QFileInfo>
#include <QImage>
#include <QSvgRenderer>

#include <gtest/gtest.h>

namespace quillhaven {
namespace {

QImage drawn(const QString &symbol, const QColor &color, const QSize &size)
{
    SymbolImageProvider provider;
    QSize reportedSize;
    const QPixmap pixmap =
        provider.requestPixmap(symbol + QLatin1Char('/') + color.name(QColor::HexArgb).mid(1), &reportedSize, size);
    EXPECT_EQ(reportedSize, size);
    EXPECT_EQ(pixmap.size(), size);
    return pixmap.toImage();
}

TEST(Symbols, EveryNameHasAFileInTheInstalledTheme)
{
    EXPECT_GT(symbolFiles().size(), 50);
    for (auto symbol = symbolFiles().cbegin(); symbol != symbolFiles().cend(); ++symbol) {
        const QString path = symbolPath(symbol.key());
        EXPECT_TRUE(QFileInfo(path).isFile()) << qUtf8Printable(symbol.key());
        EXPECT_TRUE(QSvgRenderer(path).isValid()) << qUtf8Printable(path);
    }
}

TEST(Symbols, EverySymbolIsDrawnOnlyInTheRequestedColour)
{
    const QColor ink(85, 77, 221);
    for (const QString &symbol : symbolFiles().keys()) {
        const QImage image = drawn(symbol, ink, {44, 44});
        int inked = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QColor pixel = image.pixelColor(x, y);
                if (pixel.alpha() == 255) {
                    EXPECT_EQ(pixel.rgb(), ink.rgb()) << qUtf8Printable(symbol);
                    ++inked;
                }
            }
        }
        EXPECT_GT(inked, 20) << qUtf8Printable(symbol);
    }
}

TEST(Symbols, LockedAndUnlockedLookDifferent)
{
    EXPECT_NE(drawn(QStringLiteral("lock.fill"), Qt::white, {44, 44}),
              drawn(QStringLiteral("lock.open.fill"), Qt::white, {44, 44}));
    EXPECT_NE(drawn(QStringLiteral("eye.fill"), Qt::white, {44, 44}),
              drawn(QStringLiteral("eye.slash.fill"), Qt::white, {44, 44}));
}

TEST(Symbols, UnknownNameHasNoPathAndDrawsNothing)
{
    EXPECT_TRUE(symbolPath(QStringLiteral("no.such.symbol")).isEmpty());
    const QImage image = drawn(QStringLiteral("no.such.symbol"), Qt::white, {22, 22});
    EXPECT_EQ(image.pixelColor(11, 11).alpha(), 0);
}

TEST(Symbols, HalfOpaqueColourStaysHalfOpaque)
{
    const QImage image = drawn(QStringLiteral("plus"), QColor(255, 255, 255, 128), {44, 44});
    EXPECT_EQ(image.pixelColor(22, 22).alpha(), 128);
}

} // namespace
} // namespace quillhaven
