// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/tokens/Symbols.h"

#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

namespace quillhaven {

QString symbolPath(const QString &symbol)
{
    const QString path = QStringLiteral(":/symbols/%1.svg").arg(symbol);
    return QFile::exists(path) ? path : QString();
}

QPixmap SymbolImageProvider::requestPixmap(const QString &id, QSize *size, const QSize &requestedSize)
{
    const QString path = symbolPath(id.section(QLatin1Char('/'), 0, 0));
    if (path.isEmpty()) {
        return {};
    }
    const QColor color(QLatin1Char('#') + id.section(QLatin1Char('/'), 1, 1));
    const QSize pixels = requestedSize.isValid() && !requestedSize.isEmpty() ? requestedSize : QSize(24, 24);
    if (size) {
        *size = pixels;
    }
    QPixmap pixmap(pixels);
    pixmap.fill(Qt::transparent);
    QSvgRenderer renderer(path);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    renderer.render(&painter, QRectF(QPointF(0, 0), pixels));
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(pixmap.rect(), color);
    return pixmap;
}

} // namespace quillhaven
