// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QLatin1String>

#include <array>

namespace quillhaven {

/// An entry of the file managers' menus.
struct MenuAction
{
    enum class Kind { Protect, Unlock, Lock, Shred };

    Kind kind;
    QLatin1String word;  ///< what the program is asked to do
    QLatin1String label; ///< what the user reads
};

/// All entries, in the order of the menus.
inline constexpr std::array menuActions{
    MenuAction{MenuAction::Kind::Protect, QLatin1String("protect"), QLatin1String("Protect")},
    MenuAction{MenuAction::Kind::Unlock, QLatin1String("unlock"), QLatin1String("Unlock")},
    MenuAction{MenuAction::Kind::Lock, QLatin1String("lock"), QLatin1String("Lock")},
    MenuAction{MenuAction::Kind::Shred, QLatin1String("shred"), QLatin1String("Secure Shred")},
};

/// The entry with this word, or nullptr.
[[nodiscard]] inline const MenuAction *menuActionOf(QLatin1String word)
{
    for (const MenuAction &action : menuActions) {
        if (action.word == word) {
            return &action;
        }
    }
    return nullptr;
}

} // namespace quillhaven
