// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/FilePanels.h"

#include <QDialog>

QT_BEGIN_NAMESPACE
class QCheckBox;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QPushButton;
QT_END_NAMESPACE

namespace quillhaven {

class FolderView;

/// Lets the user choose a file or a folder, or several of both. No desktop's dialog nor Qt's can do that: a request to
/// a desktop is for files or for folders, and a second button for folders would make the user say first what kind of
/// item it is, and could not choose both at once. So this dialog is built from Qt's public views, in the program's
/// look, and takes every name literally: a typed name or absolute path is not quoted, has no wildcards and no
/// variables; only a leading "~" means the home folder if nothing has that name.
///
/// Return and the confirming button choose a selected folder. A double click or Alt+Down goes into it, Alt+Up to the
/// folder above, Ctrl+H shows hidden items, Ctrl+L goes to the name field.
class OpenPanelDialog : public QDialog
{
    Q_OBJECT

public:
    /// Starts in the request's folder, which must not be empty. What may be chosen is not looked at: both kinds are.
    OpenPanelDialog(const OpenPanelRequest &request, const QPalette &palette);

    /// The folder whose items are listed.
    [[nodiscard]] QString folder() const;

    void accept() override;
    void done(int result) override;

Q_SIGNALS:
    /// The panel was confirmed with these paths, or declined with none. More than one only where that was asked for.
    void answered(const QStringList &paths);

private:
    [[nodiscard]] QHBoxLayout *newLocationRow();
    [[nodiscard]] QHBoxLayout *newNameRow();
    void addShortcuts();
    void folderEntered(const QString &folder);
    void nameEdited(const QString &text);
    void selectionMoved();
    /// Shows the name of the selected item, which is not typed.
    void showName(const QString &name);
    void updateConfirmButton();
    void explain(const QString &text);
    [[nodiscard]] QString typedPath() const;
    [[nodiscard]] QStringList candidates() const;

    QStringList m_chosen;   ///< the answer
    bool m_isTyped = false; ///< whether the name field decides, not the selection
    FolderView *m_view = nullptr;
    QLabel *m_location = nullptr;
    QLineEdit *m_name = nullptr;
    QLabel *m_note = nullptr;
    QCheckBox *m_hidden = nullptr;
    QPushButton *m_confirm = nullptr;
};

} // namespace quillhaven
