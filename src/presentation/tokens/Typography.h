// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QFont>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace quillhaven {

/// Type sizes in device-independent pixels, weights, families and the fonts of the roles.
class Typography : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(int largeTitleSize MEMBER largeTitleSize CONSTANT)
    Q_PROPERTY(int titleSize MEMBER titleSize CONSTANT)
    Q_PROPERTY(int title2Size MEMBER title2Size CONSTANT)
    Q_PROPERTY(int title3Size MEMBER title3Size CONSTANT)
    Q_PROPERTY(int headlineSize MEMBER headlineSize CONSTANT)
    Q_PROPERTY(int menuTitleSize MEMBER menuTitleSize CONSTANT)
    Q_PROPERTY(int bodySize MEMBER bodySize CONSTANT)
    Q_PROPERTY(int calloutSize MEMBER calloutSize CONSTANT)
    Q_PROPERTY(int subheadlineSize MEMBER subheadlineSize CONSTANT)
    Q_PROPERTY(int footnoteSize MEMBER footnoteSize CONSTANT)
    Q_PROPERTY(int captionSize MEMBER captionSize CONSTANT)
    Q_PROPERTY(int caption2Size MEMBER caption2Size CONSTANT)
    Q_PROPERTY(QString family READ family CONSTANT)
    Q_PROPERTY(QFont modalTitle READ modalTitle CONSTANT)
    Q_PROPERTY(QFont sectionHeader READ sectionHeader CONSTANT)
    Q_PROPERTY(QFont settingLabel READ settingLabel CONSTANT)
    Q_PROPERTY(QFont settingTitle READ settingTitle CONSTANT)
    Q_PROPERTY(QFont settingDescription READ settingDescription CONSTANT)
    Q_PROPERTY(QFont buttonText READ buttonText CONSTANT)
    Q_PROPERTY(QFont captionText READ captionText CONSTANT)
    Q_PROPERTY(QFont statusText READ statusText CONSTANT)
    Q_PROPERTY(QFont titleXL READ titleXL CONSTANT)
    Q_PROPERTY(QFont statValue READ statValue CONSTANT)

public:
    using QObject::QObject;

    /// The shape of the letters. `standard` is the family of this class, and so is `rounded` if the desktop has no
    /// rounded one.
    enum class Design : quint8 { standard, rounded, serif, monospaced };

    static constexpr int largeTitleSize = 28;
    static constexpr int titleSize = 22;
    static constexpr int title2Size = 20;
    static constexpr int title3Size = 18;
    static constexpr int headlineSize = 17;
    static constexpr int menuTitleSize = 16; ///< of the popover
    static constexpr int bodySize = 15;
    static constexpr int calloutSize = 14;
    static constexpr int subheadlineSize = 13;
    static constexpr int footnoteSize = 12;
    static constexpr int captionSize = 11;
    static constexpr int caption2Size = 10;

    static constexpr QFont::Weight ultraLight = QFont::Thin;
    static constexpr QFont::Weight thin = QFont::ExtraLight;
    static constexpr QFont::Weight light = QFont::Light;
    static constexpr QFont::Weight regular = QFont::Normal;
    static constexpr QFont::Weight medium = QFont::Medium;
    static constexpr QFont::Weight semibold = QFont::DemiBold;
    static constexpr QFont::Weight bold = QFont::Bold;
    static constexpr QFont::Weight heavy = QFont::ExtraBold;
    static constexpr QFont::Weight black = QFont::Black;

    static inline const QString displayFont = QStringLiteral("SF Pro Display");
    static inline const QString textFont = QStringLiteral("SF Pro Text");

    /// The family that is used: the text family, or else Inter, or else the desktop's default.
    [[nodiscard]] static QString family();
    /// A system font of the given size in device-independent pixels.
    [[nodiscard]] static QFont scaledFont(int size, QFont::Weight weight = regular, Design design = Design::standard);

    [[nodiscard]] static QFont modalTitle() { return scaledFont(title2Size, semibold); }
    [[nodiscard]] static QFont sectionHeader() { return scaledFont(headlineSize, semibold); }
    [[nodiscard]] static QFont settingLabel() { return scaledFont(calloutSize, regular); }
    [[nodiscard]] static QFont settingTitle() { return scaledFont(bodySize, medium); }
    [[nodiscard]] static QFont settingDescription() { return scaledFont(subheadlineSize, regular); }
    [[nodiscard]] static QFont buttonText() { return scaledFont(calloutSize, medium); }
    [[nodiscard]] static QFont captionText() { return scaledFont(captionSize, regular); }
    [[nodiscard]] static QFont statusText() { return scaledFont(footnoteSize, medium); }
    [[nodiscard]] static QFont titleXL() { return scaledFont(titleSize, bold); }
    [[nodiscard]] static QFont statValue() { return scaledFont(titleSize, semibold); }
};

} // namespace quillhaven
