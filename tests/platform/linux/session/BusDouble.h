// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/linux/session/BusConnection.h"
#include "support/RunTask.h"

#include <QProcess>

#include <gtest/gtest.h>

#include <csignal>

namespace quillhaven::test {

/// A service that a machine here does not have, played by python3-dbusmock in a process of its own.
class BusDouble
{
public:
    /// One with nothing but signals.
    BusDouble(MessageBus bus, const QString &name, const QString &path) : BusDouble(bus, {name, path, name}, name, path)
    {
    }
    static std::unique_ptr<BusDouble> logind(const QStringList &arguments = {QStringLiteral("--template"),
                                                                             QStringLiteral("logind")})
    {
        return std::unique_ptr<BusDouble>(new BusDouble(MessageBus::System, arguments,
                                                        QStringLiteral("org.freedesktop.login1"),
                                                        QStringLiteral("/org/freedesktop/login1")));
    }
    ~BusDouble()
    {
        send(SIGCONT);
        m_process.kill();
        m_process.waitForFinished();
        // The next double waits for the name, and must not see the one of this process.
        EXPECT_TRUE(spinUntil([this] { return !hasName(); }));
    }
    BusDouble(const BusDouble &) = delete;
    BusDouble &operator=(const BusDouble &) = delete;

    void send(int signal) const { ::kill(static_cast<pid_t>(m_process.processId()), signal); }

    /// Calls a method of one of its objects, its main one by default, with arguments as gdbus reads them. Returns what
    /// it printed.
    QString call(const QString &method, const QStringList &arguments = {}, const QString &path = {}) const
    {
        return gdbus(QStringList{QStringLiteral("call"), m_busOption, QStringLiteral("-d"), m_name,
                                 QStringLiteral("-o"), path.isEmpty() ? m_path : path, QStringLiteral("-m"), method} +
                     arguments);
    }
    /// `arguments` such as "[<true>]".
    void emitSignal(const QString &interface, const QString &signal, const QString &signature,
                    const QString &arguments) const
    {
        call(QStringLiteral("org.freedesktop.DBus.Mock.EmitSignal"), {interface, signal, signature, arguments});
    }

private:
    BusDouble(MessageBus bus, const QStringList &arguments, const QString &name, const QString &path)
        : m_busOption(bus == MessageBus::System ? QStringLiteral("--system") : QStringLiteral("--session")),
          m_name(name),
          m_path(path)
    {
        m_process.setStandardOutputFile(QProcess::nullDevice());
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(QStringLiteral("/usr/bin/python3"),
                        QStringList{QStringLiteral("-m"), QStringLiteral("dbusmock"), m_busOption} + arguments);
        gdbus({QStringLiteral("wait"), m_busOption, QStringLiteral("--timeout"), QStringLiteral("30"), m_name});
    }

    [[nodiscard]] bool hasName() const
    {
        return gdbus({QStringLiteral("call"), m_busOption, QStringLiteral("-d"), QStringLiteral("org.freedesktop.DBus"),
                      QStringLiteral("-o"), QStringLiteral("/"), QStringLiteral("-m"),
                      QStringLiteral("org.freedesktop.DBus.NameHasOwner"), m_name})
            .contains(QStringLiteral("true"));
    }
    static QString gdbus(const QStringList &arguments)
    {
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(QStringLiteral("gdbus"), arguments);
        EXPECT_TRUE(process.waitForFinished());
        const QString output = QString::fromUtf8(process.readAll());
        EXPECT_EQ(process.exitCode(), 0) << qUtf8Printable(output);
        return output;
    }

    QString m_busOption;
    QString m_name;
    QString m_path;
    QProcess m_process;
};

} // namespace quillhaven::test
