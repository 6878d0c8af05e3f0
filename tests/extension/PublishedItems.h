// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "catalogue/CatalogueJson.h"
#include "platform/linux/settings/SqliteUserDefaults.h"
#include "settings/Settings.h"

namespace quillhaven::test {

/// The summary of an item, as the program publishes it.
inline ArrayElement publishedItem(const QString &id, const QString &path, bool isUnlocked)
{
    ProtectedItem item;
    item.id = id;
    item.originalPath = path;
    item.isMounted = isUnlocked;
    return {id, encodeProtectedItemInfo(item)};
}

/// Publishes the items in the shared domain of this settings folder, and keeps it open as the program does.
[[nodiscard]] inline std::unique_ptr<SqliteUserDefaults> publish(const QString &settings,
                                                                 const QList<ArrayElement> &items)
{
    auto shared = SqliteUserDefaults::open(settings, QString(settings::sharedSuite)).domain;
    return shared && shared->setArray(settings::protectedItems.key, items) ? std::move(shared) : nullptr;
}

} // namespace quillhaven::test
