// SPDX-License-Identifier: GPL-3.0-or-later

#include "extension/PlugInRegistry.h"

#include "support/TemporaryHome.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <unistd.h>

namespace quillhaven::test {

namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

const QString enabled = QStringLiteral("+    com.tarnwick.quillhaven.FinderSync(1.0)\t");
const QString disabled = QStringLiteral("-    com.tarnwick.quillhaven.FinderSync(1.0)\t");
const QString allManagers = QStringLiteral("Nautilus, Nemo, Thunar, Caja, Dolphin, PCManFM-Qt");
const QString userActions = QStringLiteral("config/Thunar/uca.xml");
const QString nautilusFile = QStringLiteral("data/nautilus-python/extensions/quillhaven_menu.py");
const QString dolphinFile = QStringLiteral("data/kio/servicemenus/quillhaven.desktop");
const QByteArray ownAction = "<action><name>Mine</name><unique-id>1</unique-id><command>true</command></action>";

/// A home with every file manager installed, as far as the search path is concerned.
class PlugInRegistryTest : public testing::Test
{
protected:
    PlugInRegistryTest()
    {
        for (const char *manager : {"nautilus", "nemo", "thunar", "caja", "dolphin", "pcmanfm-qt"}) {
            QFile program(home.write(QStringLiteral("bin/") + QLatin1String(manager)));
            program.setPermissions(program.permissions() | QFile::ExeOwner);
        }
        qputenv("PATH", QFile::encodeName(home.path(QStringLiteral("bin"))));
        home.write(QStringLiteral("xdg/Thunar/uca.xml"),
                   "<?xml version=\"1.0\"?>\n<actions>\n<action><name>Terminal</name></action>\n</actions>");
        QDir().mkpath(home.path(QStringLiteral("config")));
    }
    ~PlugInRegistryTest() override { qputenv("PATH", m_path); }

    /// All files below the data and configuration folders with their contents, except the registration.
    [[nodiscard]] QMap<QString, QByteArray> menuFiles() const
    {
        QMap<QString, QByteArray> files;
        for (const QString &folder : {QStringLiteral("data"), QStringLiteral("config")}) {
            QDirIterator each(home.path(folder), QDir::Files | QDir::Hidden | QDir::System,
                              QDirIterator::Subdirectories);
            while (each.hasNext()) {
                const QString path = each.next();
                if (!path.endsWith(QStringLiteral("FinderSyncExtension.json"))) {
                    files[path.mid(home.path().size() + 1)] = TemporaryHome::read(path);
                }
            }
        }
        return files;
    }
    void link(const QString &place, const QString &target) const
    {
        QDir().mkpath(QFileInfo(home.path(place)).path());
        ASSERT_EQ(::symlink(QFile::encodeName(target).constData(), QFile::encodeName(home.path(place)).constData()), 0);
    }

