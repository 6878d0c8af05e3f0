// SPDX-License-Identifier: GPL-3.0-or-later

#include "AutostartFixture.h"

#include "platform/FileError.h"
#include "platform/WatchedSources.h"
#include "platform/linux/login/AutostartLoginItem.h"
#include "support/RunTask.h"

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

class AutostartLoginItems : public AutostartTest
{
protected:
    LoginItem::Status status() { return runTask(item().status()); }
    AutostartLoginItem &item()
    {
        if (!m_item) {
            m_item.emplace(folders, watched);
        }
        return *m_item;
    }
    [[nodiscard]] WatchedSources::State told() const
    {
        return watched.state(WatchedSources::Source::LaunchAtLogin).value();
    }

    WatchedSources watched;

private:
    std::optional<AutostartLoginItem> m_item;
};

} // namespace

TEST_F(AutostartLoginItems, IsEnabledAfterARegistrationAndNotAfterItsEnd)
{
    EXPECT_EQ(status(), LoginItem::Status::NotRegistered);
    EXPECT_EQ(told(), (WatchedSources::State{true, QStringLiteral("Quillhaven does not start when you log in.")}));
    runTask(item().registerItem({}));
    EXPECT_EQ(told().sentence,
              QStringLiteral("Quillhaven starts when you log in, through \"%1\".").arg(folders.userEntry()));
    EXPECT_EQ(status(), LoginItem::Status::Enabled);
    runTask(item().unregisterItem());
    EXPECT_EQ(status(), LoginItem::Status::NotRegistered);
}

TEST_F(AutostartLoginItems, OperationsThatOverlapRunInTheOrderOfTheirCalls)
{
    const RunningTask<void> first(item().registerItem({QStringLiteral("--one")}));
    const RunningTask<void> second(item().unregisterItem());
    const RunningTask<void> third(item().registerItem({QStringLiteral("--three")}));
    first.wait();
    second.wait();
    third.wait();
    EXPECT_TRUE(userEntry().contains(" --three\n"));
}

TEST_F(AutostartLoginItems, WhatIsSwitchedOffAsksForApproval)
{
    static_cast<void>(writeEntry(ours() + "X-GNOME-Autostart-enabled=false\n"));
    EXPECT_EQ(status(), LoginItem::Status::RequiresApproval);
    EXPECT_TRUE(told().isAvailable);
    static_cast<void>(writeEntry(ours() + "OnlyShowIn=KDE;\n"));
    EXPECT_EQ(status(), LoginItem::Status::RequiresApproval);
}

TEST_F(AutostartLoginItems, EntryOfAnotherProgramIsReportedAsInTheWay)
{
    static_cast<void>(writeEntry("Exec=" + makeProgram(QStringLiteral("bin/another")).toUtf8() + "\n"));
    EXPECT_EQ(status(), LoginItem::Status::NotRegistered);
    EXPECT_FALSE(told().isAvailable);
    EXPECT_THROW(runTask(item().registerItem({})), FileError);
}

TEST_F(AutostartLoginItems, EntryThatCannotBeReadIsNotFound)
{
    home.write(QStringLiteral(".config/autostart/com.tarnwick.quillhaven.desktop"), "nothing");
    EXPECT_EQ(status(), LoginItem::Status::NotFound);
    EXPECT_FALSE(told().isAvailable);
}
