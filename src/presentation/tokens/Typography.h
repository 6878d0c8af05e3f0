// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QFont>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace quillhaven {

/// Type sizes in device-independent pixels, weights, families and the fonts of the roles. The constants and the static
/// functions have the sizes at scale 1; the properties, which the screens use, are multiplied by `scale`.
class Typography : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(double scale READ scale NOTIFY scaleChanged)
    Q_PROPERTY(int largeTitleSize READ scaledLargeTitleSize NOTIFY scaleChanged)
    Q_PROPERTY(int titleSize READ scaledTitleSize NOTIFY scaleChanged)
    Q_PROPERTY(int title2Size READ scaledTitle2Size NOTIFY scaleChanged)
    Q_PROPERTY(int title3Size READ scaledTitle3Size NOTIFY scaleChanged)
    Q_PROPERTY(int headlineSize READ scaledHeadlineSize NOTIFY scaleChanged)
    Q_PROPERTY(int menuTitleSize READ scaledMenuTitleSize NOTIFY scaleChanged)
    Q_PROPERTY(int bodySize READ scaledBodySize NOTIFY scaleChanged)
    Q_PROPERTY(int calloutSize READ scaledCalloutSize NOTIFY scaleChanged)
    Q_PROPERTY(int subheadlineSize READ scaledSubheadlineSize NOTIFY scaleChanged)
    Q_PROPERTY(int footnoteSize READ scaledFootnoteSize NOTIFY scaleChanged)
    Q_PROPERTY(int captionSize READ scaledCaptionSize NOTIFY scaleChanged)
    Q_PROPERTY(int caption2Size READ scaledCaption2Size NOTIFY scaleChanged)
    Q_PROPERTY(QString family READ family CONSTANT)
    Q_PROPERTY(QFont modalTitle READ scaledModalTitle NOTIFY scaleChanged)
    Q_PROPERTY(QFont sectionHeader READ scaledSectionHeader NOTIFY scaleChanged)
    Q_PROPERTY(QFont settingLabel READ scaledSettingLabel NOTIFY scaleChanged)
    Q_PROPERTY(QFont settingTitle READ scaledSettingTitle NOTIFY scaleChanged)
    Q_PROPERTY(QFont settingDescription READ scaledSettingDescription NOTIFY scaleChanged)
    Q_PROPERTY(QFont buttonText READ scaledButtonText NOTIFY scaleChanged)
    Q_PROPERTY(QFont captionText READ scaledCaptionText NOTIFY scaleChanged)
    Q_PROPERTY(QFont statusText READ scaledStatusText NOTIFY scaleChanged)
    Q_PROPERTY(QFont titleXL READ scaledTitleXL NOTIFY scaleChanged)
    Q_PROPERTY(QFont statValue READ scaledStatValue NOTIFY scaleChanged)

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

    /// A size of text at a scale, in whole pixels.
    [[nodiscard]] static int scaledSize(int size, double scale) { return qRound(size * scale); }

    /// The fonts of the roles, at a scale of the text.
    [[nodiscard]] static QFont modalTitle(double scale = 1)
    {
        return scaledFont(scaledSize(title2Size, scale), semibold);
    }
    [[nodiscard]] static QFont sectionHeader(double scale = 1)
    {
        return scaledFont(scaledSize(headlineSize, scale), semibold);
    }
    [[nodiscard]] static QFont settingLabel(double scale = 1)
    {
        return scaledFont(scaledSize(calloutSize, scale), regular);
    }
    [[nodiscard]] static QFont settingTitle(double scale = 1)
    {
        return scaledFont(scaledSize(bodySize, scale), medium);
    }
    [[nodiscard]] static QFont settingDescription(double scale = 1)
    {
        return scaledFont(scaledSize(subheadlineSize, scale), regular);
    }
    [[nodiscard]] static QFont buttonText(double scale = 1)
    {
        return scaledFont(scaledSize(calloutSize, scale), medium);
    }
    [[nodiscard]] static QFont captionText(double scale = 1)
    {
        return scaledFont(scaledSize(captionSize, scale), regular);
    }
    [[nodiscard]] static QFont statusText(double scale = 1)
    {
        return scaledFont(scaledSize(footnoteSize, scale), medium);
    }
    [[nodiscard]] static QFont titleXL(double scale = 1) { return scaledFont(scaledSize(titleSize, scale), bold); }
    [[nodiscard]] static QFont statValue(double scale = 1)
    {
        return scaledFont(scaledSize(titleSize, scale), semibold);
    }

    /// How large texts are, as the user wants them: 1 is the usual size.
    [[nodiscard]] double scale() const { return m_scale; }
    void setScale(double scale);

Q_SIGNALS:
    void scaleChanged();

private:
    [[nodiscard]] int scaledLargeTitleSize() const { return scaledSize(largeTitleSize, m_scale); }
    [[nodiscard]] int scaledTitleSize() const { return scaledSize(titleSize, m_scale); }
    [[nodiscard]] int scaledTitle2Size() const { return scaledSize(title2Size, m_scale); }
    [[nodiscard]] int scaledTitle3Size() const { return scaledSize(title3Size, m_scale); }
    [[nodiscard]] int scaledHeadlineSize() const { return scaledSize(headlineSize, m_scale); }
    [[nodiscard]] int scaledMenuTitleSize() const { return scaledSize(menuTitleSize, m_scale); }
    [[nodiscard]] int scaledBodySize() const { return scaledSize(bodySize, m_scale); }
    [[nodiscard]] int scaledCalloutSize() const { return scaledSize(calloutSize, m_scale); }
    [[nodiscard]] int scaledSubheadlineSize() const { return scaledSize(subheadlineSize, m_scale); }
    [[nodiscard]] int scaledFootnoteSize() const { return scaledSize(footnoteSize, m_scale); }
    [[nodiscard]] int scaledCaptionSize() const { return scaledSize(captionSize, m_scale); }
    [[nodiscard]] int scaledCaption2Size() const { return scaledSize(caption2Size, m_scale); }
    [[nodiscard]] QFont scaledModalTitle() const { return modalTitle(m_scale); }
    [[nodiscard]] QFont scaledSectionHeader() const { return sectionHeader(m_scale); }
    [[nodiscard]] QFont scaledSettingLabel() const { return settingLabel(m_scale); }
    [[nodiscard]] QFont scaledSettingTitle() const { return settingTitle(m_scale); }
    [[nodiscard]] QFont scaledSettingDescription() const { return settingDescription(m_scale); }
    [[nodiscard]] QFont scaledButtonText() const { return buttonText(m_scale); }
    [[nodiscard]] QFont scaledCaptionText() const { return captionText(m_scale); }
    [[nodiscard]] QFont scaledStatusText() const { return statusText(m_scale); }
    [[nodiscard]] QFont scaledTitleXL() const { return titleXL(m_scale); }
    [[nodiscard]] QFont scaledStatValue() const { return statValue(m_scale); }

    double m_scale = 1;
};

} // namespace quillhaven
