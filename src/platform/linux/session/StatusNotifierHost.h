// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/linux/session/BusConnection.h"

#include <QObject>
#include <QPointer>
#include <QThreadPool>

#include <memory>

QT_BEGIN_NAMESPACE
class QDBusServiceWatcher;
QT_END_NAMESPACE

namespace quillhaven {

/// Whether the desktop shows status notifier items at present: a panel may start after the program, end and come back.
/// Main thread only.
class StatusNotifierHost : public QObject
{
    Q_OBJECT

public:
    /// Starts to look for a host.
    explicit StatusNotifierHost(QObject *parent = nullptr);
    ~StatusNotifierHost() override;

    /// False until a host has been found.
    [[nodiscard]] bool isPresent() const { return m_isPresent; }
    /// Whether the first look has ended.
    [[nodiscard]] bool isKnown() const { return m_isKnown; }

Q_SIGNALS:
    /// The first look has ended, or a host has come or gone.
    void changed();

private:
    [[nodiscard]] static QCoro::Task<> connectToBus(QPointer<StatusNotifierHost> self);
    [[nodiscard]] static QCoro::Task<> askWatcher(QPointer<StatusNotifierHost> self, quint64 look);
    /// Asks again; an answer to an earlier question no longer counts.
    Q_SLOT void look();
    void watch();
    void setPresent(bool value);

    QThreadPool m_connecting;
    std::shared_ptr<BusConnection> m_bus;
    std::unique_ptr<QDBusServiceWatcher> m_service; ///< destroyed before the connection that it watches
    quint64 m_looks = 0;
    bool m_isPresent = false;
    bool m_isKnown = false;
};

} // namespace quillhaven
