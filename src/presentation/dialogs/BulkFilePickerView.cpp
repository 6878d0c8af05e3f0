#include "presentation/dialogs/BulkFilePickerView.h"

#include "platform/FilePanels.h"
#include "platform/Jobs.h"
#include "platform/LocalizedError.h"
#include "platform/Paths.h"
#include "platform/printLogger.h"

#include <QFileInfo>

namespace quillhaven {

BulkFilePickerView::BulkFilePickerView(FilePanels &panels, CanProtectItem canProtectItem, QObject *parent)
    : QObject(parent), m_panels(panels), m_canProtectItem(std::move(canProtectItem))
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
    m_selectedURLs.clear();
    setIsPresented(true);
}

void BulkFilePickerView::setIsPresented(bool value)
{
    m_isPresented = value;
    Q_EMIT changed();
}

void BulkFilePickerView::selectFiles()
{
    if (m_showingFilePicker) {
        return;
    }
    m_showingFilePicker = true;
    Q_EMIT changed();
    startJob([this] { return runFilePicker(); });
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
    m_showingFilePicker = false;
    handleFileSelection(chosen.value_or(QStringList()));
}

void BulkFilePickerView::handleFileSelection(const QStringList &paths)
{
    for (const QString &path : paths) {
        if (!m_selectedURLs.contains(path) && m_canProtectItem(path)) {
            m_selectedURLs.append(path);
        }
    }
    Q_EMIT changed();
}

void BulkFilePickerView::remove(const QString &path)
{
    m_selectedURLs.removeOne(path);
    Q_EMIT changed();
}

void BulkFilePickerView::clearAll()
{
    m_selectedURLs.clear();
    Q_EMIT changed();
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
