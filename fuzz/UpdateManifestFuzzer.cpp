// SPDX-License-Identifier: GPL-3.0-or-later

// The manifest comes from a server. Whatever it says is either refused with a sentence or makes the way there and back,
// and its version has one place in the order.

#include "FuzzInput.h"
#include "updates/GistUpdateData.h"
#include "updates/JsonReader.h"
#include "updates/UpdateInfo.h"
#include "updates/VersionComparison.h"

using namespace quillhaven;

namespace {

void check(const UpdateInfo &info)
{
    fuzz::require(decodeUpdateInfo(encodeUpdateInfo(info)) == info);
    fuzz::require(compareNumerically(info.version, info.version) == 0);
    const std::weak_ordering order = compareNumerically(info.version, info.downloadURL);
    fuzz::require(compareNumerically(info.downloadURL, info.version) == (0 <=> order));
    fuzz::require(compareNumerically(info.version + QLatin1Char('.'), info.version) > 0);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzz::silenceLog();
    try {
        check(UpdateInfo(decodeGistUpdateData(fuzz::bytesOf(data, size)).app));
    } catch (const JsonError &error) {
        fuzz::require(!error.errorDescription().isEmpty());
    }
    return 0;
}
