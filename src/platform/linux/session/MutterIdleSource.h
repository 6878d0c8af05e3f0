// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/linux/session/BusNameOwner.h"
#include "platform/linux/session/IdleBasedSource.h"

#include <QPointer>

#include <vector>

namespace quillhaven {

/// The idle monitor of Mutter, GNOME's compositor, over the session bus.
class MutterIdleSource : public IdleBasedSource
{
    Q_OBJECT

public:
    /// The monitor's present owner on the bus. Null when there is none, or no bus.
    [[nodiscard]] static QCoro::Task<std::unique_ptr<BusNameOwner>> find(std::shared_ptr<BusConnection> bus);

    MutterIdleSource(std::unique_ptr<BusNameOwner> monitor, Clock &clock, std::chrono::milliseconds period);
    ~MutterIdleSource() override;

    [[nodiscard]] QString sentence() const override;

private Q_SLOTS:
    void onWatchFired(uint id);

private:
    /// Adds a watch, and keeps its number in `watch`.
    [[nodiscard]] static QCoro::Task<> add(QPointer<MutterIdleSource> self, QString method, QVariantList arguments,
                                           uint MutterIdleSource::*watch);
    void addLater(const QString &method, const QVariantList &arguments, uint MutterIdleSource::*watch);

    std::unique_ptr<BusNameOwner> m_monitor;
    uint m_idleWatch = 0;   ///< fires whenever the user becomes idle
    uint m_activeWatch = 0; ///< fires once, when the user returns
    bool m_isAdding = false;
    std::vector<uint> m_early; ///< watches that fired before the number of the added one was known here
};

} // namespace quillhaven
