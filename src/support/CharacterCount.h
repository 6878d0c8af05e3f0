// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <QTextBoundaryFinder>

namespace quillhaven {

/// The number of characters as a user counts them: an accented letter or an emoji is one, whatever it consists of.
[[nodiscard]] inline qsizetype characterCount(const QString &text)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qsizetype count = 0;
    while (finder.toNextBoundary() != -1) {
        ++count;
    }
    return count;
}

} // namespace quillhaven
