// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>

#include <sys/mount.h>

namespace quillhaven::test {

/// A small file system, mounted at a folder. Needs the right to mount.
class SmallDisk
{
public:
    SmallDisk(const QString &mountPoint, const char *size) : m_mountPoint(QFile::encodeName(mountPoint))
    {
        QDir().mkpath(mountPoint);
        const QByteArray options = QByteArray("size=") + size;
        m_isMounted = ::mount("tmpfs", m_mountPoint.constData(), "tmpfs", 0, options.constData()) == 0;
    }
    ~SmallDisk()
    {
        if (m_isMounted) {
            ::umount2(m_mountPoint.constData(), MNT_DETACH);
        }
    }
    SmallDisk(const SmallDisk &) = delete;
    SmallDisk &operator=(const SmallDisk &) = delete;
    [[nodiscard]] bool isMounted() const { return m_isMounted; }

private:
    QByteArray m_mountPoint;
    bool m_isMounted = false;
};

} // namespace quillhaven::test
