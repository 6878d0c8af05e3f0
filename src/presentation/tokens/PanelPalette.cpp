// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/tokens/PanelPalette.h"

namespace quillhaven {

QPalette panelPalette(const ColorTokens &tokens)
{
    QPalette colors;
    colors.setColor(QPalette::Window, tokens.bgPanel);
    colors.setColor(QPalette::Base, tokens.bgBody);
    colors.setColor(QPalette::AlternateBase, tokens.bgPanel);
    colors.setColor(QPalette::Button, tokens.panelButton);
    colors.setColor(QPalette::ToolTipBase, tokens.bgPanel);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText,
                            QPalette::HighlightedText, QPalette::BrightText}) {
        colors.setColor(role, tokens.textPrimary);
        colors.setColor(QPalette::Disabled, role, tokens.panelDisabledText);
    }
    colors.setColor(QPalette::PlaceholderText, tokens.textSecondary);
    colors.setColor(QPalette::Highlight, tokens.primary);
    colors.setColor(QPalette::Link, tokens.primaryAccent);
    return colors;
}

} // namespace quillhaven
