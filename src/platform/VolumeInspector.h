// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

namespace quillhaven {

/// What is known of the storage that a file lies on, as far as it decides whether overwriting the file destroys its
/// content. False means that it is not known to be so.
struct StorageFacts
{
    bool isSolidState = false;  ///< new content goes to other cells, and the old ones are erased at some later time
    bool isCopyOnWrite = false; ///< new content goes to other blocks of the file system
    bool sharesBlocks = false;  ///< other files have blocks of this one
    bool isRemote = false;      ///< a file system of the network or of a program, which stores it in its own way
    bool isSynced = false;      ///< a program keeps copies of the folder elsewhere
    bool hasSnapshots = false;  ///< the volume has snapshots, which keep what the file held
    bool isUnencrypted = false; ///< what this computer's disk keeps of the file can be read without a key

    /// Whether overwriting the file may leave some of its content.
    [[nodiscard]] bool isAnythingKnown() const
    {
        return isSolidState || isCopyOnWrite || sharesBlocks || isRemote || isSynced || hasSnapshots;
    }
    /// Adds what is known of another file.
    StorageFacts &operator|=(const StorageFacts &other);

    bool operator==(const StorageFacts &) const = default;
};

/// Looks at the volumes of files. Any thread may call it; it may wait for the disk.
class VolumeInspector
{
public:
    VolumeInspector() = default;
    virtual ~VolumeInspector() = default;
    VolumeInspector(const VolumeInspector &) = delete;
    VolumeInspector &operator=(const VolumeInspector &) = delete;

    /// What is known of the storage of the file or folder at the path; nothing when nothing exists there.
    [[nodiscard]] virtual StorageFacts factsAbout(const QString &path) const = 0;
};

} // namespace quillhaven
