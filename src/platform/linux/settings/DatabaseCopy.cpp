// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/settings/DatabaseCopy.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace quillhaven {

DatabaseCopy::DatabaseCopy(const QString &database)
{
    const QString log = QStringLiteral("-wal");
    for (const QString &place : {QDir::tempPath(), QStringLiteral("/dev/shm")}) {
        m_folder = std::make_unique<QTemporaryDir>(place + QStringLiteral("/quillhaven-XXXXXX"));
        if (!m_folder->isValid()) {
            m_reason = m_folder->errorString();
            continue;
        }
        const QString copy = m_folder->filePath(QStringLiteral("copy.db"));
        if (copyFile(database, copy) && (!QFileInfo::exists(database + log) || copyFile(database + log, copy + log))) {
            m_path = copy;
        }
        return;
    }
}

bool DatabaseCopy::copyFile(const QString &source, const QString &target)
{
    if (QFileInfo::exists(source) && !QFileInfo(source).isFile()) {
        m_reason = QStringLiteral("it is not a file");
        return false;
    }
    QFile from(source);
    QFile to(target);
    if (!from.open(QIODevice::ReadOnly) || !to.open(QIODevice::WriteOnly)) {
        m_reason = from.isOpen() ? to.errorString() : from.errorString();
        return false;
    }
    const QByteArray bytes = from.readAll();
    const bool isCopied = from.error() == QFile::NoError && to.write(bytes) == bytes.size() && to.flush();
    m_reason = from.error() == QFile::NoError ? to.errorString() : from.errorString();
    return isCopied;
}

} // namespace quillhaven
