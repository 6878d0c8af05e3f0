// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/Platform.h"
#include "support/ProgressCallback.h"

#include <QCoroTask>
#include <QObject>
#include <QStringList>

namespace quillhaven {

class MasterPasswordManager;

/// Destroys files: overwrites each in place three times, flushing every chunk to the device before the next one, then
/// renames it to a random name, removes it and flushes the file systems. Nothing is read back, nothing is rolled back
/// and nothing can be cancelled. Several shreds may run at the same time.
///
/// Main thread only; the file work runs off it.
class QuillhavenShredder : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isShredding READ isShredding NOTIFY changed)
    Q_PROPERTY(double shredProgress READ shredProgress NOTIFY changed)
    Q_PROPERTY(QString currentOperation READ currentOperation NOTIFY changed)

public:
    /// The references must outlive this object, and this object must outlive every shred that it has started.
    QuillhavenShredder(const Platform &platform, MasterPasswordManager &masterPasswordManager,
                       QObject *parent = nullptr);

    /// Defined in the program only.
    static QuillhavenShredder &shared();

    [[nodiscard]] bool isShredding() const { return m_isShredding; }
    /// 0 except during a run. The detailed progress is only reported to the callback.
    [[nodiscard]] double shredProgress() const { return m_shredProgress; }
    /// A text that describes the current step.
    [[nodiscard]] QString currentOperation() const { return m_currentOperation; }

    /// Destroys one file, or a folder with all its contents. If the master password's guard is cancelled, it returns
    /// without an error and changes nothing. Throws QuillhavenError::itemNotFound or a FileError, also for a link.
    [[nodiscard]] QCoro::Task<> shredItem(QString path, ProgressCallback progressCallback);

    // BulkShred.cpp

    /// Runs `shredItem` over the paths, one at a time. Throws QuillhavenError::bulkOperationFailed at the end, with a
    /// line for each item that failed.
    [[nodiscard]] QCoro::Task<> bulkShredItems(QStringList paths, ProgressCallback progressCallback);

Q_SIGNALS:
    void changed();

private:
    // ShredFile.cpp
    [[nodiscard]] QCoro::Task<> shredFile(QString path, ProgressCallback progressCallback);

    // ShredDirectory.cpp
    [[nodiscard]] QCoro::Task<> shredDirectory(QString path, ProgressCallback progressCallback);

    [[nodiscard]] QCoro::Task<> shredFileOrDirectory(QString path, ProgressCallback progressCallback);
    void begin();
    /// Posts the end of a run to the event loop, without waiting for it.
    void finishLater();
    /// The status text during a pass over a file.
    [[nodiscard]] static QString passText(int pass, const QString &fileName);
    /// Makes `operation` the current one and reports it to the callback.
    void report(const ProgressCallback &progressCallback, const QString &operation, double progress);

    Platform m_platform;
    MasterPasswordManager &m_masterPasswordManager;
    bool m_isShredding = false;
    double m_shredProgress = 0;
    QString m_currentOperation;
};

} // namespace quillhaven
