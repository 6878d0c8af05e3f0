// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/DetachedProcess.h"

#include "support/ChildSignals.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <vector>

namespace quillhaven {

namespace {

struct FileActions
{
    FileActions() { posix_spawn_file_actions_init(&value); }
    ~FileActions() { posix_spawn_file_actions_destroy(&value); }
    FileActions(const FileActions &) = delete;
    FileActions &operator=(const FileActions &) = delete;

    posix_spawn_file_actions_t value{};
};

} // namespace

bool startDetached(const QByteArray &program, const QByteArrayList &arguments)
{
    FileActions actions;
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        posix_spawn_file_actions_addopen(&actions.value, stream, "/dev/null", O_RDWR, 0);
    }
    const SpawnAttributes attributes;

    std::vector<char *> words{const_cast<char *>(program.constData())};
    for (const QByteArray &argument : arguments) {
        words.push_back(const_cast<char *>(argument.constData()));
    }
    words.push_back(nullptr);
    // A process in between ends at once, so that the program is not a child of this one, which would have to wait for
    // it.
    const pid_t starter = ::fork();
    if (starter == 0) {
        pid_t started = 0;
        ::_exit(::posix_spawnp(&started, words.front(), &actions.value, attributes.get(), words.data(), environ));
    }
    int status = -1;
    while (starter > 0 && ::waitpid(starter, &status, 0) == -1 && errno == EINTR) {
    }
    return status == 0;
}

} // namespace quillhaven
