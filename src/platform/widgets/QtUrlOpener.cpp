// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/widgets/QtUrlOpener.h"

#include "platform/widgets/DesktopSettings.h"
#include "support/DetachedProcess.h"

#include <QStandardPaths>

namespace quillhaven {

namespace {

QByteArrayList encoded(const QStringList &words)
{
    QByteArrayList bytes;
    for (const QString &word : words) {
        bytes.append(word.toUtf8());
    }
    return bytes;
}

} // namespace

bool QtUrlOpener::open(const QUrl &url)
{
    if (url.scheme() != QLatin1String("x-apple.systempreferences")) {
        // Not by the toolkit, whose child would inherit the signals that this process blocks.
        return startDetached(QByteArrayLiteral("xdg-open"), {url.toEncoded()});
    }
    const QStringList desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(QLatin1Char(':'));
    const QStringList command = desktopSettingsCommand(
        url, desktops, [](const QString &program) { return !QStandardPaths::findExecutable(program).isEmpty(); });
    return !command.isEmpty() && startDetached(command.constFirst().toUtf8(), encoded(command.mid(1)));
}

} // namespace quillhaven
