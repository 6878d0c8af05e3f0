// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/files/Trash.h"

#include "platform/FileError.h"
#include "platform/linux/files/FilePaths.h"
#include "support/Calls.h"

#include <gio/gio.h>

#include <sys/statvfs.h>

#include <memory>

namespace quillhaven {

namespace {

bool isOnReadOnlyVolume(const QByteArray &name)
{
    struct statvfs volume = {};
    return ::statvfs(parentOf(name).constData(), &volume) == 0 && (volume.f_flag & ST_RDONLY) != 0;
}

FileError::Kind kindOf(const GError &error, const QByteArray &name)
{
    using Kind = FileError::Kind;
    switch (error.domain == G_IO_ERROR ? error.code : G_IO_ERROR_FAILED) {
    case G_IO_ERROR_NOT_FOUND:
        return Kind::NoSuchFile;
    case G_IO_ERROR_PERMISSION_DENIED:
        return Kind::NoPermission;
    case G_IO_ERROR_READ_ONLY:
        return Kind::ReadOnlyVolume;
    case G_IO_ERROR_NO_SPACE:
        return Kind::NoSpace;
    default:
        return isOnReadOnlyVolume(name) ? Kind::ReadOnlyVolume : Kind::Other;
    }
}

/// For a failure of no other kind.
QString detailOf(const GError &error)
{
    return g_error_matches(&error, G_IO_ERROR, G_IO_ERROR_NOT_SUPPORTED)
               ? QStringLiteral("its volume has no trash, and none can be made there")
               : QString::fromUtf8(error.message);
}

} // namespace

void moveToTrash(const QString &path, const QByteArray &name)
{
    const std::unique_ptr<GFile, Calls<g_object_unref>> file(g_file_new_for_path(name.constData()));
    GError *failure = nullptr;
    g_file_trash(file.get(), nullptr, &failure);
    if (!failure) {
        return;
    }
    const std::unique_ptr<GError, Calls<g_error_free>> owned(failure);
    throw FileError::of(kindOf(*failure, name), FileError::Action::Trash, path, {}, detailOf(*failure));
}

} // namespace quillhaven
