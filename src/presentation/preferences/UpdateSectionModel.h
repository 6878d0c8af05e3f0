// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace quillhaven {

class OperationErrors;
class UpdateManager;
class UrlOpener;

/// The version of the program, and the search for a newer one, in words. Main thread only.
class UpdateSectionModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Created in C++")
    Q_PROPERTY(QString versionText READ versionText CONSTANT)
    Q_PROPERTY(QString checkTitle READ checkTitle NOTIFY changed)
    Q_PROPERTY(bool isChecking READ isChecking NOTIFY changed)
    Q_PROPERTY(QString unavailableReason READ unavailableReason CONSTANT)
    Q_PROPERTY(QString updateText READ updateText NOTIFY changed)
    Q_PROPERTY(QString errorText READ errorText NOTIFY changed)

public:
    /// The references must outlive this object.
    UpdateSectionModel(UpdateManager &updateManager, UrlOpener &opener, OperationErrors &errors,
                       QObject *parent = nullptr);

    [[nodiscard]] QString versionText() const;
    /// The label of the button.
    [[nodiscard]] QString checkTitle() const;
    [[nodiscard]] bool isChecking() const;
    /// Why the button is disabled; empty if it is not.
    [[nodiscard]] QString unavailableReason() const;
    /// Says that there is a newer version; empty if none is known.
    [[nodiscard]] QString updateText() const;
    /// How the last check failed; empty if it did not.
    [[nodiscard]] QString errorText() const;

    Q_INVOKABLE void check();
    /// Opens the page from which the newer version can be fetched.
    Q_INVOKABLE void download();

Q_SIGNALS:
    void changed();

private:
    UpdateManager &m_updateManager;
    UrlOpener &m_opener;
    OperationErrors &m_errors;
};

} // namespace quillhaven
