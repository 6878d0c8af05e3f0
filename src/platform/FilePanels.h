#pragma once

#include <QCoroTask>
#include <QString>

#include <optional>

namespace quillhaven {

/// What a panel asks for. A panel starts in `directory`, with the item named `preselected` chosen when it is there.
struct OpenPanelRequest
{
    bool canChooseFiles = true;
    bool canChooseDirectories = false;
    QString message;
    QString prompt;    ///< label of the confirming button; the platform's own when empty
    QString directory; ///< absolute path; the last used folder when empty
    QString preselected;
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
};

} // namespace quillhaven
