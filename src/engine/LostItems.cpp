// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/LostItems.h"

#include "cipher/SealedBox.h"
#include "engine/ContainerPlace.h"
#include "engine/PlaceholderFile.h"
#include "engine/PrivateCopies.h"
#include "formats/SecuredContainer.h"
#include "platform/FileManager.h"
#include "support/Paths.h"

#include <QQueue>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>
#include <optional>

namespace quillhaven {

namespace {

const QString containerSuffix = QStringLiteral(".secured");

/// A result of file calls, or the other value when one of them fails: what cannot be read is passed over.
template <typename Value, typename Call>
Value valueOr(Value other, Call call)
{
    try {
        return call();
    } catch (const FileError &) {
        return other; // dropped
    }
}

QStringList namesIn(const FileManager &files, const QString &folder)
{
    return valueOr(QStringList(), [&] { return files.contentsOfDirectory(folder); });
}

int64_t sizeOf(const FileManager &files, const QString &path, bool isFolder)
{
    return valueOr(int64_t{0}, [&] {
        if (!isFolder) {
            return files.sizeOfItem(path);
        }
        int64_t size = 0;
        for (const FileEntry &entry : files.regularFilesBelow(path)) {
            size += entry.size;
        }
        return size;
    });
}

QList<LostItem> privateCopiesWithoutRecord(const FileManager &files, const QString &secureStorage,
                                           const QList<ProtectedItem> &items)
{
    static const QRegularExpression privateName(
        QStringLiteral("^([0-9A-Fa-f-]{36})%1(_[0-9]+)*$").arg(privateCopySuffix));
    QSet<QString> known;
    for (const ProtectedItem &item : items) {
        known.insert(lastPathComponent(item.originalBackupPath));
    }
    QList<LostItem> found;
    for (const QString &name : namesIn(files, secureStorage)) {
        const QRegularExpressionMatch match = privateName.match(name);
        if (!match.hasMatch() || known.contains(name)) {
            continue;
        }
        LostItem lost;
        lost.privatePath = pathInDirectory(secureStorage, name);
        lost.id = match.captured(1);
        lost.isFolder = files.isDirectory(lost.privatePath);
        lost.size = sizeOf(files, lost.privatePath, lost.isFolder);
        lost.modified = valueOr(QDateTime(), [&] { return files.modificationDateOfItem(lost.privatePath); });
        found.append(lost);
    }
    std::ranges::sort(found, std::ranges::greater(), &LostItem::modified);
    return found;
}

/// Gives each lost item the container that fits: for a folder the one that names it, for a file the one of its size.
class Containers
{
public:
    Containers(const FileManager &files, const QString &documents, const QList<ProtectedItem> &items) : m_files(files)
    {
        QSet<QString> known;
        for (const ProtectedItem &item : items) {
            known.insert(item.containerPath);
        }
        for (const QString &name : namesIn(files, documents)) {
            const QString path = pathInDirectory(documents, name);
            if (name.endsWith(containerSuffix) && !known.contains(path) && !files.isDirectory(path)) {
                m_paths.append(path);
            }
        }
        m_paths.sort();
    }

    /// Only where nothing else fits: of several files of one size none is named, rather than one by the name of
    /// another.
    void assignTo(QList<LostItem> &lostItems) const
    {
        QHash<QString, QList<LostItem *>> fittingItems;
        for (LostItem &lost : lostItems) {
            const QStringList paths = pathsFitting(lost);
            for (const QString &path : paths) {
                fittingItems[path].append(&lost);
            }
            if (paths.size() == 1) {
                lost.containerPath = paths.constFirst();
            }
        }
        for (LostItem &lost : lostItems) {
            if (fittingItems.value(lost.containerPath).size() > 1) {
                lost.containerPath.clear();
            }
            if (!lost.containerPath.isEmpty()) {
                lost.name = lastPathComponent(lost.containerPath).chopped(containerSuffix.size());
            }
        }
    }

private:
    [[nodiscard]] QStringList pathsFitting(const LostItem &lost) const
    {
        QStringList paths = m_paths;
        paths.removeIf([&](const QString &path) { return !valueOr(false, [&] { return isOf(lost, path); }); });
        return paths;
    }
    [[nodiscard]] bool isOf(const LostItem &lost, const QString &path) const
    {
        using namespace secured_container;
        if (lost.isFolder) {
            const QByteArray marker = folderMarker(lost.privatePath);
            return m_files.sizeOfItem(path) == marker.size() &&
                   std::ranges::equal(m_files.readFile(path).bytes(), std::as_bytes(std::span(marker)));
        }
        constexpr auto overhead = static_cast<int64_t>(boxOffset + sealed_box::nonceSize + sealed_box::tagSize);
        return m_files.sizeOfItem(path) == lost.size + overhead && isContainer(m_files, path);
    }

