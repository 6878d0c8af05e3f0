// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/files/ControlGroupMemory.h"

#include "support/Paths.h"

#include <QByteArray>
#include <QFile>

#include <algorithm>

namespace quillhaven {

namespace {

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed() : QByteArray();
}

/// The path of the group below the folder of all groups; empty without cgroup v2.
QString groupIn(const QByteArray &membership)
{
    for (const QByteArray &line : membership.split('\n')) {
        if (line.startsWith("0::/")) {
            return QFile::decodeName(line.mid(3));
        }
    }
    return {};
}

size_t cachedFiles(const QByteArray &statistics)
{
    size_t sum = 0;
    for (const QByteArray &line : statistics.split('\n')) {
        if (line.startsWith("active_file ") || line.startsWith("inactive_file ")) {
            sum += line.mid(line.indexOf(' ') + 1).toULongLong();
        }
    }
    return sum;
}

std::optional<size_t> memoryLeftIn(const QString &folder)
{
    bool isLimited = false;
    const size_t limit = contentOf(folder + QStringLiteral("/memory.max")).toULongLong(&isLimited); // or "max"
    if (!isLimited) {
        return std::nullopt;
    }
    const size_t current = contentOf(folder + QStringLiteral("/memory.current")).toULongLong();
    const size_t used = current - std::min(current, cachedFiles(contentOf(folder + QStringLiteral("/memory.stat"))));
    return limit - std::min(limit, used);
}

} // namespace

std::optional<size_t> memoryLeftInControlGroups(const QString &membership, const QString &root)
{
    std::optional<size_t> least;
    QString group = groupIn(contentOf(membership));
    while (!group.isEmpty()) {
        const std::optional<size_t> left = memoryLeftIn(root + group);
        if (left) {
            least = std::min(*left, least.value_or(*left));
        }
        group = group == QStringLiteral("/") ? QString() : parentDirectory(group);
    }
    return least;
}

} // namespace quillhaven
