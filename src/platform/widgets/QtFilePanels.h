// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/FilePanels.h"

#include <QPalette>

namespace quillhaven {

/// Qt's file dialog, with the message above the files. Needs a QApplication. It is always Qt's own, since the desktop's
/// cannot show a message nor take a file and a folder alike.
class QtFilePanels : public FilePanels
{
public:
    /// The panels have the colours of `palette`.
    explicit QtFilePanels(const QPalette &palette = {}) : m_palette(palette) {}

    [[nodiscard]] QCoro::Task<std::optional<QString>> open(OpenPanelRequest request) override;
    [[nodiscard]] QCoro::Task<std::optional<QStringList>> openSeveral(OpenPanelRequest request) override;
    [[nodiscard]] QCoro::Task<std::optional<QStringList>> grantAccess(AccessRequest request) override;
    [[nodiscard]] std::optional<QString> runModal(const OpenPanelRequest &request) override;

private:
    QPalette m_palette;
};

} // namespace quillhaven
