// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "extension/MenuAction.h"

#include <QByteArrayList>
#include <QHash>

#include <optional>

namespace quillhaven {

/// What the program publishes of the protected items for the user's other programs: their places, and which of them are
/// unlocked.
class ItemSummary
{
public:
    /// Reads the shared domain in this folder, and changes nothing there. Nothing when it is missing, damaged or in use
    /// for longer than a moment.
    [[nodiscard]] static std::optional<ItemSummary> read(const QString &configuration);

    /// Whether the entry makes sense for this path. For an unknown item that is protection and shredding.
    [[nodiscard]] bool fits(MenuAction::Kind action, const QByteArray &path) const;

private:
    QHash<QByteArray, bool> m_isUnlocked; ///< for each original path
};

/// Whether the entry makes sense for all of these paths, of which there is at least one. Without a summary every path
/// is unknown.
[[nodiscard]] bool fitsAll(const std::optional<ItemSummary> &summary, MenuAction::Kind action,
                           const QByteArrayList &paths);

} // namespace quillhaven
