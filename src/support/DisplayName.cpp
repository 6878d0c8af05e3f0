// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/DisplayName.h"

#include <QStringList>

#include <algorithm>

namespace quillhaven {

namespace {

constexpr char16_t firstStrongIsolate = 0x2068;
constexpr char16_t leftToRightIsolate = 0x2066;
constexpr char16_t popIsolate = 0x2069;

bool isWithin(char16_t character, char16_t first, char16_t last)
{
    return character >= first && character <= last;
}

bool isInvisible(char16_t character)
{
    return character == 0x00AD || character == 0x061C || character == 0x180E || // soft hyphen, two marks
           character == 0x200B || character == 0x200E || character == 0x200F || // zero-width space, direction marks
           isWithin(character, 0x202A, 0x202E) ||                               // embeddings and overrides
           isWithin(character, 0x2060, 0x206F) ||                               // word joiner, isolates
           character == 0xFEFF;
}

bool isLineBreak(char16_t character)
{
    return character == '\n' || character == '\r' || character == 0x85 || character == 0x2028 || character == 0x2029;
}

bool isControl(char16_t character)
{
    return character < 0x20 || isWithin(character, 0x7F, 0x9F);
}

/// What is shown for one UTF-16 unit of a name. Fonts have both symbols, unlike those made for control characters.
QChar shown(QChar character)
{
    constexpr QChar returnArrow(u'\u21b5');
    const char16_t unit = character.unicode();
    if (isLineBreak(unit)) {
        return returnArrow;
    }
    return isControl(unit) || isInvisible(unit) ? QChar(QChar::ReplacementCharacter) : character;
}

bool isRightToLeft(const QString &text)
{
    for (const char32_t character : text.toUcs4()) {
        const QChar::Direction direction = QChar::direction(character);
        if (direction == QChar::DirR || direction == QChar::DirAL || direction == QChar::DirAN) {
            return true;
        }
    }
    return false;
}

/// The text within a whole isolate, which this function may have made before.
QString withoutIsolate(const QString &text, char16_t opening)
{
    const bool isIsolated = text.size() >= 2 && text.front() == QChar(opening) && text.back() == QChar(popIsolate);
    return isIsolated ? text.mid(1, text.size() - 2) : text;
}

QString shownComponent(QString component)
{
    component = withoutIsolate(component, firstStrongIsolate);
    std::ranges::transform(component, component.begin(), shown);
    return isRightToLeft(component) ? QChar(firstStrongIsolate) + component + QChar(popIsolate) : component;
}

} // namespace

QString displayName(const QString &name)
{
    QStringList components = withoutIsolate(name, leftToRightIsolate).split(QLatin1Char('/'));
    std::ranges::transform(components, components.begin(), shownComponent);
    const QString joined = components.join(QLatin1Char('/'));
    const bool isMixedPath = components.size() > 1 && isRightToLeft(joined);
    return isMixedPath ? QChar(leftToRightIsolate) + joined + QChar(popIsolate) : joined;
}

} // namespace quillhaven
