// SPDX-License-Identifier: GPL-3.0-or-later

#include "catalogue/QuillhavenError.h"
#include "engine/QuillhavenManager.h"
#include "platform/FileManager.h"
#include "platform/FilePanels.h"
#include "support/Paths.h"

namespace quillhaven {

QCoro::Task<QString> QuillhavenManager::requestFileAccess(QString path)
{
    const bool isDirectory = m_platform.fileManager.isDirectory(path);
    OpenPanelRequest request;
    request.canChooseFiles = !isDirectory;
    request.canChooseDirectories = isDirectory;
    request.message = QStringLiteral("Please grant access to the selected item");
    request.prompt = QStringLiteral("Grant Access");
    request.directory = parentDirectory(path);
    request.preselected = lastPathComponent(path);

    const std::optional<QString> chosen = co_await m_platform.panels.open(request);
    if (!chosen) {
        throw QuillhavenError(QuillhavenError::accessDenied, QStringLiteral("File access was denied by the user"));
    }
    if (*chosen != path) {
        throw QuillhavenError(QuillhavenError::accessDenied,
                              QStringLiteral("Please select the correct item: ") + lastPathComponent(path));
    }
    co_return *chosen;
}

} // namespace quillhaven
