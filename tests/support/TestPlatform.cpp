#include "support/TestPlatform.h"

namespace quillhaven::testing {

TestPlatform::TestPlatform() : defaults(home.directories().configuration), cloud(home.directories())
{
    credentialQueue.setMaxThreadCount(1);
}

TestPlatform::~TestPlatform()
{
    credentialQueue.waitForDone();
}

Platform TestPlatform::platform()
{
    return platform(fileManager);
}

Platform TestPlatform::platform(FileManager &files)
{
    return {.fileManager = files,
            .directories = home.directories(),
            .defaults = defaults,
            .credentials = credentials,
            .credentialQueue = credentialQueue,
            .biometrics = biometrics,
            .panels = panels,
            .cloud = cloud,
            .clock = clock,
            .random = random};
}

} // namespace quillhaven::testing
