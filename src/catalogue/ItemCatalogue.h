// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "catalogue/ItemLease.h"
#include "catalogue/ProtectedItem.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QSet>
#include <QStringList>

#include <functional>
#include <optional>

namespace quillhaven {

struct ArrayElement;
class UserDefaults;
class UserDefaultsProvider;

/// The list of protected items, its two stores and the leases of its items. The first record with an id is the one that
/// counts; where none has it, a change does nothing. Main thread only.
///
/// The application's store holds the whole records, the one that is shared with other programs a summary of each.
class ItemCatalogue : public QObject
{
    Q_OBJECT

public:
    enum class Loaded { Nothing, Items, Undecodable, Unreadable };
    using Change = std::function<void(ProtectedItem &item)>;

    /// Starts empty and reads nothing. The provider must outlive this object.
    explicit ItemCatalogue(UserDefaultsProvider &defaults, QObject *parent = nullptr);
    ~ItemCatalogue() override;

    /// In order of insertion. The reference and the pointers below hold until the next change.
    [[nodiscard]] const QList<ProtectedItem> &items() const { return m_items; }
    [[nodiscard]] const ProtectedItem *item(const QString &id) const;
    /// The records with these ids, in the order of the ids and without those that have none, in one pass.
    [[nodiscard]] QList<ProtectedItem> items(const QStringList &ids) const;
    /// The first record of this original path.
    [[nodiscard]] const ProtectedItem *itemAt(const QString &originalPath) const;

    /// Reads the application's store in place of what the list holds. When that cannot be read or decoded, the list
    /// stays; a store that could not be read is not written either.
    Loaded load();
    /// A sentence for the user when the application's store cannot be read or written. A new record would be lost then.
    [[nodiscard]] std::optional<QString> problem() const;
    /// Tries such a store again. When it works, the list becomes what the store holds, with the changes that were made
    /// meanwhile, and is saved. Whether there is no problem any more.
    bool retry();

    /// Adds a record at the end, publishes and saves.
    void append(const ProtectedItem &item);
    /// Changes a record, publishes and saves. False when there is none.
    bool update(const QString &id, const Change &change);
    /// The same without saving: the next save writes it as well.
    bool updateUnsaved(const QString &id, const Change &change);
    /// Takes every record with one of these ids out of the list and publishes, without saving.
    void remove(const QSet<QString> &ids);
    /// Brings both stores in step with the list, at the cost of what has changed. Never fails to its caller: what could
    /// not be written is written by the next save.
    void save();
    /// Writes the shared store, unless it holds the list already: another program may have lost or damaged it.
    void publish();
    /// Saves once more what an earlier save could not write, at the end of the program, and logs when that fails too.
    void saveUnsaved();

    /// See ItemLeases.
    [[nodiscard]] QCoro::Task<ItemLease> lease(QString id);
    /// The lease of an item at `path` that has no record yet. Nobody else may wait for one at the same path.
    [[nodiscard]] QCoro::Task<ItemLease> leasePlace(QString path) { return m_leases.acquire(path, path); }
    /// The same for what has another identity than its path.
    [[nodiscard]] QCoro::Task<ItemLease> leasePlace(QString id, QString path) { return m_leases.acquire(id, path); }
    [[nodiscard]] bool isLeased(const QString &id) const { return m_leases.isLeased(id); }

Q_SIGNALS:
    /// One record was added at the end, was changed in its place, or has left the list.
    void itemAdded(const QString &id);
    void itemChanged(const QString &id);
    void itemRemoved(const QString &id);
    /// The list was loaded.
    void reset();
    /// After each of the signals above.
    void changed();
    /// There is a problem with the store, or another one, or none any more.
    void problemChanged();
    /// An item is leased now, or not any longer. Its record is the same.
    void leaseChanged(const QString &id);

private:
    using Encode = QByteArray (*)(const ProtectedItem &item);
    /// What one of the stores lacks.
    struct Backlog
    {
        bool isWhole = true; ///< it may hold anything: the whole list is due
        QSet<QString> changed;
        QSet<QString> removed;
    };

    [[nodiscard]] ProtectedItem *find(const QString &id);
    void rebuildIndex();
    void noteChanged(const QString &id);
    void noteRemoved(const QString &id);
    /// Where the records are that the store lacks.
    [[nodiscard]] QList<qsizetype> due(const Backlog &backlog) const;
    /// Nothing when a record cannot be encoded.
    [[nodiscard]] std::optional<QList<ArrayElement>> encoded(const Backlog &backlog, Encode encode) const;
    /// Writes what the store lacks. False when a record cannot be encoded; nothing is written then.
    bool write(UserDefaults &store, Backlog &backlog, Encode encode);
    /// Makes the changes that the application's store lacks again, in a list that was loaded since.
    void reapply(const QList<ProtectedItem> &changed, const QSet<QString> &removed);

    UserDefaultsProvider &m_defaults;
    std::optional<QString> m_readFailure;
    bool m_isUnsaved = false;
    QList<ProtectedItem> m_items;
    QHash<QString, qsizetype> m_index; ///< the first record with each id
    ItemLeases m_leases;
    Backlog m_applicationBacklog;
    Backlog m_sharedBacklog;
};

} // namespace quillhaven
