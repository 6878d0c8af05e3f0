// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/OwnPlaces.h"

#include "support/DisplayName.h"
#include "support/Paths.h"

#include <algorithm>

namespace quillhaven {

namespace {

using Identity = std::optional<FileIdentity>;

/// Whether the item is `path` or one of the folders above it as the path names them.
bool isAtOrAboveAsNamed(const FileManager &files, const Identity &item, QString path)
{
    for (;;) {
        if (item && item == files.identityOfItem(path, Links::Follow)) {
            return true;
        }
        const QString above = parentDirectory(path);
        if (above.isEmpty() || above == path) {
            return false;
        }
        path = above;
    }
}

/// The same, whether the path leads there by itself or through links.
bool isAtOrAbove(const FileManager &files, const Identity &item, const QString &path)
{
    const QString resolved = files.resolvedPath(path);
    return isAtOrAboveAsNamed(files, item, path) || (resolved != path && isAtOrAboveAsNamed(files, item, resolved));
}

QString quotedName(const QString &path)
{
    const QString name = lastPathComponent(path);
    return QLatin1Char('"') + displayName(name.isEmpty() ? path : name) + QLatin1Char('"');
}

bool isInOwnPlace(const FileManager &files, const OwnPlaces &places, const QString &path)
{
    const auto holdsPath = [&](const QString &own) {
        return isAtOrAbove(files, files.identityOfItem(own, Links::Follow), path);
    };
    return std::ranges::any_of(places.own, holdsPath);
}

/// What is not to be done, such as "protected" and "Protect".
struct Verb
{
    QLatin1String participle;
    QLatin1String imperative;
};

/// The reason that the program's own places give.
std::optional<QString> reasonToKeep(const FileManager &files, const OwnPlaces &places, const QString &path,
                                    const Verb &verb)
{
    const Identity itself = files.identityOfItem(path, Links::Follow);
    const QString refusal = quotedName(path) + QStringLiteral(" cannot be ") + verb.participle;
    const QString advice = verb.imperative + QStringLiteral(" the items in it instead.");
    for (const QString &needed : places.needed) {
        if (itself && itself == files.identityOfItem(needed, Links::Follow)) {
            return refusal + QStringLiteral(" because Quillhaven needs it at its place. ") + advice;
        }
        if (isAtOrAbove(files, itself, needed)) {
            return refusal + QStringLiteral(" because it contains ") + quotedName(needed) +
                   QStringLiteral(", which Quillhaven needs at its place. ") + advice;
        }
    }
    if (isInOwnPlace(files, places, path)) {
        return refusal + QStringLiteral(" because it belongs to Quillhaven itself.");
    }
    return std::nullopt;
}

} // namespace

OwnPlaces ownPlaces(const UserDirectories &directories, const QString &secureStorage,
                    const std::optional<QString> &cloudDirectory)
{
    OwnPlaces places{.needed = {directories.home, secureStorage, directories.documents, directories.configuration,
                                directories.temporary},
                     .own = {secureStorage, directories.configuration, directories.temporary},
                     .cloud = cloudDirectory};
    if (cloudDirectory) {
        places.needed.append(*cloudDirectory);
    }
    return places;
}

std::optional<QString> reasonNotToProtect(const FileManager &files, const OwnPlaces &places,
                                          const QList<ProtectedItem> &items, const QString &path)
{
    if (auto reason = reasonToKeep(files, places, path, {QLatin1String("protected"), QLatin1String("Protect")})) {
        return reason;
    }
    const Identity itself = files.identityOfItem(path, Links::Follow);
    const bool mayBeContainer = path.endsWith(QStringLiteral(".secured"));
    const bool mayBeBackup = places.cloud && path.endsWith(QStringLiteral(".backup")) &&
                             isAtOrAbove(files, files.identityOfItem(*places.cloud, Links::Follow), path);
    const auto isCopyOf = [&](const ProtectedItem &item) {
        return (mayBeBackup && lastPathComponent(path) == item.id + QStringLiteral(".backup")) ||
               (mayBeContainer && itself && itself == files.identityOfItem(item.containerPath, Links::Follow));
    };
    const auto copied = std::ranges::find_if(items, isCopyOf);
    if (copied != items.end()) {
        return quotedName(path) + QStringLiteral(" cannot be protected because it is the encrypted copy of \"") +
               displayName(copied->originalName) + QStringLiteral("\".");
    }
    return std::nullopt;
}

std::optional<QString> reasonNotToKeepBackups(const FileManager &files, const OwnPlaces &places, const QString &path)
{
    const QString refusal = QStringLiteral("Backups cannot be kept in ") + quotedName(path);
    const QString advice = QStringLiteral(" Choose a folder that your sync tool keeps.");
    if (isInOwnPlace(files, places, path)) {
        return refusal + QStringLiteral(" because it belongs to Quillhaven itself.") + advice;
    }
    const Identity itself = files.identityOfItem(path, Links::Follow);
    const auto isItself = [&](const QString &needed) {
        return needed != places.cloud && itself && itself == files.identityOfItem(needed, Links::Follow);
    };
    if (std::ranges::any_of(places.needed, isItself)) {
        return refusal + QStringLiteral(" itself.") + advice;
    }
    if (!files.isWritableFile(path)) {
        return refusal + QStringLiteral(" because you don't have permission to change what is in it.") + advice;
    }
    return std::nullopt;
}

std::optional<QString> reasonNotToShred(const FileManager &files, const OwnPlaces &places, const QString &path)
{
    return reasonToKeep(files, places, path, {QLatin1String("shredded"), QLatin1String("Shred")});
}

} // namespace quillhaven
