// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/linux/login/AutostartEntry.h"
#include "support/TemporaryHome.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

namespace quillhaven::test {

/// A home with a program, and a folder of the system's entries.
class AutostartTest : public ::testing::Test
{
protected:
    using Kind = AutostartState::Kind;

    /// Makes a program below the home and returns its path.
    QString makeProgram(const QString &relative) const
    {
        QString path = home.write(relative, "#!/bin/sh\n");
        EXPECT_TRUE(QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        return path;
    }
    [[nodiscard]] QString writeEntry(const QByteArray &keys) const
    {
        return home.write(QStringLiteral(".config/autostart/com.tarnwick.quillhaven.desktop"),
                          "[Desktop Entry]\n" + keys);
    }
    [[nodiscard]] QString writeSystemEntry(const QByteArray &keys) const
    {
        return home.write(QStringLiteral("xdg/autostart/com.tarnwick.quillhaven.desktop"), "[Desktop Entry]\n" + keys);
    }
    /// The keys of an entry that starts the program.
    [[nodiscard]] QByteArray ours() const
    {
        return "Type=Application\nName=Q\nExec=" + folders.executable.toUtf8() + "\n";
    }
    [[nodiscard]] QByteArray userEntry() const { return TemporaryHome::read(folders.userEntry()); }
    [[nodiscard]] Kind kind() const { return autostartState(folders).kind; }
    [[nodiscard]] QStringList namesInFolder() const
    {
        return QDir(folders.user).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }

    TemporaryHome home;
    EntryFolders folders{.user = home.path(QStringLiteral(".config/autostart")),
                         .system = {home.path(QStringLiteral("xdg/autostart"))},
                         .fileName = QStringLiteral("com.tarnwick.quillhaven.desktop"),
                         .executable = makeProgram(QStringLiteral("bin/quillhaven")),
                         .desktops = {QStringLiteral("XFCE")}};
};

} // namespace quillhaven::test
