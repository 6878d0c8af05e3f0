// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/files/AbandonedDuplicates.h"

#include "platform/linux/files/FolderEntries.h"
#include "platform/linux/files/HiddenNames.h"
#include "platform/linux/files/RemoveTree.h"

#include <QHash>

#include <fcntl.h>

#include <algorithm>

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
    if (std::ranges::none_of(m_hashes, [hash](const auto &known) { return known == hash; })) {
        m_hashes.at(m_next++ % m_hashes.size()) = hash;
        discardAbandonedDuplicates(folder);
    }
}

} // namespace quillhaven
