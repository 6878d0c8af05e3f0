// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "async/Answer.h"
#include "credentials/PasswordInputDialogManager.h"
#include "presentation/dashboard/DashboardContext.h"

#include <QCoroTask>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace quillhaven {

class BulkActions;
class FilePanels;

/// The dashboard's ways to protect a file or folder: the panel, and the questions that follow a choice or a drop. Each
/// operation is a job on the main thread. Main thread only.
class ProtectActions : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Part of the dashboard")
    Q_PROPERTY(bool showingFilePicker READ showingFilePicker NOTIFY showingFilePickerChanged)

public:
    /// The objects that the context refers to, the bulk actions and the panels must outlive this object and its jobs.
    ProtectActions(const DashboardContext &context, BulkActions &bulk, FilePanels &panels, QObject *parent = nullptr);

    [[nodiscard]] bool showingFilePicker() const { return m_showingFilePicker; }
    /// Names what is currently being protected; empty if nothing is.
    [[nodiscard]] QString protectingText() const;

    /// "Protect New Item": lets the user choose, then asks how to protect it. Ignored while the panel is open.
    Q_INVOKABLE void protectNewItem();
    /// Asks how to protect the item, or reports why it cannot be protected.
    void handleFileSelection(const QString &path);
    void showProtectionDialog(const QString &path);
    void showPasswordDialog(const QString &path, bool useTouchID);

Q_SIGNALS:
    void showingFilePickerChanged();
    void protectingTextChanged();

private:
    class ProtectingName;

    [[nodiscard]] QCoro::Task<> runFilePicker();
    [[nodiscard]] QCoro::Task<> askForProtectionMethod(QString path);
    [[nodiscard]] QCoro::Task<> protectByPassword(QString path, Answer<PasswordInputDialogManager::Reply> reply);
    [[nodiscard]] QCoro::Task<> protect(QString path, QString password, bool useTouchID);

    DashboardContext m_context;
    BulkActions &m_bulk;
    FilePanels &m_panels;
    bool m_showingFilePicker = false;
    QStringList m_protectingNames; ///< in the order in which their jobs started
};

} // namespace quillhaven
