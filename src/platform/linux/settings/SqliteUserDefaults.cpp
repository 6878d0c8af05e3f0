// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/settings/SqliteUserDefaults.h"

#include "platform/linux/files/ScopedFd.h"
#include "platform/linux/settings/SqliteArrays.h"
#include "platform/linux/settings/SqliteDatabase.h"
#include "support/printLogger.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QHash>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QSocketNotifier>

#include <algorithm>
#include <climits>
#include <functional>
#include <new>

#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/stat.h>

namespace quillhaven {

namespace {

using Row = SqliteDatabase::Row;

/// The type of a row whose value is in the table of elements. The row itself holds a random mark that changes with the
/// elements, so that other processes see the change without reading them.
const QString arrayType = QStringLiteral("array");

Row arrayRow(const QString &key)
{
    return {key, arrayType, QByteArray::number(QRandomGenerator::system()->generate64(), 16)};
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

/// The stored form of a value; an empty type for one that no domain holds.
Row encoded(const QString &key, const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Bool:
        return {key, QStringLiteral("bool"), value.toBool() ? "1" : "0"};
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
        return {key, QStringLiteral("integer"), QByteArray::number(value.toLongLong())};
    case QMetaType::Double:
        return {key, QStringLiteral("real"), QByteArray::number(value.toDouble(), 'g', 17)};
    case QMetaType::QString:
        return {key, QStringLiteral("string"), value.toString().toUtf8()};
    case QMetaType::QByteArray:
        return {key, QStringLiteral("data"), value.toByteArray()};
    case QMetaType::QDateTime:
        return {key, QStringLiteral("date"), value.toDateTime().toUTC().toString(Qt::ISODateWithMs).toLatin1()};
    case QMetaType::QVariantMap: {
        const QJsonDocument document(QJsonObject::fromVariantMap(value.toMap()));
        return {key, QStringLiteral("dictionary"), document.toJson(QJsonDocument::Compact)};
    }
    default:
        return {key, {}, {}};
    }
}

QVariant decodedInteger(const QByteArray &bytes)
{
    bool isNumber = false;
    const qlonglong number = bytes.toLongLong(&isNumber);
    return isNumber ? QVariant(number) : QVariant();
}

QVariant decodedReal(const QByteArray &bytes)
{
    bool isNumber = false;
    const double number = bytes.toDouble(&isNumber);
    return isNumber ? QVariant(number) : QVariant();
}

/// The value of a stored row, or an invalid one when its bytes do not fit its type.
QVariant decoded(const Row &row)
{
    if (row.type == QStringLiteral("bool")) {
        return row.value == "1" || row.value == "0" ? QVariant(row.value == "1") : QVariant();
    }
    if (row.type == QStringLiteral("integer")) {
        return decodedInteger(row.value);
    }
    if (row.type == QStringLiteral("real")) {
        return decodedReal(row.value);
    }
    if (row.type == QStringLiteral("string")) {
        return QString::fromUtf8(row.value);
    }
    if (row.type == QStringLiteral("data")) {
        return row.value;
    }
    if (row.type == QStringLiteral("date")) {
        const QDateTime date = QDateTime::fromString(QString::fromLatin1(row.value), Qt::ISODateWithMs);
        return date.isValid() ? QVariant(date) : QVariant();
    }
    if (row.type == QStringLiteral("dictionary")) {
        const QJsonDocument document = QJsonDocument::fromJson(row.value);
        return document.isObject() ? QVariant(document.object().toVariantMap()) : QVariant();
    }
    return {};
}

/// Calls back when a file in a folder is touched by another process.
class FileTouchWatcher : public QObject
{
public:
    FileTouchWatcher(const QString &directory, const QString &name, std::function<void()> action)
        : m_name(QFile::encodeName(name)), m_action(std::move(action)), m_fd(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
    {
        // The folder, since a watch on the file itself would end when somebody replaces it.
        if (!m_fd.isOpen() || ::inotify_add_watch(m_fd.get(), QFile::encodeName(directory).constData(),
                                                  IN_MODIFY | IN_CREATE | IN_MOVED_TO) < 0) {
            return;
        }
        m_notifier = std::make_unique<QSocketNotifier>(m_fd.get(), QSocketNotifier::Read);
        connect(m_notifier.get(), &QSocketNotifier::activated, this, [this] { readEvents(); });
    }

private:
    void readEvents()
    {
        alignas(inotify_event) char buffer[16 * (sizeof(inotify_event) + NAME_MAX + 1)];
        bool isTouched = false;
        ssize_t length = 0;
        while ((length = ::read(m_fd.get(), buffer, sizeof buffer)) > 0) {
            for (const char *at = buffer; at < buffer + length;) {
                const auto *event = reinterpret_cast<const inotify_event *>(at);
                isTouched = isTouched || (event->len > 0 && m_name == event->name) || (event->mask & IN_Q_OVERFLOW);
                at += sizeof(inotify_event) + event->len;
            }
        }
        if (isTouched) {
            m_action();
        }
    }

    QByteArray m_name;
    std::function<void()> m_action;
    ScopedFd m_fd;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

/// The open database of a domain with its two tables.
class Tables
{
public:
    [[nodiscard]] SqliteDatabase::OpenResult open(const QString &path)
    {
        const SqliteDatabase::OpenResult result = values.open(path);
        return result != SqliteDatabase::OpenResult::Opened || arrays.open(values) ? result : values.openFailure();
    }

    void close()
    {
        arrays = {}; // its statements would keep the file open
        values.close();
    }

    SqliteDatabase values;
    SqliteArrays arrays;
};

/// One domain over its open database.
class SqliteUserDefaults : public UserDefaults
{
public:
    /// `directory` is empty for a domain in memory.
    SqliteUserDefaults(std::unique_ptr<Tables> tables, const QString &directory, const QString &name)
        : m_tables(std::move(tables)), m_values(m_tables->values), m_arrays(m_tables->arrays), m_name(name)
    {
        for (const Row &row : m_values.rows()) {
            m_known.insert(row.key, row);
        }
        m_dataVersion = m_values.dataVersion();
        if (directory.isEmpty()) {
            return;
        }
        const QString touched = name + QStringLiteral(".db.changed");
        m_touched = ScopedFd(::open(QFile::encodeName(directory + QLatin1Char('/') + touched).constData(),
                                    O_CREAT | O_WRONLY | O_CLOEXEC | O_NOFOLLOW, 0600));
        m_watcher = std::make_unique<FileTouchWatcher>(directory, touched, [this] { publishForeignChanges(); });
    }

    [[nodiscard]] QVariant objectForKey(const QString &key) const override
    {
        const auto row = m_values.row(key);
        return isArray(row) ? arrayForKey(key) : row ? decoded(*row) : QVariant();
    }

    void setObject(const QString &key, const QVariant &value) override
    {
        const Row row = encoded(key, value);
        if (row.type.isEmpty()) {
            printLogger(QStringLiteral("⚠️ The setting ") + key + QStringLiteral(" has a type that cannot be stored"));
            return;
        }
        if (isSaved(key, [&] { return m_arrays.removeAll(key) && m_values.store(row); })) {
            publish(key, row);
        }
    }

    void removeObject(const QString &key) override
    {
        if (isSaved(key, [&] { return m_arrays.removeAll(key) && m_values.remove(key); })) {
            publish(key, std::nullopt);
        }
    }

    [[nodiscard]] bool setArray(const QString &key, const QList<ArrayElement> &elements) override
    {
        if (isArray(m_values.row(key)) && m_arrays.elements(key) == elements) {
            return true;
        }
        const Row row = arrayRow(key);
        const auto append = [&](const ArrayElement &element) { return m_arrays.append(key, element); };
        if (!isSaved(key, [&] {
                return m_arrays.removeAll(key) && m_values.store(row) && std::ranges::all_of(elements, append);
            })) {
            return false;
        }
        publish(key, row);
        return true;
    }

    [[nodiscard]] bool changeArray(const QString &key, const ArrayChange &change) override
    {
        const Row row = arrayRow(key);
        bool isOtherValue = false;
        bool isChanged = false;
        const bool isDone = m_values.inTransaction([&] {
            const auto stored = m_values.row(key);
            isOtherValue = stored && !isArray(stored);
            isChanged = !stored;
            return !isOtherValue && apply(key, change, isChanged) && (!isChanged || m_values.store(row));
        });
        if (!isDone) {
            if (!isOtherValue) {
                logFailure(key);
            }
            return false;
        }
        if (isChanged) {
            touch();
            publish(key, row);
        }
        return true;
    }

private:
    [[nodiscard]] static bool isArray(const std::optional<Row> &row) { return row && row->type == arrayType; }

    [[nodiscard]] QVariant arrayForKey(const QString &key) const
    {
        QVariant value;
        const bool isRead = m_values.inSnapshot([&] {
            const auto row = m_values.row(key);
            const auto elements = m_arrays.elements(key);
            value = !row || !elements ? QVariant() : isArray(row) ? QVariant(joined(*elements)) : decoded(*row);
            return elements.has_value();
        });
        return isRead ? value : QVariant();
    }

    [[nodiscard]] bool apply(const QString &key, const ArrayChange &change, bool &isChanged)
    {
        const auto remove = [&](const QString &id) { return m_arrays.remove(key, id, isChanged); };
        const auto put = [&](const ArrayElement &element) { return m_arrays.put(key, element, isChanged); };
        return std::ranges::all_of(change.removed, remove) && std::ranges::all_of(change.put, put);
    }

    /// Makes the changes of `work` in one step for this process and for others. False, and logged, when that fails.
    [[nodiscard]] bool isSaved(const QString &key, const std::function<bool()> &work)
    {
        if (!m_values.inTransaction(work)) {
            logFailure(key);
            return false;
        }
        touch();
        return true;
    }

    /// Emits the change unless the stored form is the one last published.
    void publish(const QString &key, const std::optional<Row> &row)
    {
        const auto known = m_known.constFind(key);
        if (row ? known != m_known.cend() && *known == *row : known == m_known.cend()) {
            return;
        }
        if (row) {
            m_known.insert(key, *row);
        } else {
            m_known.remove(key);
        }
        Q_EMIT valueChanged(key);
    }

    void logFailure(const QString &key) const
    {
        printLogger(QStringLiteral("❌ Could not save the setting ") + key + QStringLiteral(" to ") + m_name +
                    QStringLiteral(".db: ") + m_values.lastError());
    }

    /// Tells the other processes, after the commit can be seen: a watch on the database itself would come too early.
    void touch() const
    {
        if (m_touched.isOpen() && ::pwrite(m_touched.get(), "1", 1, 0) != 1) {
            printLogger(QStringLiteral("⚠️ Could not tell other processes of a change in ") + m_name);
        }
    }

    void publishForeignChanges()
    {
        const qint64 version = m_values.dataVersion();
        if (version == m_dataVersion) {
            return;
        }
        m_dataVersion = version;
        QHash<QString, Row> current;
        for (const Row &row : m_values.rows()) {
            current.insert(row.key, row);
        }
        QStringList changed;
        for (const Row &row : std::as_const(current)) {
            if (m_known.value(row.key) != row) {
                changed.append(row.key);
            }
        }
        for (const Row &row : std::as_const(m_known)) {
            if (!current.contains(row.key)) {
                changed.append(row.key);
            }
        }
        m_known = current;
        for (const QString &key : std::as_const(changed)) {
            Q_EMIT valueChanged(key);
        }
    }

    std::unique_ptr<Tables> m_tables;
    SqliteDatabase &m_values;
    SqliteArrays &m_arrays;
    QString m_name;
    ScopedFd m_touched;
    std::unique_ptr<FileTouchWatcher> m_watcher;
    QHash<QString, Row> m_known; ///< as last published
    qint64 m_dataVersion = -1;
};

/// Renames a database that cannot be read, with the files beside it, and logs both names. False when that failed.
bool setAside(const QString &path)
{
    const QString suffix =
        QStringLiteral(".corrupt-") + QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyyMMddTHHmmsszzzZ"));
    if (!QFile::rename(path, path + suffix)) {
        return false;
    }
    for (const QString &companion : {QStringLiteral("-wal"), QStringLiteral("-shm")}) {
        QFile::rename(path + companion, path + suffix + companion);
    }
    printLogger(QStringLiteral("❌ The settings database ") + path +
                QStringLiteral(" could not be read. It was set aside as ") + path + suffix +
                QStringLiteral(", and a new one was made."));
    return true;
}

/// An open database at the path, or nothing when the place cannot be used.
std::unique_ptr<Tables> openedTables(const QString &path)
{
    auto database = std::make_unique<Tables>();
    SqliteDatabase::OpenResult result = database->open(path);
    if (result == SqliteDatabase::OpenResult::Corrupt) {
        database->close();
        if (setAside(path)) {
            result = database->open(path);
        }
    }
    return result == SqliteDatabase::OpenResult::Opened ? std::move(database) : nullptr;
}

} // namespace

SqliteUserDefaultsProvider::SqliteUserDefaultsProvider(const QString &directory) : m_directory(directory)
{
    const QByteArray encodedPath = QFile::encodeName(directory);
    QDir().mkpath(QFileInfo(directory).path());
    ::mkdir(encodedPath.constData(), 0700);

    auto database = openedTables(directory + QLatin1Char('/') + standardDomain + QStringLiteral(".db"));
    const bool isOnDisk = database != nullptr;
    if (!isOnDisk) {
        printLogger(QStringLiteral("❌ The settings in ") + directory +
                    QStringLiteral(" cannot be used. Nothing that changes now will be kept after the end."));
        database = std::make_unique<Tables>();
        if (database->open({}) != SqliteDatabase::OpenResult::Opened) {
            throw std::bad_alloc();
        }
    }
    m_standard =
        std::make_unique<SqliteUserDefaults>(std::move(database), isOnDisk ? directory : QString(), standardDomain);
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
        auto database = openedTables(m_directory + QLatin1Char('/') + name + QStringLiteral(".db"));
        if (database) {
            suite = std::make_unique<SqliteUserDefaults>(std::move(database), m_directory, name);
        }
    }
    return suite.get();
}

} // namespace quillhaven
