// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "credentials/DialogModel.h"

#include <QString>

namespace quillhaven {

/// The model of a dialog whose title and message come from the caller.
class TitledDialogModel : public quillhaven::DialogModel
{
    Q_OBJECT
    Q_PROPERTY(QString title READ title WRITE setTitle NOTIFY textChanged)
    Q_PROPERTY(QString message READ message WRITE setMessage NOTIFY textChanged)

public:
    explicit TitledDialogModel(QObject *parent = nullptr) : DialogModel(parent) {}

    [[nodiscard]] QString title() const { return m_title; }
    [[nodiscard]] QString message() const { return m_message; }
    void setTitle(const QString &value) { assign(m_title, value, &TitledDialogModel::textChanged); }
    void setMessage(const QString &value) { assign(m_message, value, &TitledDialogModel::textChanged); }

Q_SIGNALS:
    void textChanged();

private:
    QString m_title;
    QString m_message;
};

} // namespace quillhaven
