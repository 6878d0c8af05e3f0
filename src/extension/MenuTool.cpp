// SPDX-License-Identifier: GPL-3.0-or-later

// quillhaven-menu: what the entries of the file managers' menus run.
//
//   quillhaven-menu offers PATH...        prints the words of the entries that make sense for all of these items
//   quillhaven-menu fits ACTION PATH...   prints "true", and succeeds, if this entry is one of them
//   quillhaven-menu ACTION PATH...        asks the program to do this: protect, unlock, lock or shred
//
// A PATH is a path or a file URI. With a single "-", they are read from standard input, separated by NUL characters.
// QUILLHAVEN_PROGRAM names the program to start instead of the one of the same installation.

#include "extension/HandOver.h"
#include "extension/ItemSummary.h"
#include "extension/PathArguments.h"
#include "platform/linux/files/UserEnvironment.h"
#include "support/DetachedProcess.h"
#include "support/printLogger.h"

#include <QCoreApplication>
#include <QFile>
#include <QStandardPaths>

#include <cstdio>

namespace quillhaven {

namespace {

constexpr int usageError = 64;

QString configurationFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + QStringLiteral("/quillhaven");
}

/// The program, beside the folder of this tool in the bundle.
QByteArray programPath()
{
    QByteArray chosen = qgetenv("QUILLHAVEN_PROGRAM");
    if (!chosen.isEmpty()) {
        return chosen;
    }
    const QByteArray tool = QFile::encodeName(QFile::symLinkTarget(QStringLiteral("/proc/self/exe")));
    return tool.left(tool.lastIndexOf('/')) + "/../../MacOS/quillhaven";
}

/// Shows the user why nothing happens, where there is a program for such messages.
void notify(const QByteArray &message)
{
    (void)startDetached(QByteArrayLiteral("notify-send"),
                        {QByteArrayLiteral("--app-name=Quillhaven"), QByteArrayLiteral("Quillhaven"), message});
}

QByteArrayList readPaths(const QByteArrayList &arguments)
{
    if (arguments != QByteArrayList{QByteArrayLiteral("-")}) {
        return pathsOfArguments(arguments);
    }
    QFile input;
    return input.open(stdin, QIODevice::ReadOnly) ? pathsOfArguments(input.readAll().split('\0')) : QByteArrayList();
}

int printOffers(const QByteArrayList &paths)
{
    const auto summary = ItemSummary::read(configurationFolder());
    for (const MenuAction &action : menuActions) {
        if (fitsAll(summary, action.kind, paths)) {
            std::puts(action.word.data());
        }
    }
    return 0;
}

int printFit(const MenuAction &action, const QByteArrayList &paths)
{
    const bool isFit = fitsAll(ItemSummary::read(configurationFolder()), action.kind, paths);
    std::fputs(isFit ? "true" : "false", stdout); // a line end would not be "true" for PCManFM-Qt
    return isFit ? 0 : 1;
}

/// What a menu that shows every entry for every file would otherwise ask for in vain. Without a summary, the program
/// decides.
QByteArrayList fittingPaths(const MenuAction &action, const QByteArrayList &paths)
{
    const auto summary = ItemSummary::read(configurationFolder());
    QByteArrayList fitting;
    for (const QByteArray &path : paths) {
        if (!summary || summary->fits(action.kind, path)) {
            fitting.append(path);
        }
    }
    return fitting;
}

QByteArray sentenceForUnfit(const MenuAction &action, qsizetype count)
{
    const QByteArray items = count == 1 ? "This item" : QByteArray::number(count) + " items";
    const QByteArray verb = count == 1 ? " is " : " are ";
    switch (action.kind) {
    case MenuAction::Kind::Protect:
        return items + verb + "protected already.";
    case MenuAction::Kind::Unlock:
        return items + verb + "not locked by Quillhaven.";
    case MenuAction::Kind::Lock:
        return items + verb + "not unlocked, or not protected by Quillhaven.";
    case MenuAction::Kind::Shred:
        break;
    }
    return {};
}

int perform(const MenuAction &action, const QByteArrayList &paths)
{
    const QByteArrayList fitting = fittingPaths(action, paths);
    if (fitting.size() < paths.size()) {
        notify(sentenceForUnfit(action, paths.size() - fitting.size()));
    }
    if (fitting.isEmpty()) {
        return paths.isEmpty() ? usageError : 0;
    }
    if (!handOver(configurationFolder(), programPath(), action, fitting)) {
        notify("Quillhaven could not be started.");
        return 1;
    }
    return 0;
}

const MenuAction *actionOf(const QByteArray &word)
{
    return menuActionOf(QLatin1String(word));
}

int runMenuTool(int argc, char **argv)
{
    setLogSink([](const QString &line) { std::fputs(qUtf8Printable(line), stderr); });
    repairEnvironment();
    const QByteArrayList arguments(argv + 1, argv + argc);
    const QByteArray verb = arguments.value(0);
    if (verb == "offers") {
        return printOffers(readPaths(arguments.mid(1)));
    }
    if (verb == "fits" && actionOf(arguments.value(1))) {
        return printFit(*actionOf(arguments.value(1)), readPaths(arguments.mid(2)));
    }
    if (const MenuAction *action = actionOf(verb)) {
        const QCoreApplication application(argc, argv); // for the settings' watcher of other processes
        return perform(*action, readPaths(arguments.mid(1)));
    }
    std::fputs("usage: quillhaven-menu offers PATH... | fits ACTION PATH... | ACTION PATH...\n"
               "ACTION is protect, unlock, lock or shred.\n",
               stderr);
    return usageError;
}

} // namespace

} // namespace quillhaven

int main(int argc, char **argv)
{
    return quillhaven::runMenuTool(argc, argv);
}
