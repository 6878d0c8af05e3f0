// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <functional>

namespace quillhaven {

/// The model of a progress sheet: what a long operation does at present, and how much of it is done.
class OperationProgress : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the program")
    Q_PROPERTY(bool isPresented READ isPresented NOTIFY changed)
    Q_PROPERTY(QString message READ message NOTIFY changed)
    Q_PROPERTY(double progress READ progress NOTIFY changed)
    Q_PROPERTY(int percent READ percent NOTIFY changed)

public:
    using QObject::QObject;

    [[nodiscard]] bool isPresented() const { return m_isPresented; }
    [[nodiscard]] QString message() const { return m_message; }
    /// From 0 to 1.
    [[nodiscard]] double progress() const { return m_progress; }
    /// The same in percent, cut and not rounded.
    [[nodiscard]] int percent() const;

    /// Presents the sheet for an operation that begins, whose number among all that have begun it returns.
    int show();
    /// Whether no other operation has begun since that one.
    [[nodiscard]] bool isLatest(int operation) const { return operation == m_latest; }
    /// Closes the sheet; the operation runs on. A later report does not present it again.
    Q_INVOKABLE void hide();
    /// Takes what the operation reports. A fraction that is no number counts as nothing done.
    void report(const QString &message, double progress);

Q_SIGNALS:
    void changed();

private:
    bool m_isPresented = false;
    QString m_message;
    double m_progress = 0;
    int m_latest = 0;
};

/// An operation that the sheet shows while this lives. Closed by the user, the sheet may be another operation's by the
/// end of this one: then neither its reports nor its end touch it.
class ShownOperation
{
public:
    explicit ShownOperation(OperationProgress &progress) : m_progress(progress), m_number(progress.show()) {}
    ~ShownOperation()
    {
        if (m_progress.isLatest(m_number)) {
            m_progress.hide();
        }
    }
    ShownOperation(const ShownOperation &) = delete;
    ShownOperation &operator=(const ShownOperation &) = delete;

    /// Takes what the operation reports.
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
