// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/settings/SqliteUserDefaults.h"

#include <QCoreApplication>
#include <QTextStream>

// SettingsWriter DIRECTORY DOMAIN set KEY TEXT | put KEY ID TEXT | count KEY NUMBER | remove KEY | loop: another
// process that opens one settings domain and writes to it. "put" changes an element of an array, "count" stores 1 to
// NUMBER. "loop" writes the pair "first", "second" forever, and prints a line after the first round.
int main(int argc, char **argv)
{
    using namespace quillhaven;
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 4) {
        return 2;
    }
    const auto domain = SqliteUserDefaults::open(arguments.at(1), arguments.at(2)).domain;
    if (!domain) {
        return 3;
    }
    if (arguments.at(3) == QStringLiteral("set") && arguments.size() == 6) {
        domain->setString(arguments.at(4), arguments.at(5));
        return 0;
    }
    if (arguments.at(3) == QStringLiteral("put") && arguments.size() == 7) {
        const ArrayElement element{arguments.at(5), arguments.at(6).toUtf8()};
        return domain->changeArray(arguments.at(4), {.put = {element}, .removed = {}}) ? 0 : 4;
    }
    if (arguments.at(3) == QStringLiteral("count") && arguments.size() == 6) {
        for (qlonglong number = 1; number <= arguments.at(5).toLongLong(); ++number) {
            domain->setInteger(arguments.at(4), number);
        }
        return 0;
    }
    if (arguments.at(3) == QStringLiteral("remove") && arguments.size() == 5) {
        domain->removeObject(arguments.at(4));
        return 0;
    }
    if (arguments.at(3) != QStringLiteral("loop")) {
        return 2;
    }
    for (qlonglong round = 0;; ++round) {
        domain->setInteger(QStringLiteral("first"), round);
        domain->setData(QStringLiteral("second"), QByteArray(200'000, static_cast<char>('a' + round % 26)));
        if (round == 0) {
            QTextStream(stdout) << "writing" << Qt::endl;
        }
    }
}
