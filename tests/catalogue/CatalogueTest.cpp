// SPDX-License-Identifier: GPL-3.0-or-later

#include "catalogue/CatalogueJson.h"
#include "settings/Settings.h"
#include "support/EngineHarness.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

ProtectedItem sampleItem(const QString &id, const QString &original, const QString &backup)
{
    ProtectedItem item;
    item.id = id;
    item.originalName = QStringLiteral("report.pdf");
    item.originalPath = original;
    item.containerPath = QStringLiteral("/home/u/Documents/report.pdf.secured");
    item.originalBackupPath = backup;
    return item;
}

class Catalogue : public ::testing::Test
{
protected:
    void storeJson(const QByteArray &json) { services.defaults.standard().setData(settings::protectedItems.key, json); }
    QByteArray storedJson() { return services.defaults.standard().dataForKey(settings::protectedItems.key).value(); }
    QByteArray sharedJson()
    {
        return services.defaults.suite(settings::sharedSuite)->dataForKey(settings::protectedItems.key).value();
    }

    TestPlatform services;
    LogCapture log;
};

/// A field that every record must have.
class RequiredField : public Catalogue, public ::testing::WithParamInterface<const char *>
{
protected:
    static QString key() { return QString::fromLatin1(GetParam()); }
    /// Expects that one record with this value in the field makes the start ignore the list, and keep its bytes.
    void expectUnreadable(const QJsonValue &value)
    {
        const QString there = services.home.write(QStringLiteral("there.txt"));
        QJsonArray array = QJsonDocument::fromJson(
                               encodeProtectedItems({sampleItem(QStringLiteral("A"), there, QStringLiteral("/p")),
                                                     sampleItem(QStringLiteral("B"), there, QStringLiteral("/q"))}))
                               .array();
        QJsonObject broken = array.at(1).toObject();
        ASSERT_TRUE(broken.contains(key()));
        value.isUndefined() ? broken.remove(key()) : void(broken.insert(key(), value));
        array.replace(1, broken);
        const QByteArray json = QJsonDocument(array).toJson();
        storeJson(json);
        log.clear();

        const EngineHarness engine(services);
        EXPECT_EQ(engine.count(), 0) << json.constData();
        EXPECT_TRUE(log.contains(QStringLiteral("DEBUG: Failed to decode protected items from UserDefaults")));
        EXPECT_EQ(storedJson(), json) << "the stored bytes are kept until the next save";
    }
};

} // namespace

TEST_F(Catalogue, RecordsAreReadAsTheyWereWritten)
{
    ProtectedItem first = sampleItem(QStringLiteral("A"), QStringLiteral("/a \"b\"\n\u202e😀"), QStringLiteral("/p"));
    first.isFolder = true;
    first.isProcessing = true;
    ProtectedItem second = sampleItem(QStringLiteral("B"), QStringLiteral("/c"), QStringLiteral("/q"));
    second.useTouchID = true;
    second.isMounted = true;
    second.mountedPath = QStringLiteral("/c");
    const QList<ProtectedItem> items{first, second};
    EXPECT_EQ(decodeProtectedItems(encodeProtectedItems(items)), items);
}

TEST_F(Catalogue, EveryFieldIsStoredUnderItsNameAndAMissingMountedPathIsOmitted)
{
    const ProtectedItem item = sampleItem(QStringLiteral("A"), QStringLiteral("/a"), QStringLiteral("/p"));
    const QJsonObject object = QJsonDocument::fromJson(encodeProtectedItems({item})).array().at(0).toObject();
    QStringList keys = object.keys();
    keys.sort();
    EXPECT_EQ(keys.join(QLatin1Char(' ')),
              QStringLiteral("containerPath id isFolder isMounted isProcessing originalBackupPath originalName "
                             "originalPath useTouchID"));
}

TEST_P(RequiredField, ListWithARecordThatLacksItIsLoadedAsAnEmptyList)
{
    expectUnreadable(QJsonValue::Undefined);
}

TEST_P(RequiredField, ListWithARecordThatHasItWithAnotherTypeIsLoadedAsAnEmptyList)
{
    const bool isText = !key().startsWith(QStringLiteral("is")) && key() != QStringLiteral("useTouchID");
    expectUnreadable(isText ? QJsonValue(1) : QJsonValue(QStringLiteral("false")));
    expectUnreadable(isText ? QJsonValue(true) : QJsonValue(0));
    expectUnreadable(QJsonValue::Null);
}

INSTANTIATE_TEST_SUITE_P(Catalogue, RequiredField,
                         ::testing::Values("id", "originalName", "originalPath", "containerPath", "originalBackupPath",
                                           "isFolder", "useTouchID", "isMounted", "isProcessing"),
                         [](const auto &info) { return std::string(info.param); });

