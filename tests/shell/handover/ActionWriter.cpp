// SPDX-License-Identifier: GPL-3.0-or-later

// ActionWriter FOLDER ACTION PATH SECONDS: writes the record of an action into the shared domain in FOLDER, as a file
// manager's menu does.

#include "platform/UserDefaults.h"
#include "platform/linux/settings/SqliteUserDefaultsProvider.h"
#include "settings/Settings.h"

#include <QCoreApplication>

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    quillhaven::SqliteUserDefaultsProvider provider(arguments.at(1));
    quillhaven::UserDefaults *suite = provider.suite(quillhaven::settings::sharedSuite);
    if (!suite) {
        return 1;
    }
    quillhaven::settings::pendingAction.write(*suite, {{QStringLiteral("action"), arguments.at(2)},
                                                       {QStringLiteral("path"), arguments.at(3)},
                                                       {QStringLiteral("timestamp"), arguments.at(4).toDouble()}});
    return 0;
}
