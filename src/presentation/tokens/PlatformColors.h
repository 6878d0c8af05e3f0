#pragma once

#include <QColor>

/// What stands for the platform's own colours, in its dark scheme.
namespace quillhaven::platform {

[[nodiscard]] inline QColor windowBackground()
{
    return {0x0F, 0x17, 0x27};
} // behind sheets and windows, one step above bgBody
[[nodiscard]] inline QColor controlBackground()
{
    return {0x17, 0x1F, 0x30};
} // behind fields and lists
[[nodiscard]] inline QColor controlAccent()
{
    return {0x55, 0x4D, 0xDD};
} // the user's accent
[[nodiscard]] inline QColor separator()
{
    return {255, 255, 255, 36};
} // hairlines and field borders
[[nodiscard]] inline QColor label()
{
    return {255, 255, 255, 230};
} // text that is read first
[[nodiscard]] inline QColor tertiaryLabel()
{
    return {255, 255, 255, 128};
} // prompts in empty fields
[[nodiscard]] inline QColor green()
{
    return {0x30, 0xD1, 0x58};
}
[[nodiscard]] inline QColor orange()
{
    return {0xFF, 0x9F, 0x0A};
}
[[nodiscard]] inline QColor red()
{
    return {0xFF, 0x45, 0x3A};
}
[[nodiscard]] inline QColor blue()
{
    return {0x0A, 0x84, 0xFF};
}

} // namespace quillhaven::platform
