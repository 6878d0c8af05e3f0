// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/StatusBar.h"
#include "platform/linux/session/StatusNotifierHost.h"

#include <QIcon>
#include <QList>

namespace quillhaven {

class QtStatusItem;
class WatchedSources;

/// The images that a status item shows in its sizes: the shape of the program's image of this name, light with a dark
/// edge, since a panel does not say whether it is light or dark. Null if there is no such image.
[[nodiscard]] QIcon templateIcon(const QString &name);

/// Status notifier items. The toolkit looks once for a host and then remembers for good that there was none, so an item
/// is given to it only while there is one.
class QtStatusBar : public StatusBar
{
public:
    /// Reports to `watched` whether the items are shown. The reference must outlive this object.
    explicit QtStatusBar(WatchedSources &watched, QObject *parent = nullptr);
    ~QtStatusBar() override;

    [[nodiscard]] std::unique_ptr<StatusItem> makeStatusItem() override;
    [[nodiscard]] bool isShown() const override { return m_host.isPresent(); }

private:
    friend class QtStatusItem;

    void hostChanged();

    WatchedSources &m_watched;
    StatusNotifierHost m_host;
    QList<QtStatusItem *> m_items;
};

} // namespace quillhaven
