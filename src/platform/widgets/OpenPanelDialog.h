// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/FilePanels.h"

#include <QFileDialog>

QT_BEGIN_NAMESPACE
class QAbstractItemView;
class QLabel;
class QLineEdit;
class QPushButton;
QT_END_NAMESPACE

namespace quillhaven {

/// A file dialog for one file, one folder, one of either, or several of them. What is typed into the name field is a
/// name or an absolute path as it stands, without quoting, wildcards or variables; only a leading "~" stands for the
/// home folder when there is nothing of that name.
///
/// Return and the confirming button choose a selected folder where folders may be chosen; a double click or Alt+Down
/// always goes into it.
class OpenPanelDialog : public QFileDialog
{
    Q_OBJECT

public:
    explicit OpenPanelDialog(const OpenPanelRequest &request);

    void accept() override;
    void done(int result) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    /// The panel was confirmed with these paths, or declined with none. More than one only where that was asked for.
    void answered(const QStringList &paths);

private:
    void findParts();
    void showMessage();
    void preselect();
    void selectAskedRow();
    void selectionMoved();
    void updateConfirmButton();
    void explain(const QString &text);
    [[nodiscard]] bool handleKey(int key, Qt::KeyboardModifiers modifiers);
    void enter(const QString &folder);
    [[nodiscard]] QStringList selectedRows() const;
    [[nodiscard]] QString selectedRow() const;
    [[nodiscard]] QString typedPath() const;
    [[nodiscard]] QString candidate() const;

    OpenPanelRequest m_request;
    QString m_asked;      ///< absolute path of the preselected item; empty without one
    QStringList m_chosen; ///< the answer
    bool m_typed = false;
    QLineEdit *m_name = nullptr;
    QPushButton *m_confirm = nullptr;
    QAbstractItemView *m_list = nullptr;
    QAbstractItemView *m_tree = nullptr;
    QLabel *m_note = nullptr;
};

} // namespace quillhaven