    const FileManager &m_files;
    QStringList m_paths;
};

/// Looks for placeholders without a record: in the folders of the items first, then below the home folder.
class PlaceholderSearch
{
public:
    PlaceholderSearch(const FileManager &files, const UserDirectories &directories, const QList<ProtectedItem> &items)
        : m_files(files), m_directories(directories)
    {
        for (const ProtectedItem &item : items) {
            m_knownPlaces.insert(item.originalPath);
            const QString folder = parentDirectory(item.originalPath);
            if (!m_seen.contains(folder)) {
                m_seen.insert(folder);
                m_folders.enqueue(folder);
            }
        }
        m_seen.clear();
        m_folders.enqueue(directories.home);
    }

    void findPlacesOf(QList<LostItem> &lostItems)
    {
        constexpr int mostEntries = 300'000;
        QHash<QString, QList<LostItem *>> wanted; // by the name of the container
        for (LostItem &lost : lostItems) {
            if (!lost.name.isEmpty()) {
                wanted[lastPathComponent(lost.containerPath)].append(&lost);
            }
        }
        for (int entries = 0; !wanted.isEmpty() && !m_folders.isEmpty() && entries < mostEntries;) {
            const QString folder = m_folders.dequeue();
            if (m_seen.contains(folder)) {
                continue;
            }
            m_seen.insert(folder);
            const QStringList names = namesIn(m_files, folder);
            entries += static_cast<int>(names.size());
            for (const QString &name : names) {
                look(pathInDirectory(folder, name), name, wanted);
            }
        }
    }

private:
    void look(const QString &path, const QString &name, QHash<QString, QList<LostItem *>> &wanted)
    {
        const auto found = wanted.find(lastPathComponent(containerPathFor(m_directories, name)));
        if (found != wanted.end() && !m_knownPlaces.contains(path) &&
            valueOr(false, [&] { return holdsPlaceholder(m_files, path); })) {
            LostItem &lost = *found->takeFirst();
            lost.probablePlace = path;
            lost.name = name; // The container's lacks the characters that some file systems do not allow.
            if (found->isEmpty()) {
                wanted.erase(found);
            }
        } else if (!name.startsWith(QLatin1Char('.')) && m_files.isDirectory(path) &&
                   m_files.identityOfItem(path, Links::Keep) == m_files.identityOfItem(path, Links::Follow)) {
            m_folders.enqueue(path);
        }
    }

    const FileManager &m_files;
    const UserDirectories &m_directories;
    QSet<QString> m_knownPlaces;
    QSet<QString> m_seen;
    QQueue<QString> m_folders;
};

void discardLeftovers(FileManager &files, const QString &secureStorage, const QList<ProtectedItem> &items)
{
    QSet<QString> folders{secureStorage};
    for (const ProtectedItem &item : items) {
        folders.insert(parentDirectory(item.originalPath));
    }
    for (const QString &folder : std::as_const(folders)) {
        valueOr(false, [&] {
            files.discardAbandonedItems(folder);
            return true;
        });
    }
}

} // namespace

bool isReturned(const FileManager &files, const ProtectedItem &item)
{
    return !item.isMounted && files.fileExists(parentDirectory(item.originalBackupPath)) &&
           !files.fileExists(item.originalBackupPath) && files.fileExists(item.originalPath) &&
           files.isDirectory(item.originalPath) == item.isFolder &&
           !valueOr(true, [&] { return holdsPlaceholder(files, item.originalPath); });
}

bool isLockUnfinished(const FileManager &files, const ProtectedItem &item)
{
    return item.isMounted && files.fileExists(item.originalBackupPath) &&
           (!files.fileExists(item.originalPath) ||
            valueOr(false, [&] { return holdsPieceOfPlaceholder(files, item.originalPath); }));
}

RescueFindings findLostItems(FileManager &files, const UserDirectories &directories, const QString &secureStorage,
                             const QList<ProtectedItem> &items)
{
    discardLeftovers(files, secureStorage, items);
    RescueFindings findings;
    findings.lostItems = privateCopiesWithoutRecord(files, secureStorage, items);
    if (!findings.lostItems.isEmpty()) {
        Containers(files, directories.documents, items).assignTo(findings.lostItems);
        PlaceholderSearch(files, directories, items).findPlacesOf(findings.lostItems);
    }
    for (const ProtectedItem &item : items) {
        if (isReturned(files, item)) {
            findings.returnedItems.append(item.id);
        } else if (isLockUnfinished(files, item)) {
            findings.interruptedLocks.append(item.id);
        }
    }
    return findings;
}

} // namespace quillhaven
