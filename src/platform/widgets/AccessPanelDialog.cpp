// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/widgets/AccessPanelDialog.h"

#include "platform/widgets/DesktopFileDialog.h"
#include "platform/widgets/PanelLook.h"
#include "support/DisplayName.h"
#include "support/Paths.h"

#include <QFileInfo>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace quillhaven {

namespace {

constexpr int panelWidth = 560;
constexpr int listHeight = 320;
constexpr int pathRole = Qt::UserRole;

bool exists(const QString &path)
{
    const QFileInfo info(path);
    return info.exists() || info.isSymLink();
}

/// Says that a place is empty, and why; empty if something exists there.
QString emptyPlaceText(const QString &path)
{
    if (exists(path)) {
        return {};
    }
    if (QFileInfo(parentDirectory(path)).isDir()) {
        return QStringLiteral("There is nothing at this place at the moment.");
    }
    return QStringLiteral("The folder of this item does not exist at the moment. Its drive may not be connected, or "
                          "the folder may be protected itself.");
}

/// The path with places at which a label can break it: after each slash, and within long names.
QString breakable(const QString &path)
{
    constexpr qsizetype longest = 40;
    constexpr QChar zeroWidthSpace(u'\u200b');
    QString broken;
    qsizetype unbroken = 0;
    for (const QChar character : path) {
        if (unbroken >= longest && !character.isLowSurrogate()) {
            broken += zeroWidthSpace;
            unbroken = 0;
        }
        broken += character;
        ++unbroken;
        if (character == QLatin1Char('/')) {
            broken += zeroWidthSpace;
            unbroken = 0;
        }
    }
    return broken;
}

QLabel *newPathLabel(const QString &path, QWidget *parent)
{
    const QString shown = displayName(path);
    QLabel *label = newTextLabel(breakable(shown), parent);
    label->setAccessibleName(shown);
    label->setObjectName(QStringLiteral("path")); // for the look
    return label;
}

} // namespace

AccessPanelDialog::AccessPanelDialog(const PlaceRequest &request, const QPalette &palette) : m_paths(request.path)
{
    QVBoxLayout *rows = begin(request.message, palette);
    rows->addWidget(newPathLabel(request.path, this));
    const QString note = emptyPlaceText(request.path);
    if (!note.isEmpty()) {
        rows->addWidget(newTextLabel(note, this));
    }
    rows->addStretch();
    m_other = new QPushButton(QStringLiteral("Choose…"), this);
    m_other->setToolTip(QStringLiteral("Choose another item"));
    connect(m_other, &QPushButton::clicked, this, [this, request] { chooseAnother(request); });
    end(*rows, request.prompt);
    // A screen reader reads this with the button that has the focus.
    m_confirm->setAccessibleDescription((displayName(request.path) + QLatin1Char('\n') + note).trimmed());
    m_confirm->setFocus();
}

AccessPanelDialog::AccessPanelDialog(const AccessRequest &request, const QPalette &palette)
{
    QVBoxLayout *rows = begin(request.message, palette);
    m_list = new QListWidget(this);
    m_list->setAccessibleName(QStringLiteral("Items"));
    m_list->setTextElideMode(Qt::ElideMiddle);
    m_list->setUniformItemSizes(true);
    m_list->setMinimumHeight(listHeight);
    fill(request.paths);
    rows->addWidget(m_list);
    m_other = new QPushButton(this);
    connect(m_list, &QListWidget::itemChanged, this, &AccessPanelDialog::updateState);
    connect(m_other, &QPushButton::clicked, this, [this] { tickAll(tickedPaths().size() < m_list->count()); });
    end(*rows, request.prompt);
    updateState();
    m_list->setFocus();
}

QVBoxLayout *AccessPanelDialog::begin(const QString &message, const QPalette &palette)
{
    setWindowTitle(message);
    setAccessibleDescription(message);
    setModal(true);
    setMinimumWidth(panelWidth);
    QVBoxLayout *rows = newPanelRows(*this, palette);
    rows->addWidget(newTextLabel(message, this, true));
    return rows;
}

void AccessPanelDialog::end(QVBoxLayout &rows, const QString &prompt)
{
    m_other->setAutoDefault(false);
    m_confirm = new QPushButton(prompt, this);
    rows.addLayout(newButtonRow(*this, m_other, m_confirm));
}

void AccessPanelDialog::fill(const QStringList &paths)
{
    for (const QString &path : paths) {
        const QString shown = displayName(path);
        auto *row =
            new QListWidgetItem(exists(path) ? shown : shown + QStringLiteral(" (nothing at this place)"), m_list);
        row->setData(pathRole, path);
        row->setToolTip((shown + QLatin1Char('\n') + emptyPlaceText(path)).trimmed());
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
    m_other->setText(areAllTicked ? QStringLiteral("Select None") : QStringLiteral("Select All"));
    m_other->setEnabled(m_list->count() > 0);
}

void AccessPanelDialog::chooseAnother(const PlaceRequest &request)
{
    const QString folder = parentDirectory(request.path);
    const OpenPanelRequest other{.canChooseFiles = !request.isDirectory,
                                 .canChooseDirectories = request.isDirectory,
                                 .title = QStringLiteral("Choose Another Item"),
                                 .prompt = request.prompt,
                                 .directory = QFileInfo(folder).isDir() ? folder : QString()};
    QFileDialog *dialog = desktopFileDialog(other, palette(), this).release();
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QFileDialog::filesSelected, this, [this](const QStringList &paths) {
        m_paths = paths;
        accept();
    });
    dialog->open();
}

QStringList AccessPanelDialog::tickedPaths() const
{
    if (!m_list) {
        return m_paths;
    }
    QStringList paths;
    for (int row = 0; row < m_list->count(); ++row) {
        if (m_list->item(row)->checkState() == Qt::Checked) {
            paths.append(m_list->item(row)->data(pathRole).toString());
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
