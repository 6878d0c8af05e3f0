// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/volumes/BlockDevices.h"

#include "support/Paths.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <sys/sysmacros.h>

namespace quillhaven {

namespace {

QByteArray contentsOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed() : QByteArray();
}

QStringList foldersIn(const QString &path)
{
    return QDir(path).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
}

QByteArray numbersOf(dev_t device)
{
    return QByteArray::number(major(device)) + ':' + QByteArray::number(minor(device));
}

/// `folder` is that of the device, without links.
BlockDevices::Facts factsIn(const QString &folder)
{
    if (QFileInfo::exists(folder + QStringLiteral("/partition"))) {
        return factsIn(parentDirectory(folder)); // that of the whole disk
    }
    const QByteArray mapping = contentsOf(folder + QStringLiteral("/dm/uuid"));
    BlockDevices::Facts facts;
    facts.isEncrypted = mapping.startsWith("CRYPT-");
    // LVM moves a volume to a device of this name when its first snapshot is made, and builds both on it.
    facts.hasSnapshots = mapping.startsWith("LVM-") && mapping.endsWith("-real");
    const QStringList parts = foldersIn(folder + QStringLiteral("/slaves"));
    if (parts.isEmpty()) {
        facts.isSolidState = contentsOf(folder + QStringLiteral("/queue/rotational")) == "0";
        return facts;
    }
    bool isEachEncrypted = true;
    for (const QString &part : parts) {
        const BlockDevices::Facts below =
            factsIn(QFileInfo(folder + QStringLiteral("/slaves/") + part).canonicalFilePath());
        facts.isSolidState |= below.isSolidState;
        facts.hasSnapshots |= below.hasSnapshots;
        isEachEncrypted &= below.isEncrypted;
    }
    facts.isEncrypted |= isEachEncrypted;
    return facts;
}

} // namespace

BlockDevices::Facts BlockDevices::factsAbout(dev_t device) const
{
    const QString link = m_sysfs + QStringLiteral("/dev/block/") + QString::fromLatin1(numbersOf(device));
    const QString folder = QFileInfo(link).canonicalFilePath();
    return folder.isEmpty() ? Facts() : factsIn(folder);
}

std::vector<dev_t> BlockDevices::devicesOfBtrfs(dev_t device) const
{
    const QString fileSystems = m_sysfs + QStringLiteral("/fs/btrfs/");
    for (const QString &name : foldersIn(fileSystems)) {
        const QString folder = fileSystems + name + QStringLiteral("/devices/");
        std::vector<dev_t> devices;
        for (const QString &part : foldersIn(folder)) {
            const QList<QByteArray> numbers = contentsOf(folder + part + QStringLiteral("/dev")).split(':');
            if (numbers.size() == 2) {
                devices.push_back(makedev(numbers.at(0).toUInt(), numbers.at(1).toUInt()));
            }
        }
        if (std::ranges::find(devices, device) != devices.end()) {
            return devices;
        }
    }
    return {device};
}

} // namespace quillhaven
