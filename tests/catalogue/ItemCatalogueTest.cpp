// SPDX-License-Identifier: GPL-3.0-or-later

#include "catalogue/ItemCatalogue.h"
#include "catalogue/CatalogueJson.h"
#include "platform/linux/settings/SqliteUserDefaults.h"
#include "settings/Settings.h"
#include "support/HookedSeam.h"
#include "support/LogCapture.h"
#include "support/RunTask.h"
#include "support/TestPlatform.h"
#include "support/UnwritableSettings.h"

#include <QFile>

#include <gtest/gtest.h>
#include <sqlite3.h>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

ProtectedItem record(const QString &id)
{
    ProtectedItem item;
    item.id = id;
    item.originalName = id + QStringLiteral(".txt");
    item.originalPath = QStringLiteral("/home/u/") + item.originalName;
    item.containerPath = QStringLiteral("/c");
    item.originalBackupPath = QStringLiteral("/p/") + id;
    return item;
}

class ItemCatalogueTest : public ::testing::Test
{
protected:
    [[nodiscard]] UserDefaultsProvider &defaults() { return services.platform().defaults; }
    [[nodiscard]] QList<ProtectedItem> stored()
    {
        const auto json = defaults().standard().dataForKey(settings::protectedItems.key);
        return json ? decodeProtectedItems(*json).value() : QList<ProtectedItem>();
    }
    [[nodiscard]] QByteArray shared()
    {
        return defaults().suite(settings::sharedSuite)->dataForKey(settings::protectedItems.key).value_or(QByteArray());
    }

    [[nodiscard]] static QByteArray sharedFormOf(const QList<ProtectedItem> &items)
    {
        QByteArrayList texts;
        for (const ProtectedItem &item : items) {
            texts.append(encodeProtectedItemInfo(item));
        }
        return "[" + texts.join(',') + "]";
    }
    /// Makes a domain of settings refuse every change of a list, as a full disk would.
    void refuseWrites(const QString &domain)
    {
        for (const QByteArray change : {"INSERT", "UPDATE", "DELETE"}) {
            runSql(domain, "CREATE TRIGGER refuse_" + change + " BEFORE " + change +
                               " ON elements BEGIN SELECT RAISE(ABORT, 'refused'); END");
        }
    }
    void allowWrites(const QString &domain)
    {
        for (const QByteArray change : {"INSERT", "UPDATE", "DELETE"}) {
            runSql(domain, "DROP TRIGGER refuse_" + change);
        }
    }

    /// Runs a statement on a domain's database as another program would.
    void runSql(const QString &domain, const QByteArray &sql)
    {
        const QString path = SqliteUserDefaults::databasePath(services.directories.configuration, domain);
        sqlite3 *connection = nullptr;
        ASSERT_EQ(sqlite3_open(QFile::encodeName(path).constData(), &connection), SQLITE_OK);
        EXPECT_EQ(sqlite3_exec(connection, sql.constData(), nullptr, nullptr, nullptr), SQLITE_OK)
            << sqlite3_errmsg(connection);
        sqlite3_close(connection);
    }

    TestPlatform services;
    ItemCatalogue catalogue{defaults()};
    const QString a = QStringLiteral("A");
    const QString b = QStringLiteral("B");
    const QString c = QStringLiteral("C");
};

} // namespace

TEST_F(ItemCatalogueTest, EachChangeIsPublishedForItsRecordAndSaved)
{
    QStringList seen;
    QObject::connect(&catalogue, &ItemCatalogue::itemAdded, [&](const QString &id) { seen.append(u'+' + id); });
    QObject::connect(&catalogue, &ItemCatalogue::itemChanged, [&](const QString &id) { seen.append(u'~' + id); });
    QObject::connect(&catalogue, &ItemCatalogue::itemRemoved, [&](const QString &id) { seen.append(u'-' + id); });
    catalogue.append(record(a));
    catalogue.append(record(b));
    EXPECT_TRUE(catalogue.update(a, [](ProtectedItem &item) { item.isMounted = true; }));
    EXPECT_EQ(stored(), catalogue.items());
    catalogue.remove({a});
    EXPECT_EQ(stored().size(), 2) << "a removal is saved by its caller";
    catalogue.save();
    EXPECT_EQ(stored(), catalogue.items());
    EXPECT_EQ(seen,
              (QStringList{QStringLiteral("+A"), QStringLiteral("+B"), QStringLiteral("~A"), QStringLiteral("-A")}));
}

