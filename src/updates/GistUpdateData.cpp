// SPDX-License-Identifier: GPL-3.0-or-later

#include "updates/GistUpdateData.h"

#include "updates/JsonReader.h"

namespace quillhaven {

GistUpdateData decodeGistUpdateData(const QByteArray &json)
{
    const JsonReader app = JsonReader(json).object(QLatin1String("app"));
    return {.app = {.version = app.string(QLatin1String("version")),
                    .downloadURL = app.string(QLatin1String("download_url")),
                    .releaseNotes = app.string(QLatin1String("release_notes")),
                    .publishedAt = app.string(QLatin1String("published_at")),
                    .isPrerelease = app.boolean(QLatin1String("is_prerelease"))}};
}

} // namespace quillhaven
