// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QColor>
#include <QHash>
#include <QPixmap>
#include <QQuickImageProvider>
#include <QString>

namespace quillhaven {

/// The table from the names of symbols to the files of the Breeze icon theme, relative to the theme's folder.
[[nodiscard]] const QHash<QString, QString> &symbolFiles();

/// The path of a symbol's file; empty if the name is unknown or the theme does not have the file.
[[nodiscard]] QString symbolPath(const QString &symbol);

/// Draws symbols in one colour for `image://symbols/NAME/AARRGGBB`, at the size that the image asks for.
class SymbolImageProvider : public QQuickImageProvider
{
public:
    SymbolImageProvider() : QQuickImageProvider(QQuickImageProvider::Pixmap) {}

    QPixmap requestPixmap(const QString &id, QSize *size, const QSize &requestedSize) override;
};

} // namespace quillhaven
