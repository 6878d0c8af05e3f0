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

private:
    QString m_dataDirectory;
};

} // namespace quillhaven
