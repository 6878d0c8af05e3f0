// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/files/DiscardableItems.h"

#include "platform/linux/files/FilePaths.h"
#include "platform/linux/files/RemoveTree.h"
#include "platform/linux/files/ScopedFd.h"

#include <QCryptographicHash>
#include <QMutex>
#include <QSet>
#include <QSysInfo>
#include <QUuid>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

namespace quillhaven {

namespace {

/// Of a volume that several machines share, each cleans up after itself alone. Hashed, since the machine's own
/// identifier is not for others to read: see machine-id(5).
const QByteArray &namePrefix()
{
    constexpr qsizetype enough = 16;
    static const QByteArray prefix = [] {
        const QByteArray machine = QSysInfo::machineUniqueId() + QSysInfo::machineHostName().toUtf8();
        const QByteArray hash = QCryptographicHash::hash("quillhaven" + machine, QCryptographicHash::Sha256).toHex();
        return ".quillhaven-discard-" + hash.left(enough) + '-';
    }();
    return prefix;
}

bool isAbandoned(const QByteArray &name)
{
    if (!name.startsWith(namePrefix())) {
        return false;
    }
    const QByteArray rest = name.mid(namePrefix().size());
    bool isNumber = false;
    const pid_t process = rest.left(rest.indexOf('-')).toInt(&isNumber);
    return isNumber && process > 0 && kill(process, 0) != 0 && errno == ESRCH;
}

bool isFirstLook(const QByteArray &folder)
{
    static QMutex mutex;
    static QSet<QByteArray> known;
    const QMutexLocker locker(&mutex);
    const qsizetype before = known.size();
    known.insert(folder);
    return known.size() > before;
}

} // namespace

QByteArray discardableNameBeside(const QByteArray &path)
{
    return parentOf(path) + '/' + namePrefix() + QByteArray::number(getpid()) + '-' +
           QUuid::createUuid().toByteArray(QUuid::Id128);
}

void discardAbandonedItems(const QByteArray &folder) noexcept
{
    const ScopedFd fd(open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    std::vector<QByteArray> names;
    if (!fd.isOpen() || !readEntries(fd.get(), names)) {
        return;
    }
    for (const QByteArray &name : names) {
        if (isAbandoned(name)) {
            discardTree(folder + '/' + name);
        }
    }
}

void discardAbandonedItemsOnce(const QByteArray &folder)
{
    if (isFirstLook(folder)) {
        discardAbandonedItems(folder);
    }
}

} // namespace quillhaven
