// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "presentation/dashboard/DashboardContext.h"

#include <QObject>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

namespace quillhaven {

class BulkActions;
class ProtectActions;

/// What a drop on the window does. Main thread only.
class DropActions : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Part of the dashboard")

public:
    /// What the context refers to and the other actions must outlive this object.
    DropActions(const DashboardContext &context, ProtectActions &protecting, BulkActions &bulk,
                QObject *parent = nullptr);

    /// Whether one of them is a local file or folder, whatever its state.
    Q_INVOKABLE bool canDrop(const QList<QUrl> &urls) const;
    /// A single file or folder is protected as if it were chosen in the panel; of several those that can be protected
    /// are protected together. What is not a local file is ignored.
    Q_INVOKABLE void onDrop(const QList<QUrl> &urls);

private:
    DashboardContext m_context;
    ProtectActions &m_protecting;
    BulkActions &m_bulk;
};

} // namespace quillhaven
