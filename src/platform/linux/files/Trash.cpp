// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/files/Trash.h"

#include "platform/FileError.h"
#include "support/Calls.h"

#include <gio/gio.h>

#include <memory>

namespace quillhaven {

namespace {

FileError::Kind kindOf(const GError &error)
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
        return Kind::Other;
    }
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
    throw FileError::of(kindOf(*failure), FileError::Action::Trash, path, {}, QString::fromUtf8(failure->message));
}

} // namespace quillhaven
