// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace quillhaven {

/// A shadow in the colour `modalShadow`: blur radius and offset, in device-independent pixels.
class ShadowToken
{
    Q_GADGET
    QML_VALUE_TYPE(shadowToken)
    Q_PROPERTY(int radius MEMBER radius CONSTANT)
    Q_PROPERTY(int x MEMBER x CONSTANT)
    Q_PROPERTY(int y MEMBER y CONSTANT)

public:
    int radius = 0;
    int x = 0;
    int y = 0;

    bool operator==(const ShadowToken &) const = default;
};

/// Radii, shadows, durations and sizes. In QML the name of each is its group's name and its own, such as
/// `DesignSystem.cornerRadiusMedium`.
class DesignSystem : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    /// Device-independent pixels.
    struct CornerRadius
    {
        static constexpr int small = 4;
        static constexpr int medium = 8;
        static constexpr int large = 12;
        static constexpr int extraLarge = 16;
        static constexpr int modal = 18;
    };
    struct Shadow
    {
        static constexpr ShadowToken small{4, 0, 0};
        static constexpr ShadowToken medium{8, 0, 4};
        static constexpr ShadowToken large{16, 0, 8};
        static constexpr ShadowToken modal{24, 0, 8};
    };
    /// Milliseconds of an ease-in-out, and the parameters of the spring.
    struct Animation
    {
        static constexpr int quick = 200;
        static constexpr int standard = 300;
        static constexpr int slow = 500;
        struct Spring
        {
            double response = 0;
            double dampingFraction = 0;
            double blendDuration = 0;
            bool operator==(const Spring &) const = default;
        };
        static constexpr Spring spring{0.5, 0.8, 0};
    };
    /// Device-independent pixels.
    struct Layout
    {
        static constexpr int modalWidth = 600;
        static constexpr int modalMaxHeight = 700;
        static constexpr int sectionMaxWidth = 500;
        static constexpr int buttonHeight = 36;
        static constexpr int toggleSize = 24;
    };
    /// How much brighter a button's fill gets under the pointer.
    static constexpr double hoverBrightness = 0.06;

    /// Whether nothing moves: the durations of the properties are 0, and nothing repeats.
    [[nodiscard]] bool reduceMotion() const { return m_reduceMotion; }
    void setReduceMotion(bool value);
    /// Whether a symbol goes with each status that otherwise only a colour shows.
    [[nodiscard]] bool differentiateWithoutColor() const { return m_differentiateWithoutColor; }
    void setDifferentiateWithoutColor(bool value);

Q_SIGNALS:
    void motionChanged();
    void differentiationChanged();

private:
    Q_PROPERTY(int cornerRadiusSmall READ cornerRadiusSmall CONSTANT)
    Q_PROPERTY(int cornerRadiusMedium READ cornerRadiusMedium CONSTANT)
    Q_PROPERTY(int cornerRadiusLarge READ cornerRadiusLarge CONSTANT)
    Q_PROPERTY(int cornerRadiusExtraLarge READ cornerRadiusExtraLarge CONSTANT)
    Q_PROPERTY(int cornerRadiusModal READ cornerRadiusModal CONSTANT)
    Q_PROPERTY(quillhaven::ShadowToken shadowSmall READ shadowSmall CONSTANT)
    Q_PROPERTY(quillhaven::ShadowToken shadowMedium READ shadowMedium CONSTANT)
    Q_PROPERTY(quillhaven::ShadowToken shadowLarge READ shadowLarge CONSTANT)
    Q_PROPERTY(quillhaven::ShadowToken shadowModal READ shadowModal CONSTANT)
    Q_PROPERTY(int animationQuick READ animationQuick NOTIFY motionChanged)
    Q_PROPERTY(int animationStandard READ animationStandard NOTIFY motionChanged)
    Q_PROPERTY(int animationSlow READ animationSlow NOTIFY motionChanged)
    Q_PROPERTY(int modalWidth READ modalWidth CONSTANT)
    Q_PROPERTY(int modalMaxHeight READ modalMaxHeight CONSTANT)
    Q_PROPERTY(int sectionMaxWidth READ sectionMaxWidth CONSTANT)
    Q_PROPERTY(int buttonHeight READ buttonHeight CONSTANT)
    Q_PROPERTY(int toggleSize READ toggleSize CONSTANT)
    Q_PROPERTY(bool reduceMotion READ reduceMotion NOTIFY motionChanged)
    Q_PROPERTY(bool differentiateWithoutColor READ differentiateWithoutColor NOTIFY differentiationChanged)
    Q_PROPERTY(double hoverBrightness MEMBER hoverBrightness CONSTANT)

    static int cornerRadiusSmall() { return CornerRadius::small; }
    static int cornerRadiusMedium() { return CornerRadius::medium; }
    static int cornerRadiusLarge() { return CornerRadius::large; }
    static int cornerRadiusExtraLarge() { return CornerRadius::extraLarge; }
    static int cornerRadiusModal() { return CornerRadius::modal; }
    static ShadowToken shadowSmall() { return Shadow::small; }
    static ShadowToken shadowMedium() { return Shadow::medium; }
    static ShadowToken shadowLarge() { return Shadow::large; }
    static ShadowToken shadowModal() { return Shadow::modal; }
    [[nodiscard]] int animationQuick() const { return m_reduceMotion ? 0 : Animation::quick; }
    [[nodiscard]] int animationStandard() const { return m_reduceMotion ? 0 : Animation::standard; }
    [[nodiscard]] int animationSlow() const { return m_reduceMotion ? 0 : Animation::slow; }
    static int modalWidth() { return Layout::modalWidth; }
    static int modalMaxHeight() { return Layout::modalMaxHeight; }
    static int sectionMaxWidth() { return Layout::sectionMaxWidth; }
    static int buttonHeight() { return Layout::buttonHeight; }
    static int toggleSize() { return Layout::toggleSize; }

    bool m_reduceMotion = false;
    bool m_differentiateWithoutColor = false;
};

} // namespace quillhaven
