// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/login/DesktopEntryFile.h"

#include "platform/FileError.h"
#include "platform/linux/files/FilePaths.h"
#include "platform/linux/files/FolderEntries.h"
#include "platform/linux/files/ScopedFd.h"
#include "support/DisplayName.h"

#include <gio/gio.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <vector>

namespace quillhaven {

namespace {

const char *const group = G_KEY_FILE_DESKTOP_GROUP;
constexpr auto keepEverything = static_cast<GKeyFileFlags>(G_KEY_FILE_KEEP_COMMENTS | G_KEY_FILE_KEEP_TRANSLATIONS);
/// No desktop entry is larger; a larger file is not read into the memory.
constexpr qint64 largestEntry = qint64(1024) * 1024;

FileError failure(FileError::Action action, const QString &path)
{
    return FileError::fromErrno(errno, action, path);
}

FileError notAnEntry(const QString &path)
{
    return FileError(
        FileError::Kind::NotAFileOrFolder,
        QStringLiteral("The file \"%1\" is not a desktop entry, so it was left as it is.").arg(displayName(path)));
}

/// Nothing if no file exists.
std::optional<QByteArray> readBytes(const QString &path)
{
    // A FIFO of this name must not block the program.
    const ScopedFd file(
        open(encodedItemPath(path, FileError::Action::Read).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!file.isOpen() && (errno == ENOENT || errno == ENOTDIR)) {
        return std::nullopt;
    }
    struct stat status{};
    if (!file.isOpen() || fstat(file.get(), &status) != 0) {
        throw failure(FileError::Action::Read, path);
    }
    if (!S_ISREG(status.st_mode) || status.st_size > largestEntry) {
        throw notAnEntry(path);
    }
    QByteArray bytes(static_cast<qsizetype>(status.st_size), Qt::Uninitialized);
    qsizetype filled = 0;
    while (filled < bytes.size()) {
        const ssize_t count = ::read(file.get(), bytes.data() + filled, static_cast<size_t>(bytes.size() - filled));
        if (count < 0 && errno != EINTR) {
            throw failure(FileError::Action::Read, path);
        }
        if (count == 0) {
            break;
        }
        filled += std::max<ssize_t>(count, 0);
    }
    bytes.truncate(filled);
    return bytes;
}

void makeFolders(const QByteArray &folder, const QString &path)
{
    constexpr mode_t ownerOnly = 0700; // as the XDG Base Directory Specification says
    struct stat status{};
    if (stat(folder.constData(), &status) == 0 || folder.isEmpty()) {
        return;
    }
    makeFolders(parentOf(folder), path);
    if (mkdir(folder.constData(), ownerOnly) != 0 && errno != EEXIST) {
        throw failure(FileError::Action::CreateFolder, decodedPath(folder));
    }
}

bool writeAll(int file, const QByteArray &bytes)
{
    qsizetype written = 0;
    while (written < bytes.size()) {
        const ssize_t count = ::write(file, bytes.constData() + written, static_cast<size_t>(bytes.size() - written));
        if (count < 0 && errno != EINTR) {
            return false;
        }
        written += std::max<ssize_t>(count, 0);
    }
    return fsync(file) == 0;
}

} // namespace

void DesktopEntryFile::Free::operator()(_GKeyFile *file) const
{
    g_key_file_unref(file);
}

DesktopEntryFile::DesktopEntryFile() : m_file(g_key_file_new()) {}
DesktopEntryFile::~DesktopEntryFile() = default;
DesktopEntryFile::DesktopEntryFile(DesktopEntryFile &&) noexcept = default;
DesktopEntryFile &DesktopEntryFile::operator=(DesktopEntryFile &&) noexcept = default;

std::optional<DesktopEntryFile> DesktopEntryFile::read(const QString &path)
{
    const std::optional<QByteArray> bytes = readBytes(path);
    if (!bytes) {
        return std::nullopt;
    }
    DesktopEntryFile entry;
    if (!bytes->isEmpty() && (!g_key_file_load_from_data(entry.m_file.get(), bytes->constData(),
                                                         static_cast<gsize>(bytes->size()), keepEverything, nullptr) ||
                              !g_key_file_has_group(entry.m_file.get(), group))) {
        throw notAnEntry(path);
    }
    return entry;
}

QStringList DesktopEntryFile::keys() const
{
    const std::unique_ptr<gchar *, decltype(&g_strfreev)> found(
        g_key_file_get_keys(m_file.get(), group, nullptr, nullptr), g_strfreev);
    QStringList names;
    for (gchar **name = found.get(); name && *name; ++name) {
        names.append(QString::fromUtf8(*name));
    }
    return names;
}

bool DesktopEntryFile::has(const char *key) const
{
    return g_key_file_has_key(m_file.get(), group, key, nullptr) != FALSE;
}

QString DesktopEntryFile::string(const char *key) const
{
    const std::unique_ptr<gchar, decltype(&g_free)> value(g_key_file_get_string(m_file.get(), group, key, nullptr),
                                                          g_free);
    return QString::fromUtf8(value.get());
}

QStringList DesktopEntryFile::list(const char *key) const
{
    const std::unique_ptr<gchar *, decltype(&g_strfreev)> found(
        g_key_file_get_string_list(m_file.get(), group, key, nullptr, nullptr), g_strfreev);
    QStringList values;
    for (gchar **value = found.get(); value && *value; ++value) {
        values.append(QString::fromUtf8(*value));
    }
    return values;
}

bool DesktopEntryFile::boolean(const char *key, bool otherwise) const
{
    GError *error = nullptr;
    const bool value = g_key_file_get_boolean(m_file.get(), group, key, &error) != FALSE;
    const bool isValid = !error;
    g_clear_error(&error);
    return isValid ? value : otherwise;
}

void DesktopEntryFile::setString(const char *key, const QString &value)
{
    g_key_file_set_string(m_file.get(), group, key, value.toUtf8().constData());
}

void DesktopEntryFile::setList(const char *key, const QStringList &values)
{
    std::vector<QByteArray> texts;
    std::vector<const gchar *> pointers;
    texts.reserve(size_t(values.size()));
    pointers.reserve(size_t(values.size()));
    for (const QString &value : values) {
        texts.push_back(value.toUtf8());
    }
    for (const QByteArray &text : texts) {
        pointers.push_back(text.constData());
    }
    g_key_file_set_string_list(m_file.get(), group, key, pointers.data(), pointers.size());
}

void DesktopEntryFile::setBoolean(const char *key, bool value)
{
    g_key_file_set_boolean(m_file.get(), group, key, value ? TRUE : FALSE);
}

void DesktopEntryFile::remove(const char *key)
{
    g_key_file_remove_key(m_file.get(), group, key, nullptr);
}

QByteArray DesktopEntryFile::bytes() const
{
    gsize length = 0;
    const std::unique_ptr<gchar, decltype(&g_free)> data(g_key_file_to_data(m_file.get(), &length, nullptr), g_free);
    return {data.get(), static_cast<qsizetype>(length)};
}

void DesktopEntryFile::write(const QString &path) const
{
    constexpr mode_t ordinary = 0666; // less what the user's mask takes away
    const QByteArray target = encodedItemPath(path, FileError::Action::Write);
    // Hidden, and no entry by its name, so that no session starts it. One name, so that a crash leaves at most one.
    const QByteArray staged = parentOf(target) + "/." + nameOf(target) + ".new";
    makeFolders(parentOf(target), path);
    if (unlink(staged.constData()) != 0 && errno != ENOENT) {
        throw failure(FileError::Action::Write, path);
    }
    ScopedFd file(open(staged.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, ordinary));
    if (!file.isOpen()) {
        throw failure(FileError::Action::Write, path);
    }
    if (!writeAll(file.get(), bytes()) || rename(staged.constData(), target.constData()) != 0) {
        const FileError error = failure(FileError::Action::Write, path);
        unlink(staged.constData());
        throw error;
    }
    syncParentFolders(target);
}

} // namespace quillhaven
