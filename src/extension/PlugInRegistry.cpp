// SPDX-License-Identifier: GPL-3.0-or-later

#include "extension/PlugInRegistry.h"

#include "extension/OwnFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include <sys/stat.h>

namespace quillhaven {

namespace {

const QString version = QStringLiteral("1.0");
const QString pathKey = QStringLiteral("path");
const QString isUsedKey = QStringLiteral("isUsed");

/// The path without links, as far as the folder exists.
QString pathOfFolder(const QString &folder)
{
    const QString path = QFileInfo(folder).canonicalFilePath();
    return path.isEmpty() ? QDir::cleanPath(QFileInfo(folder).absoluteFilePath()) : path;
}

} // namespace

PlugInRegistry::PlugInRegistry(const QString &settings, MenuPlaces places)
    : m_file(settings + QStringLiteral("/FinderSyncExtension.json")), m_places(std::move(places))
{
}

std::optional<PlugInRegistry::Registration> PlugInRegistry::registration() const
{
    const QJsonDocument document = QJsonDocument::fromJson(fileAt(m_file).contents);
    const QString path = document[pathKey].toString();
    return path.isEmpty() ? std::nullopt : std::optional(Registration{path, document[isUsedKey].toBool()});
}

QStringList PlugInRegistry::save(const Registration &registration)
{
    const FileAtPlace found = fileAt(m_file);
    if (found.kind == FileAtPlace::Kind::Other) {
        return {QStringLiteral("%1 is not a file.").arg(m_file)};
    }
    ::mkdir(QFile::encodeName(QFileInfo(m_file).path()).constData(), 0700); // as the settings store makes it
    const QJsonDocument document(QJsonObject{{pathKey, registration.extension}, {isUsedKey, registration.isUsed}});
    const auto failure = writeInOneStep(m_file, document.toJson(), false);
    return failure ? QStringList(*failure) : QStringList();
}

QString PlugInRegistry::listing() const
{
    const auto known = registration();
    if (!known) {
        return {};
    }
    QStringList managers;
    bool isComplete = known->isUsed && QFileInfo(known->extension).isDir();
    for (const auto &menus : menusOfAllManagers(known->extension, m_places)) {
        if (!menus->isPresent()) {
            continue;
        }
        if (isComplete && menus->isCurrent()) {
            managers.append(menus->name());
        } else {
            isComplete = false;
        }
    }
    return (isComplete ? QStringLiteral("+    ") : QStringLiteral("-    ")) + identifier + QLatin1Char('(') + version +
           QStringLiteral(")\t") + managers.join(QStringLiteral(", "));
}

QStringList PlugInRegistry::managersToBeRestarted() const
{
    const auto known = registration();
    if (!known || !known->isUsed) {
        return {};
    }
    QStringList managers;
    for (const auto &menus : menusOfAllManagers(known->extension, m_places)) {
        if (menus->isToBeRestarted()) {
            managers.append(menus->name());
        }
    }
    return managers;
}

QStringList PlugInRegistry::add(const QString &extension)
{
    const QString path = QFileInfo(extension).canonicalFilePath();
    if (path.isEmpty() || !QFileInfo(path).isDir()) {
        return {QStringLiteral("There is no extension at %1.").arg(extension)};
    }
    const auto known = registration();
    const Registration wanted{path, !known || known->isUsed};
    QStringList failures = save(wanted);
    if (failures.isEmpty() && wanted.isUsed) {
        failures = installMenus(path);
    }
    return failures;
}

QStringList PlugInRegistry::remove(const QString &extension)
{
    const auto known = registration();
    if (known && known->extension != pathOfFolder(extension)) {
        return {QStringLiteral("The extension at %1 is not registered.").arg(extension)};
    }
    QStringList failures = removeMenus();
    if (failures.isEmpty() && fileAt(m_file).kind == FileAtPlace::Kind::File) {
        if (const auto failure = removeFile(m_file)) {
            failures.append(*failure);
        }
    }
    return failures;
}

QStringList PlugInRegistry::elect(bool isUsed)
{
    const auto known = registration();
    if (!known) {
        return {QStringLiteral("No extension is registered.")};
    }
    QStringList failures = save({known->extension, isUsed});
    failures += isUsed ? installMenus(known->extension) : removeMenus();
    return failures;
}

QStringList PlugInRegistry::installMenus(const QString &extension) const
{
    QStringList failures;
    for (const auto &menus : menusOfAllManagers(extension, m_places)) {
        if (!menus->isPresent() || menus->isCurrent()) {
            continue;
        }
        if (const auto failure = menus->install()) {
            failures.append(*failure);
        }
    }
    return failures;
}

/// Those of file managers that are no longer installed too.
QStringList PlugInRegistry::removeMenus() const
{
    QStringList failures;
    for (const auto &menus : menusOfAllManagers({}, m_places)) {
        if (const auto failure = menus->remove()) {
            failures.append(*failure);
        }
    }
    return failures;
}

} // namespace quillhaven
