// SPDX-License-Identifier: GPL-3.0-or-later

// Another process may have written the settings. The first byte decides what the rest is: the type and value of a row
// in a whole database, or the database file itself.

#include "FuzzInput.h"
#include "platform/linux/settings/SqliteUserDefaultsProvider.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <sqlite3.h>

using namespace quillhaven;

namespace {

const QString key = QStringLiteral("value");

QString databaseIn(const QTemporaryDir &home)
{
    return home.filePath(SqliteUserDefaultsProvider::standardDomain + QStringLiteral(".db"));
}

void readEveryType(const QTemporaryDir &home)
{
    SqliteUserDefaultsProvider provider(home.path());
    UserDefaults &defaults = provider.standard();
    const QVariant value = defaults.objectForKey(key);
    const int types = static_cast<int>(defaults.boolForKey(key).has_value()) +
                      static_cast<int>(defaults.integerForKey(key).has_value()) +
                      static_cast<int>(defaults.doubleForKey(key).has_value()) +
                      static_cast<int>(defaults.stringForKey(key).has_value()) +
                      static_cast<int>(defaults.dataForKey(key).has_value()) +
                      static_cast<int>(defaults.dateForKey(key).has_value()) +
                      static_cast<int>(defaults.dictionaryForKey(key).has_value());
    fuzz::require(types <= 1 && (types == 1) == value.isValid());
    const ArrayElement element{.id = key, .value = "1"};
    const bool isArray = defaults.changeArray(key, {.put = {element}, .removed = {}});
    fuzz::require(!isArray || defaults.dataForKey(key)->contains("1"));
    defaults.setInteger(key, 7);
    fuzz::require(defaults.integerForKey(key) == 7);
}

void storeRow(const QTemporaryDir &home, const QByteArray &type, const QByteArray &value)
{
    {
        SqliteUserDefaultsProvider provider(home.path());
        provider.standard().setString(key, QStringLiteral("x"));
    }
    sqlite3 *database = nullptr;
    sqlite3_stmt *update = nullptr;
    sqlite3_open(databaseIn(home).toUtf8().constData(), &database);
    sqlite3_prepare_v2(database, "UPDATE defaults SET type = ?1, value = ?2", -1, &update, nullptr);
    sqlite3_bind_text(update, 1, type.constData(), static_cast<int>(type.size()), nullptr);
    sqlite3_bind_blob(update, 2, value.constData(), static_cast<int>(value.size()), nullptr);
    sqlite3_step(update);
    sqlite3_finalize(update);
    sqlite3_close(database);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzz::silenceLog();
    static int argumentCount = 0;
    static const QCoreApplication application(argumentCount, nullptr);
    if (size == 0) {
        return 0;
    }
    const QTemporaryDir home(QStringLiteral("/dev/shm/store-XXXXXX"));
    const QByteArray rest = fuzz::bytesOf(data + 1, size - 1);
    if (data[0] % 2 == 0) {
        const qsizetype colon = std::max<qsizetype>(rest.indexOf(':'), 0);
        storeRow(home, rest.left(colon), rest.mid(colon + 1));
    } else {
        QFile file(databaseIn(home));
        fuzz::require(file.open(QIODevice::WriteOnly) && file.write(rest) == rest.size());
    }
    try {
        readEveryType(home);
    } catch (const UserDefaultsError &) {
        // A database that opens may still refuse a read.
    }
    return 0;
}
