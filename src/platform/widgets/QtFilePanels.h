// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/FilePanels.h"

#include <QPalette>

namespace quillhaven {

/// To choose something new: the desktop's own dialog for files or for folders, and a dialog of ours for both, which no
/// desktop has. To confirm known places: a panel of ours. Needs a QApplication.
class QtFilePanels : public FilePanels
{
public:
    /// The panels have the colours of `palette`.
    explicit QtFilePanels(const QPalette &palette = {}) : m_palette(palette) {}

    [[nodiscard]] QCoro::Task<std::optional<QString>> open(OpenPanelRequest request) override;
    [[nodiscard]] QCoro::Task<std::optional<QStringList>> openSeveral(OpenPanelRequest request) override;
    [[nodiscard]] QCoro::Task<std::optional<QString>> confirmAccess(PlaceRequest request) override;
    [[nodiscard]] QCoro::Task<std::optional<QStringList>> grantAccess(AccessRequest request) override;
    [[nodiscard]] std::optional<QString> runModal(const OpenPanelRequest &request) override;

private:
    [[nodiscard]] QCoro::Task<QStringList> choose(OpenPanelRequest request);
    /// The request with a folder to start in: the last used one, or else the home folder.
    [[nodiscard]] OpenPanelRequest inFolder(OpenPanelRequest request) const;
    /// The chosen paths, as `usablePaths` makes them; the next panel starts in their folder.
    [[nodiscard]] QStringList used(const QStringList &chosen);

    QPalette m_palette;
    QString m_lastFolder;
};

} // namespace quillhaven
