// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/settings/SqliteUserDefaultsProvider.h"

#include "support/printLogger.h"

#include <QDateTime>
#include <QFile>

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
std::unique_ptr<SqliteUserDefaults> openedDomain(const QString &directory, const QString &name)
{
    auto opened = SqliteUserDefaults::open(directory, name);
    if (opened.result == SqliteUserDefaults::OpenResult::Damaged) {
        setAside(SqliteUserDefaults::databasePath(directory, name));
        opened = SqliteUserDefaults::open(directory, name);
    }
    return std::move(opened.domain);
}

void logProblem(const SqliteUserDefaults &domain)
{
    if (const auto problem = domain.problem()) {
        printLogger(QStringLiteral("❌ ") + *problem +
                    QStringLiteral(" Changes made now will be lost when the program exits."));
    }
}

} // namespace

SqliteUserDefaultsProvider::SqliteUserDefaultsProvider(const QString &directory)
    : m_directory(directory), m_standard(openedDomain(directory, standardDomain))
{
    if (!m_standard) {
        m_standard = SqliteUserDefaults::openForReading(directory, standardDomain);
        logProblem(*m_standard);
    }
}

bool SqliteUserDefaultsProvider::reopen()
{
    if (!problem()) {
        return true;
    }
    if (m_standard->reopen() == SqliteUserDefaults::OpenResult::Damaged) {
        setAside(SqliteUserDefaults::databasePath(m_directory, standardDomain));
        (void)m_standard->reopen();
    }
    logProblem(*m_standard);
    return !problem();
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
