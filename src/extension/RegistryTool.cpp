// SPDX-License-Identifier: GPL-3.0-or-later

// quillhaven-pluginkit: registers the extension for the file managers, with the arguments of the tool of this name that
// other systems have.
//
//   quillhaven-pluginkit -m [-p POINT]         lists the registered extension: "+" before it when it is in use
//   quillhaven-pluginkit -a PATH               registers the extension in this folder
//   quillhaven-pluginkit -r PATH               removes the registration of the extension in this folder
//   quillhaven-pluginkit -e use|ignore -i ID   uses the menus of the registered extension, or does not
//
//   quillhaven-pluginkit reload                lists the running file managers that have the menus only when they start
//                                              the next time; the others have them already
//
// What prevents something is written to standard error, and the tool ends with 1.

#include "extension/PlugInRegistry.h"
#include "platform/linux/files/UserEnvironment.h"
#include "support/printLogger.h"

#include <QCoreApplication>

#include <cstdio>

namespace quillhaven {

namespace {

constexpr int usageError = 64;

int report(const QStringList &failures)
{
    for (const QString &failure : failures) {
        std::fputs(qUtf8Printable(failure + QLatin1Char('\n')), stderr);
    }
    return failures.isEmpty() ? 0 : 1;
}

int print(const QString &line)
{
    if (!line.isEmpty()) {
        std::puts(qUtf8Printable(line));
    }
    return 0;
}

int elect(PlugInRegistry &registry, const QString &election, const QString &identifier)
{
    if (identifier != PlugInRegistry::identifier) {
        return report({QStringLiteral("There is no extension called %1.").arg(identifier)});
    }
    return report(registry.elect(election == QStringLiteral("use")));
}

int runRegistryTool(const QStringList &arguments)
{
    setLogSink([](const QString &line) { std::fputs(qUtf8Printable(line), stderr); });
    repairEnvironment();
    const MenuPlaces places = MenuPlaces::ofUser();
    PlugInRegistry registry(places.configuration + QStringLiteral("/quillhaven"), places);

    const QString verb = arguments.value(0);
    if (arguments == QStringList{QStringLiteral("-m")} ||
        arguments == QStringList{QStringLiteral("-m"), QStringLiteral("-p"), PlugInRegistry::extensionPoint}) {
        return print(registry.listing());
    }
    if (arguments.size() == 3 && verb == QStringLiteral("-m") && arguments[1] == QStringLiteral("-p")) {
        return 0; // nothing of ours is for another extension point
    }
    if (arguments.size() == 2 && verb == QStringLiteral("-a")) {
        return report(registry.add(arguments[1]));
    }
    if (arguments.size() == 2 && verb == QStringLiteral("-r")) {
        return report(registry.remove(arguments[1]));
    }
    if (arguments.size() == 4 && verb == QStringLiteral("-e") && arguments[2] == QStringLiteral("-i") &&
        (arguments[1] == QStringLiteral("use") || arguments[1] == QStringLiteral("ignore"))) {
        return elect(registry, arguments[1], arguments[3]);
    }
    if (arguments == QStringList{QStringLiteral("reload")}) {
        return print(registry.managersToBeRestarted().join(QStringLiteral(", ")));
    }
    std::fputs("usage: quillhaven-pluginkit -m [-p POINT] | -a PATH | -r PATH | -e use|ignore -i ID | reload\n",
               stderr);
    return usageError;
}

} // namespace

} // namespace quillhaven

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    return quillhaven::runRegistryTool(QCoreApplication::arguments().mid(1));
}
