// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/ItemPlaces.h"

#include "support/Paths.h"

#include <algorithm>

namespace quillhaven {

namespace {

/// Whether two paths name one entry of one folder, in whatever case of the letters.
bool areOneEntry(const FileManager &files, const QString &path, const QString &other)
{
    return lastPathComponent(path).compare(lastPathComponent(other), Qt::CaseInsensitive) == 0 &&
           files.identityOfItem(parentDirectory(path), Links::Follow) ==
               files.identityOfItem(parentDirectory(other), Links::Follow);
}

} // namespace

bool isPlaceOfAnItem(const FileManager &files, const QList<ProtectedItem> &items, const QString &path)
{
    const std::optional<FileIdentity> itself = files.identityOfItem(path, Links::Keep);
    const std::optional<FileIdentity> target = files.identityOfItem(path, Links::Follow);
    return std::ranges::any_of(items, [&](const ProtectedItem &item) {
        const std::optional<FileIdentity> known = files.identityOfItem(item.originalPath, Links::Keep);
        return known && (known == itself || known == target) &&
               (!known->hasOtherNames || areOneEntry(files, item.originalPath, path));
    });
}

QStringList distinctPlaces(const FileManager &files, const QStringList &paths)
{
    PlacesInProtection places;
    std::vector<std::unique_ptr<PlacesInProtection::Claim>> claims;
    QStringList distinct;
    for (const QString &path : paths) {
        if (auto claim = places.claim(files, path)) {
            claims.push_back(std::move(claim));
            distinct.append(path);
        }
    }
    return distinct;
}

bool PlacesInProtection::Place::isSameAs(const FileManager &files, const Place &other) const
{
    if (item && item == other.item && !item->hasOtherNames) {
        return true;
    }
    if (folder && folder == other.folder && lastPathComponent(path) == lastPathComponent(other.path)) {
        return true;
    }
    const std::optional<FileIdentity> now = files.identityOfItem(path, Links::Follow);
    return now && now == other.item && (!now->hasOtherNames || areOneEntry(files, path, other.path));
}

PlacesInProtection::Place PlacesInProtection::placeOf(const FileManager &files, const QString &path)
{
    return {.item = files.identityOfItem(path, Links::Follow),
            .folder = files.identityOfItem(parentDirectory(path), Links::Follow),
            .path = path};
}

bool PlacesInProtection::holds(const FileManager &files, const Place &place) const
{
    return std::ranges::any_of(m_places, [&](const Place *known) { return known->isSameAs(files, place); });
}

std::unique_ptr<PlacesInProtection::Claim> PlacesInProtection::claim(const FileManager &files, const QString &path)
{
    Place place = placeOf(files, path);
    return holds(files, place) ? nullptr : std::make_unique<Claim>(*this, std::move(place));
}

bool PlacesInProtection::isClaimed(const FileManager &files, const QString &path) const
{
    return holds(files, placeOf(files, path));
}

PlacesInProtection::Claim::Claim(PlacesInProtection &places, Place place) : m_places(places), m_place(std::move(place))
{
    m_places.m_places.push_back(&m_place);
}

PlacesInProtection::Claim::~Claim()
{
    std::erase(m_places.m_places, &m_place);
}

} // namespace quillhaven
