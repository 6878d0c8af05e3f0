// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

// The enumerations of the controls. Their values begin with a capital, since QML sees no others: `StatusType.Enabled`.
namespace quillhaven {

/// The state that a status component shows.
namespace StatusType {
Q_NAMESPACE
QML_ELEMENT
enum Case : quint8 { Enabled, Disabled, Warning, Info, Error };
Q_ENUM_NS(Case)
} // namespace StatusType

namespace StatusSize {
Q_NAMESPACE
QML_ELEMENT
enum Case : quint8 { Small, Medium, Large };
Q_ENUM_NS(Case)
} // namespace StatusSize

namespace BadgeStyle {
Q_NAMESPACE
QML_ELEMENT
enum Case : quint8 { Locked, Unlocked, Warning, Error, Info };
Q_ENUM_NS(Case)
} // namespace BadgeStyle

namespace ButtonStyleType {
Q_NAMESPACE
QML_ELEMENT
enum Case : quint8 { Primary, Secondary, Destructive, Cleared };
Q_ENUM_NS(Case)
} // namespace ButtonStyleType

/// A set of corners: its values are combined with `|`.
namespace RectCorner {
Q_NAMESPACE
QML_ELEMENT
enum Case : quint8 { TopLeft = 1, TopRight = 2, BottomLeft = 4, BottomRight = 8, AllCorners = 15 };
Q_ENUM_NS(Case)
} // namespace RectCorner

} // namespace quillhaven
