// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/files/AbandonedDuplicates.h"

#include "platform/linux/files/FolderEntries.h"
#include "platform/linux/files/HiddenNames.h"
#include "platform/linux/files/RemoveTree.h"

#include <QHash>

#include <fcntl.h>

namespace quillhaven {

void discardAbandonedDuplicates(const QByteArray &folder) noexcept
{
    const ScopedFd fd(open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    std::vector<QByteArray> names;
    if (!fd.isOpen() || !readEntries(fd.get(), names)) {
        return;
    }
    for (const QByteArray &name : names) {
        if (isAbandonedDuplicate(name)) {
            discardTree(folder + '/' + name);
        }
    }
}

void CleanedFolders::clean(const QByteArray &folder)
{
    const size_t hash = qHash(folder);
    if (m_hashes.at(hash % m_hashes.size()).exchange(hash) != hash) {
        discardAbandonedDuplicates(folder);
    }
}

} // namespace quillhaven
