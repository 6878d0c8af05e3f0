// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QFile>
#include <QProcess>
#include <QStringList>

#include <gtest/gtest.h>

#include <sys/mount.h>

namespace quillhaven::test {

/// Runs a tool to its end and returns what it printed. It must succeed.
inline QString runTool(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    EXPECT_TRUE(process.waitForFinished());
    const QString output = QString::fromUtf8(process.readAll()).trimmed();
    EXPECT_EQ(process.exitCode(), 0) << qUtf8Printable(program + QStringLiteral(": ") + output);
    return output;
}

/// A new file system of the type in an image file, as a block device of its own and mounted in a folder.
class DiskImage
{
public:
    DiskImage(const QString &type, const QString &file, const QString &folder) : m_folder(QFile::encodeName(folder))
    {
        constexpr qint64 size = qint64(320) * 1024 * 1024; // the smallest that xfs accepts is 300 MB; it is sparse
        QFile image(file);
        EXPECT_TRUE(image.open(QIODevice::ReadWrite) && image.resize(size));
        runTool(QStringLiteral("mkfs.") + type, {QStringLiteral("-q"), file});
        m_device = runTool(QStringLiteral("losetup"), {QStringLiteral("--find"), QStringLiteral("--show"), file});
        m_isMounted = ::mount(QFile::encodeName(m_device).constData(), m_folder.constData(), qUtf8Printable(type), 0,
                              nullptr) == 0;
        setSolidState(false);
        EXPECT_TRUE(m_isMounted) << "mounting an image needs root and a kernel with " << qUtf8Printable(type) << ": "
                                 << strerror(errno);
    }
    ~DiskImage()
    {
        setSolidState(false);
        if (m_isMounted) {
            EXPECT_EQ(::umount2(m_folder.constData(), 0), 0) << strerror(errno);
        }
        runTool(QStringLiteral("losetup"), {QStringLiteral("--detach"), m_device});
    }
    DiskImage(const DiskImage &) = delete;
    DiskImage &operator=(const DiskImage &) = delete;

    /// What the device reports from now on.
    void setSolidState(bool value) const
    {
        QFile rotational(QStringLiteral("/sys/block/%1/queue/rotational").arg(m_device.section(QLatin1Char('/'), -1)));
        EXPECT_TRUE(rotational.open(QIODevice::WriteOnly | QIODevice::Unbuffered) &&
                    rotational.write(value ? "0" : "1") == 1);
    }

private:
    QByteArray m_folder;
    QString m_device;
    bool m_isMounted = false;
};

} // namespace quillhaven::test
