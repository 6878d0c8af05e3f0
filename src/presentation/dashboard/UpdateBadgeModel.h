// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace quillhaven {

class OperationErrors;
class UpdateManager;
class UrlOpener;

/// The badge that offers a newer version. Main thread only.
class UpdateBadgeModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Created in C++")
    Q_PROPERTY(bool hasUpdateAvailable READ hasUpdateAvailable NOTIFY changed)

public:
    /// The references must outlive this object.
    UpdateBadgeModel(UpdateManager &updateManager, UrlOpener &opener, OperationErrors &errors,
                     QObject *parent = nullptr);

    [[nodiscard]] bool hasUpdateAvailable() const;
    /// Opens the page of the download with the desktop's browser. Only an address on the web is opened, since the
    /// address comes from a server; otherwise the user gets an error.
    Q_INVOKABLE void download();

Q_SIGNALS:
    void changed();

private:
    UpdateManager &m_updateManager;
    UrlOpener &m_opener;
    OperationErrors &m_errors;
};

} // namespace quillhaven
