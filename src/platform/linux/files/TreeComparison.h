// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QString>

namespace quillhaven {

/// One digest of what exists at and below `path`, over names, inodes, sizes, modes and times of change: equal digests
/// of two moments mean that nothing was changed between them. Throws a FileError (`Other`) when another volume is
/// mounted below the path, and the error of what cannot be read.
[[nodiscard]] QByteArray treeState(const QByteArray &path);

/// The same without the name and the time of change of the topmost item, which a rename of it changes.
[[nodiscard]] QByteArray treeStateAcrossRename(const QByteArray &path);

/// Compares a copy with its source: names, types, contents, modes, owners, modification times to the nanosecond,
/// extended attributes with ACLs, groups of hard links, link targets and device numbers. Throws `NotPreserved` with a
/// sentence that names the first file that differs and in what; `target` is the path named in it.
void requireSameTree(const QByteArray &source, const QByteArray &copy, const QString &target);

} // namespace quillhaven
