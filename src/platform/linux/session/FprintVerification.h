// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

// Before the standard library's coroutines, whose concepts moc cannot read otherwise.
#include <QObject>
#include <QTimer>

#include "async/Answer.h"
#include "platform/linux/session/BusConnection.h"

#include <chrono>
#include <optional>

namespace quillhaven {

/// The reader that fprintd offers first, and the connection name of the fprintd that offers it.
struct FprintDevice
{
    QString owner;
    QString path;

    /// Starts fprintd if it does not run, within `startLimit`. Nothing when there is no fprintd or no reader.
    [[nodiscard]] static QCoro::Task<std::optional<FprintDevice>> findDefault(std::shared_ptr<BusConnection> bus,
                                                                              std::chrono::milliseconds startLimit);
    [[nodiscard]] QDBusMessage call(const QString &method, const QVariantList &arguments = {}) const;
};

/// One verification of a finger with fprintd, from the claim of the reader to its release. An object for each, so that
/// a late signal of fprintd about an ended one reaches nothing. Main thread only.
class FprintVerification : public QObject
{
    Q_OBJECT

public:
    /// After which time without an answer the prompt shows `waitingHint`, so that none flashes up for a quick reader.
    static constexpr std::chrono::milliseconds waitingDelay{300};
    static inline const QString waitingHint = QStringLiteral("Waiting for the fingerprint reader");

    /// To start fprintd, and to open the reader, may each take `startLimit`.
    explicit FprintVerification(std::chrono::milliseconds startLimit);

    /// Claims the reader, waits without limit for a finger that matches or for another end, and always gives the reader
    /// back. Once for each object. `result` says whether the finger matched; false also without a bus.
    [[nodiscard]] static QCoro::Task<> run(std::shared_ptr<FprintVerification> verification,
                                           std::shared_ptr<BusConnection> bus);
    /// Given when the reader has been given back, or at once when it is cancelled before the reader was opened.
    [[nodiscard]] Answer<bool> result() const { return m_result; }

    /// Ends it with false when nothing has ended it before.
    void cancel();
    [[nodiscard]] bool isDecided() const { return m_outcome.isGiven(); }
    /// Given when the reader is free again.
    [[nodiscard]] Answer<bool> closed() const { return m_closed; }

Q_SIGNALS:
    /// The reader waits for a finger, or is still being opened after a while: what the user should do next.
    void hintChanged(const QString &hint);
    /// It is decided; the reader is given back next.
    void decided();

private Q_SLOTS:
    void onVerifyStatus(const QString &result, bool done);
    void onServiceLost() { decide(false); }

private:
    [[nodiscard]] QCoro::Task<> verify(std::shared_ptr<BusConnection> bus, FprintDevice device);
    [[nodiscard]] QCoro::Task<bool> readIsSwiped(std::shared_ptr<BusConnection> bus, FprintDevice device);
    bool listen(QDBusConnection &connection, const FprintDevice &device);
    void stopListening(QDBusConnection &connection, const FprintDevice &device);
    void decide(bool matches);

    std::chrono::milliseconds m_startLimit;
    QTimer m_untilWaiting;
    Answer<bool> m_outcome;
    Answer<bool> m_result;
    Answer<bool> m_closed;
    bool m_isClaimed = false;
    bool m_isSwiped = false; ///< the finger is drawn across the reader, rather than laid on it
};

} // namespace quillhaven
