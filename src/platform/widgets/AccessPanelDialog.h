// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/FilePanels.h"

#include <QDialog>

QT_BEGIN_NAMESPACE
class QListWidget;
class QPushButton;
QT_END_NAMESPACE

namespace quillhaven {

/// Lists the asked paths with a check box each, all ticked at first, for the user to take out what may not be touched.
class AccessPanelDialog : public QDialog
{
    Q_OBJECT

public:
    explicit AccessPanelDialog(const AccessRequest &request);

    void done(int result) override;

Q_SIGNALS:
    /// Whether the panel was confirmed, and the paths that were ticked then.
    void answered(bool isConfirmed, const QStringList &paths);

private:
    void fill(const QStringList &paths);
    void tickAll(bool isTicked);
    void updateState();
    [[nodiscard]] QStringList tickedPaths() const;

    QListWidget *m_list = nullptr;
    QPushButton *m_confirm = nullptr;
    QPushButton *m_all = nullptr;
};

} // namespace quillhaven
