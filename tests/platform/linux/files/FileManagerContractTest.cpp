// SPDX-License-Identifier: GPL-3.0-or-later

#include "contract/FileManagerContract.h"
#include "platform/linux/files/LinuxFileManager.h"
#include "support/HookedSeam.h"

namespace quillhaven::test {
namespace {

struct Decorated
{
    LinuxFileManager files;
    FileManagerDecorator decorator{files};
};

/// With hooks that change nothing.
struct Hooked
{
    SeamHooks hooks{
        .before = [](const char *, const QString &) {}, .after = [](const char *, const QString &) {}, .scope = {}};
    LinuxFileManager files;
    HookedFileManager hooked{files, hooks};
};

const MakeFileManager real = [] { return std::shared_ptr<FileManager>(std::make_shared<LinuxFileManager>()); };
const MakeFileManager decorated = [] {
    const auto made = std::make_shared<Decorated>();
    return std::shared_ptr<FileManager>(made, &made->decorator);
};
const MakeFileManager hooked = [] {
    const auto made = std::make_shared<Hooked>();
    return std::shared_ptr<FileManager>(made, &made->hooked);
};

INSTANTIATE_TEST_SUITE_P(Linux, FileManagerContract, ::testing::Values(real));
INSTANTIATE_TEST_SUITE_P(Decorated, FileManagerContract, ::testing::Values(decorated));
INSTANTIATE_TEST_SUITE_P(Hooked, FileManagerContract, ::testing::Values(hooked));

} // namespace
} // namespace quillhaven::test
