// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/widgets/QtUrlOpener.h"
#include "support/InheritedSignals.h"
#include "support/RunTask.h"
#include "support/TemporaryHome.h"

#include <QFile>
#include <QUrl>

#include <gtest/gtest.h>

#include <unistd.h>

namespace quillhaven::test {

namespace {

const QByteArray noSignals = "0000000000000000";
constexpr quint64 terminationSignals = 1U << (SIGTERM - 1) | 1U << (SIGINT - 1) | 1U << (SIGHUP - 1);
const QUrl startupPage(QStringLiteral("x-apple.systempreferences:com.apple.preference.security"));

/// Programs that note their arguments and the state of their process, at the front of the search path.
class UrlOpenerTest : public testing::Test
{
protected:
    UrlOpenerTest()
    {
        qputenv("PATH", QFile::encodeName(home.path(QStringLiteral("bin"))) + ':' + m_path);
        qputenv("XDG_CURRENT_DESKTOP", "GNOME");
    }
    ~UrlOpenerTest() override
    {
        qputenv("PATH", m_path);
        m_desktop.isNull() ? qunsetenv("XDG_CURRENT_DESKTOP") : qputenv("XDG_CURRENT_DESKTOP", m_desktop);
    }

    void install(const QString &program) const
    {
        const QByteArray note = QFile::encodeName(home.path(QStringLiteral("note")));
        // With the shell's own commands only: while it starts another one, it blocks all signals.
        QFile file(
            home.write(QStringLiteral("bin/") + program,
                       "#!/bin/sh\n{ echo \"Arguments:\t$*\"\nwhile read -r line; do echo \"$line\"; done\n} >'" +
                           note + ".new' </proc/$$/status\nmv '" + note + ".new' '" + note + "'\n"));
        file.setPermissions(file.permissions() | QFile::ExeOwner);
    }
    /// What the started program noted under this name.
    [[nodiscard]] QByteArray noted(const QByteArray &name) const
    {
        const QString note = home.path(QStringLiteral("note"));
        EXPECT_TRUE(spinUntil([&note] { return TemporaryHome::exists(note); }));
        for (const QByteArray &line : TemporaryHome::read(note).split('\n')) {
            if (line.startsWith(name + ":\t")) {
                return line.mid(name.size() + 2);
            }
        }
        return {};
    }
    void expectDefaultSignals() const
    {
        EXPECT_EQ(noted("SigBlk"), noSignals);
        EXPECT_EQ(noted("SigIgn").toULongLong(nullptr, 16) & terminationSignals, 0U);
        EXPECT_NE(noted("PPid"), QByteArray::number(::getpid())) << "nobody would wait for its end";
    }

    TemporaryHome home;
    QtUrlOpener opener;
    const InheritedSignal terminate{SIGTERM};
    const InheritedSignal interrupt{SIGINT};
    const InheritedSignal hangUp{SIGHUP};

private:
    QByteArray m_path = qgetenv("PATH");
    QByteArray m_desktop = qgetenv("XDG_CURRENT_DESKTOP");
};

TEST_F(UrlOpenerTest, TheSettingsProgramCanBeEndedBySignals)
{
    install(QStringLiteral("gnome-control-center"));
    EXPECT_TRUE(opener.open(startupPage));
    EXPECT_EQ(noted("Arguments"), "applications");
    expectDefaultSignals();
}

TEST_F(UrlOpenerTest, TheProgramForAnAddressCanBeEndedBySignals)
{
    install(QStringLiteral("xdg-open"));
    EXPECT_TRUE(opener.open(QUrl(QStringLiteral("https://example.org/a b?c=d"))));
    EXPECT_EQ(noted("Arguments"), "https://example.org/a%20b?c=d");
    expectDefaultSignals();
}

TEST_F(UrlOpenerTest, AnAddressWithoutAProgramIsNotOpened)
{
    qputenv("PATH", QFile::encodeName(home.path(QStringLiteral("bin"))));
    EXPECT_FALSE(opener.open(startupPage));
    EXPECT_FALSE(opener.open(QUrl(QStringLiteral("https://example.org"))));
}

} // namespace

} // namespace quillhaven::test
