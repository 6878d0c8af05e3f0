// SPDX-License-Identifier: GPL-3.0-or-later

#include "extension/ItemSummary.h"

#include "platform/linux/settings/SqliteStatement.h"
#include "platform/linux/settings/SqliteUserDefaults.h"
#include "settings/Settings.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <sqlite3.h>

#include <algorithm>
#include <memory>

namespace quillhaven {

namespace {

/// A menu is waiting.
constexpr int busyTimeoutMs = 200;

struct CloseDatabase
{
    void operator()(sqlite3 *database) const { sqlite3_close_v2(database); }
};
using Database = std::unique_ptr<sqlite3, CloseDatabase>;

/// The file opened for reading only, or nothing. A missing or empty file is not opened at all: SQLite would remove its
/// log, and the log may hold all that was saved.
Database openForReading(const QString &path)
{
    if (QFileInfo(path).size() == 0) {
        return nullptr;
    }
    sqlite3 *database = nullptr;
    const int result = sqlite3_open_v2(QFile::encodeName(path).constData(), &database, SQLITE_OPEN_READONLY, nullptr);
    Database opened(database);
    if (result != SQLITE_OK) {
        return nullptr;
    }
    sqlite3_busy_timeout(database, busyTimeoutMs);
    return opened;
}

/// The JSON array of the published items; nothing when it cannot be read.
std::optional<QByteArray> publishedItems(sqlite3 *database)
{
    const SqliteStatement statement(database, "SELECT value FROM elements WHERE +key = ?1 ORDER BY position");
    if (!statement) {
        return std::nullopt;
    }
    SqliteRun select(statement, QString(settings::protectedItems.key));
    QByteArrayList items;
    while (select.next()) {
        items.append(select.bytes(0));
    }
    return select.hasFailed() ? std::nullopt : std::optional("[" + items.join(',') + "]");
}

} // namespace

std::optional<ItemSummary> ItemSummary::read(const QString &configuration)
{
    const Database database =
        openForReading(SqliteUserDefaults::databasePath(configuration, QString(settings::sharedSuite)));
    const auto items = database ? publishedItems(database.get()) : std::nullopt;
    const QJsonDocument document = QJsonDocument::fromJson(items.value_or(QByteArray()));
    if (!document.isArray()) {
        return std::nullopt;
    }
    ItemSummary summary;
    for (const QJsonValue &item : document.array()) {
        const QByteArray path = item[QLatin1String("originalPath")].toString().toUtf8();
        // The program takes the first item of a path.
        if (!summary.m_isUnlocked.contains(path)) {
            summary.m_isUnlocked.insert(path, item[QLatin1String("isMounted")].toBool());
        }
    }
    return summary;
}

bool ItemSummary::fits(MenuAction::Kind action, const QByteArray &path) const
{
    const auto isUnlocked = m_isUnlocked.constFind(path);
    const bool isKnown = isUnlocked != m_isUnlocked.cend();
    switch (action) {
    case MenuAction::Kind::Protect:
        return !isKnown;
    case MenuAction::Kind::Unlock:
        return isKnown && !*isUnlocked;
    case MenuAction::Kind::Lock:
        return isKnown && *isUnlocked;
    case MenuAction::Kind::Shred:
        return true;
    }
    return false;
}

bool fitsAll(const std::optional<ItemSummary> &summary, MenuAction::Kind action, const QByteArrayList &paths)
{
    const ItemSummary known = summary.value_or(ItemSummary());
    return !paths.isEmpty() &&
           std::ranges::all_of(paths, [&](const QByteArray &path) { return known.fits(action, path); });
}

} // namespace quillhaven
