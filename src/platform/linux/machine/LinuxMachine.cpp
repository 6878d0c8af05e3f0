// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/machine/LinuxMachine.h"

#include "platform/linux/machine/OsRelease.h"

#include <QFile>

namespace quillhaven {

namespace {

/// Far more than any of these files has.
constexpr qint64 sizeLimit = qint64(64) * 1024;

/// The bytes up to the null byte that ends a string of the device tree.
QString textOf(const QByteArray &bytes)
{
    return QString::fromUtf8(bytes.constData()).trimmed();
}

} // namespace

QByteArray LinuxMachine::read(const QString &path) const
{
    QFile file(m_root + path);
    return file.open(QIODevice::ReadOnly) ? file.read(sizeLimit) : QByteArray();
}

QString LinuxMachine::operatingSystemVersionString() const
{
    QByteArray release = read(QStringLiteral("/etc/os-release"));
    if (release.isEmpty()) {
        release = read(QStringLiteral("/usr/lib/os-release"));
    }
    const QString name = osReleaseValue(release, "PRETTY_NAME").value_or(QString());
    return name.isEmpty() ? QStringLiteral("Linux") : name;
}

QString LinuxMachine::hardwareModel() const
{
    const QString model = textOf(read(QStringLiteral("/sys/class/dmi/id/product_name")));
    return model.isEmpty() ? textOf(read(QStringLiteral("/proc/device-tree/model"))) : model;
}

} // namespace quillhaven
