// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "catalogue/CatalogueJson.h"
#include "platform/UserDefaults.h"
#include "settings/Settings.h"
#include "support/TestPlatform.h"

#include <QStringList>

namespace quillhaven::test {

/// A record with a name, but without a file.
inline ProtectedItem namedItem(const QString &name, bool isMounted = false)
{
    ProtectedItem item;
    item.id = QStringLiteral("ID-") + name;
    item.originalName = name;
    item.originalPath = QStringLiteral("/home/ada/papers/") + name;
    item.isMounted = isMounted;
    return item;
}

inline QStringList namesOf(const QList<ProtectedItem> &items)
{
    QStringList names;
    for (const ProtectedItem &item : items) {
        names.append(item.originalName);
    }
    return names;
}

/// Stores a catalogue for the engine that is started next, and creates a file at each item's original path.
inline void storeCatalogue(TestPlatform &services, QList<ProtectedItem> items)
{
    for (ProtectedItem &item : items) {
        item.originalPath = services.home.write(QStringLiteral("papers/") + item.originalName);
        item.originalBackupPath = services.home.path(QStringLiteral("store/") + item.id);
    }
    services.defaults.standard().setData(settings::protectedItems.key, encodeProtectedItems(items));
}

} // namespace quillhaven::test