    TemporaryHome home;
    QString extension = QStringLiteral(EXTENSION);
    PlugInRegistry registry{
        home.path(QStringLiteral("config/quillhaven")),
        {home.path(QStringLiteral("data")), home.path(QStringLiteral("config")), {home.path(QStringLiteral("xdg"))}}};

private:
    QByteArray m_path = qgetenv("PATH");
};

TEST_F(PlugInRegistryTest, NothingIsListedBeforeTheRegistration)
{
    EXPECT_EQ(registry.listing(), QString());
    EXPECT_THAT(registry.elect(true), testing::SizeIs(1));
    EXPECT_THAT(registry.remove(extension), IsEmpty());
    EXPECT_THAT(menuFiles(), IsEmpty());
}

TEST_F(PlugInRegistryTest, ARegisteredExtensionHasItsMenusAndIsEnabled)
{
    EXPECT_THAT(registry.add(extension), IsEmpty());
    EXPECT_EQ(registry.listing(), enabled + allManagers);
    const QStringList expected{
        userActions,
        QStringLiteral("data/caja-python/extensions/quillhaven_menu.py"),
        QStringLiteral("data/file-manager/actions/quillhaven-lock.desktop"),
        QStringLiteral("data/file-manager/actions/quillhaven-protect.desktop"),
        QStringLiteral("data/file-manager/actions/quillhaven-shred.desktop"),
        QStringLiteral("data/file-manager/actions/quillhaven-unlock.desktop"),
        QStringLiteral("data/file-manager/actions/quillhaven.desktop"),
        dolphinFile,
        nautilusFile,
        QStringLiteral("data/nemo-python/extensions/quillhaven_menu.py"),
    };
    EXPECT_EQ(menuFiles().keys(), expected);
    for (const QByteArray &contents : menuFiles()) {
        EXPECT_TRUE(contents.contains("quillhaven-menu") || contents.contains("ItemsList")) << contents.constData();
        EXPECT_FALSE(contents.contains('@')) << contents.constData();
    }
}

TEST_F(PlugInRegistryTest, DolphinsMenuIsExecutable)
{
    EXPECT_THAT(registry.add(extension), IsEmpty());
    EXPECT_TRUE(QFileInfo(home.path(dolphinFile)).isExecutable());
    EXPECT_FALSE(QFileInfo(home.path(nautilusFile)).permission(QFile::ExeOwner));
    QFile(home.path(dolphinFile)).setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    EXPECT_TRUE(registry.listing().startsWith(disabled));
    EXPECT_THAT(registry.elect(true), IsEmpty());
    EXPECT_EQ(registry.listing(), enabled + allManagers);
}

TEST_F(PlugInRegistryTest, TheRemovalTakesExactlyWhatIsOurs)
{
    home.write(QStringLiteral("data/nemo-python/extensions/other.py"));
    home.write(userActions, "<actions>\n" + ownAction + "\n</actions>\n");
    const auto before = menuFiles();
    EXPECT_THAT(registry.add(extension), IsEmpty());
    home.write(QStringLiteral("data/nautilus-python/extensions/__pycache__/quillhaven_menu.cpython-311.pyc"));
    EXPECT_THAT(registry.remove(extension), IsEmpty());
    EXPECT_EQ(registry.listing(), QString());
    EXPECT_EQ(menuFiles().keys(), before.keys());
    EXPECT_TRUE(TemporaryHome::read(home.path(userActions)).contains(ownAction));
    EXPECT_FALSE(TemporaryHome::read(home.path(userActions)).contains("quillhaven"));
    EXPECT_FALSE(QFileInfo::exists(home.path(QStringLiteral("data/nautilus-python/extensions/__pycache__"))));
}

TEST_F(PlugInRegistryTest, AnIgnoredExtensionIsListedAsDisabledAndHasNoMenus)
{
    EXPECT_THAT(registry.add(extension), IsEmpty());
    EXPECT_THAT(registry.elect(false), IsEmpty());
    EXPECT_EQ(registry.listing(), disabled);
    EXPECT_THAT(menuFiles(), IsEmpty());
    EXPECT_THAT(registry.add(extension), IsEmpty());
    EXPECT_EQ(registry.listing(), disabled);
    EXPECT_THAT(menuFiles(), IsEmpty());
    EXPECT_THAT(registry.elect(true), IsEmpty());
    EXPECT_EQ(registry.listing(), enabled + allManagers);
}

TEST_F(PlugInRegistryTest, AMissingOrChangedMenuIsNotEnabled)
{
    EXPECT_THAT(registry.add(extension), IsEmpty());
    QFile::remove(home.path(nautilusFile));
    EXPECT_TRUE(registry.listing().startsWith(disabled));
    EXPECT_THAT(registry.elect(true), IsEmpty());
    home.write(nautilusFile, "# com.tarnwick.quillhaven.FinderSync\nof an earlier version");
    EXPECT_TRUE(registry.listing().startsWith(disabled));
    EXPECT_THAT(registry.elect(true), IsEmpty());
    EXPECT_EQ(registry.listing(), enabled + allManagers);
}

TEST_F(PlugInRegistryTest, OnlyInstalledFileManagersGetMenus)
{
    for (const char *manager : {"nautilus", "thunar", "caja", "dolphin", "pcmanfm-qt"}) {
        QFile::remove(home.path(QStringLiteral("bin/") + QLatin1String(manager)));
    }
    EXPECT_THAT(registry.add(extension), IsEmpty());
    EXPECT_EQ(registry.listing(), enabled + QStringLiteral("Nemo"));
    EXPECT_THAT(menuFiles().keys(), Each(testing::Truly([](const QString &path) {
                    return path.startsWith(QStringLiteral("data/nemo-python/"));
                })));
}

TEST_F(PlugInRegistryTest, WithoutAnyFileManagerTheExtensionIsEnabledAndNamesNone)
{
    QDir(home.path(QStringLiteral("bin"))).removeRecursively();
    EXPECT_THAT(registry.add(extension), IsEmpty());
    EXPECT_EQ(registry.listing(), enabled);
    EXPECT_THAT(menuFiles(), IsEmpty());
}

TEST_F(PlugInRegistryTest, AFileThatIsNotOursIsNeitherReplacedNorRemoved)
{
    home.write(nautilusFile, "import mine\n");
    EXPECT_THAT(
        registry.add(extension),
        ElementsAre(home.path(nautilusFile) + QStringLiteral(" does not belong to Quillhaven and is left as it is.")));
    EXPECT_TRUE(registry.listing().startsWith(disabled));
    EXPECT_TRUE(menuFiles().contains(dolphinFile));
    EXPECT_THAT(registry.remove(extension), IsEmpty());
    EXPECT_EQ(TemporaryHome::read(home.path(nautilusFile)), "import mine\n");
    EXPECT_EQ(menuFiles().keys(), QStringList{nautilusFile});
}

TEST_F(PlugInRegistryTest, ALinkIsNotFollowed)
{
    const QString target = home.write(QStringLiteral("target"), "com.tarnwick.quillhaven.FinderSync");
    link(nautilusFile, target);
    link(userActions, home.write(QStringLiteral("actions"), QByteArrayLiteral("<actions>\n</actions>\n")));
    EXPECT_THAT(registry.add(extension), testing::SizeIs(2));
    EXPECT_THAT(registry.remove(extension), IsEmpty());
    EXPECT_EQ(TemporaryHome::read(target), "com.tarnwick.quillhaven.FinderSync");
    EXPECT_EQ(TemporaryHome::read(home.path(QStringLiteral("actions"))), QByteArrayLiteral("<actions>\n</actions>\n"));
    EXPECT_TRUE(QFileInfo(home.path(nautilusFile)).isSymLink());
    EXPECT_TRUE(QFileInfo(home.path(userActions)).isSymLink());
}

TEST_F(PlugInRegistryTest, ThunarsActionsStartFromThoseOfTheSystem)
{
    EXPECT_THAT(registry.add(extension), IsEmpty());
    EXPECT_TRUE(TemporaryHome::read(home.path(userActions)).contains("<name>Terminal</name>"));
    EXPECT_THAT(registry.remove(extension), IsEmpty());
    EXPECT_FALSE(QFileInfo::exists(home.path(userActions))) << "it was not the user's";
}

TEST_F(PlugInRegistryTest, ThunarsActionsOfTheUserAreKept)
{
    home.write(userActions, "<actions>\n" + ownAction + "\n</actions>\n");
    QFile(home.path(userActions)).setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    EXPECT_THAT(registry.add(extension), IsEmpty());
    const QByteArray merged = TemporaryHome::read(home.path(userActions));
    EXPECT_TRUE(merged.contains(ownAction));
    EXPECT_FALSE(merged.contains("Terminal"));
    EXPECT_EQ(merged.count("<unique-id>com.tarnwick.quillhaven."), 4);
    EXPECT_FALSE(QFileInfo(home.path(userActions)).permission(QFile::ReadOther)) << "the mode is kept";
}

TEST_F(PlugInRegistryTest, ThunarsDamagedActionsAreLeftAsTheyAre)
{
    home.write(userActions, "<actions><action>");
    EXPECT_THAT(registry.add(extension),
                ElementsAre(home.path(userActions) +
                            QStringLiteral(" is damaged or not a regular file, so it was left as it is.")));
    EXPECT_TRUE(registry.listing().startsWith(disabled));
    EXPECT_THAT(registry.remove(extension), IsEmpty());
    EXPECT_EQ(TemporaryHome::read(home.path(userActions)), "<actions><action>");
}

TEST_F(PlugInRegistryTest, ThunarMayRewriteItsFile)
{
    EXPECT_THAT(registry.add(extension), IsEmpty());
    QByteArray rewritten = TemporaryHome::read(home.path(userActions));
    rewritten.replace("<icon>security-high</icon>", "<icon></icon>").replace("\t<", "    <");
    home.write(userActions, rewritten);
    EXPECT_EQ(registry.listing(), enabled + allManagers);
    rewritten.replace("quillhaven-menu", "another-tool");
    home.write(userActions, rewritten);
    EXPECT_TRUE(registry.listing().startsWith(disabled));
}

TEST_F(PlugInRegistryTest, AnotherPlaceOfTheExtensionIsWrittenIntoEveryMenu)
{
    const QString moved = home.path(QStringLiteral("mo'ved \"50%\" $x"));
    QDir().mkpath(moved + QStringLiteral("/menus"));
    for (const QString &name : QDir(extension + QStringLiteral("/menus")).entryList(QDir::Files)) {
        ASSERT_TRUE(
            QFile::copy(extension + QStringLiteral("/menus/") + name, moved + QStringLiteral("/menus/") + name));
    }
    EXPECT_THAT(registry.add(extension), IsEmpty());
    EXPECT_THAT(registry.add(moved), IsEmpty());
    EXPECT_EQ(registry.listing(), enabled + allManagers);
    EXPECT_TRUE(TemporaryHome::read(home.path(dolphinFile))
                    .contains("mo'ved \\\\\"50%%\\\\\" \\\\$x/quillhaven-menu\" lock %F"));
    EXPECT_TRUE(TemporaryHome::read(home.path(nautilusFile)).contains("mo\\x27ved\\x20\\x2250\\x25\\x22\\x20\\x24x"));
    QDir(moved).removeRecursively();
    EXPECT_TRUE(registry.listing().startsWith(disabled));
}

TEST_F(PlugInRegistryTest, OnlyTheRegisteredExtensionIsRemoved)
{
    EXPECT_THAT(registry.add(extension), IsEmpty());
    const auto before = menuFiles();
    EXPECT_THAT(registry.remove(home.path()),
                ElementsAre(QStringLiteral("The extension at %1 is not registered.").arg(home.path())));
    EXPECT_EQ(registry.listing(), enabled + allManagers);
    EXPECT_EQ(menuFiles(), before);
    link(QStringLiteral("link"), extension);
    EXPECT_THAT(registry.remove(home.path(QStringLiteral("link"))), IsEmpty()) << "a link to it names it too";
    EXPECT_EQ(registry.listing(), QString());
    EXPECT_THAT(menuFiles(), IsEmpty());
}

TEST_F(PlugInRegistryTest, AnExtensionThatIsNoLongerThereIsRemoved)
{
    const QString moved = home.path(QStringLiteral("moved"));
    QDir().mkpath(moved);
    (void)registry.add(moved); // without any menus in it
    ASSERT_NE(registry.listing(), QString());
    ASSERT_TRUE(QDir().rmdir(moved));
    EXPECT_THAT(registry.remove(moved + QLatin1Char('/')), IsEmpty());
    EXPECT_EQ(registry.listing(), QString());
}

TEST_F(PlugInRegistryTest, AMissingExtensionIsNotRegistered)
{
    EXPECT_THAT(registry.add(home.path(QStringLiteral("nowhere"))), testing::SizeIs(1));
    EXPECT_EQ(registry.listing(), QString());
}

TEST_F(PlugInRegistryTest, ADamagedRegistrationIsNone)
{
    home.write(QStringLiteral("config/quillhaven/FinderSyncExtension.json"), "{");
    EXPECT_EQ(registry.listing(), QString());
    EXPECT_THAT(registry.add(extension), IsEmpty());
    EXPECT_EQ(registry.listing(), enabled + allManagers);
}

} // namespace

} // namespace quillhaven::test
