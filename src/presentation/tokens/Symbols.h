// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QPixmap>
#include <QQuickImageProvider>
#include <QString>

namespace quillhaven {

/// The path of a symbol's drawing, which is a resource with the symbol's name; empty if there is none.
///
/// All drawings are black on a grid of 24 by 24 and stay 2 units away from its edges; lines are 1.75 units wide.
[[nodiscard]] QString symbolPath(const QString &symbol);

/// Draws symbols in one colour for `image://symbols/NAME/AARRGGBB` or `.../RRGGBB`, at the size that the image asks
/// for. An unknown name has no image, about which the image warns.
class SymbolImageProvider : public QQuickImageProvider
{
public:
    SymbolImageProvider() : QQuickImageProvider(QQuickImageProvider::Pixmap) {}

    QPixmap requestPixmap(const QString &id, QSize *size, const QSize &requestedSize) override;
};

} // namespace quillhaven
