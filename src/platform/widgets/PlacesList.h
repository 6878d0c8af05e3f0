// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QListWidget>

namespace quillhaven {

/// The user's folders, the root and the mounted drives, to go to with a click or with Return.
class PlacesList : public QListWidget
{
    Q_OBJECT

public:
    explicit PlacesList(QWidget *parent = nullptr);

Q_SIGNALS:
    void picked(const QString &folder);

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void add(const QString &name, const QString &folder);
    void addStandardFolders();
    void addDrives();
    void pick(const QListWidgetItem *place);
};

} // namespace quillhaven