TEST_F(ItemCatalogueTest, ChangeOfAnUnknownRecordDoesNothing)
{
    catalogue.append(record(a));
    EXPECT_FALSE(catalogue.update(b, [](ProtectedItem &) { ADD_FAILURE() << "there is nothing to change"; }));
    EXPECT_EQ(catalogue.item(b), nullptr);
}

TEST_F(ItemCatalogueTest, PublishingWritesASharedListThatWasLostOrDamaged)
{
    const QList<ProtectedItem> items{record(QStringLiteral("a")), record(QStringLiteral("b"))};
    defaults().standard().setData(settings::protectedItems.key, encodeProtectedItems(items));
    UserDefaults &suite = *defaults().suite(settings::sharedSuite);
    for (const QByteArray &held : {QByteArray(), QByteArray("[]"), QByteArray("damaged")}) {
        suite.setData(settings::protectedItems.key, held);
        ItemCatalogue catalogue(defaults());
        ASSERT_EQ(catalogue.load(), ItemCatalogue::Loaded::Items);
        catalogue.publish();
        EXPECT_EQ(shared(), sharedFormOf(catalogue.items()));
        EXPECT_TRUE(catalogue.update(QStringLiteral("b"), [](ProtectedItem &item) { item.isMounted = true; }));
        EXPECT_EQ(shared(), sharedFormOf(catalogue.items()));
    }
}

TEST_F(ItemCatalogueTest, PublishingLeavesASharedListThatIsRight)
{
    const QList<ProtectedItem> items{record(QStringLiteral("a"))};
    defaults().standard().setData(settings::protectedItems.key, encodeProtectedItems(items));
    defaults().suite(settings::sharedSuite)->setData(settings::protectedItems.key, sharedFormOf(items));
    int writes = 0;
    QObject::connect(defaults().suite(settings::sharedSuite), &UserDefaults::valueChanged, [&writes] { ++writes; });
    ItemCatalogue catalogue(defaults());
    ASSERT_EQ(catalogue.load(), ItemCatalogue::Loaded::Items);
    catalogue.publish();
    EXPECT_EQ(writes, 0);
}

TEST_F(ItemCatalogueTest, UnsavedChangeIsWrittenByTheNextSave)
{
    catalogue.append(record(a));
    catalogue.append(record(b));
    catalogue.updateUnsaved(a, [](ProtectedItem &item) { item.isProcessing = true; });
    EXPECT_FALSE(stored().at(0).isProcessing);
    catalogue.update(b, [](ProtectedItem &item) { item.isMounted = true; });
    EXPECT_EQ(stored(), catalogue.items());
    EXPECT_TRUE(stored().at(0).isProcessing);
}

TEST_F(ItemCatalogueTest, ListOfAnOlderProgramIsLoadedCompletely)
{
    defaults().standard().setData(settings::protectedItems.key, encodeProtectedItems({record(a), record(b)}));
    EXPECT_EQ(catalogue.load(), ItemCatalogue::Loaded::Items);
    catalogue.update(b, [](ProtectedItem &item) { item.isMounted = true; });
    EXPECT_EQ(stored(), catalogue.items());
    EXPECT_EQ(stored().size(), 2);
    EXPECT_TRUE(shared().contains("\"A\"")) << "the first save writes the whole shared list";
}

TEST_F(ItemCatalogueTest, SaveAfterTheStoredListHasVanishedWritesTheWholeList)
{
    catalogue.append(record(a));
    catalogue.append(record(b));
    defaults().standard().removeObject(settings::protectedItems.key);
    EXPECT_TRUE(catalogue.update(b, [](ProtectedItem &item) { item.isMounted = true; }));
    EXPECT_EQ(stored(), catalogue.items());
}

TEST_F(ItemCatalogueTest, SaveAfterAnUndecodableListReplacesIt)
{
    defaults().standard().setData(settings::protectedItems.key, "[{}]");
    EXPECT_EQ(catalogue.load(), ItemCatalogue::Loaded::Undecodable);
    catalogue.append(record(a));
    EXPECT_EQ(stored(), QList<ProtectedItem>{record(a)});
}

TEST_F(ItemCatalogueTest, RecordThatCannotBeEncodedChangesNeitherStore)
{
    catalogue.append(record(a));
    const QByteArray before = shared();
    catalogue.append(record(QString(QChar(0xd800))));
    EXPECT_EQ(stored(), QList<ProtectedItem>{record(a)});
    EXPECT_EQ(shared(), before);
    catalogue.remove({QString(QChar(0xd800))});
    catalogue.append(record(b));
    EXPECT_EQ(stored(), catalogue.items());
}

