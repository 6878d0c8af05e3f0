// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QCoroTask>
#include <QString>
#include <QStringList>

#include <optional>

namespace quillhaven {

/// What a panel for choosing something new asks for.
struct OpenPanelRequest
{
    bool canChooseFiles = true;
    bool canChooseDirectories = false;
    bool allowsMultipleSelection = false;
    bool canCreateDirectories = false;
    QString title = {}; ///< the message when empty
    QString message = {};
    QString prompt = {};    ///< label of the confirming button; the platform's own when empty
    QString directory = {}; ///< absolute path; the last used folder when empty
};

/// Asks for access to one known place, where something may exist or not. The user may choose something else instead: a
/// folder if the place holds a folder, else a file.
struct PlaceRequest
{
    QString path; ///< absolute
    bool isDirectory = false;
    QString message;
    QString prompt; ///< label of the confirming button
};

/// Asks which of some known places may be worked on.
struct AccessRequest
{
    QStringList paths; ///< absolute
    QString message;
    QString prompt; ///< label of the confirming button
};

/// The platform's panels: two that let the user choose something new, and two in which the user confirms known places.
/// Main thread only.
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
    /// Shows the asked place, and waits for the user to confirm it. Its path exactly as in the request, whatever exists
    /// there; or what the user chose instead, resolved and refused as by `open`; or nothing when the panel was
    /// declined.
    [[nodiscard]] virtual QCoro::Task<std::optional<QString>> confirmAccess(PlaceRequest request) = 0;
    /// Lists the asked paths, all ticked, and waits for the user to confirm those that stay ticked. They come in the
    /// order of the request; nothing when the panel was declined.
    [[nodiscard]] virtual QCoro::Task<std::optional<QStringList>> grantAccess(AccessRequest request) = 0;
    /// Shows the panel for one item and returns only with its answer: nothing else in the program happens meanwhile but
    /// the drawing of its windows.
    [[nodiscard]] virtual std::optional<QString> runModal(const OpenPanelRequest &request) = 0;
};

} // namespace quillhaven
