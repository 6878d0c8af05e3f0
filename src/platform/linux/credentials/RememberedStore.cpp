// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/credentials/RememberedStore.h"

#include "platform/linux/files/FolderEntries.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

namespace quillhaven {

namespace {

const QString storeKey = QStringLiteral("store");
const QString markerKey = QStringLiteral("keyring");
const QString keyringName = QStringLiteral("Secret Service");
const QString embeddedName = QStringLiteral("embedded");

RememberedStore parsed(const QByteArray &bytes)
{
    const QJsonObject note = QJsonDocument::fromJson(bytes).object();
    const QString marker = note.value(markerKey).toString();
    if (note.value(storeKey) == keyringName && !marker.isEmpty()) {
        return {RememberedStore::Kind::Keyring, marker};
    }
    if (note.value(storeKey) == embeddedName) {
        return {RememberedStore::Kind::Embedded, {}};
    }
    return {RememberedStore::Kind::Unreadable, {}};
}

} // namespace

QString RememberedStore::path(const QString &directory)
{
    return directory + QStringLiteral("/credential-store.json");
}

RememberedStore RememberedStore::readFrom(const QString &directory)
{
    QFile file(path(directory));
    if (!file.exists()) {
        return {};
    }
    return file.open(QIODevice::ReadOnly) ? parsed(file.readAll()) : RememberedStore{Kind::Unreadable, {}};
}

bool RememberedStore::writeTo(const QString &directory) const
{
    QJsonObject note{{storeKey, kind == Kind::Keyring ? keyringName : embeddedName}};
    if (kind == Kind::Keyring) {
        note.insert(markerKey, marker);
    }
    const QByteArray bytes = QJsonDocument(note).toJson();
    QDir().mkpath(directory);
    QSaveFile file(path(directory));
    return file.open(QIODevice::WriteOnly) && file.setPermissions(QFile::ReadOwner | QFile::WriteOwner) &&
           file.write(bytes) == bytes.size() && file.commit() && syncParentFolders(QFile::encodeName(path(directory)));
}

bool RememberedStore::removeFrom(const QString &directory)
{
    return !QFile::exists(path(directory)) || QFile::remove(path(directory));
}

} // namespace quillhaven
