// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Shapes
import Quillhaven.Design

/// A filled rectangle with only the given corners rounded, a set of RectCorner.
Shape {
    id: shape

    property real radius: DesignSystem.cornerRadiusMedium
    property int corners: RectCorner.AllCorners
    property color fill: Colors.cardBackground

    function radiusOf(corner: int): real {
        return corners & corner ? Math.min(radius, width / 2, height / 2) : 0
    }

    ShapePath {
        id: path

        readonly property real topLeft: shape.radiusOf(RectCorner.TopLeft)
        readonly property real topRight: shape.radiusOf(RectCorner.TopRight)
        readonly property real bottomRight: shape.radiusOf(RectCorner.BottomRight)
        readonly property real bottomLeft: shape.radiusOf(RectCorner.BottomLeft)

        strokeWidth: -1
        fillColor: shape.fill
        startX: topLeft
        startY: 0

        PathLine { x: shape.width - path.topRight; y: 0 }
        PathArc { x: shape.width; y: path.topRight; radiusX: path.topRight; radiusY: path.topRight }
        PathLine { x: shape.width; y: shape.height - path.bottomRight }
        PathArc {
            x: shape.width - path.bottomRight; y: shape.height
            radiusX: path.bottomRight; radiusY: path.bottomRight
        }
        PathLine { x: path.bottomLeft; y: shape.height }
        PathArc { x: 0; y: shape.height - path.bottomLeft; radiusX: path.bottomLeft; radiusY: path.bottomLeft }
        PathLine { x: 0; y: path.topLeft }
        PathArc { x: path.topLeft; y: 0; radiusX: path.topLeft; radiusY: path.topLeft }
    }
}
