// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QCoroTask>
#include <QString>

namespace quillhaven {

/// Shows files in the desktop's file manager. Main thread only.
class FileViewer
{
public:
    FileViewer() = default;
    virtual ~FileViewer() = default;
    FileViewer(const FileViewer &) = delete;
    FileViewer &operator=(const FileViewer &) = delete;

    /// Opens the folder of the item at `path` with the item selected. An empty path opens the folder
    /// `inFileViewerRootedAtPath` with nothing selected. False when the desktop has no program that shows folders.
    [[nodiscard]] virtual QCoro::Task<bool> selectFile(QString path, QString inFileViewerRootedAtPath) = 0;
};

} // namespace quillhaven
