// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QFileIconProvider>
#include <QFileSystemModel>
#include <QTreeView>

namespace quillhaven {

/// The contents of the file system, with names that are shown so that they deceive nobody.
class FolderModel : public QFileSystemModel
{
    Q_OBJECT

public:
    using QFileSystemModel::QFileSystemModel;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
};

/// Lists the items of one folder. A double click or Alt+Down on a folder goes into it, Alt+Up and Backspace go to the
/// folder above.
class FolderView : public QTreeView
{
    Q_OBJECT

public:
    explicit FolderView(bool allowsMultipleSelection, QWidget *parent = nullptr);

    [[nodiscard]] QString folder() const { return m_folder; }
    /// The selected items, in the order of the list.
    [[nodiscard]] QStringList selectedPaths() const;
    /// The model over which the view looks, for completing what is typed.
    [[nodiscard]] FolderModel &files() { return m_files; }

    /// Lists the items of another folder, with nothing selected. The item at `current` becomes the current one as soon
    /// as it is listed, or else the first one.
    void enter(const QString &folder, const QString &current = {});
    void goUp();
    void setShowsHiddenItems(bool shows);

Q_SIGNALS:
    void entered(const QString &folder);
    void selectionMoved();
    /// A double click on something that is no folder.
    void chosen();

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void doubleClickedOn(const QModelIndex &index);
    void makeCurrent();

    QFileIconProvider m_icons;
    FolderModel m_files;
    QString m_folder;
    QString m_wanted; ///< what is to become the current item
};

} // namespace quillhaven
