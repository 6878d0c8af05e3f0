// SPDX-License-Identifier: GPL-3.0-or-later

#include "catalogue/QuillhavenError.h"
#include "engine/QuillhavenManager.h"
#include "platform/FileManager.h"
#include "platform/FilePanels.h"
#include "support/DisplayName.h"
#include "support/Paths.h"

namespace quillhaven {

QCoro::Task<QString> QuillhavenManager::requestFileAccess(QString path)
{
    const PlaceRequest request{.path = path,
                               .isDirectory = m_platform.fileManager.isDirectory(path),
                               .message = QStringLiteral("Please grant access to the selected item"),
                               .prompt = QStringLiteral("Grant Access")};
    const std::optional<QString> chosen = co_await m_platform.panels.confirmAccess(request);
    if (!chosen) {
        throw QuillhavenError(QuillhavenError::accessDenied, QStringLiteral("File access was denied by the user"));
    }
    if (*chosen != path) {
        throw QuillhavenError(QuillhavenError::accessDenied, QStringLiteral("Please select the correct item: ") +
                                                                 displayName(lastPathComponent(path)));
    }
    co_return *chosen;
}

} // namespace quillhaven
