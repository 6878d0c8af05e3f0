// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/FilePanels.h"

#include <QDialog>

QT_BEGIN_NAMESPACE
class QListWidget;
class QPushButton;
class QVBoxLayout;
QT_END_NAMESPACE

namespace quillhaven {

/// Lets the user confirm places that are known already, with one key. For one place it shows the path, and "Choose…"
/// opens the desktop's dialog for another item. For several it lists the paths with a check box each, all ticked at
/// first, for the user to take out what may not be touched; another item would have no meaning there. A place where
/// nothing exists can be confirmed too, and the panel says that nothing is there.
class AccessPanelDialog : public QDialog
{
    Q_OBJECT

public:
    AccessPanelDialog(const PlaceRequest &request, const QPalette &palette);
    AccessPanelDialog(const AccessRequest &request, const QPalette &palette);

    void done(int result) override;

Q_SIGNALS:
    /// Whether the panel was confirmed, and the ticked paths, the asked one or what was chosen instead.
    void answered(bool isConfirmed, const QStringList &paths);

private:
    [[nodiscard]] QVBoxLayout *begin(const QString &message, const QPalette &palette);
    void end(QVBoxLayout &rows, const QString &prompt);
    void fill(const QStringList &paths);
    void tickAll(bool isTicked);
    void updateState();
    void chooseAnother(const PlaceRequest &request);
    [[nodiscard]] QStringList tickedPaths() const;

    QStringList m_paths;            ///< of the one place or what was chosen instead; empty for several places
    QListWidget *m_list = nullptr;  ///< of several places
    QPushButton *m_other = nullptr; ///< "Choose…", or "Select All" for several places
    QPushButton *m_confirm = nullptr;
};

} // namespace quillhaven
