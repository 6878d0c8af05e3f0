// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/widgets/PanelPalette.h"

namespace quillhaven {

namespace {

QColor color(QRgb rgb)
{
    return QColor::fromRgb(rgb);
}

} // namespace

QPalette panelPalette()
{
    QPalette colors;
    colors.setColor(QPalette::Window, color(0x29303F));
    colors.setColor(QPalette::Base, color(0x050D1D));
    colors.setColor(QPalette::AlternateBase, color(0x29303F));
    colors.setColor(QPalette::Button, color(0x3A4254));
    colors.setColor(QPalette::ToolTipBase, color(0x29303F));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText,
                            QPalette::HighlightedText, QPalette::BrightText}) {
        colors.setColor(role, color(0xFFFFFF));
        colors.setColor(QPalette::Disabled, role, color(0x7A8191));
    }
    colors.setColor(QPalette::PlaceholderText, color(0xABB1BD));
    colors.setColor(QPalette::Highlight, color(0x554DDD));
    colors.setColor(QPalette::Link, color(0x4373F1));
    return colors;
}

} // namespace quillhaven
