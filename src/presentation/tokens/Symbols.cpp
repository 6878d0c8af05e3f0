// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/tokens/Symbols.h"

#include <QImage>
#include <QPainter>
#include <QStandardPaths>
#include <QSvgRenderer>

#include <algorithm>

namespace quillhaven {

const QHash<QString, QString> &symbolFiles()
{
    static const QHash<QString, QString> files{
        {QStringLiteral("arrow.clockwise"), QStringLiteral("actions/22/view-refresh.svg")},
        {QStringLiteral("arrow.clockwise.circle"), QStringLiteral("actions/22/view-refresh.svg")},
        {QStringLiteral("arrow.triangle.2.circlepath"), QStringLiteral("actions/22/view-refresh.svg")},
        {QStringLiteral("arrow.uturn.backward"), QStringLiteral("actions/22/edit-undo.svg")},
        {QStringLiteral("checkmark.circle.fill"), QStringLiteral("actions/22/checkmark.svg")},
        {QStringLiteral("checkmark.square.fill"), QStringLiteral("actions/22/checkbox.svg")},
        {QStringLiteral("chevron.down"), QStringLiteral("actions/22/go-down.svg")},
        {QStringLiteral("chevron.right"), QStringLiteral("actions/22/go-next.svg")},
        {QStringLiteral("circle"), QStringLiteral("actions/22/draw-circle.svg")},
        {QStringLiteral("clock.fill"), QStringLiteral("actions/22/clock.svg")},
        {QStringLiteral("doc.fill"), QStringLiteral("mimetypes/22/unknown.svg")},
        {QStringLiteral("doc.on.clipboard"), QStringLiteral("actions/22/edit-copy-path.svg")},
        {QStringLiteral("doc.text.fill"), QStringLiteral("mimetypes/22/text-plain.svg")},
        {QStringLiteral("exclamationmark.octagon.fill"), QStringLiteral("status/22/data-error.svg")},
        {QStringLiteral("envelope.fill"), QStringLiteral("actions/22/mail-message-new.svg")},
        {QStringLiteral("exclamationmark.triangle"), QStringLiteral("status/22/data-warning.svg")},
        {QStringLiteral("exclamationmark.triangle.fill"), QStringLiteral("status/22/data-warning.svg")},
        {QStringLiteral("eye.fill"), QStringLiteral("actions/22/password-show-on.svg")},
        {QStringLiteral("eye.slash.fill"), QStringLiteral("actions/22/password-show-off.svg")},
        {QStringLiteral("folder"), QStringLiteral("places/22/folder.svg")},
        {QStringLiteral("folder.badge.minus"), QStringLiteral("actions/22/archive-remove.svg")},
        {QStringLiteral("folder.badge.plus"), QStringLiteral("actions/22/folder-new.svg")},
        {QStringLiteral("folder.badge.questionmark"), QStringLiteral("actions/22/question.svg")},
        {QStringLiteral("folder.fill"), QStringLiteral("places/22/folder-open.svg")},
        {QStringLiteral("gear"), QStringLiteral("actions/22/configure.svg")},
        {QStringLiteral("gearshape"), QStringLiteral("actions/22/configure.svg")},
        {QStringLiteral("gearshape.fill"), QStringLiteral("actions/22/configure.svg")},
        {QStringLiteral("icloud"), QStringLiteral("actions/22/cloud-upload.svg")},
        {QStringLiteral("icloud.fill"), QStringLiteral("actions/22/cloud-upload.svg")},
        {QStringLiteral("info.circle"), QStringLiteral("actions/22/help-about.svg")},
        {QStringLiteral("info.circle.fill"), QStringLiteral("actions/22/help-about.svg")},
        {QStringLiteral("key.fill"), QStringLiteral("mimetypes/22/application-pgp-keys.svg")},
        {QStringLiteral("lightbulb.fill"), QStringLiteral("actions/22/games-hint.svg")},
        {QStringLiteral("line.3.horizontal.decrease.circle.fill"), QStringLiteral("actions/22/view-filter.svg")},
        {QStringLiteral("lock"), QStringLiteral("actions/22/lock.svg")},
        {QStringLiteral("lock.fill"), QStringLiteral("actions/22/object-locked.svg")},
        {QStringLiteral("lock.open"), QStringLiteral("actions/22/unlock.svg")},
        {QStringLiteral("lock.open.fill"), QStringLiteral("actions/22/object-unlocked.svg")},
        {QStringLiteral("lock.rotation"), QStringLiteral("actions/22/system-lock-screen.svg")},
        {QStringLiteral("lock.shield"), QStringLiteral("status/22/security-high.svg")},
        {QStringLiteral("lock.shield.fill"), QStringLiteral("status/22/security-high.svg")},
        {QStringLiteral("magnifyingglass"), QStringLiteral("actions/22/edit-find.svg")},
        {QStringLiteral("minus"), QStringLiteral("actions/22/list-remove.svg")},
        {QStringLiteral("minus.circle.fill"), QStringLiteral("actions/22/list-remove.svg")},
        {QStringLiteral("photo.fill"), QStringLiteral("actions/22/viewimage.svg")},
        {QStringLiteral("plus"), QStringLiteral("actions/22/list-add.svg")},
        {QStringLiteral("plus.circle"), QStringLiteral("actions/22/list-add.svg")},
        {QStringLiteral("plus.circle.fill"), QStringLiteral("actions/22/list-add.svg")},
        {QStringLiteral("plus.square.on.square"), QStringLiteral("actions/22/edit-copy.svg")},
        {QStringLiteral("power"), QStringLiteral("actions/22/system-shutdown.svg")},
        {QStringLiteral("questionmark.circle"), QStringLiteral("actions/22/question.svg")},
        {QStringLiteral("questionmark.circle.fill"), QStringLiteral("actions/22/question.svg")},
        {QStringLiteral("shield.fill"), QStringLiteral("status/22/security-high.svg")},
        {QStringLiteral("square"), QStringLiteral("actions/22/draw-rectangle.svg")},
        {QStringLiteral("square.stack.3d.up.fill"), QStringLiteral("actions/22/document-multiple.svg")},
        {QStringLiteral("touchid"), QStringLiteral("actions/22/fingerprint.svg")},
        {QStringLiteral("trash.fill"), QStringLiteral("actions/22/edit-delete.svg")},
        {QStringLiteral("tray.and.arrow.down.fill"), QStringLiteral("actions/22/download.svg")},
        {QStringLiteral("xmark"), QStringLiteral("actions/22/dialog-close.svg")},
        {QStringLiteral("xmark.circle.fill"), QStringLiteral("actions/22/window-close.svg")},
    };
    return files;
}

QString symbolPath(const QString &symbol)
{
    const QString file = symbolFiles().value(symbol);
    if (file.isEmpty()) {
        return {};
    }
    return QStandardPaths::locate(QStandardPaths::GenericDataLocation, QStringLiteral("icons/breeze/") + file);
}

namespace {

/// Makes the white parts of a drawing transparent: a white mark in a filled shape would vanish when all of it gets one
/// colour.
void cutOutWhite(QImage &image)
{
    constexpr int keptUpTo = 128;
    for (int y = 0; y < image.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = line[x];
            const int whiteness = std::min({qRed(pixel), qGreen(pixel), qBlue(pixel)});
            const int kept = std::clamp(255 - (whiteness - keptUpTo) * 255 / (255 - keptUpTo), 0, 255);
            line[x] = qRgba(qRed(pixel), qGreen(pixel), qBlue(pixel), qAlpha(pixel) * kept / 255);
        }
    }
}

} // namespace

