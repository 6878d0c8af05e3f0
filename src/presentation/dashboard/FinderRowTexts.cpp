// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dashboard/FinderRowTexts.h"

#include "support/DisplayName.h"

#include <QStringList>
#include <QTextBoundaryFinder>

#include <algorithm>
#include <array>

namespace quillhaven::finder_row {

namespace {

constexpr int maxPathLength = 40; // in characters

bool containsAnyOf(const QString &text, std::initializer_list<QLatin1String> parts)
{
    return std::any_of(parts.begin(), parts.end(), [&text](QLatin1String part) { return text.contains(part); });
}

/// The number of user-perceived characters: an accented letter counts as one, whatever its encoding.
qsizetype characterCount(const QString &text)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qsizetype count = 0;
    while (finder.toNextBoundary() != -1) {
        ++count;
    }
    return count;
}

QString folderOf(const QString &path)
{
    const qsizetype slash = path.lastIndexOf(QLatin1Char('/'));
    return slash == 0 ? QStringLiteral("/") : path.left(std::max<qsizetype>(slash, 0));
}

} // namespace

QString fileIcon(const QString &originalName)
{
    const QString name = originalName.toLower();
    if (containsAnyOf(name, {QLatin1String(".txt"), QLatin1String(".rtf"), QLatin1String(".pdf")})) {
        return QStringLiteral("doc.text.fill");
    }
    if (containsAnyOf(name, {QLatin1String("image"), QLatin1String(".jpg"), QLatin1String(".png")})) {
        return QStringLiteral("photo.fill");
    }
    return QStringLiteral("doc.fill");
}

QString leadingIcon(const ProtectedItem &item)
{
    return item.isFolder ? QStringLiteral("folder.fill") : fileIcon(item.originalName);
}

QString shortenedPath(const QString &originalPath, const QString &homePath)
{
    QString path = originalPath;
    if (!homePath.isEmpty()) {
        path.replace(homePath, QStringLiteral("~"));
    }
    QString folder = folderOf(path);
    if (characterCount(folder) <= maxPathLength) {
        return displayName(folder);
    }
    const QStringList parts = folder.split(QLatin1Char('/'));
    if (parts.size() < 4) {
        return displayName(folder);
    }
    return displayName(parts.first() + QStringLiteral("/…/") + parts.at(parts.size() - 2) + QLatin1Char('/') +
                       parts.last());
}

QString statusText(const ProtectedItem &item)
{
    return item.isMounted ? QStringLiteral("Unlocked") : QStringLiteral("Locked");
}

QString toggleLockText(const ProtectedItem &item)
{
    return item.isMounted ? QStringLiteral("Lock Item") : QStringLiteral("Unlock Item");
}

QString toggleLockIcon(const ProtectedItem &item)
{
    if (item.isMounted) {
        return QStringLiteral("lock.fill");
    }
    return item.useTouchID ? QStringLiteral("touchid") : QStringLiteral("key.fill");
}

QString accessibleText(const ProtectedItem &item)
{
    return displayName(item.originalName) + QStringLiteral(", ") +
           (item.isMounted ? QStringLiteral("unlocked") : QStringLiteral("locked"));
}

} // namespace quillhaven::finder_row
