// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/TemporaryHome.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <stdexcept>

namespace quillhaven::test {

UserDirectories directoriesBelow(const QString &home)
{
    return {.home = home,
            .applicationSupport = home + QStringLiteral("/.local/share"),
            .documents = home + QStringLiteral("/Documents"),
            .temporary = home + QStringLiteral("/tmp"),
            .configuration = home + QStringLiteral("/.config/quillhaven")};
}

TemporaryHome::TemporaryHome()
{
    for (const char *folder : {"Documents", "Desktop", ".config/quillhaven", ".local/share", "tmp"}) {
        QDir(m_directory.path()).mkpath(QString::fromLatin1(folder));
    }
}

UserDirectories TemporaryHome::directories() const
{
    return directoriesBelow(m_directory.path());
}

QString TemporaryHome::path(const QString &relative) const
{
    return relative.isEmpty() ? m_directory.path() : m_directory.filePath(relative);
}

QString TemporaryHome::write(const QString &relative, const QByteArray &bytes) const
{
    const QString target = path(relative);
    QDir().mkpath(QFileInfo(target).path());
    QFile file(target);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
        throw std::runtime_error("cannot write a test file: " + target.toStdString());
    }
    return target;
}

QByteArray TemporaryHome::read(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        throw std::runtime_error("cannot read a test file: " + path.toStdString());
    }
    return file.readAll();
}

bool TemporaryHome::exists(const QString &path)
{
    const QFileInfo info(path);
    return info.exists() || info.isSymLink();
}

} // namespace quillhaven::test
