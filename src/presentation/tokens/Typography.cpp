// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/tokens/Typography.h"

#include <QFontDatabase>

namespace quillhaven {

QString Typography::family()
{
    static const QString resolved = [] {
        const QStringList installed = QFontDatabase::families();
        for (const QString &wanted : {textFont, QStringLiteral("Inter")}) {
            if (installed.contains(wanted)) {
                return wanted;
            }
        }
        return QFontDatabase::systemFont(QFontDatabase::GeneralFont).family();
    }();
    return resolved;
}

void Typography::setScale(double scale)
{
    if (m_scale != scale) {
        m_scale = scale;
        Q_EMIT scaleChanged();
    }
}

QFont Typography::scaledFont(int size, QFont::Weight weight, Design design)
{
    QFont font(family());
    if (design == Design::monospaced) {
        font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
        font.setStyleHint(QFont::Monospace);
    } else if (design == Design::serif) {
        font = QFont(QStringLiteral("serif"));
        font.setStyleHint(QFont::Serif);
    }
    font.setPixelSize(size);
    font.setWeight(weight);
    return font;
}

} // namespace quillhaven
