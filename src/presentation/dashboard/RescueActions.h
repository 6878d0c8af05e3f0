// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/LostItems.h"
#include "presentation/dashboard/DashboardContext.h"
#include "presentation/dialogs/RescueDialogModel.h"

#include <QCoroTask>
#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace quillhaven {

class FilePanels;
class NoticesModel;

/// Looks for what interrupted runs have left, says in a notice that there is something, and carries out what the user
/// chooses for each. Main thread only.
class RescueActions : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Part of the dashboard")

public:
    /// All that is referred to must outlive this object and its jobs. `home` is the user's home folder.
    RescueActions(const DashboardContext &context, FilePanels &panels, NoticesModel &notices, const QString &home,
                  QObject *parent = nullptr);

    [[nodiscard]] RescueDialogModel *dialog() { return &m_dialog; }

    /// Looks, and shows a notice when something is found. One search runs at a time.
    void look();
    /// Shows the sheet, and looks.
    Q_INVOKABLE void show();

private:
    enum class Choice { GiveBack, ChooseFolder, AddToList, MarkUnlocked, RemoveFromList, FinishLocking };
    struct Found
    {
        std::optional<LostItem> lost; ///< or else a row that is not as the list says
        QString itemId;
        QList<Choice> choices;
    };

    [[nodiscard]] QCoro::Task<> runSearch();
    [[nodiscard]] QCoro::Task<> carryOut(Found found, Choice choice);
    [[nodiscard]] QCoro::Task<> settle(LostItem lost, Choice choice);
    /// A free place for the item in a folder of the user's choice; nothing when the panel was declined.
    [[nodiscard]] QCoro::Task<std::optional<QString>> askForPlace(LostItem lost);
    void showFindings(const RescueFindings &findings);
    [[nodiscard]] RescueEntry entryOf(const Found &found) const;
    /// Those of the found items that offer this choice.
    [[nodiscard]] int countWith(Choice choice) const;
    void showNotice();

    DashboardContext m_context;
    FilePanels &m_panels;
    NoticesModel &m_notices;
    QString m_home;
    RescueDialogModel m_dialog;
    QList<Found> m_found;
    bool m_isLooking = false;
    bool m_looksAgain = false; ///< something has changed since the search that is running began
};

} // namespace quillhaven
