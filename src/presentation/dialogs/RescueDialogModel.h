// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "credentials/DialogModel.h"

#include <QList>
#include <QStringList>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

namespace quillhaven {

/// Something that the rescue has found, and what can be done with it.
struct RescueEntry
{
    QString title;
    QString details;
    QString symbol;
    QStringList choices; ///< the labels of its buttons

    bool operator==(const RescueEntry &) const = default;
};

/// The model of the sheet that shows what the rescue has found. It stays open while the choices are carried out; the
/// code that does so replaces the entries.
class RescueDialogModel : public quillhaven::DialogModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Created in C++")
    Q_PROPERTY(QVariantList entries READ entries NOTIFY entriesChanged)
    Q_PROPERTY(int count READ count NOTIFY entriesChanged)
    Q_PROPERTY(bool isBusy READ isBusy NOTIFY isBusyChanged)
    Q_PROPERTY(QString summary READ summary NOTIFY summaryChanged)

public:
    using DialogModel::DialogModel;

    /// For a view: each entry has a `title`, `details`, a `symbol` and `choices`.
    [[nodiscard]] QVariantList entries() const;
    [[nodiscard]] int count() const { return static_cast<int>(m_entries.size()); }
    /// The program is looking, or carries out a choice. Nothing can be chosen meanwhile.
    [[nodiscard]] bool isBusy() const { return m_isBusy; }
    /// What the search has found, in a sentence.
    [[nodiscard]] QString summary() const;

    void setEntries(const QList<RescueEntry> &entries);
    void setIsBusy(bool value);

    /// A button of an entry. Ignored while the program is busy.
    Q_INVOKABLE void choose(int entry, int choice);
    Q_INVOKABLE void lookAgain();
    Q_INVOKABLE void close() { setIsPresented(false); }

    std::function<void(int entry, int choice)> onChosen;
    std::function<void()> onLookAgain;

Q_SIGNALS:
    void entriesChanged();
    void isBusyChanged();
    void summaryChanged();

private:
    QList<RescueEntry> m_entries;
    bool m_isBusy = false;
};

} // namespace quillhaven
