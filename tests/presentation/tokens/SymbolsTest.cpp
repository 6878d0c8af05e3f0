// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/tokens/Symbols.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QXmlStreamReader>

#include <gtest/gtest.h>

#include <cmath>

namespace quillhaven {
namespace {

QStringList symbolNames()
{
    QStringList names;
    for (const QString &file : QDir(QStringLiteral(":/symbols")).entryList()) {
        names.append(file.chopped(4));
    }
    return names;
}

QImage drawn(const QString &symbol, const QColor &color, int size)
{
    SymbolImageProvider provider;
    QSize reportedSize;
    const QPixmap pixmap = provider.requestPixmap(symbol + QLatin1Char('/') + color.name(QColor::HexArgb).mid(1),
                                                  &reportedSize, {size, size});
    EXPECT_EQ(reportedSize, QSize(size, size)) << qUtf8Printable(symbol);
    EXPECT_EQ(pixmap.size(), QSize(size, size)) << qUtf8Printable(symbol);
    return pixmap.toImage().convertToFormat(QImage::Format_ARGB32);
}

int alphaAt(const QImage &image, int x, int y)
{
    return qAlpha(image.pixel(x, y));
}

/// The box around everything that can be seen, in units of the grid.
QRectF inkBox(const QString &symbol)
{
    constexpr int pixelsPerUnit = 20;
    constexpr int visible = 64;
    const QImage image = drawn(symbol, Qt::black, 24 * pixelsPerUnit);
    QRect box;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (alphaAt(image, x, y) >= visible) {
                box |= QRect(x, y, 1, 1);
            }
        }
    }
    return {QPointF(box.topLeft()) / pixelsPerUnit, QSizeF(box.size()) / pixelsPerUnit};
}

/// How much two pictures of the same size differ, in fully different pixels.
double difference(const QImage &one, const QImage &other)
{
    double sum = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            sum += std::abs(alphaAt(one, x, y) - alphaAt(other, x, y)) / 255.0;
        }
    }
    return sum;
}

TEST(Symbols, EveryDrawingIsShownOnlyInTheRequestedColour)
{
    const QColor ink(85, 77, 221);
    ASSERT_GT(symbolNames().size(), 60);
    for (const QString &symbol : symbolNames()) {
        const QImage image = drawn(symbol, ink, 44);
        int inked = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (alphaAt(image, x, y) == 255) {
                    EXPECT_EQ(image.pixel(x, y), ink.rgb()) << qUtf8Printable(symbol);
                    ++inked;
                }
            }
        }
        EXPECT_GT(inked, 40) << qUtf8Printable(symbol);
    }
}

TEST(Symbols, NoTwoLookAlikeAtTheSizeOfAButton)
{
    constexpr double leastDifference = 6;
    const QStringList names = symbolNames();
    QList<QImage> pictures;
    for (const QString &name : names) {
        pictures.append(drawn(name, Qt::white, 18));
    }
    for (int one = 0; one < names.size(); ++one) {
        for (int other = one + 1; other < names.size(); ++other) {
            EXPECT_GT(difference(pictures.at(one), pictures.at(other)), leastDifference)
                << qUtf8Printable(names.at(one)) << " and " << qUtf8Printable(names.at(other));
        }
    }
}

TEST(Symbols, EveryDrawingIsCentredAndKeepsItsDistanceFromTheEdges)
{
    constexpr double padding = 2;
    constexpr double tolerance = 0.1;
    constexpr double centreTolerance = 0.3;
    for (const QString &symbol : symbolNames()) {
        const QRectF box = inkBox(symbol);
        EXPECT_GE(box.left(), padding - tolerance) << qUtf8Printable(symbol);
        EXPECT_GE(box.top(), padding - tolerance) << qUtf8Printable(symbol);
        EXPECT_LE(box.right(), 24 - padding + tolerance) << qUtf8Printable(symbol);
        EXPECT_LE(box.bottom(), 24 - padding + tolerance) << qUtf8Printable(symbol);
        EXPECT_NEAR(box.center().x(), 12, centreTolerance) << qUtf8Printable(symbol);
        EXPECT_NEAR(box.center().y(), 12, centreTolerance) << qUtf8Printable(symbol);
    }
}

