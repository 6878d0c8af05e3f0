// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "support/RunTask.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSslCertificate>
#include <QTemporaryDir>
#include <QUrl>

#include <gtest/gtest.h>

namespace quillhaven::test {

/// A running https_server.py, whose certificates are in a temporary folder. The script describes its paths and what it
/// prints. Link Qt6::Network, and define HTTPS_SERVER as the path of the script.
class HttpsServer
{
public:
    HttpsServer()
    {
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(QStringLiteral(HTTPS_SERVER), {m_folder.path()});
        EXPECT_TRUE(spinUntil([this] { return m_process.canReadLine(); })) << "the server did not start";
        m_ports = QJsonDocument::fromJson(m_process.readLine()).object();
    }
    ~HttpsServer()
    {
        m_process.closeWriteChannel(); // which ends it
        EXPECT_TRUE(m_process.waitForFinished(patience));
    }
    HttpsServer(const HttpsServer &) = delete;
    HttpsServer &operator=(const HttpsServer &) = delete;

    /// The authority that a client must trust.
    [[nodiscard]] QList<QSslCertificate> authorities() const
    {
        return QSslCertificate::fromPath(m_folder.filePath(QStringLiteral("authority.pem")));
    }
    [[nodiscard]] QUrl url(const QString &path, const QString &port = QStringLiteral("trusted")) const
    {
        const QString scheme = port == QStringLiteral("plain") ? QStringLiteral("http") : QStringLiteral("https");
        return QUrl(QStringLiteral("%1://localhost:%2%3").arg(scheme).arg(m_ports.value(port).toInt()).arg(path));
    }

    /// What the server has printed, but for the ports.
    [[nodiscard]] QStringList lines()
    {
        while (m_process.canReadLine()) {
            m_lines.append(QString::fromUtf8(m_process.readLine()).trimmed());
        }
        return m_lines;
    }
    [[nodiscard]] bool eventuallyPrints(const char *line)
    {
        return spinUntil([&] { return lines().contains(QString::fromUtf8(line)); });
    }
    void forgetLines()
    {
        static_cast<void>(lines());
        m_lines.clear();
    }

private:
    QTemporaryDir m_folder;
    QProcess m_process;
    QJsonObject m_ports;
    QStringList m_lines;
};

} // namespace quillhaven::test
