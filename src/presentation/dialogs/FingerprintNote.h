// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QCoroTask>
#include <QObject>
#include <QPointer>

namespace quillhaven {

class BiometricAuthenticator;
class ProtectionMethodDialogManager;

/// Says in the question for the protection method when the fingerprint reader could not unlock an item. Main thread
/// only.
class FingerprintNote : public QObject
{
    Q_OBJECT

public:
    /// The references must outlive this object and its jobs.
    FingerprintNote(ProtectionMethodDialogManager &dialog, BiometricAuthenticator &biometrics,
                    QObject *parent = nullptr);

private:
    [[nodiscard]] static QCoro::Task<> look(QPointer<FingerprintNote> self);

    ProtectionMethodDialogManager &m_dialog;
    BiometricAuthenticator &m_biometrics;
};

} // namespace quillhaven
