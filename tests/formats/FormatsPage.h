// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "support/TemporaryHome.h"

#include <QString>

namespace quillhaven::test {

/// The bytes of the hex block after a bold word in the worked examples of `docs/formats.md`.
inline QByteArray exampleInPage(const QString &pagePath, const QString &word)
{
    const QString page = QString::fromUtf8(TemporaryHome::read(pagePath));
    const QString block = page.section(QStringLiteral("**") + word, 1).section(QStringLiteral("```hex"), 1);
    return QByteArray::fromHex(block.section(QStringLiteral("```"), 0, 0).toLatin1());
}

} // namespace quillhaven::test
