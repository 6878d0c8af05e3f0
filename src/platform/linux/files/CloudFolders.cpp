// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/files/CloudFolders.h"

#include <QFileInfo>

namespace quillhaven {

std::optional<QString> CloudFolders::containerDirectory(const QString &identifier) const
{
    const QString name = QString(identifier).replace(QLatin1Char('.'), QLatin1Char('~'));
    QString path = m_dataDirectory + QStringLiteral("/cloud/") + name;
    if (!QFileInfo(path).isDir()) {
        return std::nullopt;
    }
    return path;
}

} // namespace quillhaven
