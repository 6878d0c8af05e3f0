// SPDX-License-Identifier: GPL-3.0-or-later

#include "extension/DetachedProcess.h"

#include <fcntl.h>
#include <spawn.h>
#include <unistd.h>

#include <vector>

namespace quillhaven {

namespace {

struct FileActions
{
    FileActions() { posix_spawn_file_actions_init(&value); }
    ~FileActions() { posix_spawn_file_actions_destroy(&value); }
    FileActions(const FileActions &) = delete;
    FileActions &operator=(const FileActions &) = delete;

    posix_spawn_file_actions_t value;
};

struct Attributes
{
    Attributes() { posix_spawnattr_init(&value); }
    ~Attributes() { posix_spawnattr_destroy(&value); }
    Attributes(const Attributes &) = delete;
    Attributes &operator=(const Attributes &) = delete;

    posix_spawnattr_t value;
};

} // namespace

bool startDetached(const QByteArray &program, const QByteArrayList &arguments)
{
    FileActions actions;
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        posix_spawn_file_actions_addopen(&actions.value, stream, "/dev/null", O_RDWR, 0);
    }
    Attributes attributes;
    posix_spawnattr_setflags(&attributes.value, POSIX_SPAWN_SETSID);

    std::vector<char *> words{const_cast<char *>(program.constData())};
    for (const QByteArray &argument : arguments) {
        words.push_back(const_cast<char *>(argument.constData()));
    }
    words.push_back(nullptr);
    pid_t child = 0;
    return posix_spawnp(&child, program.constData(), &actions.value, &attributes.value, words.data(), environ) == 0;
}

} // namespace quillhaven
