// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/UserDefaults.h"
#include "settings/Settings.h"
#include "support/TestPlatform.h"

#include <QDir>

namespace quillhaven::test {

/// The folder that the user's sync tool synchronizes, in a temporary home.
class CloudFolder
{
public:
    explicit CloudFolder(TestPlatform &services) : m_services(services) {}

    [[nodiscard]] QString path() const
    {
        return m_services.home.path(QStringLiteral(".local/share/cloud/iCloud~com~tarnwick~quillhaven"));
    }
    [[nodiscard]] QString backups() const { return path() + QStringLiteral("/Documents/QuillhavenBackups"); }
    [[nodiscard]] QString backup(const QString &id) const
    {
        return backups() + QLatin1Char('/') + id + QStringLiteral(".backup");
    }
    [[nodiscard]] QStringList backupNames() const
    {
        return QDir(backups()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    /// Creates the folder.
    void make() const { QDir().mkpath(path()); }
    /// Writes a file at the path of a backup.
    void writeBackup(const QString &id, const QByteArray &bytes) const
    {
        QDir().mkpath(backups());
        m_services.home.write(QDir(m_services.home.path()).relativeFilePath(backup(id)), bytes);
    }
    /// Enables or disables backups in the settings.
    void setEnabled(bool isEnabled) const
    {
        settings::enableiCloudBackup.write(m_services.defaults.standard(), isEnabled);
    }

private:
    TestPlatform &m_services;
};

} // namespace quillhaven::test
