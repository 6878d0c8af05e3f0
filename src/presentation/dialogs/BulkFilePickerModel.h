// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "credentials/DialogModel.h"

#include <QCoroTask>
#include <QStringList>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

namespace quillhaven {

class FilePanels;

/// The model of the sheet in which the user chooses items to protect in one run. The list contains only items that can
/// be protected, each once, in the order in which they were chosen.
class BulkFilePickerModel : public quillhaven::DialogModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Created in C++")
    Q_PROPERTY(bool showingFilePicker READ showingFilePicker NOTIFY showingFilePickerChanged)
    Q_PROPERTY(QVariantList entries READ entries NOTIFY entriesChanged)
    Q_PROPERTY(int count READ count NOTIFY entriesChanged)
    Q_PROPERTY(bool canProtect READ canProtect NOTIFY entriesChanged)

public:
    /// Returns those of the paths that can be protected, in their order, each file once.
    using ProtectablePaths = std::function<QStringList(const QStringList &paths)>;

    BulkFilePickerModel(FilePanels &panels, ProtectablePaths protectablePaths, QObject *parent = nullptr);

    /// Whether the open panel is shown.
    [[nodiscard]] bool showingFilePicker() const { return m_showingFilePicker; }
    [[nodiscard]] QStringList selectedURLs() const { return m_selectedURLs; }
    /// The same for a view: each entry has a `path`, a `name` and `isFolder`.
    [[nodiscard]] QVariantList entries() const;
    [[nodiscard]] int count() const { return static_cast<int>(m_selectedURLs.size()); }
    [[nodiscard]] bool canProtect() const { return !m_selectedURLs.isEmpty(); }

    /// Presents the sheet with an empty list.
    void show();
    /// "Select Files & Folders": lets the user choose. Ignored while the panel is open.
    Q_INVOKABLE void selectFiles();
    /// Adds the paths that can be protected and are not listed yet; the others are ignored without a message.
    void handleFileSelection(const QStringList &paths);
    Q_INVOKABLE void remove(const QString &path);
    Q_INVOKABLE void clearAll();
    Q_INVOKABLE void cancel();
    /// Closes the sheet, then passes the list to `onFilesSelected`. Does nothing if the list is empty.
    Q_INVOKABLE void protect();

    std::function<void(const QStringList &paths)> onFilesSelected;

Q_SIGNALS:
    void showingFilePickerChanged();
    void entriesChanged();

private:
    [[nodiscard]] QCoro::Task<> runFilePicker();
    void setShowingFilePicker(bool value);
    void setSelectedURLs(const QStringList &paths);

    FilePanels &m_panels;
    ProtectablePaths m_protectablePaths;
    bool m_showingFilePicker = false;
    QStringList m_selectedURLs;
};

} // namespace quillhaven
