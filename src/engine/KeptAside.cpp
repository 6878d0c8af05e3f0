// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/KeptAside.h"

#include "engine/PlaceholderFile.h"
#include "platform/FileManager.h"
#include "support/Paths.h"
#include "support/printLogger.h"

namespace quillhaven {

namespace {

bool hasAnything(const FileManager &files, const QString &path)
{
    return files.fileExists(path) || files.identityOfItem(path, Links::Keep).has_value();
}

/// "letter (kept aside).txt", with as much of the name as fits beside the words.
QString asideName(const QString &name, int number)
{
    constexpr qsizetype longestName = 255; // bytes, on every file system in use
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    QString base = dot > 0 ? name.left(dot) : name;
    const QString extension = dot > 0 ? name.mid(dot) : QString();
    const QString words =
        number == 1 ? QStringLiteral(" (kept aside)") : QStringLiteral(" (kept aside %1)").arg(number);
    while (!base.isEmpty() && (base + words + extension).toUtf8().size() > longestName) {
        base.chop(base.size() > 1 && base.back().isLowSurrogate() ? 2 : 1);
    }
    return base + words + extension;
}

/// What cannot be read is not known to be a placeholder.
bool isPlaceholder(const FileManager &files, const QString &path)
{
    try {
        return holdsPieceOfPlaceholder(files, path);
    } catch (const FileError &) {
        return false; // dropped
    }
}

} // namespace

QString keepAside(FileManager &files, const QString &path)
{
    const QString folder = parentDirectory(path);
    const QString name = lastPathComponent(path);
    QString aside = pathInDirectory(folder, asideName(name, 1));
    for (int number = 2; hasAnything(files, aside); ++number) {
        aside = pathInDirectory(folder, asideName(name, number));
    }
    files.renameItem(path, aside);
    printLogger(QStringLiteral("📦 Something else was at the place of ") + path + QStringLiteral(": it is kept as ") +
                aside);
    return aside;
}

std::optional<QString> keepForeignItemAside(FileManager &files, const QString &place, const QString &privateCopy)
{
    if (!hasAnything(files, place) || !files.fileExists(privateCopy) || isPlaceholder(files, place) ||
        files.contentsEqual(place, privateCopy)) {
        return std::nullopt;
    }
    return keepAside(files, place);
}

} // namespace quillhaven
