// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QCoroTask>
#include <QString>
#include <QStringList>

#include <optional>

namespace quillhaven {

/// What a panel asks for. A panel starts in `directory`, with the item named `preselected` chosen when it is there.
struct OpenPanelRequest
{
    bool canChooseFiles = true;
    bool canChooseDirectories = false;
    bool allowsMultipleSelection = false;
    bool canCreateDirectories = false;
    QString title = {}; ///< the message when empty
    QString message;
    QString prompt;    ///< label of the confirming button; the platform's own when empty
    QString directory; ///< absolute path; the last used folder when empty
    QString preselected;
};

/// Asks which of some paths may be worked on.
struct AccessRequest
{
    QStringList paths; ///< absolute
    QString message;
    QString prompt;
};

/// The platform's panels for choosing files. Main thread only.
class FilePanels
{
public:
    FilePanels() = default;
    virtual ~FilePanels() = default;
    FilePanels(const FilePanels &) = delete;
    FilePanels &operator=(const FilePanels &) = delete;

    /// Shows the panel and waits, without a timeout. The absolute path that the user chose, a link resolved to what it
    /// points to, or nothing when the panel was declined. Throws a FileError for a choice that cannot be named or that
    /// is neither a file nor a folder.
    [[nodiscard]] virtual QCoro::Task<std::optional<QString>> open(OpenPanelRequest request) = 0;
    /// The same with several items chosen at once, in the order of the list.
    [[nodiscard]] virtual QCoro::Task<std::optional<QStringList>> openSeveral(OpenPanelRequest request) = 0;
    /// Lists the asked paths, all ticked, and waits for the user to confirm those that stay ticked. They come in the
    /// order of the request; nothing when the panel was declined.
    [[nodiscard]] virtual QCoro::Task<std::optional<QStringList>> grantAccess(AccessRequest request) = 0;
    /// Shows the panel for one item and returns only with its answer: nothing else in the program happens meanwhile but
    /// the drawing of its windows.
    [[nodiscard]] virtual std::optional<QString> runModal(const OpenPanelRequest &request) = 0;
};

} // namespace quillhaven
