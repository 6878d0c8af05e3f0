// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/widgets/AccessPanelDialog.h"

#include <QDialogButtonBox>
#include <QFileInfo>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace quillhaven {

AccessPanelDialog::AccessPanelDialog(const AccessRequest &request)
{
    setWindowTitle(request.message);
    setAccessibleDescription(request.message);
    setModal(true);
    resize(640, 420);

    auto *message = new QLabel(request.message, this);
    message->setTextFormat(Qt::PlainText);
    message->setWordWrap(true);
    QFont font = message->font();
    font.setBold(true);
    message->setFont(font);

    m_list = new QListWidget(this);
    m_list->setAccessibleName(QStringLiteral("Items"));
    m_list->setTextElideMode(Qt::ElideMiddle);
    m_list->setUniformItemSizes(true);
    fill(request.paths);

    m_all = new QPushButton(this);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    m_confirm = buttons->addButton(request.prompt, QDialogButtonBox::AcceptRole);
    m_confirm->setDefault(true);
    for (QAbstractButton *button : buttons->buttons()) {
        button->setIcon({});
    }

    auto *rows = new QVBoxLayout(this);
    rows->addWidget(message);
    rows->addWidget(m_list);
    rows->addWidget(m_all, 0, Qt::AlignLeft);
    rows->addWidget(buttons);

    connect(m_list, &QListWidget::itemChanged, this, &AccessPanelDialog::updateState);
    connect(m_all, &QPushButton::clicked, this, [this] { tickAll(tickedPaths().size() < m_list->count()); });
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    updateState();
    m_list->setFocus();
}

void AccessPanelDialog::fill(const QStringList &paths)
{
    for (const QString &path : paths) {
        auto *row = new QListWidgetItem(path, m_list);
        row->setToolTip(path);
        row->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
        row->setCheckState(Qt::Checked);
    }
    if (m_list->count() > 0) {
        m_list->setCurrentRow(0);
    }
}

void AccessPanelDialog::tickAll(bool isTicked)
{
    const QSignalBlocker quiet(m_list);
    for (int row = 0; row < m_list->count(); ++row) {
        m_list->item(row)->setCheckState(isTicked ? Qt::Checked : Qt::Unchecked);
    }
    updateState();
}

void AccessPanelDialog::updateState()
{
    const bool areAllTicked = tickedPaths().size() == m_list->count();
    m_all->setText(areAllTicked ? QStringLiteral("Select None") : QStringLiteral("Select All"));
    m_all->setEnabled(m_list->count() > 0);
}

QStringList AccessPanelDialog::tickedPaths() const
{
    QStringList paths;
    for (int row = 0; row < m_list->count(); ++row) {
        if (m_list->item(row)->checkState() == Qt::Checked) {
            paths.append(m_list->item(row)->text());
        }
    }
    return paths;
}

void AccessPanelDialog::done(int result)
{
    QDialog::done(result);
    Q_EMIT answered(result == QDialog::Accepted, tickedPaths());
}

} // namespace quillhaven
