// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

#include <optional>

namespace quillhaven {

/// Folders that some tool of the user's keeps in step with other machines.
class CloudStorage
{
public:
    CloudStorage() = default;
    virtual ~CloudStorage() = default;
    CloudStorage(const CloudStorage &) = delete;
    CloudStorage &operator=(const CloudStorage &) = delete;

    /// The folder for a container identifier such as "iCloud.com.example.program", or nothing while there is none. It
    /// may come and go while the program runs.
    [[nodiscard]] virtual std::optional<QString> containerDirectory(const QString &identifier) const = 0;
    /// Makes an existing folder the one for this identifier, instead of any folder chosen before, which keeps what is
    /// in it. Throws a FileError, and then nothing has changed.
    virtual void setContainerDirectory(const QString &identifier, const QString &folder) = 0;
};

} // namespace quillhaven
