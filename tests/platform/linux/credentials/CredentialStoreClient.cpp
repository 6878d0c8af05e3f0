// SPDX-License-Identifier: GPL-3.0-or-later

// CredentialStoreClient FOLDER COMMAND...: one start of a program that keeps its passwords in the store of the session.
// The commands are "prepare", "add ACCOUNT VALUE", "update ACCOUNT VALUE", "read ACCOUNT" and "remove ACCOUNT", each
// one argument. Prints the status of each, with the value that was read.

#include "credentials/KeychainManager.h"
#include "platform/linux/OpenSslRandomSource.h"
#include "platform/linux/credentials/SystemCredentialStore.h"

#include <QCoreApplication>
#include <QTextStream>

using namespace quillhaven;

namespace {

QString answer(CredentialStore &store, const QStringList &words)
{
    const QString &command = words.at(0);
    const QString account = words.value(1);
    const QByteArray value = words.value(2).toUtf8();
    if (command == QLatin1String("prepare")) {
        return QString::number(store.prepareForWriting());
    }
    if (command == QLatin1String("add")) {
        return QString::number(store.add(keychainServiceName, account, value));
    }
    if (command == QLatin1String("update")) {
        return QString::number(store.update(keychainServiceName, account, value));
    }
    if (command == QLatin1String("remove")) {
        return QString::number(store.remove(keychainServiceName, account));
    }
    const CredentialStore::Match match = store.copyMatching(keychainServiceName, account);
    const QString status = QString::number(match.status);
    return match.value ? status + QLatin1Char(' ') + QString::fromUtf8(*match.value) : status;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    OpenSslRandomSource random;
    SystemCredentialStore store(arguments.at(1), random);
    QTextStream out(stdout);
    for (const QString &command : arguments.mid(2)) {
        out << "= " << answer(store, command.split(QLatin1Char(' '))) << Qt::endl;
    }
    return 0;
}
