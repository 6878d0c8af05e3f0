// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/widgets/PlacesList.h"

#include "support/DisplayName.h"

#include <QDir>
#include <QKeyEvent>
#include <QStandardPaths>
#include <QStorageInfo>

namespace quillhaven {

namespace {

constexpr int folderRole = Qt::UserRole;

} // namespace

PlacesList::PlacesList(QWidget *parent) : QListWidget(parent)
{
    constexpr int width = 170;
    setFixedWidth(width);
    setAccessibleName(QStringLiteral("Places"));
    setTextElideMode(Qt::ElideMiddle);
    addStandardFolders();
    add(QStringLiteral("Computer"), QDir::rootPath());
    addDrives();
    setCurrentRow(-1);
    connect(this, &QListWidget::itemClicked, this, &PlacesList::pick);
}

void PlacesList::add(const QString &name, const QString &folder)
{
    auto *place = new QListWidgetItem(displayName(name), this);
    place->setData(folderRole, folder);
    place->setToolTip(displayName(folder));
}

void PlacesList::addStandardFolders()
{
    add(QStringLiteral("Home"), QDir::homePath());
    for (const auto location :
         {QStandardPaths::DesktopLocation, QStandardPaths::DocumentsLocation, QStandardPaths::DownloadLocation,
          QStandardPaths::PicturesLocation, QStandardPaths::MusicLocation, QStandardPaths::MoviesLocation}) {
        const QString folder = QStandardPaths::writableLocation(location);
        if (folder != QDir::homePath() && QFileInfo(folder).isDir()) {
            add(QStandardPaths::displayName(location), folder);
        }
    }
}

void PlacesList::addDrives()
{
    const QString media = QStringLiteral("/media/");
    const QString userMedia = QStringLiteral("/run/media/");
    for (const QStorageInfo &drive : QStorageInfo::mountedVolumes()) {
        const QString folder = drive.rootPath();
        if (folder.startsWith(media) || folder.startsWith(userMedia) || folder.startsWith(QStringLiteral("/mnt"))) {
            add(QFileInfo(folder).fileName(), folder);
        }
    }
}

void PlacesList::pick(const QListWidgetItem *place)
{
    if (place) {
        Q_EMIT picked(place->data(folderRole).toString());
    }
}

void PlacesList::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter || event->key() == Qt::Key_Space) {
        pick(currentItem());
    } else {
        QListWidget::keyPressEvent(event);
    }
}

} // namespace quillhaven
