// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/CloudStorage.h"
#include "platform/UserDirectories.h"

namespace quillhaven {

/// A container is the folder `cloud/<identifier, with ~ for each dot>` below the user's data, or a link there to any
/// other folder, for the user's own sync tool to look after.
class CloudFolders final : public CloudStorage
{
public:
    explicit CloudFolders(const UserDirectories &directories) : m_dataDirectory(directories.applicationSupport) {}

    [[nodiscard]] std::optional<QString> containerDirectory(const QString &identifier) const override;
    /// Makes the link. A folder in the link's place is not replaced, since it may hold backups.
    void setContainerDirectory(const QString &identifier, const QString &folder) override;

private:
    [[nodiscard]] QString place(const QString &identifier) const;

    QString m_dataDirectory;
};

} // namespace quillhaven
