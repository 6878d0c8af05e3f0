// SPDX-License-Identifier: GPL-3.0-or-later

#include "model/ItemModel.h"

#include <QDir>
#include <QFile>

#include <algorithm>

namespace quillhaven::test {

namespace {

const auto quiet = [](const QString &, double) {};
constexpr unsigned maxItems = 16;

} // namespace

ItemModel::ItemModel(TestPlatform &services, unsigned seed) : m_services(services), m_random(seed)
{
    for (int i = 0; i < 8; ++i) {
        Item item;
        item.isFolder = i % 4 == 3;
        item.path = services.home.path(QStringLiteral("Desktop/item%1.txt").arg(i));
        item.bytes = QByteArray("first ") + QByteArray::number(i);
        services.home.write(item.dataIn(QStringLiteral("Desktop/item%1.txt").arg(i)), *item.bytes);
        m_items.push_back(item);
    }
    start();
}

void ItemModel::start()
{
    m_engine.reset();
    m_services.panels.placeRequests.clear();
    m_services.panels.accessRequests.clear();
    m_engine = std::make_unique<EngineHarness>(m_services);
}

const ProtectedItem *ItemModel::record(const Item &item) const
{
    for (const ProtectedItem &each : m_engine->manager.protectedItems()) {
        if (each.id == item.id) {
            return &each;
        }
    }
    return nullptr;
}

template <typename Call>
std::optional<QString> ItemModel::errorOf(Call call)
{
    try {
        call();
    } catch (const LocalizedError &error) {
        return error.errorDescription();
    }
    return std::nullopt;
}

template <typename Call>
void ItemModel::expectSuccess(Call call)
{
    const std::optional<QString> error = errorOf(call);
    EXPECT_FALSE(error.has_value()) << error.value_or(QString()).toStdString();
}

std::string ItemModel::step()
{
    for (;;) {
        const std::string done = tryStep();
        if (done != "nothing") {
            return done;
        }
    }
}

bool ItemModel::isTaken(const QString &path) const
{
    return std::ranges::any_of(m_items,
                               [&path](const Item &other) { return other.state != State::Gone && other.path == path; });
}

std::string ItemModel::recreate(Item &item)
{
    if (isTaken(item.path)) {
        return "nothing"; // A duplicate uses its path.
    }
    item.state = State::Plain;
    item.id.clear();
    item.bytes = "again " + QByteArray::number(++m_edits);
    const QString relative = QDir(m_services.home.path()).relativeFilePath(item.path);
    m_services.home.write(item.dataIn(relative), *item.bytes);
    return "create again";
}

std::string ItemModel::tryStep()
{
    Item &item = m_items.at(pick(static_cast<unsigned>(m_items.size())));
    if (item.state == State::Gone) {
        return recreate(item);
    }
    switch (pick(20)) {
    case 0:
    case 1:
    case 2:
        return protect(item);
    case 3:
    case 4:
    case 5:
        return lock(item);
    case 6:
    case 7:
    case 8:
        return unlock(item);
    case 9:
        return unlockWithWrongPassword(item);
    case 10:
        return unlockCancelled(item);
    case 11:
        return remove(item);
    case 12:
        return duplicate(item);
    case 13:
        return pick(4) == 0 ? shred(item) : editOutside(item);
    case 14:
    case 15:
        return editOutside(item);
    case 16:
        return deleteOutside(item);
    case 17:
        return pick(2) == 0 ? bulkLock() : bulkUnlock();
    case 18:
        return declineThePanel(item);
    default:
        return restart();
    }
}

std::string ItemModel::protect(Item &item)
{
    if (item.state != State::Plain) {
        return "nothing";
    }
    const qsizetype before = m_engine->count();
    const std::optional<QString> error = errorOf([&] { m_engine->protect(item.path); });
    if (!item.bytes) {
        EXPECT_TRUE(error.has_value()) << "protected what is not there";
        return "protect what is gone";
    }
    EXPECT_FALSE(error.has_value()) << error.value_or(QString()).toStdString();
    EXPECT_EQ(m_engine->count(), before + 1);
    item.id = m_engine->manager.protectedItems().last().id;
    item.state = State::Locked;
    item.hasPlaceholder = true;
    return "protect";
}

std::string ItemModel::lock(Item &item)
{
    if (item.state != State::Unlocked) {
        return "nothing";
    }
    expectSuccess([&] { runTask(m_engine->manager.lockItem(*record(item))); });
    item.state = State::Locked;
    item.hasPlaceholder = true;
    return "lock";
}

std::string ItemModel::unlock(Item &item)
{
    if (item.state != State::Locked) {
        return "nothing";
    }
    const std::optional<QString> error = errorOf([&] { runTask(m_engine->manager.unlockItem(*record(item))); });
    if (!item.bytes) {
        EXPECT_TRUE(error.has_value()) << "unlocked what is not there";
        return "unlock what is gone";
    }
    EXPECT_FALSE(error.has_value()) << error.value_or(QString()).toStdString();
    item.state = State::Unlocked;
    return "unlock";
}

std::string ItemModel::unlockWithWrongPassword(Item &item)
{
    if (item.state != State::Locked || item.isFolder) {
        return "nothing";
    }
    m_engine->itemPassword = QStringLiteral("Wrong123");
    EXPECT_TRUE(errorOf([&] { runTask(m_engine->manager.unlockItem(*record(item))); }).has_value());
    m_engine->itemPassword = QStringLiteral("Abcdefg1");
    return "unlock with a wrong password";
}

std::string ItemModel::unlockCancelled(Item &item)
{
    if (item.state != State::Locked || item.isFolder) {
        return "nothing";
    }
    m_engine->itemPassword.reset();
    expectSuccess([&] { runTask(m_engine->manager.unlockItem(*record(item))); });
    m_engine->itemPassword = QStringLiteral("Abcdefg1");
    return "unlock, cancelled";
}

std::string ItemModel::declineThePanel(Item &item)
{
    if (item.state != State::Locked || !item.bytes) {
        return "nothing";
    }
    m_services.panels.confirm = [](const PlaceRequest &) { return std::nullopt; };
    expectSuccess([&] { runTask(m_engine->manager.unlockItem(*record(item))); });
    expectSuccess([&] { runTask(m_engine->manager.removeProtection(*record(item))); });
    m_services.panels.confirm = nullptr;
    return "unlock and remove, panel declined";
}

std::string ItemModel::remove(Item &item)
{
    const bool isManaged = item.state == State::Locked || item.state == State::Unlocked;
    if (!isManaged || !item.bytes) {
        return "nothing";
    }
    expectSuccess([&] { runTask(m_engine->manager.removeProtection(*record(item))); });
    EXPECT_EQ(record(item), nullptr);
    item.state = State::Plain;
    return "remove";
}

std::string ItemModel::duplicate(Item &item)
{
    if (item.state != State::Locked || item.isFolder || m_items.size() >= maxItems) {
        return "nothing";
    }
    const std::optional<QString> error =
        errorOf([&] { runTask(m_engine->manager.duplicateAsEncryptedCopy(*record(item), quiet)); });
    EXPECT_EQ(error.has_value(), !item.bytes.has_value()) << error.value_or(QString()).toStdString();
    if (!error) {
        const ProtectedItem &fresh = m_engine->manager.protectedItems().last();
        Item copy = item;
        copy.id = fresh.id;
        copy.path = fresh.originalPath;
        copy.hasPlaceholder = false;
        m_items.push_back(copy);
    }
    return "duplicate";
}

std::string ItemModel::shred(Item &item)
{
    if (item.state == State::Plain) {
        expectSuccess([&] {
            if (item.bytes) {
                runTask(m_engine->manager.shredUnprotectedItems({item.path}, quiet));
            }
        });
    } else if (item.state != State::Gone && item.bytes) {
        expectSuccess([&] { runTask(m_engine->manager.shredProtectedItem(*record(item), quiet)); });
    } else {
        return "nothing";
    }
    item.state = State::Gone;
    return "shred";
}

std::string ItemModel::editOutside(Item &item)
{
    const QByteArray bytes =
        "edit " + QByteArray::number(++m_edits) + QByteArray(static_cast<qsizetype>(pick(2000)), 'x');
    if ((item.state == State::Plain || item.state == State::Unlocked) && item.bytes) {
        item.bytes = bytes;
    } else if (item.state != State::Locked || !item.hasPlaceholder) {
        return "nothing";
    }
    // At the place of a locked item there is a placeholder file, whatever its contents.
    const bool isFolderData = item.isFolder && item.state != State::Locked;
    QFile file(isFolderData ? item.dataIn(item.path) : item.path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(bytes);
    return "edit from outside";
}

std::string ItemModel::deleteOutside(Item &item)
{
    if (item.state == State::Locked && item.hasPlaceholder) {
        EXPECT_TRUE(QFile::remove(item.path));
        item.hasPlaceholder = false;
        return "delete the placeholder";
    }
    if (item.state == State::Unlocked && item.bytes && pick(4) == 0) {
        EXPECT_TRUE(item.isFolder ? QDir(item.path).removeRecursively() : QFile::remove(item.path));
        item.bytes.reset();
        return "delete the unlocked item";
    }
    return "nothing";
}

std::string ItemModel::bulkLock()
{
    QList<ProtectedItem> records;
    for (Item &item : m_items) {
        if (item.state == State::Unlocked && pick(2) == 0) {
            records.append(*record(item));
            item.state = State::Locked;
            item.hasPlaceholder = true;
        }
    }
    expectSuccess([&] { runTask(m_engine->manager.bulkLockItems(records, quiet)); });
    return "bulk lock";
}

std::string ItemModel::bulkUnlock()
{
    QList<ProtectedItem> records;
    for (Item &item : m_items) {
        if (item.state == State::Locked && item.bytes && pick(2) == 0) {
            records.append(*record(item));
            item.state = State::Unlocked; // Its panel lists paths, even without files there.
        }
    }
    expectSuccess([&] { runTask(m_engine->manager.bulkUnlockItems(records, quiet)); });
    return "bulk unlock";
}

std::string ItemModel::restart()
{
    start();
    for (Item &item : m_items) {
        // The start drops items whose data is neither at their place nor in private storage.
        const bool isNowhere = !item.bytes && !(item.state == State::Locked && item.hasPlaceholder);
        if (isNowhere && (item.state == State::Locked || item.state == State::Unlocked)) {
            item.state = State::Gone;
        }
    }
    return "restart";
}

void ItemModel::check() const
{
    qsizetype records = 0;
    for (const Item &item : m_items) {
        const ProtectedItem *known = record(item);
        const bool isManaged = item.state == State::Locked || item.state == State::Unlocked;
        if (isManaged) {
            ++records;
            ASSERT_NE(known, nullptr) << "the record was lost: " << item.path.toStdString();
            ASSERT_EQ(known->isMounted, item.state == State::Unlocked) << item.path.toStdString();
        } else if (!item.id.isEmpty()) {
            ASSERT_EQ(known, nullptr) << "the record was not removed: " << item.path.toStdString();
        }
        if (item.state == State::Gone) {
            ASSERT_TRUE(isTaken(item.path) || !TemporaryHome::exists(item.path) || !item.bytes)
                << item.path.toStdString();
        } else if (item.bytes) {
            const QString place = item.state == State::Locked ? known->originalBackupPath : item.path;
            ASSERT_EQ(TemporaryHome::read(item.dataIn(place)), *item.bytes) << item.path.toStdString();
        }
    }
    ASSERT_EQ(m_engine->count(), records);
}

} // namespace quillhaven::test
