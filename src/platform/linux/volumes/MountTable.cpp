// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/volumes/MountTable.h"

#include <QList>

#include <sys/sysmacros.h>

namespace quillhaven {

namespace {

/// Spaces, tabs, line feeds and backslashes are written as a backslash with three octal digits.
QByteArray unescaped(const QByteArray &field)
{
    QByteArray text;
    for (qsizetype i = 0; i < field.size(); ++i) {
        bool isNumber = false;
        const uint code = field.at(i) == '\\' ? field.mid(i + 1, 3).toUInt(&isNumber, 8) : 0;
        text.append(isNumber ? static_cast<char>(code) : field.at(i));
        i += isNumber ? 3 : 0;
    }
    return text;
}

dev_t deviceOf(const QByteArray &numbers)
{
    const qsizetype colon = numbers.indexOf(':');
    return makedev(numbers.left(colon).toUInt(), numbers.mid(colon + 1).toUInt());
}

} // namespace

std::optional<MountEntry> findMount(const QByteArray &mountinfo, uint64_t id)
{
    const QByteArray number = QByteArray::number(static_cast<qulonglong>(id));
    for (const QByteArray &line : mountinfo.split('\n')) {
        const QList<QByteArray> fields = line.split(' ');
        // A hyphen ends the optional fields, of which there may be none.
        const qsizetype hyphen = fields.indexOf("-", 6);
        if (fields.constFirst() == number && hyphen > 0 && hyphen + 2 < fields.size()) {
            return MountEntry{.device = deviceOf(fields.at(2)),
                              .mountPoint = unescaped(fields.at(4)),
                              .type = fields.at(hyphen + 1),
                              .source = unescaped(fields.at(hyphen + 2))};
        }
    }
    return std::nullopt;
}

} // namespace quillhaven
