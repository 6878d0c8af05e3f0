// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/files/FilePaths.h"

#include "platform/linux/files/ScopedFd.h"

#include <QStringDecoder>
#include <QUuid>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>

namespace quillhaven {

namespace {

constexpr char16_t escapeBase = 0xDC00;
constexpr char16_t firstEscape = 0xDC80;
constexpr char16_t lastEscape = 0xDCFF;

/// The bytes of a text in which halves of surrogate pairs may stand for single bytes.
QByteArray unescaped(const QString &path)
{
    QByteArray name;
    qsizetype start = 0;
    for (qsizetype i = 0; i < path.size(); ++i) {
        const char16_t unit = path.at(i).unicode();
        if (QChar::isHighSurrogate(unit)) {
            ++i; // a whole pair, or an error that the way back shows
        } else if (unit >= firstEscape && unit <= lastEscape) {
            name += QStringView(path).sliced(start, i - start).toUtf8();
            name += static_cast<char>(unit - escapeBase);
            start = i + 1;
        }
    }
    return name + QStringView(path).sliced(start).toUtf8();
}

} // namespace

QString decodedPath(const QByteArray &path)
{
    constexpr qsizetype longestSequence = 4;
    constexpr auto flags = QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom;
    QStringDecoder whole(QStringDecoder::Utf8, flags);
    QString text = whole(path);
    if (!whole.hasError()) {
        return text;
    }
    text.clear();
    for (qsizetype i = 0; i < path.size();) {
        QString character;
        qsizetype length = 1;
        for (; length <= std::min(longestSequence, path.size() - i); ++length) {
            QStringDecoder decoder(QStringDecoder::Utf8, flags);
            character = decoder(path.sliced(i, length));
            if (!decoder.hasError()) {
                break;
            }
            character.clear();
        }
        if (character.isEmpty()) {
            text += QChar(static_cast<char16_t>(escapeBase + static_cast<uchar>(path.at(i))));
            ++i;
        } else {
            text += character;
            i += length;
        }
    }
    return text;
}

QByteArray encodedPath(const QString &path, FileError::Action action)
{
    const QByteArray name = unescaped(path);
    if (path.contains(QChar(u'\0')) || decodedPath(name) != path) {
        throw FileError::of(FileError::Kind::InvalidName, action, path);
    }
    return name;
}

QByteArray encodedItemPath(const QString &path, FileError::Action action)
{
    QByteArray name = encodedPath(path, action);
    while (name.size() > 1 && name.endsWith('/')) {
        name.chop(1);
    }
    return name;
}

bool hasReplacementCharacter(const QString &path)
{
    return path.contains(QChar(QChar::ReplacementCharacter));
}

QByteArray parentOf(const QByteArray &path)
{
    qsizetype end = path.size();
    while (end > 1 && path.at(end - 1) == '/') {
        --end;
    }
    const qsizetype slash = path.lastIndexOf('/', end - 1);
    if (slash < 0) {
        return QByteArrayLiteral(".");
    }
    return slash == 0 ? QByteArrayLiteral("/") : path.left(slash);
}

QByteArray hiddenNameBeside(const QByteArray &path)
{
    return parentOf(path) + "/.quillhaven-" + QUuid::createUuid().toByteArray(QUuid::WithoutBraces);
}

bool standsAt(const QByteArray &path)
{
    struct stat status{};
    return lstat(path.constData(), &status) == 0;
}

bool syncParents(const QByteArray &path, const QByteArray &other)
{
    bool isSynced = true;
    const auto sync = [&isSynced](const QByteArray &folder) {
        const ScopedFd fd(open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (fd.isOpen() && fsync(fd.get()) != 0) {
            isSynced = isSynced && errno != EIO && errno != ENOSPC && errno != EDQUOT;
        }
    };
    sync(parentOf(path));
    if (!other.isEmpty() && parentOf(other) != parentOf(path)) {
        sync(parentOf(other));
    }
    return isSynced;
}

bool readEntries(int folder, std::vector<QByteArray> &names)
{
    ScopedFd own(openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    DIR *stream = own.isOpen() ? fdopendir(own.get()) : nullptr;
    if (stream == nullptr) {
        return false;
    }
    (void)own.release(); // The stream closes it.
    errno = 0;
    while (const dirent *entry = readdir(stream)) {
        const QByteArray name(entry->d_name);
        if (name != "." && name != "..") {
            names.push_back(name);
        }
    }
    const int error = errno;
    closedir(stream);
    errno = error;
    std::ranges::sort(names);
    return error == 0;
}

} // namespace quillhaven
