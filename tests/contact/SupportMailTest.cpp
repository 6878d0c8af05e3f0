// SPDX-License-Identifier: GPL-3.0-or-later

#include "contact/SupportManager.h"
#include "platform/Platform.h"
#include "platform/widgets/QtUrlOpener.h"
#include "support/LogCapture.h"
#include "support/PrintText.h"
#include "support/RunTask.h"
#include "support/TestPlatform.h"

#include <QFile>

#include <gtest/gtest.h>

#include <map>

namespace quillhaven::test {

namespace {

/// A user's desktop with one program for mails, or with none.
class SupportMailTest : public ::testing::TestWithParam<const char *>
{
protected:
    SupportMailTest()
    {
        services.opener.next = &opener;
        set("HOME", services.home.path());
        set("XDG_DATA_HOME", services.home.path(QStringLiteral("data")));
        set("XDG_DATA_DIRS", services.home.path(QStringLiteral("shared")));
        set("XDG_CONFIG_HOME", services.home.path(QStringLiteral("config")));
        set("XDG_CONFIG_DIRS", services.home.path(QStringLiteral("shared")));
        // What opens the address may run for longer than a test, and would create this folder in a home that is
        // removed.
        set("XDG_CACHE_HOME", QStringLiteral("/dev/null/cache"));
        set("XDG_CURRENT_DESKTOP", QString::fromLatin1(GetParam()));
        set("DESKTOP_SESSION", {});
        set("BROWSER", QStringLiteral("false")); // nothing but the program for mails may get the address
        set("DISPLAY", QStringLiteral(":none")); // only its name counts: no window is opened
    }
    ~SupportMailTest() override
    {
        for (const auto &[name, value] : m_before) {
            value.isNull() ? qunsetenv(name.constData()) : qputenv(name.constData(), value);
        }
    }

    /// Installs a program that notes the address which it is started with.
    void installMailProgram()
    {
        const QString program =
            services.home.write(QStringLiteral("bin/mailer"),
                                "#!/bin/sh\nprintf '%s\\n' \"$@\" >'" + QFile::encodeName(m_note) + ".new'\nmv '" +
                                    QFile::encodeName(m_note) + ".new' '" + QFile::encodeName(m_note) + "'\n");
        QFile(program).setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        services.home.write(QStringLiteral("data/applications/mailer.desktop"),
                            "[Desktop Entry]\nType=Application\nName=Mailer\nExec=" + QFile::encodeName(program) +
                                " %u\nMimeType=x-scheme-handler/mailto;\n");
        services.home.write(QStringLiteral("config/mimeapps.list"),
                            "[Default Applications]\nx-scheme-handler/mailto=mailer.desktop\n");
    }
    [[nodiscard]] SupportManager manager()
    {
        return SupportManager(services.platform(), QStringLiteral("help@example.org"));
    }
    /// The arguments of the mail program, a line each.
    [[nodiscard]] QByteArray noted() const
    {
        EXPECT_TRUE(spinUntil([this] { return TemporaryHome::exists(m_note); }));
        return TemporaryHome::read(m_note);
    }

    TestPlatform services;
    QtUrlOpener opener;

private:
    void set(const char *name, const QString &value)
    {
        m_before.emplace(name, qEnvironmentVariableIsSet(name) ? qgetenv(name) : QByteArray());
        qputenv(name, QFile::encodeName(value));
    }

    QString m_note = services.home.path(QStringLiteral("note"));
    std::map<QByteArray, QByteArray> m_before;
};

TEST_P(SupportMailTest, TheUsersMailProgramGetsTheAddressAsItIs)
{
    installMailProgram();
    services.machine.model = QStringLiteral(u"A & B \"50%\" #1 'Größe'\n$(id) `id` \\ ; |");
    manager().composeEmail(true);
    EXPECT_EQ(noted(), "mailto:help@example.org?subject=Quillhaven%20Support%20Request&body="
                       "%0A---%20System%20Information%20---%0AApp%20Version:%201.2.0%20(Build%2034)%0A"
                       "Bundle%20ID:%20com.example.program%0AmacOS%20Version:%20Example%20OS%204.2%0A"
                       "Mac%20Model:%20A%20%26%20B%20%2250%25%22%20%231%20'Gr%C3%B6%C3%9Fe'%0A$(id)%20%60id%60%20"
                       "%5C%20;%20%7C%0A%0A---%20Please%20describe%20your%20issue%20below%20---%0A\n");
}

TEST_P(SupportMailTest, WithoutAMailProgramNothingIsReported)
{
    LogCapture log;
    EXPECT_NO_THROW(manager().composeEmail(true));
    spinOnce();
    EXPECT_EQ(log.lines(), QStringList());
}

// The desktops whose way to open an address is another program each: none that is known, and GIO.
INSTANTIATE_TEST_SUITE_P(Desktops, SupportMailTest, ::testing::Values("X-Generic", "GNOME"));

} // namespace

} // namespace quillhaven::test
