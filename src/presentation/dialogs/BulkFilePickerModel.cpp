// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dialogs/BulkFilePickerModel.h"

#include "async/Jobs.h"
#include "platform/FilePanels.h"
#include "support/DisplayName.h"
#include "support/Paths.h"
#include "support/printLogger.h"

#include <QFileInfo>

namespace quillhaven {

BulkFilePickerModel::BulkFilePickerModel(FilePanels &panels, ProtectablePaths protectablePaths, QObject *parent)
    : DialogModel(parent), m_panels(panels), m_protectablePaths(std::move(protectablePaths))
{
}

QVariantList BulkFilePickerModel::entries() const
{
    QVariantList entries;
    for (const QString &path : m_selectedURLs) {
        entries.append(QVariantMap{{QStringLiteral("path"), path},
                                   {QStringLiteral("name"), displayName(lastPathComponent(path))},
                                   {QStringLiteral("isFolder"), QFileInfo(path).isDir()}});
    }
    return entries;
}

void BulkFilePickerModel::show()
{
    setSelectedURLs({});
    setIsPresented(true);
}

void BulkFilePickerModel::setShowingFilePicker(bool value)
{
    assign(m_showingFilePicker, value, &BulkFilePickerModel::showingFilePickerChanged);
}

void BulkFilePickerModel::setSelectedURLs(const QStringList &paths)
{
    assign(m_selectedURLs, paths, &BulkFilePickerModel::entriesChanged);
}

void BulkFilePickerModel::selectFiles()
{
    if (!m_showingFilePicker) {
        setShowingFilePicker(true);
        startJob([this] { return runFilePicker(); });
    }
}

QCoro::Task<> BulkFilePickerModel::runFilePicker()
{
    std::optional<QStringList> chosen;
    try {
        OpenPanelRequest request;
        request.canChooseFiles = true;
        request.canChooseDirectories = true;
        request.allowsMultipleSelection = true;
        chosen = co_await m_panels.openSeveral(request);
    } catch (...) {
        printLogger(QStringLiteral("File selection failed"));
    }
    setShowingFilePicker(false);
    handleFileSelection(chosen.value_or(QStringList()));
}

void BulkFilePickerModel::handleFileSelection(const QStringList &paths)
{
    QStringList gathered = m_selectedURLs;
    for (const QString &path : m_protectablePaths(gathered + paths)) {
        if (!gathered.contains(path)) {
            gathered.append(path);
        }
    }
    setSelectedURLs(gathered);
}

void BulkFilePickerModel::remove(const QString &path)
{
    QStringList kept = m_selectedURLs;
    kept.removeOne(path);
    setSelectedURLs(kept);
}

void BulkFilePickerModel::clearAll()
{
    setSelectedURLs({});
}

void BulkFilePickerModel::cancel()
{
    setIsPresented(false);
}

void BulkFilePickerModel::protect()
{
    if (isPresented() && canProtect()) {
        const QStringList paths = m_selectedURLs;
        closeThen(onFilesSelected, paths);
    }
}

} // namespace quillhaven
