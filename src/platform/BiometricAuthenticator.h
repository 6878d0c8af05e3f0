// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QCoroTask>
#include <QObject>
#include <QString>

namespace quillhaven {

/// The platform's check of the user's finger, with a prompt while the reader waits. Main thread only.
class BiometricAuthenticator : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isPrompting READ isPrompting NOTIFY promptChanged)
    Q_PROPERTY(QString reason READ reason NOTIFY promptChanged)
    Q_PROPERTY(QString hint READ hint NOTIFY promptChanged)

public:
    using QObject::QObject;

    /// Whether a reader is ready and a finger of this user is enrolled. Prompts without a reason while the answer takes
    /// long. False after a cancel. Never throws.
    [[nodiscard]] virtual QCoro::Task<bool> canEvaluatePolicy() = 0;
    /// The same without a prompt, for a hint to the user.
    [[nodiscard]] virtual QCoro::Task<bool> hasEnrolledFinger() = 0;
    /// Prompts with `reason` and waits for a finger. False on a mismatch, a cancel or a failing reader.
    [[nodiscard]] virtual QCoro::Task<bool> evaluatePolicy(QString reason) = 0;
    /// Ends whatever is running with false; nothing when nothing is.
    Q_INVOKABLE virtual void cancel() = 0;

    /// What the prompt shows while the reader or the finger is waited for.
    [[nodiscard]] bool isPrompting() const { return m_isPrompting; }
    [[nodiscard]] QString reason() const { return m_reason; }
    /// What the user should do next, such as "Place your finger on the reader".
    [[nodiscard]] QString hint() const { return m_hint; }

Q_SIGNALS:
    void promptChanged();

protected:
    void setPrompt(bool isPrompting, const QString &reason, const QString &hint);

private:
    bool m_isPrompting = false;
    QString m_reason;
    QString m_hint;
};

} // namespace quillhaven
