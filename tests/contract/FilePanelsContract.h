// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/FileError.h"
#include "platform/FilePanels.h"
#include "support/PrintText.h"
#include "support/RunTask.h"
#include "support/TemporaryHome.h"

#include <QFile>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace quillhaven::test {

/// The tests that all panels must pass. Instantiate it with a type that has a `FilePanels &panels()` and functions that
/// say what the user does in the next panel: `chooses(names)`, items of its folder; `confirms()` the known places;
/// `choosesInstead(path)` of a known place; `unticks(paths)` and confirms the others; `declines()`.
template <typename Fixture>
class FilePanelsContract : public ::testing::Test
{
protected:
    [[nodiscard]] OpenPanelRequest request() const
    {
        return {.canChooseFiles = true,
                .canChooseDirectories = true,
                .message = QStringLiteral("Please choose"),
                .prompt = QStringLiteral("Choose"),
                .directory = home.path(QStringLiteral("work"))};
    }
    [[nodiscard]] QString inWork(const QString &name) const { return home.path(QStringLiteral("work/") + name); }
    [[nodiscard]] std::optional<QString> open() { return runTask(user.panels().open(request())); }
    [[nodiscard]] std::optional<QStringList> openSeveral() { return runTask(user.panels().openSeveral(request())); }
    [[nodiscard]] std::optional<QString> confirm(const QString &path)
    {
        return runTask(user.panels().confirmAccess(
            {.path = path, .message = QStringLiteral("Please grant access"), .prompt = QStringLiteral("Grant")}));
    }
    [[nodiscard]] std::optional<QStringList> grant(const QStringList &paths)
    {
        return runTask(user.panels().grantAccess(
            {.paths = paths, .message = QStringLiteral("Please grant access"), .prompt = QStringLiteral("Grant")}));
    }

    const TemporaryHome home;
    const QString a = home.write(QStringLiteral("work/a.txt"));
    const QString b = home.write(QStringLiteral("work/b.txt"));
    const QString c = home.write(QStringLiteral("work/c.txt"));
    const QString inner = home.write(QStringLiteral("work/folder/inner.txt"));
    Fixture user;
};

TYPED_TEST_SUITE_P(FilePanelsContract);

TYPED_TEST_P(FilePanelsContract, WhatIsChosenIsReturnedByItsPath)
{
    this->user.chooses({QStringLiteral("a.txt")});
    EXPECT_EQ(this->open(), this->a);
    this->user.chooses({QStringLiteral("folder")});
    EXPECT_EQ(this->open(), this->inWork(QStringLiteral("folder")));
    this->user.chooses({QStringLiteral("b.txt")});
    EXPECT_EQ(this->user.panels().runModal(this->request()), this->b);
}

TYPED_TEST_P(FilePanelsContract, AKnownPlaceIsConfirmedByItsExactPathWhateverExistsThere)
{
    ASSERT_TRUE(QFile::link(this->a, this->inWork(QStringLiteral("link"))));
    for (const char *name : {"a.txt", "folder", "link", "gone.txt", "no folder/a.txt"}) {
        this->user.confirms();
        EXPECT_EQ(this->confirm(this->inWork(QString::fromLatin1(name))), this->inWork(QString::fromLatin1(name)));
    }
}

TYPED_TEST_P(FilePanelsContract, AnotherItemCanBeChosenInsteadOfAKnownPlace)
{
    ASSERT_TRUE(QFile::link(this->b, this->inWork(QStringLiteral("link"))));
    this->user.choosesInstead(this->c);
    EXPECT_EQ(this->confirm(this->a), this->c);
    this->user.choosesInstead(this->inWork(QStringLiteral("link")));
    EXPECT_EQ(this->confirm(this->a), this->b) << "resolved like a choice";
}

TYPED_TEST_P(FilePanelsContract, ALinkIsResolvedToWhatItPointsTo)
{
    ASSERT_TRUE(QFile::link(this->a, this->inWork(QStringLiteral("link"))));
    this->user.chooses({QStringLiteral("link")});
    EXPECT_EQ(this->open(), this->a);
}

TYPED_TEST_P(FilePanelsContract, WhatIsNeitherAFileNorAFolderIsRefused)
{
    ASSERT_EQ(::mkfifo(QFile::encodeName(this->inWork(QStringLiteral("pipe"))).constData(), 0600), 0);
    this->user.chooses({QStringLiteral("pipe")});
    try {
        (void)this->open();
        ADD_FAILURE() << "nothing was thrown";
    } catch (const FileError &error) {
        EXPECT_EQ(error.kind(), FileError::Kind::NotAFileOrFolder);
    }
}

TYPED_TEST_P(FilePanelsContract, SeveralAreReturnedInTheOrderOfTheList)
{
    this->user.chooses({QStringLiteral("c.txt"), QStringLiteral("a.txt")});
    EXPECT_EQ(this->openSeveral(), (QStringList{this->a, this->c}));
    this->user.chooses({QStringLiteral("b.txt")});
    EXPECT_EQ(this->openSeveral(), QStringList{this->b});
}

TYPED_TEST_P(FilePanelsContract, AccessIsGrantedToWhatStaysTickedInTheOrderOfTheRequest)
{
    const QStringList asked{this->c, this->a, this->b};
    this->user.confirms();
    EXPECT_EQ(this->grant(asked), asked);
    this->user.unticks({this->a});
    EXPECT_EQ(this->grant(asked), (QStringList{this->c, this->b}));
    this->user.unticks(asked);
    EXPECT_EQ(this->grant(asked), QStringList()) << "confirmed, with nothing";
}

TYPED_TEST_P(FilePanelsContract, ADeclinedPanelReturnsNothing)
{
    this->user.declines();
    EXPECT_EQ(this->open(), std::nullopt);
    this->user.declines();
    EXPECT_EQ(this->openSeveral(), std::nullopt);
    this->user.declines();
    EXPECT_EQ(this->confirm(this->a), std::nullopt);
    this->user.declines();
    EXPECT_EQ(this->grant({this->a}), std::nullopt);
    this->user.declines();
    EXPECT_EQ(this->user.panels().runModal(this->request()), std::nullopt);
}

REGISTER_TYPED_TEST_SUITE_P(FilePanelsContract, WhatIsChosenIsReturnedByItsPath,
                            AKnownPlaceIsConfirmedByItsExactPathWhateverExistsThere,
                            AnotherItemCanBeChosenInsteadOfAKnownPlace, ALinkIsResolvedToWhatItPointsTo,
                            WhatIsNeitherAFileNorAFolderIsRefused, SeveralAreReturnedInTheOrderOfTheList,
                            AccessIsGrantedToWhatStaysTickedInTheOrderOfTheRequest, ADeclinedPanelReturnsNothing);

} // namespace quillhaven::test
