// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "credentials/DialogModel.h"

#include <QCoroTask>
#include <QStringList>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

namespace quillhaven {

class FilePanels;

/// The model of the sheet that gathers items to protect at once. The list only ever holds items that can be protected,
/// each once, in the order in which they were chosen.
class BulkFilePickerModel : public quillhaven::DialogModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the program")
    Q_PROPERTY(bool showingFilePicker READ showingFilePicker NOTIFY showingFilePickerChanged)
    Q_PROPERTY(QVariantList entries READ entries NOTIFY entriesChanged)
    Q_PROPERTY(int count READ count NOTIFY entriesChanged)
    Q_PROPERTY(bool canProtect READ canProtect NOTIFY entriesChanged)

public:
    /// Those of the paths that can be protected, in their order, each file once.
    using ProtectablePaths = std::function<QStringList(const QStringList &paths)>;

    BulkFilePickerModel(FilePanels &panels, ProtectablePaths protectablePaths, QObject *parent = nullptr);

    /// The open panel is up.
    [[nodiscard]] bool showingFilePicker() const { return m_showingFilePicker; }
    [[nodiscard]] QStringList selectedURLs() const { return m_selectedURLs; }
    /// The same for a view: each has a `path`, a `name` and `isFolder`.
    [[nodiscard]] QVariantList entries() const;
    [[nodiscard]] int count() const { return static_cast<int>(m_selectedURLs.size()); }
    [[nodiscard]] bool canProtect() const { return !m_selectedURLs.isEmpty(); }

    /// Presents the sheet with an empty list.
    void show();
    /// "Select Files & Folders": lets the user choose. Ignored while the panel is open.
    Q_INVOKABLE void selectFiles();
    /// Adds what can be protected and is not listed yet; the rest is left out without a message.
    void handleFileSelection(const QStringList &paths);
    Q_INVOKABLE void remove(const QString &path);
    Q_INVOKABLE void clearAll();
    Q_INVOKABLE void cancel();
    /// Closes, then hands the list over. Nothing while it is empty.
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
