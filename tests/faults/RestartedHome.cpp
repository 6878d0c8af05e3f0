// SPDX-License-Identifier: GPL-3.0-or-later

// Starts the engine with homes as a power cut may have left them. Each line of the input is the path of a home. Each
// line of the output is JSON: the records that the start found, and the error when the protection of the item was
// removed:
// {"records": [{"isMounted": true, "originalPath": "...", "originalBackupPath": "..."}], "error": "..."}.

#include "faults/HomePlatform.h"
#include "support/printLogger.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cstdio>
#include <iostream>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

QJsonObject described(const ProtectedItem &item)
{
    return {{QStringLiteral("isMounted"), item.isMounted},
            {QStringLiteral("originalPath"), item.originalPath},
            {QStringLiteral("originalBackupPath"), item.originalBackupPath}};
}

QJsonObject restart(const QString &home)
{
    HomePlatform services(home);
    EngineHarness engine(services.platform());
    QJsonArray records;
    for (const ProtectedItem &item : engine.manager.protectedItems()) {
        records.append(described(item));
    }
    QString error;
    try {
        if (engine.count() > 0) {
            engine.remove();
        }
    } catch (const std::exception &exception) {
        error = localizedDescription(exception);
    }
    return {{QStringLiteral("records"), records}, {QStringLiteral("error"), error}};
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    setLogSink([](const QString &) {});
    std::string home;
    while (std::getline(std::cin, home)) {
        std::printf("%s\n", QJsonDocument(restart(QString::fromStdString(home))).toJson(QJsonDocument::Compact).data());
        std::fflush(stdout);
    }
    return 0;
}