TEST_F(Catalogue, FieldOfAnotherTypeMakesTheWholeListUnreadable)
{
    const ProtectedItem item = sampleItem(QStringLiteral("A"), QStringLiteral("/a"), QStringLiteral("/p"));
    QByteArray json = encodeProtectedItems({item});
    json.replace("\"isMounted\":false", "\"isMounted\":\"false\"");
    EXPECT_FALSE(decodeProtectedItems(json).has_value());
    EXPECT_FALSE(decodeProtectedItems("{}").has_value());
    EXPECT_FALSE(decodeProtectedItems("[1]").has_value());
    EXPECT_FALSE(decodeProtectedItems("[").has_value());
}

TEST_F(Catalogue, RecordThatCouldNotBeSavedAgainMakesTheWholeListUnreadable)
{
    ProtectedItem item = sampleItem(QStringLiteral("A"), QStringLiteral("/a"), QStringLiteral("/p"));
    item.mountedPath = QStringLiteral("/m");
    for (const QByteArray field :
         {"id", "originalName", "originalPath", "containerPath", "originalBackupPath", "mountedPath"}) {
        QByteArray json = encodeProtectedItems({item});
        const QByteArray start = "\"" + field + "\":\"";
        ASSERT_TRUE(json.contains(start)) << field.constData();
        json.replace(start, start + "\\ud83d\\ude00");
        EXPECT_TRUE(decodeProtectedItems(json).has_value()) << field.constData();
        json.replace("\\ude00", "");
        EXPECT_FALSE(decodeProtectedItems(json).has_value()) << field.constData();
    }
}

TEST_F(Catalogue, ListWithARecordThatCouldNotBeSavedAgainIsReplacedByTheNextSave)
{
    const QString there = services.home.write(QStringLiteral("there.txt"));
    QByteArray json = encodeProtectedItems({sampleItem(QStringLiteral("A"), there, QStringLiteral("/p"))});
    json.replace("\"originalName\":\"", "\"originalName\":\"\\ud800");
    storeJson(json);
    EngineHarness engine(services);
    EXPECT_EQ(engine.count(), 0);
    EXPECT_TRUE(log.contains(QStringLiteral("DEBUG: Failed to decode protected items from UserDefaults")));
    engine.protect(services.home.write(QStringLiteral("b.txt")));
    EXPECT_EQ(engine.storedItems().size(), 1);
}

TEST_F(Catalogue, RecordsWithoutAMountedPathAreLoaded)
{
    const QString there = services.home.write(QStringLiteral("there.txt"));
    storeJson(encodeProtectedItems({sampleItem(QStringLiteral("A"), there, QStringLiteral("/p"))}));
    const EngineHarness engine(services);
    ASSERT_EQ(engine.count(), 1);
    EXPECT_FALSE(engine.item().mountedPath.has_value());
    EXPECT_TRUE(log.contains(QStringLiteral("DEBUG: Loaded 1 protected items from UserDefaults")));
}

TEST_F(Catalogue, WithoutAStoredListTheListIsEmpty)
{
    const EngineHarness engine(services);
    EXPECT_EQ(engine.count(), 0);
    EXPECT_TRUE(log.contains(QStringLiteral("DEBUG: Loading protected items from UserDefaults")));
    EXPECT_TRUE(log.contains(QStringLiteral("DEBUG: No data found in UserDefaults, keeping empty array")));
}

TEST_F(Catalogue, LockedItemWhosePlaceholderIsDeletedIsKept)
{
    const QString copy = services.home.write(QStringLiteral(".local/share/quillhaven/A_original"));
    storeJson(encodeProtectedItems({sampleItem(QStringLiteral("A"), QStringLiteral("/gone"), copy)}));
    const EngineHarness engine(services);
    EXPECT_EQ(engine.count(), 1);
}

TEST_F(Catalogue, ItemWithoutEitherFileIsRemovedAndTheCatalogueIsSaved)
{
    const QString there = services.home.write(QStringLiteral("there.txt"));
    ProtectedItem gone = sampleItem(QStringLiteral("A"), QStringLiteral("/gone"), QStringLiteral("/gone too"));
    gone.containerPath = services.home.write(QStringLiteral("Documents/report.pdf.secured"));
    const ProtectedItem kept = sampleItem(QStringLiteral("B"), there, QStringLiteral("/q"));
    storeJson(encodeProtectedItems({gone, kept}));

    const EngineHarness engine(services);
    ASSERT_EQ(engine.count(), 1);
    EXPECT_EQ(engine.item(), kept);
    EXPECT_TRUE(log.contains(QStringLiteral("🧹 Cleaning up 1 missing files")));
    EXPECT_EQ(decodeProtectedItems(storedJson()), QList<ProtectedItem>{kept});
    EXPECT_TRUE(TemporaryHome::exists(gone.containerPath)) << "the container is kept, without an owner";
}

