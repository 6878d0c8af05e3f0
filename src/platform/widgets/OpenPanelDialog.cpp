// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/widgets/OpenPanelDialog.h"

#include <QAbstractItemView>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QFileSystemModel>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>

namespace quillhaven {

namespace {

constexpr int messageMargin = 12;

QString titleOf(const OpenPanelRequest &request)
{
    if (!request.title.isEmpty()) {
        return request.title;
    }
    if (!request.message.isEmpty()) {
        return request.message;
    }
    return request.canChooseFiles ? QStringLiteral("Choose a File or Folder") : QStringLiteral("Choose a Folder");
}

/// A child of a folder, by text alone: Qt's own functions take some names for something else.
QString child(const QString &folder, const QString &name)
{
    return folder.endsWith(QLatin1Char('/')) ? folder + name : folder + QLatin1Char('/') + name;
}

bool isThere(const QString &path)
{
    const QFileInfo info(path);
    return info.exists() || info.isSymLink();
}

} // namespace

OpenPanelDialog::OpenPanelDialog(const OpenPanelRequest &request) : m_request(request)
{
    setOption(QFileDialog::DontUseNativeDialog);
    // The panel is for choosing: its menu could delete and rename otherwise.
    setOption(QFileDialog::ReadOnly, request.canChooseFiles && !request.canCreateDirectories);
    setWindowTitle(titleOf(request));
    setAcceptMode(QFileDialog::AcceptOpen);
    setFileMode(request.canChooseFiles ? QFileDialog::ExistingFile : QFileDialog::Directory);
    setOption(QFileDialog::ShowDirsOnly, false);
    const QDir::Filters shown = QDir::AllEntries | QDir::NoDotAndDotDot;
    setFilter(request.preselected.startsWith(QLatin1Char('.')) ? shown | QDir::Hidden : shown);
    setLabelText(QFileDialog::Accept, request.prompt.isEmpty() ? QStringLiteral("Open") : request.prompt);
    setLabelText(QFileDialog::FileName, QStringLiteral("Name:"));
    setModal(true);
    resize(820, 560);
    findParts();
    showMessage();
    if (!request.directory.isEmpty()) {
        setDirectory(request.directory);
    }
    preselect();
    updateConfirmButton();
}

void OpenPanelDialog::findParts()
{
    m_name = findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
    m_list = findChild<QAbstractItemView *>(QStringLiteral("listView"));
    m_tree = findChild<QAbstractItemView *>(QStringLiteral("treeView"));
    const auto *buttons = findChild<QDialogButtonBox *>(QStringLiteral("buttonBox"));
    m_confirm = buttons->button(QDialogButtonBox::Open);
    for (QAbstractButton *button : buttons->buttons()) {
        button->setIcon({});
    }
    auto *columns = findChild<QTreeView *>(QStringLiteral("treeView"))->header();
    columns->setSectionResizeMode(QHeaderView::ResizeToContents);
    columns->setSectionResizeMode(0, QHeaderView::Stretch);
    if (m_request.allowsMultipleSelection) {
        m_list->setSelectionMode(QAbstractItemView::ExtendedSelection);
        m_tree->setSelectionMode(QAbstractItemView::ExtendedSelection);
    }
    // There is one type of file, all of them.
    for (const char *name : {"fileTypeCombo", "fileTypeLabel"}) {
        findChild<QWidget *>(QLatin1String(name))->hide();
    }
    for (QObject *part :
         {static_cast<QObject *>(m_list), static_cast<QObject *>(m_tree), static_cast<QObject *>(m_confirm)}) {
        part->installEventFilter(this);
    }
    // The base class would select what it takes the name for, splitting it at quotes.
    disconnect(m_name, &QLineEdit::textChanged, this, nullptr);
    connect(m_name, &QLineEdit::textEdited, this, [this](const QString &text) {
        m_typed = !text.isEmpty();
        m_list->selectionModel()->clearSelection();
        explain({});
    });
    connect(m_name, &QLineEdit::textChanged, this, &OpenPanelDialog::updateConfirmButton);
    connect(m_list->selectionModel(), &QItemSelectionModel::selectionChanged, this, &OpenPanelDialog::selectionMoved);
    connect(this, &QFileDialog::directoryEntered, this, [this] {
        m_typed = false;
        m_name->clear();
        explain({});
    });
}

void OpenPanelDialog::showMessage()
{
    auto *header = new QWidget(this);
    auto *rows = new QVBoxLayout(header);
    rows->setContentsMargins(messageMargin, messageMargin, messageMargin, 0);
    if (!m_request.message.isEmpty()) {
        auto *message = new QLabel(m_request.message, header);
        message->setTextFormat(Qt::PlainText);
        message->setWordWrap(true);
        QFont font = message->font();
        font.setBold(true);
        message->setFont(font);
        rows->addWidget(message);
        setAccessibleDescription(m_request.message);
    }
    m_note = new QLabel(header);
    m_note->setTextFormat(Qt::PlainText);
    m_note->setWordWrap(true);
    m_note->hide();
    rows->addWidget(m_note);
    // The place above a layout's own rows takes any widget.
    layout()->setMenuBar(header);
}

void OpenPanelDialog::preselect()
{
    if (m_request.preselected.isEmpty()) {
        return;
    }
    m_asked = child(m_request.directory, m_request.preselected);
    m_name->setText(m_request.preselected);
    m_name->selectAll();
    auto *model = findChild<QFileSystemModel *>(QStringLiteral("qt_filesystem_model"));
    connect(model, &QFileSystemModel::directoryLoaded, this, &OpenPanelDialog::selectAskedRow);
    selectAskedRow();
}

void OpenPanelDialog::selectAskedRow()
{
    if (m_typed || m_name->text() != m_request.preselected || !selectedRow().isEmpty()) {
        return;
    }
    const auto *model = qobject_cast<QFileSystemModel *>(m_list->model());
    const QModelIndex row = model ? model->index(m_asked) : QModelIndex();
    if (row.isValid() && row.parent() == m_list->rootIndex()) {
        m_list->selectionModel()->setCurrentIndex(row, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
        m_list->scrollTo(row);
    }
}

QStringList OpenPanelDialog::selectedRows() const
{
    QModelIndexList rows = m_list->selectionModel()->selectedRows();
    std::sort(rows.begin(), rows.end());
    QStringList paths;
    for (const QModelIndex &row : std::as_const(rows)) {
        if (row.parent() == m_list->rootIndex()) {
            paths.append(row.data(QFileSystemModel::FilePathRole).toString());
        }
    }
    return paths;
}

QString OpenPanelDialog::selectedRow() const
{
    const QStringList rows = selectedRows();
    return rows.isEmpty() ? QString() : rows.constFirst();
}

void OpenPanelDialog::selectionMoved()
{
    const QStringList rows = selectedRows();
    if (!m_name->hasFocus() && !rows.isEmpty() && rows != QStringList(m_asked)) {
        m_typed = false;
        const QString &row = rows.constFirst();
        m_name->setText(rows.size() > 1 ? QString() : row.mid(row.lastIndexOf(QLatin1Char('/')) + 1));
    }
    explain(rows.size() > 1 ? QStringLiteral("%1 items are selected.").arg(rows.size()) : QString());
    updateConfirmButton();
}

QString OpenPanelDialog::typedPath() const
{
    const QString text = m_name->text();
    if (text.startsWith(QLatin1Char('/'))) {
        return QDir::cleanPath(text);
    }
    const QString path = child(directory().absolutePath(), text);
    const bool namesHome = text == QLatin1String("~") || text.startsWith(QLatin1String("~/"));
    return QDir::cleanPath(namesHome && !isThere(path) ? QDir::homePath() + text.mid(1) : path);
}

QString OpenPanelDialog::candidate() const
{
    if (m_typed) {
        return typedPath();
    }
    QString row = selectedRow();
    const bool unchanged = !m_asked.isEmpty() && m_name->text() == m_request.preselected &&
                           directory().absolutePath() == QDir::cleanPath(m_request.directory) &&
                           (row.isEmpty() || row == m_asked);
    if (unchanged) {
        return m_asked;
    }
    if (!row.isEmpty()) {
        return row;
    }
    return m_name->text().isEmpty() ? QString() : typedPath();
}

void OpenPanelDialog::updateConfirmButton()
{
    m_confirm->setEnabled(!candidate().isEmpty());
}

void OpenPanelDialog::explain(const QString &text)
{
    m_note->setText(text);
    m_note->setVisible(!text.isEmpty());
}

void OpenPanelDialog::enter(const QString &folder)
{
    setDirectory(folder);
    Q_EMIT directoryEntered(folder);
}

void OpenPanelDialog::accept()
{
    if (const QStringList rows = selectedRows(); rows.size() > 1 && !m_typed) {
        m_chosen = rows;
        done(QDialog::Accepted);
        return;
    }
    const QString path = candidate();
    if (path.isEmpty()) {
        return;
    }
    // A name that is not text cannot be looked up, but whoever asked can tell why.
    const bool isNotText = path.contains(QChar::ReplacementCharacter) && !isThere(path);
    if (!isNotText && !isThere(path)) {
        explain(QStringLiteral("There is no item of this name."));
        return;
    }
    const bool isFolder = QFileInfo(path).isDir();
    if (isFolder && !m_request.canChooseDirectories) {
        enter(path);
        return;
    }
    if (!isFolder && !isNotText && !m_request.canChooseFiles) {
        explain(QStringLiteral("Please choose a folder."));
        return;
    }
    m_chosen = {path};
    done(QDialog::Accepted);
}

void OpenPanelDialog::done(int result)
{
    QFileDialog::done(result);
    Q_EMIT answered(result == QDialog::Accepted ? m_chosen : QStringList());
}

bool OpenPanelDialog::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_confirm && event->type() == QEvent::EnabledChange) {
        // The base class judges by its own reading of the name.
        updateConfirmButton();
    } else if ((watched == m_list || watched == m_tree) && event->type() == QEvent::KeyPress) {
        const auto *key = static_cast<QKeyEvent *>(event);
        if (handleKey(key->key(), key->modifiers() & ~Qt::KeypadModifier)) {
            return true;
        }
    }
    return QFileDialog::eventFilter(watched, event);
}

bool OpenPanelDialog::handleKey(int key, Qt::KeyboardModifiers modifiers)
{
    const QString row = selectedRow();
    if (row.isEmpty()) {
        return false;
    }
    if (key == Qt::Key_Down && modifiers == Qt::AltModifier && QFileInfo(row).isDir()) {
        enter(row);
        return true;
    }
    if ((key == Qt::Key_Return || key == Qt::Key_Enter) && modifiers == Qt::NoModifier) {
        accept();
        return true;
    }
    return false;
}

} // namespace quillhaven