QPixmap SymbolImageProvider::requestPixmap(const QString &id, QSize *size, const QSize &requestedSize)
{
    const QString symbol = id.section(QLatin1Char('/'), 0, 0);
    const QColor color(QLatin1Char('#') + id.section(QLatin1Char('/'), 1, 1));
    const QSize pixels = requestedSize.isValid() && !requestedSize.isEmpty() ? requestedSize : QSize(22, 22);
    if (size) {
        *size = pixels;
    }
    const QString path = symbolPath(symbol);
    if (path.isEmpty()) {
        QPixmap nothing(pixels);
        nothing.fill(Qt::transparent);
        return nothing;
    }
    QImage image(pixels, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QSvgRenderer renderer(path);
    QPainter drawing(&image);
    drawing.setRenderHint(QPainter::Antialiasing);
    renderer.render(&drawing, QRectF(QPointF(0, 0), pixels));
    drawing.end();
    cutOutWhite(image);
    // The theme's drawings have their own colours; only the shapes are used.
    QPixmap pixmap = QPixmap::fromImage(image);
    QPainter tinting(&pixmap);
    tinting.setCompositionMode(QPainter::CompositionMode_SourceIn);
    tinting.fillRect(pixmap.rect(), color);
    return pixmap;
}

} // namespace quillhaven