TEST_F(Catalogue, UnlockedItemWhoseFileIsDeletedIsRemovedAtTheNextStart)
{
    const QString path = services.home.write(QStringLiteral("Desktop/a.txt"));
    {
        EngineHarness first(services);
        first.protect(path);
        first.unlock();
    }
    ASSERT_TRUE(QFile::remove(path));
    const EngineHarness next(services);
    EXPECT_EQ(next.count(), 0);
    EXPECT_EQ(storedJson(), "[]");
}

TEST_F(Catalogue, ListThatCannotBeReadIsReplacedByTheNextSave)
{
    storeJson("[{}]");
    EngineHarness engine(services);
    engine.protect(services.home.write(QStringLiteral("Desktop/a.txt")));
    EXPECT_EQ(decodeProtectedItems(storedJson()), engine.manager.protectedItems());
}

TEST_F(Catalogue, WithoutTheSharedStoreTheOtherOneIsStillWritten)
{
    ASSERT_TRUE(QDir(services.directories.configuration).mkdir(settings::sharedSuite + QStringLiteral(".db")));
    ASSERT_EQ(services.defaults.suite(settings::sharedSuite), nullptr);
    EngineHarness engine(services);
    log.clear();
    engine.manager.saveProtectedItems();
    EXPECT_EQ(storedJson(), "[]");
    EXPECT_EQ(log.lines().join(QLatin1Char('|')), QString());
}

TEST_F(Catalogue, WithoutMissingFilesTheListIsNotSaved)
{
    const QString there = services.home.write(QStringLiteral("there.txt"));
    const QByteArray json = " " + encodeProtectedItems({sampleItem(QStringLiteral("A"), there, QStringLiteral("/p"))});
    storeJson(json);
    const EngineHarness engine(services);
    EXPECT_EQ(storedJson(), json);
    EXPECT_EQ(log.lines(), QStringList({QStringLiteral("DEBUG: Loading protected items from UserDefaults"),
                                        QStringLiteral("DEBUG: Loaded 1 protected items from UserDefaults")}));
}

TEST_F(Catalogue, EveryRecordWithoutFilesIsRemovedAndTheOthersKeepTheirOrder)
{
    const QString there = services.home.write(QStringLiteral("there.txt"));
    const auto item = [&there](const QString &id, bool isThere) {
        return sampleItem(id, isThere ? there : QStringLiteral("/gone"), QStringLiteral("/gone too"));
    };
    const QList<ProtectedItem> items{item(QStringLiteral("E"), false), item(QStringLiteral("D"), true),
                                     item(QStringLiteral("C"), false), item(QStringLiteral("B"), true),
                                     item(QStringLiteral("A"), false)};
    storeJson(encodeProtectedItems(items));
    const EngineHarness engine(services);
    const QList<ProtectedItem> kept{items.at(1), items.at(3)};
    EXPECT_EQ(engine.manager.protectedItems(), kept);
    EXPECT_EQ(decodeProtectedItems(storedJson()), kept);
    EXPECT_EQ(log.lines().filter(QStringLiteral("🧹")), QStringList(QStringLiteral("🧹 Cleaning up 3 missing files")));
}

TEST_F(Catalogue, RecordsWithTheIdOfAMissingOneAreRemovedWithItAndNotCounted)
{
    const QString there = services.home.write(QStringLiteral("there.txt"));
    const QString gone = QStringLiteral("/gone");
    const ProtectedItem other = sampleItem(QStringLiteral("B"), there, gone);
    storeJson(encodeProtectedItems(
        {sampleItem(QStringLiteral("A"), gone, gone), other, sampleItem(QStringLiteral("A"), there, gone)}));
    const EngineHarness engine(services);
    EXPECT_EQ(engine.manager.protectedItems(), QList<ProtectedItem>{other});
    EXPECT_TRUE(log.contains(QStringLiteral("🧹 Cleaning up 1 missing files")));
}

TEST_F(Catalogue, EmptyListSavesAsAnEmptyArrayInBothStores)
{
    EngineHarness engine(services);
    engine.manager.saveProtectedItems();
    EXPECT_EQ(storedJson(), "[]");
    EXPECT_EQ(sharedJson(), "[]");
}

