// SPDX-License-Identifier: GPL-3.0-or-later

#include "extension/MenuFiles.h"

#include "extension/OwnFile.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace quillhaven {

namespace {

constexpr qsizetype bytesWithMark = 512;

bool isOurs(const FileAtPlace &found)
{
    return found.kind == FileAtPlace::Kind::File && found.contents.left(bytesWithMark).contains(menuFileMark);
}

QString sentenceForForeign(const QString &path)
{
    return QStringLiteral("%1 does not belong to Quillhaven and is left as it is.").arg(path);
}

/// What Python keeps of a module beside it.
void removeCompiled(const QString &module)
{
    const QFileInfo info(module);
    QDir cache(info.path() + QStringLiteral("/__pycache__"));
    if (info.suffix() != QStringLiteral("py") || !cache.exists()) {
        return;
    }
    for (const QString &name : cache.entryList({info.completeBaseName() + QStringLiteral(".*.pyc")}, QDir::Files)) {
        cache.remove(name);
    }
    cache.rmdir(cache.path()); // only when it is empty
}

} // namespace

bool MenuFiles::isCurrent() const
{
    return std::ranges::all_of(m_files, [](const MenuFile &file) {
        const FileAtPlace found = fileAt(file.path);
        return found.kind == FileAtPlace::Kind::File && found.contents == file.contents &&
               (!file.isExecutable || found.isExecutable);
    });
}

std::optional<QString> MenuFiles::install() const
{
    for (const MenuFile &file : m_files) {
        const FileAtPlace found = fileAt(file.path);
        if (found.kind != FileAtPlace::Kind::Missing && !isOurs(found)) {
            return sentenceForForeign(file.path);
        }
    }
    for (const MenuFile &file : m_files) {
        if (const auto failure = writeInOneStep(file.path, file.contents, file.isExecutable)) {
            return failure;
        }
    }
    return std::nullopt;
}

std::optional<QString> MenuFiles::remove() const
{
    std::optional<QString> failure;
    for (const MenuFile &file : m_files) {
        if (!isOurs(fileAt(file.path))) {
            continue;
        }
        if (const auto reason = removeFile(file.path)) {
            failure = reason;
        }
        removeCompiled(file.path);
    }
    return failure;
}

} // namespace quillhaven
