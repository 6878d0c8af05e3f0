// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/settings/SqliteUserDefaults.h"

#include "platform/linux/settings/SettingValues.h"
#include "support/printLogger.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QRandomGenerator>

#include <new>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>

namespace quillhaven {

namespace {

/// The type of a row whose value is in the table of elements. The row itself holds a random mark that changes with the
/// elements, so that other processes see the change without reading them.
const QString arrayType = QStringLiteral("array");

SqliteDatabase::Row arrayRow(const QString &key)
{
    return {key, arrayType, QByteArray::number(QRandomGenerator::system()->generate64(), 16)};
}

bool isArray(const std::optional<SqliteDatabase::Row> &row)
{
    return row && row->type == arrayType;
}

QByteArray joined(const QList<ArrayElement> &elements)
{
    QByteArrayList texts;
    texts.reserve(elements.size());
    for (const ArrayElement &element : elements) {
        texts.append(element.value);
    }
    return "[" + texts.join(',') + "]";
}

} // namespace

SqliteUserDefaults::SqliteUserDefaults(const QString &directory, const QString &name)
    : m_name(name), m_path(databasePath(directory, name))
{
}

SqliteUserDefaults::~SqliteUserDefaults() = default;

QString SqliteUserDefaults::databasePath(const QString &directory, const QString &name)
{
    return directory + QLatin1Char('/') + name + QStringLiteral(".db");
}

SqliteUserDefaults::Opened SqliteUserDefaults::open(const QString &directory, const QString &name)
{
    std::unique_ptr<SqliteUserDefaults> domain(new SqliteUserDefaults(directory, name));
    const OpenResult result = domain->openForWriting();
    if (result != OpenResult::Opened) {
        return {nullptr, result};
    }
    return {std::move(domain), result};
}

std::unique_ptr<SqliteUserDefaults> SqliteUserDefaults::openForReading(const QString &directory, const QString &name)
{
    std::unique_ptr<SqliteUserDefaults> domain(new SqliteUserDefaults(directory, name));
    if (domain->openForWriting() != OpenResult::Opened) {
        domain->readWhatCanBeRead();
    }
    return domain;
}

SqliteUserDefaults::OpenResult SqliteUserDefaults::reopen()
{
    m_arrays = {};
    const OpenResult result = openForWriting();
    if (result != OpenResult::Opened) {
        readWhatCanBeRead();
    }
    return result;
}

SqliteUserDefaults::OpenResult SqliteUserDefaults::openForWriting()
{
    const QString directory = QFileInfo(m_path).path();
    QDir().mkpath(QFileInfo(directory).path());
    ::mkdir(QFile::encodeName(directory).constData(), 0700);
    const OpenResult result = m_values.open(m_path);
    if (result != OpenResult::Opened) {
        return result;
    }
    if (!openTables()) {
        return m_values.openFailure();
    }
    m_problem.reset();
    watchOtherProcesses();
    return result;
}

void SqliteUserDefaults::readWhatCanBeRead()
{
    const QString reason = m_values.lastError();
    const QString file = QStringLiteral("The settings file \"%1\" ").arg(m_path);
    const bool exists = QFileInfo::exists(m_path);
    if (m_values.openCopy(m_path) && openTables()) {
        m_problem = file + QStringLiteral("can be read, but not changed: %1.").arg(reason);
        return;
    }
    m_problem = exists ? file + QStringLiteral("cannot be read: %1.").arg(m_values.lastError())
                       : file + QStringLiteral("cannot be created: %1.").arg(reason);
    m_arrays = {};
    if (m_values.open({}) != OpenResult::Opened || !openTables()) {
        throw std::bad_alloc();
    }
}

bool SqliteUserDefaults::openTables()
{
    if (!m_arrays.open(m_values)) {
        return false;
    }
    m_dataVersion = m_values.dataVersion(); // before the rows: a later change is found again rather than missed
    const auto rows = storedRows();
    if (rows) {
        publishDifferences(*rows);
    }
    return rows.has_value();
}

void SqliteUserDefaults::watchOtherProcesses()
{
    // A file of its own, touched after each commit: an event of the database's files may come before the change can be
    // read.
    const QString touched = m_path + QStringLiteral(".changed");
    m_touched =
        ScopedFd(::open(QFile::encodeName(touched).constData(), O_CREAT | O_WRONLY | O_CLOEXEC | O_NOFOLLOW, 0600));
    m_watcher = std::make_unique<QFileSystemWatcher>();
    connect(m_watcher.get(), &QFileSystemWatcher::fileChanged, this, [this] { publishForeignChanges(); });
    if (!m_touched.isOpen() || !m_watcher->addPath(touched)) {
        printLogger(QStringLiteral("⚠️ Changes that other programs make in ") + m_name +
                    QStringLiteral(" will not be noticed: cannot watch ") + touched);
    }
}

QVariant SqliteUserDefaults::objectForKey(const QString &key) const
{
    const auto row = storedRow(key);
    return isArray(row) ? arrayForKey(key) : row ? decodedSetting(*row) : QVariant();
}

QVariant SqliteUserDefaults::arrayForKey(const QString &key) const
{
    QVariant value;
    const bool isRead = m_values.inSnapshot([&] {
        std::optional<Row> row;
        if (!m_values.read(key, row)) {
            return false;
        }
        if (!isArray(row)) { // replaced by another process just now
            value = row ? decodedSetting(*row) : QVariant();
            return true;
        }
        const auto elements = m_arrays.elements(key);
        value = elements ? QVariant(joined(*elements)) : QVariant();
        return elements.has_value();
    });
    if (!isRead) {
        throw UserDefaultsError(key, m_values.lastError());
    }
    return value;
}

void SqliteUserDefaults::setObject(const QString &key, const QVariant &value)
{
    const Row row = encodedSetting(key, value);
    if (row.type.isEmpty()) {
        printLogger(QStringLiteral("⚠️ The setting ") + key + QStringLiteral(" has a type that cannot be stored"));
        return;
    }
    if (save(key, [&] { return m_arrays.removeAll(key) && m_values.store(row); })) {
        publish(key, row);
    }
}

void SqliteUserDefaults::removeObject(const QString &key)
{
    if (save(key, [&] { return m_arrays.removeAll(key) && m_values.remove(key); })) {
        publish(key, std::nullopt);
    }
}

bool SqliteUserDefaults::setArray(const QString &key, const QList<ArrayElement> &elements)
{
    if (m_problem) {
        logFailure(key);
        return false;
    }
    std::optional<Row> stored;
    if (m_values.read(key, stored) && isArray(stored) && m_arrays.elements(key) == elements) {
        return true;
    }
    const Row row = arrayRow(key);
    if (!save(key, [&] { return m_arrays.replaceAll(key, elements) && m_values.store(row); })) {
        return false;
    }
    publish(key, row);
    return true;
}

bool SqliteUserDefaults::changeArray(const QString &key, const ArrayChange &change)
{
    if (m_problem) {
        return false;
    }
    const Row row = arrayRow(key);
    bool isOtherValue = false;
    bool isChanged = false;
    const bool isDone = m_values.inTransaction([&] {
        std::optional<Row> stored;
        if (!m_values.read(key, stored)) {
            return false;
        }
        isOtherValue = !isArray(stored);
        return !isOtherValue && m_arrays.change(key, change, isChanged) && (!isChanged || m_values.store(row));
    });
    if (!isDone && !isOtherValue) {
        logFailure(key);
    }
    if (isDone && isChanged) {
        touch();
        publish(key, row);
    }
    return isDone;
}

std::optional<SqliteUserDefaults::Row> SqliteUserDefaults::storedRow(const QString &key) const
{
    std::optional<Row> row;
    if (!m_values.read(key, row)) {
        throw UserDefaultsError(key, m_values.lastError());
    }
    return row;
}

std::optional<SqliteUserDefaults::KnownRows> SqliteUserDefaults::storedRows() const
{
    const auto rows = m_values.rows();
    if (!rows) {
        return std::nullopt;
    }
    KnownRows byKey;
    for (const Row &row : *rows) {
        byKey.insert(row.key, row);
    }
    return byKey;
}

/// Makes the changes of `work` in one step, and lets other processes know. False, and logged, when that fails.
bool SqliteUserDefaults::save(const QString &key, const std::function<bool()> &work)
{
    if (!m_values.inTransaction(work)) {
        logFailure(key);
        return false;
    }
    touch();
    return true;
}

/// Reports the change of a key, unless its stored form is the one last published.
void SqliteUserDefaults::publish(const QString &key, const std::optional<Row> &row)
{
    const auto known = m_known.constFind(key);
    const bool isKnown = known != m_known.cend();
    if (row ? isKnown && *known == *row : !isKnown) {
        return;
    }
    if (row) {
        m_known.insert(key, *row);
    } else {
        m_known.remove(key);
    }
    Q_EMIT valueChanged(key);
}

void SqliteUserDefaults::publishForeignChanges()
{
    const qint64 version = m_values.dataVersion();
    if (version == m_dataVersion) {
        return;
    }
    const auto current = storedRows();
    if (!current) {
        printLogger(QStringLiteral("⚠️ Could not read what another program has changed in ") + m_name +
                    QStringLiteral(".db: ") + m_values.lastError());
        return;
    }
    m_dataVersion = version;
    publishDifferences(*current);
}

void SqliteUserDefaults::publishDifferences(const KnownRows &current)
{
    const KnownRows known = std::exchange(m_known, current);
    QStringList changed;
    for (const Row &row : current) {
        if (known.value(row.key) != row) {
            changed.append(row.key);
        }
    }
    for (const Row &row : known) {
        if (!current.contains(row.key)) {
            changed.append(row.key);
        }
    }
    for (const QString &key : std::as_const(changed)) {
        Q_EMIT valueChanged(key);
    }
}

/// Lets other processes know of a commit.
void SqliteUserDefaults::touch() const
{
    if (m_touched.isOpen() && ::pwrite(m_touched.get(), "1", 1, 0) != 1) {
        printLogger(QStringLiteral("⚠️ Could not notify other programs of a change in ") + m_name);
    }
}

void SqliteUserDefaults::logFailure(const QString &key) const
{
    printLogger(QStringLiteral("❌ Could not save the setting ") + key + QStringLiteral(" to ") + m_name +
                QStringLiteral(".db: ") + m_problem.value_or(m_values.lastError()));
}

} // namespace quillhaven
