// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/ContainerPlace.h"

#include "engine/KeptAside.h"
#include "formats/SecuredContainer.h"
#include "support/DisplayName.h"
#include "support/Paths.h"
#include "support/printLogger.h"

#include <QLocale>

#include <algorithm>
#include <array>

namespace quillhaven {

namespace {

QString sanitizedName(QString name)
{
    for (const QChar forbidden : QStringLiteral(":/\\*?\"<>|")) {
        name.replace(forbidden, QLatin1Char('_'));
    }
    return name;
}

bool isOnVolumeOf(const FileManager &files, const QString &path, const QString &other)
{
    const auto identity = files.identityOfItem(path, Links::Follow);
    const auto otherIdentity = files.identityOfItem(other, Links::Follow);
    return identity && otherIdentity && identity->device == otherIdentity->device;
}

void requireFreeOrFile(const FileManager &files, const QString &containerPath, const QString &itemName)
{
    const auto itself = files.identityOfItem(containerPath, Links::Keep);
    const bool isLink = itself && itself != files.identityOfItem(containerPath, Links::Follow);
    if (!isLink && !files.isDirectory(containerPath)) {
        return;
    }
    throw FileError(FileError::Kind::TargetExists,
                    QStringLiteral("Could not protect \"%1\" because there is a %2 named \"%3\" in \"%4\", where its "
                                   "encrypted copy would be. Please rename it first.")
                        .arg(displayName(itemName), isLink ? QStringLiteral("link") : QStringLiteral("folder"),
                             displayName(lastPathComponent(containerPath)),
                             displayName(lastPathComponent(parentDirectory(containerPath)))));
}

void requireSpace(const FileManager &files, const QString &documents, const QString &secureStorage, const QString &path,
                  const QString &containerPath, bool isReplaced)
{
    using namespace secured_container;
    constexpr int64_t overhead = 4096; // header, tag, and the block that they begin
    const int64_t size = files.sizeOfItem(path);
    int64_t needed = size + overhead;
    if (isOnVolumeOf(files, secureStorage, documents) && !isOnVolumeOf(files, path, secureStorage)) {
        needed += size; // The item itself comes to this volume first.
    }
    const int64_t replaced = isReplaced ? files.sizeOfItem(containerPath) : 0;
    const int64_t available = files.availableSpace(documents) + replaced;
    if (needed > available) {
        const QLocale locale = QLocale::c();
        throw FileError(FileError::Kind::NoSpace,
                        QStringLiteral("There is not enough space on the disk for the encrypted copy of \"%1\": \"%2\" "
                                       "needs %3 and has %4.")
                            .arg(displayName(lastPathComponent(path)), displayName(lastPathComponent(documents)),
                                 locale.formattedDataSize(needed), locale.formattedDataSize(available)));
    }
}

/// Whether the file is a container, and that of one of the items.
bool isOwnContainer(const FileManager &files, const QList<ProtectedItem> &items, const QString &path)
{
    const auto identity = files.identityOfItem(path, Links::Keep);
    const auto isOf = [&](const ProtectedItem &item) {
        return item.containerPath == path || files.identityOfItem(item.containerPath, Links::Keep) == identity;
    };
    return identity && std::ranges::any_of(items, isOf) && isContainer(files, path);
}

} // namespace

QString containerPathFor(const UserDirectories &directories, const QString &originalName)
{
    return pathInDirectory(directories.documents, sanitizedName(originalName) + QStringLiteral(".secured"));
}

void requirePlaceForContainer(const FileManager &files, const UserDirectories &directories,
                              const QString &secureStorage, const QList<ProtectedItem> &items, const QString &path)
{
    constexpr qsizetype longestName = 255; // bytes, on every file system in use
    const QString name = lastPathComponent(path);
    const QString containerPath = containerPathFor(directories, name);
    if (lastPathComponent(containerPath).toUtf8().size() > longestName) {
        throw FileError(FileError::Kind::InvalidName,
                        QStringLiteral("The name of \"%1\" is too long to be protected. Please shorten it first.")
                            .arg(displayName(name)));
    }
    requireFreeOrFile(files, containerPath, name);
    if (!files.isDirectory(path)) { // The container of a folder is only a marker.
        requireSpace(files, directories.documents, secureStorage, path, containerPath,
                     isOwnContainer(files, items, containerPath));
    }
}

std::optional<QString> keepForeignContainer(FileManager &files, const QList<ProtectedItem> &items,
                                            const QString &containerPath)
{
    if (!files.identityOfItem(containerPath, Links::Keep) || isOwnContainer(files, items, containerPath)) {
        return std::nullopt;
    }
    try {
        files.trashItem(containerPath);
        printLogger(QStringLiteral("🗑️ A file had the name of a container and is in the trash now: ") + containerPath);
        return QString();
    } catch (const FileError &error) {
        printLogger(error.errorDescription());
    }
    return keepAside(files, containerPath);
}

bool isContainer(const FileManager &files, const QString &path)
{
    static const QByteArray beginnings[] = {secured_container::magic, secured_container::folderMarker({})};
    try {
        std::array<std::byte, 16> bytes{};
        const auto reader = files.openForReading(path);
        const size_t count = reader->read(0, bytes);
        const QByteArray beginning(reinterpret_cast<const char *>(bytes.data()), static_cast<qsizetype>(count));
        return std::ranges::any_of(beginnings, [&](const QByteArray &known) { return beginning.startsWith(known); });
    } catch (const FileError &) {
        return false; // dropped: it is left alone
    }
}

} // namespace quillhaven