TEST_F(ItemCatalogueTest, SaveAfterAFailedOneStoresTheWholeList)
{
    catalogue.append(record(a));
    catalogue.append(record(b));
    for (const QString &domain :
         {QString(SqliteUserDefaultsProvider::standardDomain), QString(settings::sharedSuite)}) {
        const auto mount = [](ProtectedItem &item) { item.isMounted = !item.isMounted; };
        const QList<ProtectedItem> storedBefore = stored();
        const QByteArray sharedBefore = shared();
        refuseWrites(domain);
        catalogue.update(a, mount);
        catalogue.remove({b});
        catalogue.append(record(c));
        EXPECT_TRUE(stored() == storedBefore || shared() == sharedBefore) << "nothing was refused";
        allowWrites(domain);

        catalogue.append(record(b));
        EXPECT_EQ(stored(), catalogue.items()) << "refused by " << domain.toStdString();
        EXPECT_EQ(shared(), sharedFormOf(catalogue.items())) << "refused by " << domain.toStdString();
        catalogue.remove({c});
        catalogue.save();
        EXPECT_EQ(stored(), catalogue.items());
    }
}

TEST_F(ItemCatalogueTest, AFailedSaveIsTriedAgainAtTheEnd)
{
    LogCapture log;
    catalogue.append(record(a));
    refuseWrites(SqliteUserDefaultsProvider::standardDomain);
    catalogue.append(record(b));
    catalogue.saveUnsaved();
    EXPECT_TRUE(log.contains(QStringLiteral("❌ The last changes of the list of protected items could not be saved")));
    log.clear();
    allowWrites(SqliteUserDefaultsProvider::standardDomain);
    catalogue.saveUnsaved();
    EXPECT_EQ(stored(), catalogue.items());
    EXPECT_EQ(log.lines(), QStringList());
}

TEST_F(ItemCatalogueTest, NothingIsWrittenAtTheEndThatWasNotToBeSaved)
{
    catalogue.append(record(a));
    const QList<ProtectedItem> before = stored();
    catalogue.updateUnsaved(a, [](ProtectedItem &item) { item.isProcessing = true; });
    catalogue.saveUnsaved();
    EXPECT_EQ(stored(), before);
}

TEST_F(ItemCatalogueTest, AStoreThatCannotBeReadIsNeverWrittenUntilItIsRead)
{
    catalogue.append(record(a));
    const QList<ProtectedItem> before = stored();
    ItemCatalogue started(defaults());
    runSql(SqliteUserDefaultsProvider::standardDomain, "ALTER TABLE defaults RENAME TO away");
    int problems = 0;
    QObject::connect(&started, &ItemCatalogue::problemChanged, [&] { ++problems; });
    EXPECT_EQ(started.load(), ItemCatalogue::Loaded::Unreadable);
    EXPECT_TRUE(started.problem().has_value());
    started.append(record(b));
    started.saveUnsaved();
    problems = 0;
    EXPECT_FALSE(started.retry());
    EXPECT_EQ(problems, 1);
    runSql(SqliteUserDefaultsProvider::standardDomain, "ALTER TABLE away RENAME TO defaults");
    EXPECT_EQ(stored(), before);
    EXPECT_TRUE(started.retry());
    EXPECT_EQ(started.problem(), std::nullopt);
    EXPECT_EQ(started.items(), before);
}

TEST_F(ItemCatalogueTest, AtTheEndAStoreThatCouldOnlyBeReadIsTriedAgain)
{
    const TemporaryHome home;
    const QString directory = home.directories().configuration;
    {
        SqliteUserDefaultsProvider writable(directory);
        ItemCatalogue(writable).append(record(a));
    }
    auto obstacle = std::make_unique<UnwritableSettings>(directory);
    SqliteUserDefaultsProvider provider(directory);
    ItemCatalogue readOnly(provider);
    ASSERT_EQ(readOnly.load(), ItemCatalogue::Loaded::Items);
    readOnly.update(a, [](ProtectedItem &item) { item.isMounted = true; });
    obstacle.reset();
    readOnly.saveUnsaved();
    SqliteUserDefaultsProvider again(directory);
    EXPECT_EQ(decodeProtectedItems(*again.standard().dataForKey(settings::protectedItems.key)), readOnly.items());
    EXPECT_TRUE(readOnly.items().constFirst().isMounted);
}

