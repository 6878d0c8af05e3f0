// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "catalogue/ProtectedItem.h"
#include "platform/FileManager.h"

#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

namespace quillhaven {

/// Whether the file or folder at `path` is what a record's original place holds, whatever the two paths are called: a
/// link, a linked folder above, a bind mount or another case of the letters leads to the same file. Another hard link
/// of the file is an item of its own.
[[nodiscard]] bool isPlaceOfAnItem(const FileManager &files, const QList<ProtectedItem> &items, const QString &path);

/// The paths in their order, without those that lead to the place of an earlier one.
[[nodiscard]] QStringList distinctPlaces(const FileManager &files, const QStringList &paths);

/// The places that are being protected and have no record yet. Main thread only.
class PlacesInProtection
{
public:
    class Claim;

    /// Reserves the place for as long as the claim lives, which this object must outlive; nullptr when it is reserved
    /// already, under this or another path.
    [[nodiscard]] std::unique_ptr<Claim> claim(const FileManager &files, const QString &path);
    [[nodiscard]] bool isClaimed(const FileManager &files, const QString &path) const;

private:
    /// An item is recognised by itself until it moves, and by its folder and name from then on, or by what has taken
    /// its place: some folders know a file by several spellings of its name. Hard links of one file are items of their
    /// own.
    struct Place
    {
        std::optional<FileIdentity> item;
        std::optional<FileIdentity> folder;
        QString path;

        /// Whether another place, of this moment, is this one.
        [[nodiscard]] bool isSameAs(const FileManager &files, const Place &other) const;
    };
    [[nodiscard]] static Place placeOf(const FileManager &files, const QString &path);
    [[nodiscard]] bool holds(const FileManager &files, const Place &place) const;

    std::vector<const Place *> m_places;
};

class PlacesInProtection::Claim
{
public:
    Claim(PlacesInProtection &places, Place place);
    ~Claim();
    Claim(const Claim &) = delete;
    Claim &operator=(const Claim &) = delete;

private:
    PlacesInProtection &m_places;
    Place m_place;
};

} // namespace quillhaven
