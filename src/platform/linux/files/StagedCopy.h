// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/linux/files/MoveNames.h"

#include <QByteArray>

namespace quillhaven {

/// A compared copy of a file or folder, mostly on another file system, under a hidden name beside its future place. It
/// is removed with this object unless it was put in that place.
class StagedCopy
{
public:
    /// Copies with the system's `cp`, holes and all, compares everything, and brings it to the device. Throws
    /// `NotPreserved` when the other file system keeps less than the source has, `Other` when the source was changed
    /// meanwhile. The source is untouched in every case.
    StagedCopy(const QByteArray &source, const QByteArray &target, const MoveNames &names);
    ~StagedCopy();
    StagedCopy(const StagedCopy &) = delete;
    StagedCopy &operator=(const StagedCopy &) = delete;

    [[nodiscard]] const QByteArray &path() const { return m_path; }
    /// What was copied: the source's `treeStateAcrossRename`.
    [[nodiscard]] const QByteArray &sourceState() const { return m_sourceState; }
    /// The copy is in its place now.
    void keep() { m_isKept = true; }

private:
    void runCopy(const QByteArray &source, const MoveNames &names) const;

    QByteArray m_path;
    QByteArray m_sourceState;
    bool m_isKept = false;
};

} // namespace quillhaven
