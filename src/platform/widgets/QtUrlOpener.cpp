// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/widgets/QtUrlOpener.h"

#include "platform/widgets/DesktopSettings.h"

#include <QDesktopServices>
#include <QProcess>
#include <QStandardPaths>

namespace quillhaven {

bool QtUrlOpener::open(const QUrl &url)
{
    if (url.scheme() != QLatin1String("x-apple.systempreferences")) {
        return QDesktopServices::openUrl(url);
    }
    const QStringList desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(QLatin1Char(':'));
    QStringList command = desktopSettingsCommand(
        url, desktops, [](const QString &program) { return !QStandardPaths::findExecutable(program).isEmpty(); });
    if (command.isEmpty()) {
        return false;
    }
    const QString program = command.takeFirst();
    return QProcess::startDetached(program, command);
}

} // namespace quillhaven
