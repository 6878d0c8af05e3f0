// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Shapes
import Quillhaven.Design

/// The primary gradient, from the top leading to the bottom trailing corner of a rounded rectangle.
Shape {
    id: shape

    property real radius: 0

    // The layer smooths the edge. The software renderer does so without one, and does not draw a layer at any scale
    // other than 1.
    layer.enabled: GraphicsInfo.api !== GraphicsInfo.Software
    layer.samples: 4

    ShapePath {
        strokeWidth: -1
        fillGradient: LinearGradient {
            x1: 0
            y1: 0
            x2: shape.width
            y2: shape.height
            GradientStop { position: 0; color: Colors.primaryGradient.from }
            GradientStop { position: 1; color: Colors.primaryGradient.to }
        }
        startX: shape.radius
        startY: 0
        PathLine { x: shape.width - shape.radius; y: 0 }
        PathArc { x: shape.width; y: shape.radius; radiusX: shape.radius; radiusY: shape.radius }
        PathLine { x: shape.width; y: shape.height - shape.radius }
        PathArc { x: shape.width - shape.radius; y: shape.height; radiusX: shape.radius; radiusY: shape.radius }
        PathLine { x: shape.radius; y: shape.height }
        PathArc { x: 0; y: shape.height - shape.radius; radiusX: shape.radius; radiusY: shape.radius }
        PathLine { x: 0; y: shape.radius }
        PathArc { x: shape.radius; y: 0; radiusX: shape.radius; radiusY: shape.radius }
    }
}
