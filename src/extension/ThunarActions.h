// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "extension/ManagerMenus.h"

#include <QByteArray>

namespace quillhaven {

/// The entries among Thunar's custom actions, which are all in one file, `Thunar/uca.xml`, that Thunar writes too. It
/// reads that of the system until the user has one. Every other action is kept.
class ThunarActions : public ManagerMenus
{
public:
    ThunarActions(QByteArray tool, const MenuPlaces &places);

    [[nodiscard]] bool isCurrent() const override;
    [[nodiscard]] std::optional<QString> install() const override;
    [[nodiscard]] std::optional<QString> remove() const override;

private:
    /// What Thunar reads where the user has no such file.
    [[nodiscard]] QByteArray systemActions() const;

    QByteArray m_tool;
    QString m_path;
    QStringList m_systemPaths;
};

} // namespace quillhaven
