// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/FileError.h"

#include <QByteArray>

#include <vector>

namespace quillhaven {

/// An entry of a tree during a walk, which owns what is referred to.
struct TreeEntry
{
    int folder; ///< the open folder that holds the entry
    const QByteArray &name;
    const QByteArray &path; ///< for messages
};

/// What a walk does with a tree. Whatever it throws ends the walk.
class TreeVisitor
{
public:
    TreeVisitor() = default;
    virtual ~TreeVisitor() = default;
    TreeVisitor(const TreeVisitor &) = delete;
    TreeVisitor &operator=(const TreeVisitor &) = delete;

    /// Is called for each entry, a folder before what it holds. Returns whether to enter the entry as a folder.
    [[nodiscard]] virtual bool visit(const TreeEntry &entry) = 0;
    /// Is called for a folder that was entered: it is open as `folder` and holds these names, which are sorted.
    virtual void entered(const TreeEntry &entry, int folder, const std::vector<QByteArray> &names) = 0;
    /// Is called for a folder that was entered, after all that it holds.
    virtual void left(const TreeEntry &entry) = 0;
};

/// Walks what exists at and below `path`, in the order of the names in each folder. Walks open folders, so that
/// replacing a folder with a link meanwhile does not lead it elsewhere. However deep the tree is, few folders are open
/// at a time and nothing recurses. Throws a FileError with `action` for a folder that cannot be entered.
void walkTree(const QByteArray &path, FileError::Action action, TreeVisitor &visitor);

} // namespace quillhaven
