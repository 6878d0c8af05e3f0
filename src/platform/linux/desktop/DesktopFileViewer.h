// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/FileViewer.h"
#include "platform/linux/session/BusConnection.h"

#include <QThreadPool>

#include <chrono>

namespace quillhaven {

class UrlOpener;

/// The file manager that serves org.freedesktop.FileManager1 on the session bus, or else the program that opens
/// folders, which cannot select a file.
class DesktopFileViewer : public FileViewer
{
public:
    /// The opener must outlive this object. A file manager that has not answered after `answerLimit` counts as one that
    /// shows the item: the call may have started it.
    explicit DesktopFileViewer(UrlOpener &opener, std::chrono::milliseconds answerLimit = std::chrono::seconds(10));
    ~DesktopFileViewer() override;

    [[nodiscard]] QCoro::Task<bool> selectFile(QString path, QString inFileViewerRootedAtPath) override;

private:
    /// What the calls share, since one may still wait for its reply when this object has gone.
    struct State;

    [[nodiscard]] static QCoro::Task<bool> show(std::shared_ptr<State> state, QString path, QString folder);

    std::shared_ptr<State> m_state;
};

} // namespace quillhaven
