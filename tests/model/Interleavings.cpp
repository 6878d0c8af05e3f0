// SPDX-License-Identifier: GPL-3.0-or-later

#include "model/Interleavings.h"

#include "engine/PlaceholderFile.h"

#include <QDir>

#include <algorithm>

namespace quillhaven::test {

namespace {

const auto quiet = [](const QString &, double) {};

} // namespace

Interleavings::Interleavings(TestPlatform &services, unsigned seed)
    : m_services(services), m_random(seed), m_engine(services)
{
    m_items = {{QStringLiteral("password.txt"), {}},
               {QStringLiteral("finger.txt"), {}, false, true},
               {QStringLiteral("other finger.txt"), {}, false, true},
               {QStringLiteral("folder"), {}, true},
               {QStringLiteral("other folder"), {}, true}};
    std::ranges::for_each(m_items, [this](Item &item) { make(item); });
}

QString Interleavings::place(const Item &item) const
{
    return m_services.home.path(QStringLiteral("Desktop/") + item.name);
}

const ProtectedItem *Interleavings::record(const Item &item) const
{
    const auto &items = m_engine.manager.protectedItems();
    const auto found = std::ranges::find(items, place(item), &ProtectedItem::originalPath);
    return found == items.end() ? nullptr : &*found;
}

void Interleavings::make(Item &item)
{
    item.bytes = "data " + QByteArray::number(++m_made);
    item.isShredded = false;
    m_services.home.write(item.data(QStringLiteral("Desktop/") + item.name), item.bytes);
}

std::string Interleavings::round()
{
    for (Item &item : m_items) {
        if (!record(item) && !TemporaryHome::exists(place(item))) {
            make(item);
        }
    }
    m_isAsking = false;
    m_services.panels.placeRequests.clear();
    m_services.panels.accessRequests.clear();
    std::string names;
    std::vector<Run> runs;
    for (unsigned left = 2 + pick(5); left > 0; --left) {
        names += " " + start(m_items.at(pick(static_cast<unsigned>(m_items.size()))), runs);
        for (unsigned spins = pick(4); spins > 0; --spins) {
            spinOnce(); // so that some of the operations are in progress
        }
    }
    for (const Run &run : runs) {
        try {
            run->wait();
        } catch (const LocalizedError &) { // NOLINT(bugprone-empty-catch): an operation that comes too late may fail
        }
    }
    m_operations += static_cast<int>(runs.size());
    return names;
}

void Interleavings::add(std::vector<Run> &runs, QCoro::Task<> task)
{
    runs.push_back(std::make_unique<RunningTask<void>>(std::move(task)));
}

std::string Interleavings::start(Item &item, std::vector<Run> &runs)
{
    auto &manager = m_engine.manager;
    const ProtectedItem *known = record(item);
    if (!known) {
        add(runs, manager.protectItem(place(item), QStringLiteral("Abcdefg1"), item.usesTouchID));
        return "protect " + item.name.toStdString();
    }
    switch (pick(12)) {
    case 0:
        add(runs, manager.bulkLockItems(manager.protectedItems(), quiet));
        return "bulk lock";
    case 1: {
        QList<ProtectedItem> withoutPassword = manager.protectedItems();
        withoutPassword.removeIf([](const ProtectedItem &each) { return !each.isFolder && !each.useTouchID; });
        add(runs, manager.bulkUnlockItems(withoutPassword, quiet));
        return "bulk unlock";
    }
    default:
        return startOnRecord(item, *known, runs);
    }
}

std::string Interleavings::startOnRecord(Item &item, const ProtectedItem &known, std::vector<Run> &runs)
{
    auto &manager = m_engine.manager;
    const std::string name = item.name.toStdString();
    const bool asks = !item.isFolder && !item.usesTouchID;
    const unsigned choice = pick(10);
    if (choice == 0) {
        add(runs, manager.removeProtection(known));
        return "remove " + name;
    }
    const bool mayAsk = !(asks && m_isAsking);
    if (choice == 1 && pick(4) == 0 && mayAsk) {
        m_isAsking = m_isAsking || asks; // A locked item is unlocked first.
        item.isShredded = true;
        add(runs, manager.shredProtectedItem(known, quiet));
        return "shred " + name;
    }
    // A second question would replace the first in the dialog and suspend its operation forever.
    if (choice < 6 && !(asks && std::exchange(m_isAsking, m_isAsking || asks))) {
        add(runs, manager.unlockItem(known));
        return "unlock " + name;
    }
    add(runs, manager.lockItem(known));
    return "lock " + name;
}

void Interleavings::check() const
{
    for (const Item &item : m_items) {
        checkItem(item);
    }
    checkStrays();
    ASSERT_EQ(m_engine.storedItems().size(), m_engine.count()) << "the catalogue was not saved";
}

void Interleavings::checkItem(const Item &item) const
{
    const std::string name = item.name.toStdString();
    const ProtectedItem *known = record(item);
    const bool isThere = TemporaryHome::exists(place(item));
    if (!known && !isThere) {
        ASSERT_TRUE(item.isShredded) << name << " was lost";
        return;
    }
    checkData(item, known);
    const QString container =
        m_services.home.path(QStringLiteral("Documents/") + item.name + QStringLiteral(".secured"));
    ASSERT_EQ(TemporaryHome::exists(container), known != nullptr) << name << ": the container";
    if (!known) {
        return;
    }
    ASSERT_FALSE(known->isProcessing) << name;
    ASSERT_FALSE(m_engine.manager.catalogue().isLeased(known->id)) << name;
    const QStringList accounts = m_services.credentials.entries.keys();
    const auto isOf = [known](const QString &account) { return account.contains(known->id); };
    ASSERT_EQ(std::ranges::any_of(accounts, isOf), !item.isFolder) << name << ": the credential";
}

void Interleavings::checkData(const Item &item, const ProtectedItem *known) const
{
    const std::string name = item.name.toStdString();
    if (!known || known->isMounted) {
        ASSERT_EQ(TemporaryHome::read(item.data(place(item))), item.bytes) << name;
        return;
    }
    ASSERT_EQ(TemporaryHome::read(item.data(known->originalBackupPath)), item.bytes) << name;
    ASSERT_TRUE(holdsPlaceholder(m_services.fileManager, place(item))) << name << ": the placeholder";
}

void Interleavings::checkStrays() const
{
    QStringList stored;
    QStringList ids;
    for (const ProtectedItem &each : m_engine.manager.protectedItems()) {
        ids.append(each.id);
        if (!each.isMounted) {
            stored.append(QFileInfo(each.originalBackupPath).fileName());
        }
    }
    stored.sort();
    ASSERT_EQ(namesIn(QStringLiteral(".local/share/quillhaven")), stored) << "in private storage";
    ASSERT_EQ(namesIn(QStringLiteral("tmp")), QStringList());
    for (const QString &name : namesIn(QStringLiteral("Desktop"))) {
        const auto isOurs = [&name](const Item &item) { return item.name == name; };
        ASSERT_TRUE(std::ranges::any_of(m_items, isOurs)) << name.toStdString() << " was not removed";
    }
    for (const QString &account : m_services.credentials.entries.keys()) {
        const auto isOf = [&account](const QString &id) { return account.contains(id); };
        ASSERT_TRUE(std::ranges::any_of(ids, isOf)) << account.toStdString() << " is a credential without an item";
    }
}

QStringList Interleavings::namesIn(const QString &folder) const
{
    return QDir(m_services.home.path(folder))
        .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
}

} // namespace quillhaven::test
