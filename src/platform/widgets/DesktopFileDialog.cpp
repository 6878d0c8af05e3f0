// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/widgets/DesktopFileDialog.h"

#include <QPalette>
#include <QSettings>
#include <QStringList>

namespace quillhaven {

namespace {

/// Qt's dialog keeps the folders that were looked at in a file of its own, where anybody could read what is protected.
void keepNoHistory()
{
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("/dev/null"));
}

QString titleOf(const OpenPanelRequest &request)
{
    QStringList parts{request.title, request.message};
    parts.removeAll(QString());
    if (parts.isEmpty()) {
        return request.canChooseFiles ? QStringLiteral("Choose a File") : QStringLiteral("Choose a Folder");
    }
    return parts.join(QStringLiteral(" – "));
}

QFileDialog::FileMode modeOf(const OpenPanelRequest &request)
{
    if (!request.canChooseFiles) {
        return QFileDialog::Directory;
    }
    return request.allowsMultipleSelection ? QFileDialog::ExistingFiles : QFileDialog::ExistingFile;
}

} // namespace

std::unique_ptr<QFileDialog> desktopFileDialog(const OpenPanelRequest &request, const QPalette &palette,
                                               QWidget *parent)
{
    keepNoHistory();
    auto dialog = std::make_unique<QFileDialog>(parent, titleOf(request));
    dialog->setPalette(palette);
    dialog->setAcceptMode(QFileDialog::AcceptOpen);
    dialog->setFileMode(modeOf(request));
    dialog->setOption(QFileDialog::ShowDirsOnly, !request.canChooseFiles);
    dialog->setOption(QFileDialog::ReadOnly, !request.canCreateDirectories);
    if (!request.prompt.isEmpty()) {
        dialog->setLabelText(QFileDialog::Accept, request.prompt);
    }
    if (!request.directory.isEmpty()) {
        dialog->setDirectory(request.directory);
    }
    dialog->setAccessibleDescription(request.message);
    return dialog;
}

} // namespace quillhaven
