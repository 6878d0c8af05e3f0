// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/widgets/FolderView.h"

#include "support/DisplayName.h"

#include <QHeaderView>
#include <QKeyEvent>

#include <algorithm>

namespace quillhaven {

namespace {

constexpr int nameColumn = 0;
constexpr int sizeColumn = 1;
constexpr int typeColumn = 2;
constexpr QDir::Filters plainItems = QDir::AllEntries | QDir::NoDotAndDotDot;

} // namespace

QVariant FolderModel::data(const QModelIndex &index, int role) const
{
    QVariant value = QFileSystemModel::data(index, role);
    if (role != Qt::DisplayRole || index.column() > sizeColumn) {
        return value;
    }
    if (index.column() == sizeColumn) {
        return isDir(index) ? QStringLiteral("–") : value; // A screen reader would have nothing to say otherwise.
    }
    return displayName(value.toString());
}

FolderView::FolderView(bool allowsMultipleSelection, QWidget *parent) : QTreeView(parent)
{
    m_files.setIconProvider(&m_icons);
    m_files.setFilter(plainItems);
    m_files.setOption(QFileSystemModel::DontUseCustomDirectoryIcons);
    setModel(&m_files);
    setAccessibleName(QStringLiteral("Files and Folders"));
    setSelectionMode(allowsMultipleSelection ? ExtendedSelection : SingleSelection);
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setExpandsOnDoubleClick(false);
    setAllColumnsShowFocus(true);
    setUniformRowHeights(true);
    setEditTriggers(NoEditTriggers);
    setTextElideMode(Qt::ElideMiddle);
    setSortingEnabled(true);
    sortByColumn(nameColumn, Qt::AscendingOrder);
    hideColumn(typeColumn);
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    header()->setSectionResizeMode(nameColumn, QHeaderView::Stretch);
    connect(&m_files, &QFileSystemModel::directoryLoaded, this, &FolderView::makeCurrent);
    connect(this, &QTreeView::doubleClicked, this, &FolderView::doubleClickedOn);
    connect(selectionModel(), &QItemSelectionModel::selectionChanged, this, &FolderView::selectionMoved);
}

QStringList FolderView::selectedPaths() const
{
    QModelIndexList rows = selectionModel()->selectedRows();
    std::sort(rows.begin(), rows.end());
    QStringList paths;
    for (const QModelIndex &row : std::as_const(rows)) {
        if (row.parent() == rootIndex()) {
            paths.append(m_files.filePath(row));
        }
    }
    return paths;
}

void FolderView::enter(const QString &folder, const QString &current)
{
    m_folder = QDir::cleanPath(folder);
    m_wanted = current;
    clearSelection();
    setRootIndex(m_files.setRootPath(m_folder));
    makeCurrent();
    Q_EMIT entered(m_folder);
}

void FolderView::goUp()
{
    const QString above = QFileInfo(m_folder).path();
    if (above != m_folder) {
        enter(above, m_folder);
    }
}

void FolderView::setShowsHiddenItems(bool shows)
{
    m_files.setFilter(shows ? plainItems | QDir::Hidden : plainItems);
}

void FolderView::makeCurrent()
{
    if (currentIndex().isValid() && currentIndex().parent() == rootIndex()) {
        return;
    }
    QModelIndex row = m_wanted.isEmpty() ? QModelIndex() : m_files.index(m_wanted);
    if (!row.isValid() || row.parent() != rootIndex()) {
        row = m_files.index(0, nameColumn, rootIndex());
    }
    if (row.isValid()) {
        // Current, so that the arrow keys begin there, but chosen only by the user.
        selectionModel()->setCurrentIndex(row, QItemSelectionModel::NoUpdate);
        scrollTo(row);
    }
}

void FolderView::doubleClickedOn(const QModelIndex &index)
{
    if (m_files.isDir(index)) {
        enter(m_files.filePath(index));
    } else {
        Q_EMIT chosen();
    }
}

void FolderView::keyPressEvent(QKeyEvent *event)
{
    const Qt::KeyboardModifiers modifiers = event->modifiers() & ~Qt::KeypadModifier;
    const bool hasAlt = modifiers == Qt::AltModifier;
    if (event->key() == Qt::Key_Down && hasAlt) {
        if (currentIndex().isValid() && m_files.isDir(currentIndex())) {
            enter(m_files.filePath(currentIndex()));
        }
    } else if ((event->key() == Qt::Key_Up && hasAlt) ||
               (event->key() == Qt::Key_Backspace && modifiers == Qt::NoModifier)) {
        goUp();
    } else {
        QTreeView::keyPressEvent(event);
    }
}

} // namespace quillhaven