TEST_F(Catalogue, SharedStoreHoldsExactlyFiveKeysAndNoPrivatePaths)
{
    EngineHarness engine(services);
    engine.protect(services.home.write(QStringLiteral("Desktop/a.txt")));
    const QJsonObject shared = QJsonDocument::fromJson(sharedJson()).array().at(0).toObject();
    QStringList keys = shared.keys();
    keys.sort();
    EXPECT_EQ(keys.join(QLatin1Char(' ')), QStringLiteral("id isFolder isMounted originalName originalPath"));
    EXPECT_FALSE(sharedJson().contains(".secured"));
    EXPECT_FALSE(sharedJson().contains("_original"));
}

TEST_F(Catalogue, SharedStoreHoldsTheValuesOfEachItem)
{
    EngineHarness engine(services);
    const QString file = services.home.write(QStringLiteral("Desktop/a.txt"));
    services.home.write(QStringLiteral("Desktop/folder/inner.txt"));
    const QString folder = services.home.path(QStringLiteral("Desktop/folder"));
    engine.protect(file);
    engine.protect(folder, {});
    engine.unlock();
    const QJsonArray expected{QJsonObject{{QStringLiteral("id"), engine.item(0).id},
                                          {QStringLiteral("originalName"), QStringLiteral("a.txt")},
                                          {QStringLiteral("originalPath"), file},
                                          {QStringLiteral("isFolder"), false},
                                          {QStringLiteral("isMounted"), true}},
                              QJsonObject{{QStringLiteral("id"), engine.item(1).id},
                                          {QStringLiteral("originalName"), QStringLiteral("folder")},
                                          {QStringLiteral("originalPath"), folder},
                                          {QStringLiteral("isFolder"), true},
                                          {QStringLiteral("isMounted"), false}}};
    EXPECT_EQ(QJsonDocument::fromJson(sharedJson()).array(), expected) << sharedJson().constData();
}

TEST_F(Catalogue, BusyFlagIsReadAsItWasStored)
{
    const QString there = services.home.write(QStringLiteral("there.txt"));
    ProtectedItem item = sampleItem(QStringLiteral("A"), there, QStringLiteral("/p"));
    item.isProcessing = true;
    storeJson(encodeProtectedItems({item}));
    const EngineHarness engine(services);
    EXPECT_TRUE(engine.item().isProcessing);
}

TEST_F(Catalogue, InvalidUnicodeIsNotEncoded)
{
    EXPECT_TRUE(encodeProtectedItems({sampleItem(QString(QChar(0xd800)), {}, {})}).isEmpty());
}

TEST(QuillhavenErrorTexts, EveryCaseHasItsText)
{
    const auto text = [](QuillhavenError::Case errorCase) {
        return QuillhavenError(errorCase, QStringLiteral("x")).errorDescription();
    };
    EXPECT_EQ(text(QuillhavenError::encryptionFailed), QStringLiteral("Failed to create encrypted container: x"));
    EXPECT_EQ(text(QuillhavenError::accessDenied), QStringLiteral("x"));
    EXPECT_EQ(text(QuillhavenError::bulkOperationFailed), QStringLiteral("x"));
    EXPECT_EQ(text(QuillhavenError::operationTimeout), QStringLiteral("x"));
    EXPECT_EQ(text(QuillhavenError::itemNotFound), QStringLiteral("The selected file or folder could not be found."));
    EXPECT_EQ(text(QuillhavenError::authenticationFailed), QStringLiteral("Authentication failed. Please try again."));
    EXPECT_EQ(text(QuillhavenError::touchIDNotAvailable), QStringLiteral("Touch ID is not available on this device."));
    EXPECT_EQ(text(QuillhavenError::keychainError), QStringLiteral("Failed to access secure storage."));
    EXPECT_EQ(text(QuillhavenError::weakPassword),
              QStringLiteral("Password must be at least 8 characters with uppercase, lowercase, and numbers"));
    EXPECT_EQ(text(QuillhavenError::authenticationCancelled), QStringLiteral("Authentication cancelled by user."));
    EXPECT_EQ(text(QuillhavenError::iCloudNotAvailable),
              QStringLiteral("iCloud is not available. Please sign in to iCloud and enable iCloud Drive."));
}

TEST_F(Catalogue, SharedStoreFollowsLockingAndUnlocking)
{
    EngineHarness engine(services);
    engine.protect(services.home.write(QStringLiteral("Desktop/a.txt")));
    const auto isMounted = [this] {
        return QJsonDocument::fromJson(sharedJson()).array().at(0).toObject().value(QStringLiteral("isMounted"));
    };
    EXPECT_EQ(isMounted(), QJsonValue(false));
    engine.unlock();
    EXPECT_EQ(isMounted(), QJsonValue(true));
    engine.lock();
    EXPECT_EQ(isMounted(), QJsonValue(false));
}
