// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/FileViewer.h"

#include <QList>
#include <QPair>

namespace quillhaven::test {

/// Keeps what it is asked to show: the item to select, and the folder to open.
class FakeFileViewer : public FileViewer
{
public:
    [[nodiscard]] QCoro::Task<bool> selectFile(QString path, QString inFileViewerRootedAtPath) override
    {
        shown.append({path, inFileViewerRootedAtPath});
        co_return canShow;
    }

    QList<QPair<QString, QString>> shown;
    bool canShow = true;
};

} // namespace quillhaven::test
