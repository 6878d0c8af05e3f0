// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>

namespace quillhaven {

/// How the user wants programs to look, as chosen in the settings of the desktop. Main thread only.
class DisplayPreferences : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool reduceMotion READ reduceMotion NOTIFY changed)
    Q_PROPERTY(bool differentiateWithoutColor READ differentiateWithoutColor NOTIFY changed)
    Q_PROPERTY(quillhaven::DisplayPreferences::Contrast colorSchemeContrast READ colorSchemeContrast NOTIFY changed)
    Q_PROPERTY(double textScale READ textScale NOTIFY changed)

public:
    enum class Contrast { Standard, Increased };
    Q_ENUM(Contrast)

    struct Values
    {
        bool reduceMotion = false;              ///< nothing moves that need not move
        bool differentiateWithoutColor = false; ///< no difference is shown by a colour alone
        Contrast colorSchemeContrast = Contrast::Standard;
        double textScale = 1; ///< the size of text, beside that of all else; from 0.5 to 3

        bool operator==(const Values &) const = default;
    };

    using QObject::QObject;

    [[nodiscard]] const Values &values() const { return m_values; }
    [[nodiscard]] bool reduceMotion() const { return m_values.reduceMotion; }
    [[nodiscard]] bool differentiateWithoutColor() const { return m_values.differentiateWithoutColor; }
    [[nodiscard]] Contrast colorSchemeContrast() const { return m_values.colorSchemeContrast; }
    [[nodiscard]] double textScale() const { return m_values.textScale; }

Q_SIGNALS:
    void changed();

protected:
    void setValues(const Values &values);

private:
    Values m_values;
};

} // namespace quillhaven
