// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/files/HiddenNames.h"

#include "platform/linux/files/FilePaths.h"

#include <QCryptographicHash>
#include <QSysInfo>
#include <QUuid>

#include <unistd.h>

#include <cerrno>
#include <csignal>

namespace quillhaven {

namespace {

/// On a volume that several machines share, each removes its own duplicates only. Hashed, since the machine's own
/// identifier is not for others to read: see machine-id(5).
const QByteArray &duplicatePrefix()
{
    constexpr qsizetype hashLength = 16;
    static const QByteArray prefix = [] {
        const QByteArray machine = QSysInfo::machineUniqueId() + QSysInfo::machineHostName().toUtf8();
        const QByteArray hash = QCryptographicHash::hash("quillhaven" + machine, QCryptographicHash::Sha256).toHex();
        return ".quillhaven-discard-" + hash.left(hashLength) + '-';
    }();
    return prefix;
}

QByteArray uniqueText()
{
    return QUuid::createUuid().toByteArray(QUuid::Id128);
}

} // namespace

QByteArray hiddenNameForOriginal(const QByteArray &path)
{
    return parentOf(path) + "/.quillhaven-" + uniqueText();
}

QByteArray hiddenNameForDuplicate(const QByteArray &path)
{
    return parentOf(path) + '/' + duplicatePrefix() + QByteArray::number(getpid()) + '-' + uniqueText();
}

bool isAbandonedDuplicate(const QByteArray &name)
{
    if (!name.startsWith(duplicatePrefix())) {
        return false;
    }
    const QByteArray rest = name.mid(duplicatePrefix().size());
    bool isNumber = false;
    const pid_t process = rest.left(rest.indexOf('-')).toInt(&isNumber);
    return isNumber && process > 0 && kill(process, 0) != 0 && errno == ESRCH;
}

} // namespace quillhaven
