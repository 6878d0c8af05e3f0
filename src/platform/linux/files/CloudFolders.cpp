// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/files/CloudFolders.h"

#include "platform/FileError.h"
#include "support/Paths.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <unistd.h>

namespace quillhaven {

QString CloudFolders::place(const QString &identifier) const
{
    return m_dataDirectory + QStringLiteral("/cloud/") +
           QString(identifier).replace(QLatin1Char('.'), QLatin1Char('~'));
}

std::optional<QString> CloudFolders::containerDirectory(const QString &identifier) const
{
    const QString path = place(identifier);
    return QFileInfo(path).isDir() ? std::optional(path) : std::nullopt;
}

void CloudFolders::setContainerDirectory(const QString &identifier, const QString &folder)
{
    const QString path = place(identifier);
    if (QFileInfo(folder).canonicalFilePath() == QFileInfo(path).canonicalFilePath()) {
        return;
    }
    const QFileInfo present(path);
    if (!present.isSymLink() && present.exists()) {
        throw FileError::of(FileError::Kind::Other, FileError::Action::Replace, path, {},
                            QStringLiteral("it is not a link but holds files itself"));
    }
    // Made beside the old link and then renamed, so that there is no moment without one.
    const QByteArray link = QFile::encodeName(path);
    const QByteArray newLink = link + ".new";
    if (!QDir().mkpath(parentDirectory(path))) {
        throw FileError::fromErrno(errno, FileError::Action::CreateFolder, parentDirectory(path));
    }
    ::unlink(newLink.constData());
    if (::symlink(QFile::encodeName(folder).constData(), newLink.constData()) != 0 ||
        std::rename(newLink.constData(), link.constData()) != 0) {
        const int failure = errno;
        ::unlink(newLink.constData());
        throw FileError::fromErrno(failure, FileError::Action::Replace, path);
    }
}

} // namespace quillhaven
