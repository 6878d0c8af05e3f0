// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/widgets/OpenPanelDialog.h"

#include "platform/widgets/FolderView.h"
#include "platform/widgets/PanelLook.h"
#include "platform/widgets/PathCompleter.h"
#include "platform/widgets/PlacesList.h"
#include "support/DisplayName.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

namespace quillhaven {

namespace {

constexpr QSize panelSize(860, 600);

QString titleOf(const OpenPanelRequest &request)
{
    if (!request.title.isEmpty()) {
        return request.title;
    }
    if (!request.message.isEmpty()) {
        return request.message;
    }
    return request.allowsMultipleSelection ? QStringLiteral("Choose Files and Folders")
                                           : QStringLiteral("Choose a File or Folder");
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

OpenPanelDialog::OpenPanelDialog(const OpenPanelRequest &request, const QPalette &palette)
{
    setWindowTitle(titleOf(request));
    setAccessibleDescription(request.message);
    setModal(true);
    resize(panelSize);
    QVBoxLayout *rows = newPanelRows(*this, palette);
    if (!request.message.isEmpty()) {
        rows->addWidget(newTextLabel(request.message, this, true));
    }
    // In the order of the Tab key.
    rows->addLayout(newLocationRow());
    auto *lists = new QHBoxLayout;
    auto *places = new PlacesList(this);
    m_view = new FolderView(request.allowsMultipleSelection, this);
    lists->addWidget(places);
    lists->addWidget(m_view);
    rows->addLayout(lists);
    rows->addLayout(newNameRow());
    m_note = newTextLabel({}, this);
    m_note->hide();
    rows->addWidget(m_note);
    m_hidden = new QCheckBox(QStringLiteral("Show hidden items"), this);
    m_hidden->setToolTip(QStringLiteral("Ctrl+H"));
    m_confirm = new QPushButton(request.prompt.isEmpty() ? QStringLiteral("Open") : request.prompt, this);
    rows->addLayout(newButtonRow(*this, m_hidden, m_confirm));
    connect(m_hidden, &QCheckBox::toggled, m_view, &FolderView::setShowsHiddenItems);
    connect(places, &PlacesList::picked, this, [this](const QString &folder) { m_view->enter(folder); });
    connect(m_view, &FolderView::entered, this, &OpenPanelDialog::folderEntered);
    connect(m_view, &FolderView::selectionMoved, this, &OpenPanelDialog::selectionMoved);
    connect(m_view, &FolderView::chosen, this, &OpenPanelDialog::accept);
    addShortcuts();
    m_view->enter(request.directory);
    m_name->setFocus();
}

QHBoxLayout *OpenPanelDialog::newLocationRow()
{
    auto *row = new QHBoxLayout;
    auto *up = new QPushButton(QStringLiteral("Up"), this);
    up->setToolTip(QStringLiteral("Go to the folder above (Alt+Up)"));
    up->setAccessibleName(QStringLiteral("Go to the folder above"));
    up->setAutoDefault(false);
    connect(up, &QPushButton::clicked, this, [this] { m_view->goUp(); });
    m_location = newTextLabel({}, this);
    row->addWidget(up);
    row->addWidget(m_location, 1);
    return row;
}

QHBoxLayout *OpenPanelDialog::newNameRow()
{
    m_name = new QLineEdit(this);
    m_name->setAccessibleName(QStringLiteral("Name:"));
    m_name->setToolTip(QStringLiteral("A name in this folder, or a path"));
    m_name->setCompleter(new PathCompleter(*m_view, this));
    connect(m_name, &QLineEdit::textChanged, this, &OpenPanelDialog::nameEdited);
    connect(m_name, &QLineEdit::returnPressed, this, &OpenPanelDialog::accept);
    auto *label = new QLabel(QStringLiteral("Name:"), this);
    label->setBuddy(m_name);
    auto *row = new QHBoxLayout;
    row->addWidget(label);
    row->addWidget(m_name);
    return row;
}

void OpenPanelDialog::addShortcuts()
{
    const auto add = [this](int keys, auto action) {
        connect(new QShortcut(QKeySequence(keys), this), &QShortcut::activated, this, action);
    };
    add(static_cast<int>(Qt::CTRL) | Qt::Key_H, [this] { m_hidden->toggle(); });
    add(static_cast<int>(Qt::CTRL) | Qt::Key_L, [this] {
        m_name->setFocus();
        m_name->selectAll();
    });
    add(static_cast<int>(Qt::ALT) | Qt::Key_Up, [this] { m_view->goUp(); });
}

QString OpenPanelDialog::folder() const
{
    return m_view->folder();
}

void OpenPanelDialog::folderEntered(const QString &folder)
{
    m_location->setText(displayName(folder));
    showName({});
    explain({});
}

void OpenPanelDialog::nameEdited(const QString &text)
{
    m_isTyped = !text.isEmpty();
    m_view->clearSelection();
    explain({});
    updateConfirmButton();
}

void OpenPanelDialog::showName(const QString &name)
{
    const QSignalBlocker quiet(m_name);
    m_name->setText(displayName(name));
    m_isTyped = false;
    updateConfirmButton();
}

void OpenPanelDialog::selectionMoved()
{
    const QStringList selected = m_view->selectedPaths();
    if (selected.size() == 1) {
        showName(selected.constFirst().mid(selected.constFirst().lastIndexOf(QLatin1Char('/')) + 1));
    } else if (!selected.isEmpty() || !m_isTyped) {
        showName({});
    }
    explain(selected.size() > 1 ? QStringLiteral("%1 items are selected.").arg(selected.size()) : QString());
}

QString OpenPanelDialog::typedPath() const
{
    const QString text = m_name->text();
    if (text.startsWith(QLatin1Char('/'))) {
        return QDir::cleanPath(text);
    }
    const QString path = child(folder(), text);
    const bool namesHome = text == QLatin1String("~") || text.startsWith(QLatin1String("~/"));
    return QDir::cleanPath(namesHome && !isThere(path) ? QDir::homePath() + text.mid(1) : path);
}

QStringList OpenPanelDialog::candidates() const
{
    return m_isTyped ? QStringList(typedPath()) : m_view->selectedPaths();
}

void OpenPanelDialog::updateConfirmButton()
{
    m_confirm->setEnabled(!candidates().isEmpty());
}

void OpenPanelDialog::explain(const QString &text)
{
    m_note->setText(text);
    m_note->setVisible(!text.isEmpty());
}

void OpenPanelDialog::accept()
{
    const QStringList paths = candidates();
    if (paths.isEmpty() || !isVisible()) {
        return;
    }
    // A name that is not text cannot be looked up, but the caller can tell why.
    const bool isNotText = paths.constFirst().contains(QChar::ReplacementCharacter);
    if (m_isTyped && !isNotText && !isThere(paths.constFirst())) {
        explain(QStringLiteral("There is no item of this name."));
        return;
    }
    m_chosen = paths;
    done(QDialog::Accepted);
}

void OpenPanelDialog::done(int result)
{
    QDialog::done(result);
    Q_EMIT answered(result == QDialog::Accepted ? m_chosen : QStringList());
}

} // namespace quillhaven
