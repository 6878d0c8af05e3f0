// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <chrono>
#include <functional>
#include <optional>

namespace quillhaven {

class Clock;

/// The model of a progress sheet: what a long operation is doing, and how much of it is done.
class OperationProgress : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Created in C++")
    Q_PROPERTY(bool isPresented READ isPresented NOTIFY changed)
    Q_PROPERTY(QString message READ message NOTIFY changed)
    Q_PROPERTY(double progress READ progress NOTIFY changed)
    Q_PROPERTY(int percent READ percent NOTIFY changed)
    Q_PROPERTY(QString timeLeft READ timeLeft NOTIFY changed)

public:
    /// The clock must outlive this object.
    explicit OperationProgress(const Clock &clock, QObject *parent = nullptr) : QObject(parent), m_clock(clock) {}

    [[nodiscard]] bool isPresented() const { return m_isPresented; }
    [[nodiscard]] QString message() const { return m_message; }
    /// From 0 to 1.
    [[nodiscard]] double progress() const { return m_progress; }
    /// The same in percent, rounded down.
    [[nodiscard]] int percent() const;
    /// How long the rest will take if it goes on as before; empty while that cannot be said.
    [[nodiscard]] QString timeLeft() const { return m_timeLeft; }

    /// Presents the sheet for an operation that is starting. Returns the number of the operation.
    int show();
    /// Whether no other operation has started after this one.
    [[nodiscard]] bool isLatest(int operation) const { return operation == m_latest; }
    /// Closes the sheet; the operation continues. A later report does not present it again.
    Q_INVOKABLE void hide();
    /// Closes the sheet of an operation that has not begun: it may wait for an answer that never comes.
    Q_INVOKABLE void hideBeforeBeginning();
    /// Shows what the operation reports. A NaN is shown as 0.
    void report(const QString &message, double progress);

Q_SIGNALS:
    void changed();

private:
    /// When the operation reported for the first time, and how much was done then.
    struct Beginning
    {
        std::chrono::nanoseconds time;
        double progress;
    };

    const Clock &m_clock;
    std::optional<Beginning> m_beginning;
    QString m_timeLeft;
    bool m_isPresented = false;
    QString m_message;
    double m_progress = 0;
    int m_latest = 0;
};

/// Shows an operation in the sheet during its lifetime. If the sheet shows a later operation meanwhile, neither the
/// reports of this one nor its end change the sheet.
class ShownOperation
{
public:
    explicit ShownOperation(OperationProgress &progress) : m_progress(progress), m_number(progress.show()) {}
    ~ShownOperation() { hide(); }
    ShownOperation(const ShownOperation &) = delete;
    ShownOperation &operator=(const ShownOperation &) = delete;

    /// Closes the sheet of an operation that never continues.
    void hide() const
    {
        if (m_progress.isLatest(m_number)) {
            m_progress.hide();
        }
    }
    /// Receives what the operation reports.
    [[nodiscard]] std::function<void(const QString &message, double progress)> callback() const
    {
        return [&progress = m_progress, number = m_number](const QString &message, double fraction) {
            if (progress.isLatest(number)) {
                progress.report(message, fraction);
            }
        };
    }

private:
    OperationProgress &m_progress;
    int m_number;
};

} // namespace quillhaven
