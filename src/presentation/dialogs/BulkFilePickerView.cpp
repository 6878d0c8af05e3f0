// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dialogs/BulkFilePickerView.h"

#include "async/Jobs.h"
#include "platform/FilePanels.h"
#include "support/LocalizedError.h"
#include "support/Paths.h"
#include "support/printLogger.h"

#include <QFileInfo>

namespace quillhaven {

BulkFilePickerView::BulkFilePickerView(FilePanels &panels, ProtectablePaths protectablePaths, QObject *parent)
    : QObject(parent), m_panels(panels), m_protectablePaths(std::move(protectablePaths))
{
}

QVariantList BulkFilePickerView::entries() const
{
    QVariantList entries;
    for (const QString &path : m_selectedURLs) {
        entries.append(QVariantMap{{QStringLiteral("path"), path},
                                   {QStringLiteral("name"), lastPathComponent(path)},
                                   {QStringLiteral("isFolder"), QFileInfo(path).isDir()}});
    }
    return entries;
}

void BulkFilePickerView::show()
{
    setSelectedURLs({});
    setIsPresented(true);
}

void BulkFilePickerView::setIsPresented(bool value)
{
    m_isPresented = value;
    Q_EMIT changed();
}

void BulkFilePickerView::setShowingFilePicker(bool value)
{
    m_showingFilePicker = value;
    Q_EMIT changed();
}

void BulkFilePickerView::setSelectedURLs(const QStringList &paths)
{
    if (m_selectedURLs != paths) {
        m_selectedURLs = paths;
        Q_EMIT entriesChanged();
    }
}

void BulkFilePickerView::selectFiles()
{
    if (!m_showingFilePicker) {
        setShowingFilePicker(true);
        startJob([this] { return runFilePicker(); });
    }
}

QCoro::Task<> BulkFilePickerView::runFilePicker()
{
    std::optional<QStringList> chosen;
    try {
        OpenPanelRequest request;
        request.canChooseFiles = true;
        request.canChooseDirectories = true;
        request.allowsMultipleSelection = true;
        chosen = co_await m_panels.openSeveral(request);
    } catch (const LocalizedError &) {
        printLogger(QStringLiteral("File selection failed"));
    }
    setShowingFilePicker(false);
    handleFileSelection(chosen.value_or(QStringList()));
}

void BulkFilePickerView::handleFileSelection(const QStringList &paths)
{
    QStringList gathered = m_selectedURLs;
    for (const QString &path : m_protectablePaths(gathered + paths)) {
        if (!gathered.contains(path)) {
            gathered.append(path);
        }
    }
    setSelectedURLs(gathered);
}

void BulkFilePickerView::remove(const QString &path)
{
    QStringList kept = m_selectedURLs;
    kept.removeOne(path);
    setSelectedURLs(kept);
}

void BulkFilePickerView::clearAll()
{
    setSelectedURLs({});
}

void BulkFilePickerView::cancel()
{
    setIsPresented(false);
}

void BulkFilePickerView::protect()
{
    if (!m_isPresented || !canProtect()) {
        return;
    }
    const QStringList paths = m_selectedURLs;
    setIsPresented(false);
    if (onFilesSelected) {
        onFilesSelected(paths);
    }
}

} // namespace quillhaven
