// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/files/UserEnvironment.h"

#include "support/printLogger.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <pwd.h>
#include <unistd.h>

namespace quillhaven {

namespace {

bool isFolder(const QString &path)
{
    return QDir::isAbsolutePath(path) && QFileInfo(path).isDir();
}

bool isUsableHome(const QString &path)
{
    return isFolder(path) && QDir::cleanPath(path) != QLatin1String("/");
}

void repairHome()
{
    const QString home = qEnvironmentVariable("HOME");
    const passwd *account = ::getpwuid(::geteuid());
    if (isUsableHome(home) || !account) {
        return;
    }
    const QString ofAccount = QFile::decodeName(account->pw_dir);
    if (isUsableHome(ofAccount) || home.isEmpty()) {
        printLogger(QStringLiteral("⚠️ HOME is not usable: \"%1\". The home of the account is used instead: %2")
                        .arg(home, ofAccount));
        qputenv("HOME", account->pw_dir);
    }
}

void ignore(const char *name, const QString &reason)
{
    printLogger(QStringLiteral("⚠️ %1 is ignored because it %2: %3")
                    .arg(QLatin1String(name), reason, qEnvironmentVariable(name)));
    qunsetenv(name);
}

} // namespace

void repairEnvironment()
{
    repairHome();
    for (const char *name :
         {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME", "XDG_RUNTIME_DIR", "TMPDIR"}) {
        if (!qEnvironmentVariableIsEmpty(name) && !QDir::isAbsolutePath(qEnvironmentVariable(name))) {
            ignore(name, QStringLiteral("is not an absolute path"));
        }
    }
    if (!qEnvironmentVariableIsEmpty("TMPDIR") && !isFolder(qEnvironmentVariable("TMPDIR"))) {
        ignore("TMPDIR", QStringLiteral("is not a folder"));
    }
}

} // namespace quillhaven