TEST_F(ItemCatalogueTest, ChangesOfAListThatCouldOnlyBeReadAreSavedOnceItCanBeWritten)
{
    catalogue.append(record(a));
    catalogue.append(record(b));
    catalogue.append(record(c));
    const TemporaryHome home;
    const QString directory = home.directories().configuration;
    {
        SqliteUserDefaultsProvider writable(directory);
        writable.standard().setData(settings::protectedItems.key, encodeProtectedItems(catalogue.items()));
    }
    auto obstacle = std::make_unique<UnwritableSettings>(directory);
    SqliteUserDefaultsProvider provider(directory);
    ItemCatalogue readOnly(provider);
    ASSERT_EQ(readOnly.load(), ItemCatalogue::Loaded::Items);
    ASSERT_EQ(readOnly.items(), catalogue.items());
    EXPECT_TRUE(readOnly.problem().has_value());
    readOnly.update(b, [](ProtectedItem &item) { item.isMounted = true; });
    readOnly.remove({c});
    readOnly.save();
    EXPECT_FALSE(readOnly.retry());
    EXPECT_EQ(readOnly.items().size(), 2);
    obstacle.reset();
    EXPECT_TRUE(readOnly.retry());
    ASSERT_EQ(readOnly.items().size(), 2);
    EXPECT_FALSE(readOnly.item(a)->isMounted);
    EXPECT_TRUE(readOnly.item(b)->isMounted);
    SqliteUserDefaultsProvider again(directory);
    EXPECT_EQ(decodeProtectedItems(*again.standard().dataForKey(settings::protectedItems.key)), readOnly.items());
}

TEST_F(ItemCatalogueTest, RecordThatIsRemovedAndAddedAgainBeforeASaveMovesToTheEnd)
{
    catalogue.append(record(a));
    catalogue.append(record(b));
    ProtectedItem changed = record(a);
    changed.isMounted = true;
    catalogue.remove({a});
    catalogue.append(changed);
    EXPECT_EQ(catalogue.items(), (QList<ProtectedItem>{record(b), changed}));
    EXPECT_EQ(stored(), catalogue.items());
    EXPECT_EQ(shared(), sharedFormOf(catalogue.items()));
}

TEST_F(ItemCatalogueTest, RecordThatIsAddedChangedAndRemovedBeforeASaveIsStoredNowhere)
{
    catalogue.append(record(a));
    refuseWrites(SqliteUserDefaultsProvider::standardDomain);
    catalogue.append(record(b));
    catalogue.updateUnsaved(b, [](ProtectedItem &item) { item.isMounted = true; });
    catalogue.remove({b});
    allowWrites(SqliteUserDefaultsProvider::standardDomain);
    catalogue.save();
    EXPECT_EQ(stored(), QList<ProtectedItem>{record(a)});
    EXPECT_EQ(shared(), sharedFormOf({record(a)}));
}

TEST_F(ItemCatalogueTest, RecordIsFoundByIdAndByPath)
{
    catalogue.append(record(a));
    EXPECT_EQ(catalogue.item(a)->id, a);
    EXPECT_EQ(catalogue.itemAt(QStringLiteral("/home/u/A.txt"))->id, a);
    EXPECT_EQ(catalogue.itemAt(QStringLiteral("/home/u/B.txt")), nullptr);
}

TEST_F(ItemCatalogueTest, LeasesAreGrantedInTheOrderOfTheRequests)
{
    QStringList order;
    const auto use = [&](QString name) -> QCoro::Task<> {
        const ItemLease lease = co_await catalogue.lease(a);
        order.append(name);
    };
    auto first = std::make_unique<ItemLease>(runTask(catalogue.lease(a)));
    const RunningTask<void> second(use(QStringLiteral("second")));
    const RunningTask<void> third(use(QStringLiteral("third")));
    const RunningTask<void> other([](ItemCatalogue &of, QString id) -> QCoro::Task<> {
        const ItemLease lease = co_await of.lease(id);
    }(catalogue, b));
    EXPECT_TRUE(other.isFinished()) << "another item has its own lease";
    spinOnce();
    EXPECT_TRUE(order.isEmpty());
    first.reset();
    second.wait();
    third.wait();
    EXPECT_EQ(order, (QStringList{QStringLiteral("second"), QStringLiteral("third")}));
    EXPECT_FALSE(catalogue.isLeased(a));
}
