#pragma once

#include <QObject>
#include <QString>

namespace quillhaven {

/// The model of a progress sheet: what a long operation does at present, and how much of it is done.
class OperationProgress : public QObject
{
    Q_OBJECT
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

    /// Presents the sheet for an operation that begins.
    void show();
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
};

} // namespace quillhaven
