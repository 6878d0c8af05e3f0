// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/Platform.h"

#include <QCoroTask>
#include <QHash>
#include <QObject>
#include <QStringList>

#include <functional>

namespace quillhaven {

class MasterPasswordManager;

/// A status text and a progress from 0.0 to 1.0. Called on the main thread.
using ProgressCallback = std::function<void(const QString &status, double progress)>;

/// Destroys files: overwrites each in place three times, flushing every chunk to the device before the next one, then
/// renames it to a random name, removes it and flushes the file systems. Nothing is read back, nothing is rolled back
/// and nothing can be cancelled. Two shreds may run at once; nothing excludes that.
///
/// Main thread only; the file work runs off it.
class QuillhavenShredder : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isShredding READ isShredding NOTIFY changed)
    Q_PROPERTY(double shredProgress READ shredProgress NOTIFY changed)
    Q_PROPERTY(QString currentOperation READ currentOperation NOTIFY changed)

public:
    static constexpr int passes = 3;
    static constexpr int64_t chunkSize = 65536; ///< bytes written between two flushes

    /// The references outlive this object.
    QuillhavenShredder(const Platform &platform, MasterPasswordManager &masterPasswordManager,
                       QObject *parent = nullptr);

    /// Defined by the program alone.
    static QuillhavenShredder &shared();

    [[nodiscard]] bool isShredding() const { return m_isShredding; }
    /// 0 except within a run; the running progress goes to the callback alone.
    [[nodiscard]] double shredProgress() const { return m_shredProgress; }
    /// The current step in words.
    [[nodiscard]] QString currentOperation() const { return m_currentOperation; }

    /// Destroys one file, or a folder with all it holds. Ends without an error and without having touched anything when
    /// the master password's guard is cancelled. Throws QuillhavenError::itemNotFound or a FileError, also for a link.
    [[nodiscard]] QCoro::Task<> shredItem(QString path, ProgressCallback progressCallback);

    // BulkShred.cpp

    /// Runs `shredItem` over the paths, one at a time. Throws QuillhavenError::bulkOperationFailed at the end, with a
    /// line for each item that failed.
    [[nodiscard]] QCoro::Task<> bulkShredItems(QStringList paths, ProgressCallback progressCallback);

Q_SIGNALS:
    void changed();
    /// Sent by a worker: a pass begins (fraction 0), or so much of it is written.
    void passAdvanced(quint64 run, int pass, double fraction);

private:
    // ShredFile.cpp
    [[nodiscard]] QCoro::Task<> shredFile(QString path, ProgressCallback progressCallback);
    /// One pass over the first `fileSize` bytes. `progress`, which may be empty, gets the fraction that is done. On a
    /// worker's thread, as the next one.
    void performSecureOverwrite(const QString &path, int pass, int64_t fileSize,
                                const std::function<void(double fraction)> &progress);
    void secureDelete(const QString &path);

    using PassListener = std::function<void(int pass, double fraction)>;
    /// Runs `work` off the main thread with a number under which it sends `passAdvanced` to the listener.
    [[nodiscard]] QCoro::Task<> overwriting(std::function<void(quint64 run)> work, PassListener listener);
    void tellListener(quint64 run, int pass, double fraction);

    // ShredDirectory.cpp
    [[nodiscard]] QCoro::Task<> shredDirectory(QString path, ProgressCallback progressCallback);

    [[nodiscard]] QCoro::Task<> shredWhatStandsAt(QString path, ProgressCallback progressCallback);
    void begin();
    /// Posts the end of a run to the main loop; nobody waits for it.
    void finishLater();
    /// Makes `operation` the current one and tells the callback of it.
    void report(const ProgressCallback &progressCallback, const QString &operation, double progress);

    Platform m_platform;
    MasterPasswordManager &m_masterPasswordManager;
    bool m_isShredding = false;
    double m_shredProgress = 0;
    QString m_currentOperation;
    quint64 m_runs = 0;                       ///< those that had a listener so far
    QHash<quint64, PassListener> m_listeners; ///< by their runs; made, called and ended by the main thread alone
};

} // namespace quillhaven
