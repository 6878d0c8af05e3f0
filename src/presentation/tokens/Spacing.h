// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace quillhaven {

/// Distances, in device-independent pixels.
class Spacing : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(int baseUnit MEMBER baseUnit CONSTANT)
    Q_PROPERTY(int xs MEMBER xs CONSTANT)
    Q_PROPERTY(int sm MEMBER sm CONSTANT)
    Q_PROPERTY(int md MEMBER md CONSTANT)
    Q_PROPERTY(int lg MEMBER lg CONSTANT)
    Q_PROPERTY(int xl MEMBER xl CONSTANT)
    Q_PROPERTY(int xxl MEMBER xxl CONSTANT)
    Q_PROPERTY(int xxxl MEMBER xxxl CONSTANT)
    Q_PROPERTY(int componentSpacing MEMBER componentSpacing CONSTANT)
    Q_PROPERTY(int controlSpacing MEMBER controlSpacing CONSTANT)
    Q_PROPERTY(int rowSpacing MEMBER rowSpacing CONSTANT)
    Q_PROPERTY(int sectionSpacing MEMBER sectionSpacing CONSTANT)
    Q_PROPERTY(int modalPadding MEMBER modalPadding CONSTANT)
    Q_PROPERTY(int minTouchTarget MEMBER minTouchTarget CONSTANT)

public:
    using QObject::QObject;

    static constexpr int baseUnit = 4;
    static constexpr int xs = 4;
    static constexpr int sm = 8;
    static constexpr int md = 12;
    static constexpr int lg = 16;
    static constexpr int xl = 24;
    static constexpr int xxl = 32;
    static constexpr int xxxl = 48;
    static constexpr int componentSpacing = 8;
    static constexpr int controlSpacing = 12;
    static constexpr int rowSpacing = 16;
    static constexpr int sectionSpacing = 24;
    static constexpr int modalPadding = 32;
    static constexpr int minTouchTarget = 44;
};

} // namespace quillhaven
