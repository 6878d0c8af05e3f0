// SPDX-License-Identifier: GPL-3.0-or-later

#include "updates/UpdateError.h"

namespace quillhaven {

UpdateError UpdateError::invalidURL()
{
    return {Case::invalidURL, QStringLiteral("Invalid update URL")};
}

UpdateError UpdateError::networkError()
{
    return {Case::networkError, QStringLiteral("Network error while checking for updates")};
}

UpdateError UpdateError::parseError()
{
    return {Case::parseError, QStringLiteral("Failed to parse update information")};
}

UpdateError UpdateError::gistNotFound()
{
    return {Case::gistNotFound, QStringLiteral("Update information not found. Please check the gist URL.")};
}

} // namespace quillhaven
