// SPDX-License-Identifier: GPL-3.0-or-later

#include "extension/OwnFile.h"

#include "platform/linux/files/ScopedFd.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>

namespace quillhaven {

namespace {

/// Far more than any of these files has.
constexpr qint64 maxBytes = qint64(8) * 1024 * 1024;

constexpr QFile::Permissions execution = QFile::ExeOwner | QFile::ExeUser | QFile::ExeGroup | QFile::ExeOther;

} // namespace

FileAtPlace fileAt(const QString &path)
{
    const ScopedFd descriptor(
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!descriptor.isOpen()) {
        return {errno == ENOENT || errno == ENOTDIR ? FileAtPlace::Kind::Missing : FileAtPlace::Kind::Other};
    }
    struct stat status{};
    QFile file;
    if (::fstat(descriptor.get(), &status) != 0 || !S_ISREG(status.st_mode) || status.st_size > maxBytes ||
        !file.open(descriptor.get(), QIODevice::ReadOnly)) {
        return {FileAtPlace::Kind::Other};
    }
    const QByteArray contents = file.read(maxBytes);
    if (file.error() != QFile::NoError) {
        return {FileAtPlace::Kind::Other};
    }
    return {FileAtPlace::Kind::File, contents, (status.st_mode & S_IXUSR) != 0};
}

std::optional<QString> writeInOneStep(const QString &path, const QByteArray &contents, bool isExecutable)
{
    QSaveFile file(path);
    if (!QDir().mkpath(QFileInfo(path).path()) || !file.open(QIODevice::WriteOnly)) {
        return QStringLiteral("%1 cannot be written: %2").arg(path, file.errorString());
    }
    const QFile::Permissions mode = file.permissions();
    file.write(contents);
    if (!file.setPermissions(isExecutable ? mode | execution : mode & ~execution) || !file.commit()) {
        return QStringLiteral("%1 cannot be written: %2").arg(path, file.errorString());
    }
    return std::nullopt;
}

std::optional<QString> removeFile(const QString &path)
{
    QFile file(path);
    if (!file.remove()) {
        return QStringLiteral("%1 cannot be removed: %2").arg(path, file.errorString());
    }
    return std::nullopt;
}

} // namespace quillhaven
