// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/settings/SqliteUserDefaultsProvider.h"

#include "support/printLogger.h"

#include <QDateTime>
#include <QFile>

#include <new>

namespace quillhaven {

namespace {

/// Renames a damaged database and its log, and logs both names. A rename that fails leaves a place at which no database
/// opens.
void setAside(const QString &path)
{
    const QString stamp = QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyyMMddTHHmmsszzzZ"));
    const QString aside = path + QStringLiteral(".corrupt-") + stamp;
    printLogger(QStringLiteral("❌ The settings database ") + path +
                QStringLiteral(" is damaged, or is missing while its log exists. It is set aside as ") + aside +
                QStringLiteral(", and a new one takes its place."));
    for (const QString &part : {QString(), QStringLiteral("-wal"), QStringLiteral("-shm")}) {
        QFile::rename(path + part, aside + part);
    }
}

/// The domain, or nullptr when its place cannot be used.
std::unique_ptr<UserDefaults> openedDomain(const QString &directory, const QString &name)
{
    auto opened = SqliteUserDefaults::open(directory, name);
    if (opened.result == SqliteUserDefaults::OpenResult::Damaged) {
        setAside(SqliteUserDefaults::databasePath(directory, name));
        opened = SqliteUserDefaults::open(directory, name);
    }
    return std::move(opened.domain);
}

std::unique_ptr<UserDefaults> domainInMemory(const QString &name)
{
    auto domain = SqliteUserDefaults::openInMemory(name).domain;
    if (!domain) {
        throw std::bad_alloc();
    }
    return domain;
}

} // namespace

SqliteUserDefaultsProvider::SqliteUserDefaultsProvider(const QString &directory)
    : m_directory(directory), m_standard(openedDomain(directory, standardDomain))
{
    if (!m_standard) {
        printLogger(QStringLiteral("❌ The settings in ") + directory +
                    QStringLiteral(" cannot be used. Changes made now will be lost when the program exits."));
        m_standard = domainInMemory(standardDomain);
    }
}

SqliteUserDefaultsProvider::~SqliteUserDefaultsProvider() = default;

UserDefaults &SqliteUserDefaultsProvider::standard()
{
    return *m_standard;
}

UserDefaults *SqliteUserDefaultsProvider::suite(const QString &name)
{
    auto &suite = m_suites[name];
    if (!suite) {
        suite = openedDomain(m_directory, name);
    }
    return suite.get();
}

} // namespace quillhaven