TEST(Symbols, AllLinesHaveOneWidthAndRoundEnds)
{
    for (const QString &symbol : symbolNames()) {
        QFile file(symbolPath(symbol));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << qUtf8Printable(symbol);
        QXmlStreamReader xml(&file);
        int lines = 0;
        int shapes = 0;
        while (!xml.atEnd()) {
            xml.readNext();
            if (!xml.isStartElement()) {
                continue;
            }
            const QXmlStreamAttributes attributes = xml.attributes();
            if (xml.name() == QLatin1String("svg")) {
                EXPECT_EQ(attributes.value(QLatin1String("viewBox")), QLatin1String("0 0 24 24"));
            } else if (xml.name() == QLatin1String("g")) {
                ++lines;
                EXPECT_EQ(attributes.value(QLatin1String("stroke-width")), QLatin1String("1.75"))
                    << qUtf8Printable(symbol);
                EXPECT_EQ(attributes.value(QLatin1String("stroke-linecap")), QLatin1String("round"))
                    << qUtf8Printable(symbol);
                EXPECT_EQ(attributes.value(QLatin1String("stroke-linejoin")), QLatin1String("round"))
                    << qUtf8Printable(symbol);
            } else {
                EXPECT_EQ(xml.name(), QLatin1String("path")) << qUtf8Printable(symbol);
                EXPECT_FALSE(attributes.hasAttribute(QLatin1String("stroke-width"))) << qUtf8Printable(symbol);
                ++shapes;
            }
        }
        EXPECT_FALSE(xml.hasError()) << qUtf8Printable(symbol);
        EXPECT_LE(lines, 1) << qUtf8Printable(symbol);
        EXPECT_GT(shapes, 0) << qUtf8Printable(symbol);
    }
}

TEST(Symbols, FilledSymbolsHaveMoreInkThanTheirOutlines)
{
    for (const QString &symbol : symbolNames()) {
        const QString filled = symbol + QStringLiteral(".fill");
        if (symbolPath(filled).isEmpty()) {
            continue;
        }
        const auto ink = [](const QString &name) {
            const QImage image = drawn(name, Qt::white, 48);
            QImage empty(image.size(), image.format());
            empty.fill(Qt::transparent);
            return difference(image, empty);
        };
        EXPECT_GT(ink(filled), 1.2 * ink(symbol)) << qUtf8Printable(symbol);
    }
}

TEST(Symbols, MarksInFilledShapesAreHoles)
{
    // The centres of the strokes of a tick, a dash and an x.
    EXPECT_EQ(alphaAt(drawn(QStringLiteral("checkmark.circle.fill"), Qt::white, 240), 105, 157), 0);
    EXPECT_EQ(alphaAt(drawn(QStringLiteral("minus.circle.fill"), Qt::white, 240), 120, 120), 0);
    EXPECT_EQ(alphaAt(drawn(QStringLiteral("xmark.circle.fill"), Qt::white, 240), 100, 100), 0);
    EXPECT_EQ(alphaAt(drawn(QStringLiteral("minus.circle.fill"), Qt::white, 240), 120, 60), 255);
}

TEST(Symbols, LargePictureHasSharpEdges)
{
    const QImage image = drawn(QStringLiteral("square"), Qt::white, 240);
    int soft = 0;
    for (int x = 0; x < image.width(); ++x) {
        const int alpha = alphaAt(image, x, image.height() / 2);
        soft += alpha > 0 && alpha < 255 ? 1 : 0;
    }
    // At most one pixel for each edge of the two lines.
    EXPECT_LE(soft, 4);
}

TEST(Symbols, UnknownNameHasNoPathAndNoPicture)
{
    EXPECT_TRUE(symbolPath(QStringLiteral("no.such.symbol")).isEmpty());
    EXPECT_TRUE(symbolPath(QString()).isEmpty());
    EXPECT_TRUE(
        SymbolImageProvider().requestPixmap(QStringLiteral("no.such.symbol/ffffffff"), nullptr, {22, 22}).isNull());
}

TEST(Symbols, HalfOpaqueColourStaysHalfOpaque)
{
    const QImage image = drawn(QStringLiteral("plus"), QColor(255, 255, 255, 128), 44);
    EXPECT_EQ(alphaAt(image, 22, 22), 128);
}

} // namespace
} // namespace quillhaven
