// SPDX-License-Identifier: GPL-3.0-or-later

#include "updates/UpdateInfo.h"
#include "Manifest.h"
#include "updates/GistUpdateData.h"
#include "updates/JsonReader.h"

#include <gtest/gtest.h>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

/// The description of the error that decoding throws.
template <typename Decode>
QString errorOf(Decode decode, const QByteArray &json)
{
    try {
        static_cast<void>(decode(json));
    } catch (const JsonError &error) {
        return error.errorDescription();
    }
    return QStringLiteral("no error");
}

QString manifestError(const QByteArray &json)
{
    return errorOf(decodeGistUpdateData, json);
}

UpdateInfo sampleInfo()
{
    return UpdateInfo(decodeGistUpdateData(manifest(appRecord())).app);
}

} // namespace

TEST(GistUpdateData, TheRecordIsReadFieldByField)
{
    const AppUpdateInfo expected{.version = QStringLiteral("2.0.0"),
                                 .downloadURL = QStringLiteral("https://downloads.example/quillhaven"),
                                 .releaseNotes = QStringLiteral("Better locks."),
                                 .publishedAt = QStringLiteral("2026-11-01"),
                                 .isPrerelease = true};

    EXPECT_EQ(decodeGistUpdateData(manifest(appRecord())), GistUpdateData{expected});
}

TEST(GistUpdateData, FurtherKeysAreIgnored)
{
    QJsonObject app = appRecord();
    app.insert(QStringLiteral("size"), 12);

    EXPECT_EQ(decodeGistUpdateData(manifest(app)), decodeGistUpdateData(manifest(appRecord())));
}

TEST(GistUpdateData, EmptyTextsAreTexts)
{
    QJsonObject app = appRecord(QString());
    app.insert(QStringLiteral("release_notes"), QString());

    EXPECT_EQ(decodeGistUpdateData(manifest(app)).app.releaseNotes, QString());
}

TEST(GistUpdateData, AManifestWithoutAppIsNamedSo)
{
    EXPECT_EQ(manifestError("{}"), QStringLiteral("The data couldn't be read because \"app\" is missing."));
    EXPECT_EQ(manifestError(R"({"App": {}})"), QStringLiteral("The data couldn't be read because \"app\" is missing."));
}

TEST(GistUpdateData, EachMissingKeyIsNamedWithItsPlace)
{
    for (const QString &key : appRecord().keys()) {
        QJsonObject app = appRecord();
        app.remove(key);

        EXPECT_EQ(manifestError(manifest(app)),
                  QStringLiteral("The data couldn't be read because \"app.%1\" is missing.").arg(key));
    }
}

TEST(GistUpdateData, EachValueOfAnotherTypeIsNamedWithBothTypes)
{
    for (const QString &key : appRecord().keys()) {
        QJsonObject app = appRecord();
        const bool isText = app.value(key).isString();
        app.insert(key, 7);

        EXPECT_EQ(manifestError(manifest(app)),
                  QStringLiteral("The data couldn't be read because \"app.%1\" should be %2, but is a number.")
                      .arg(key, isText ? QStringLiteral("a text") : QStringLiteral("true or false")));
    }
}

TEST(GistUpdateData, EveryOtherTypeHasAName)
{
    const auto errorFor = [](const char *value) {
        return manifestError(QByteArrayLiteral("{\"app\": ") + value + QByteArrayLiteral("}"));
    };
    const QString beginning = QStringLiteral("The data couldn't be read because \"app\" should be an object, but is ");

    EXPECT_EQ(errorFor("null"), beginning + QStringLiteral("null."));
    EXPECT_EQ(errorFor("true"), beginning + QStringLiteral("true or false."));
    EXPECT_EQ(errorFor("1.5"), beginning + QStringLiteral("a number."));
    EXPECT_EQ(errorFor("\"x\""), beginning + QStringLiteral("a text."));
    EXPECT_EQ(errorFor("[]"), beginning + QStringLiteral("a list."));
}

TEST(GistUpdateData, ABooleanAsTextIsNoBoolean)
{
    QJsonObject app = appRecord();
    app.insert(QStringLiteral("is_prerelease"), QStringLiteral("true"));

    EXPECT_EQ(
        manifestError(manifest(app)),
        QStringLiteral("The data couldn't be read because \"app.is_prerelease\" should be true or false, but is a "
                       "text."));
}

TEST(GistUpdateData, WhatIsNotJsonIsNamedSo)
{
    const QString beginning = QStringLiteral("The data couldn't be read because it isn't valid JSON: at byte ");

    for (const QByteArray &json :
         {QByteArray(), QByteArray("<!DOCTYPE html>"), QByteArray("{\"app\": "), manifest(appRecord()) + "x",
          QByteArray("\xff\xfe{\0}\0", 6), QByteArray("\"text\""), QByteArray(100'000, '[')}) {
        EXPECT_TRUE(manifestError(json).startsWith(beginning)) << qUtf8Printable(manifestError(json));
    }
}

TEST(GistUpdateData, AListIsNoManifest)
{
    EXPECT_EQ(manifestError("[]"),
              QStringLiteral("The data couldn't be read because it is a list instead of an object."));
}

TEST(UpdateInfo, ItIsEncodedUnderTheNamesOfItsFields)
{
    const QJsonObject expected{{QStringLiteral("version"), QStringLiteral("2.0.0")},
                               {QStringLiteral("downloadURL"), QStringLiteral("https://downloads.example/quillhaven")},
                               {QStringLiteral("releaseNotes"), QStringLiteral("Better locks.")},
                               {QStringLiteral("publishedAt"), QStringLiteral("2026-11-01")},
                               {QStringLiteral("isPrerelease"), true}};

    EXPECT_EQ(QJsonDocument::fromJson(encodeUpdateInfo(sampleInfo())).object(), expected);
}

TEST(UpdateInfo, WhatIsEncodedIsDecodedAgain)
{
    UpdateInfo info = sampleInfo();
    info.releaseNotes = QStringLiteral("Line\n\"two\" \\ é 🔒") + QChar(0);

    EXPECT_EQ(decodeUpdateInfo(encodeUpdateInfo(info)), info);
}

TEST(UpdateInfo, EachMissingKeyIsNamed)
{
    const QJsonObject whole = QJsonDocument::fromJson(encodeUpdateInfo(sampleInfo())).object();
    ASSERT_EQ(whole.size(), 5);
    for (const QString &key : whole.keys()) {
        QJsonObject object = whole;
        object.remove(key);

        EXPECT_EQ(errorOf(decodeUpdateInfo, QJsonDocument(object).toJson()),
                  QStringLiteral("The data couldn't be read because \"%1\" is missing.").arg(key));
    }
}

TEST(UpdateInfo, TheManifestsKeysAreNotItsOwn)
{
    EXPECT_EQ(errorOf(decodeUpdateInfo, QJsonDocument(appRecord()).toJson()),
              QStringLiteral("The data couldn't be read because \"downloadURL\" is missing."));
}
