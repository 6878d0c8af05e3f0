// SPDX-License-Identifier: GPL-3.0-or-later

#include "extension/HandOver.h"

#include "platform/linux/settings/SqliteUserDefaults.h"
#include "settings/Settings.h"
#include "support/DetachedProcess.h"
#include "support/Utf8.h"

#include <chrono>

namespace quillhaven {

namespace {

/// Bytes of addresses for one start of the program, well below what the system lets a process be started with.
constexpr qsizetype maxBytesOfAddresses = qsizetype(256) * 1024;

/// Seconds since 1970.
double timestamp()
{
    const std::chrono::duration<double> now = std::chrono::system_clock::now().time_since_epoch();
    return now.count();
}

/// Starts the program as often as the length of its arguments demands. A later start addresses the first one.
bool openAll(const QByteArray &program, const QByteArrayList &urls)
{
    QByteArrayList next;
    qsizetype bytes = 0;
    for (const QByteArray &url : urls) {
        if (!next.isEmpty() && bytes + url.size() > maxBytesOfAddresses) {
            if (!startDetached(program, next)) {
                return false;
            }
            next.clear();
            bytes = 0;
        }
        next.append(url);
        bytes += url.size();
    }
    return startDetached(program, next);
}

} // namespace

QByteArray actionUrl(const MenuAction &action, const QByteArray &path)
{
    const QByteArray once = path.toPercentEncoding("/");
    return "quillhaven://" + QByteArray(action.word.data(), action.word.size()) +
           "?path=" + once.toPercentEncoding("/");
}

bool writePendingAction(const QString &configuration, const MenuAction &action, const QByteArray &path)
{
    const auto text = decodedUtf8(path);
    if (!text) {
        return false;
    }
    const auto shared = SqliteUserDefaults::open(configuration, QString(settings::sharedSuite)).domain;
    if (!shared) {
        return false;
    }
    const QVariantMap record{{QStringLiteral("action"), QString(action.word)},
                             {QStringLiteral("path"), *text},
                             {QStringLiteral("timestamp"), timestamp()}};
    settings::pendingAction.write(*shared, record);
    return settings::pendingAction.read(*shared) == record;
}

bool handOver(const QString &configuration, const QByteArray &program, const MenuAction &action,
              const QByteArrayList &paths)
{
    if (paths.size() == 1 && writePendingAction(configuration, action, paths.constFirst())) {
        return startDetached(program, {QByteArrayLiteral("quillhaven://show-main-window")});
    }
    QByteArrayList urls;
    for (const QByteArray &path : paths) {
        urls.append(actionUrl(action, path));
    }
    return openAll(program, urls);
}

} // namespace quillhaven
