// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QCoroTask>
#include <QObject>
#include <QStringList>
#include <QVariantList>

#include <functional>

namespace quillhaven {

class FilePanels;

/// The model of the sheet that gathers items to protect at once. The list only ever holds items that can be protected,
/// each once, in the order in which they were chosen.
class BulkFilePickerView : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isPresented READ isPresented NOTIFY changed)
    Q_PROPERTY(bool showingFilePicker READ showingFilePicker NOTIFY changed)
    Q_PROPERTY(QVariantList entries READ entries NOTIFY entriesChanged)
    Q_PROPERTY(int count READ count NOTIFY entriesChanged)
    Q_PROPERTY(bool canProtect READ canProtect NOTIFY entriesChanged)

public:
    /// Those of the paths that can be protected, in their order, each file once.
    using ProtectablePaths = std::function<QStringList(const QStringList &paths)>;

    BulkFilePickerView(FilePanels &panels, ProtectablePaths protectablePaths, QObject *parent = nullptr);

    [[nodiscard]] bool isPresented() const { return m_isPresented; }
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
    /// Adds what can be protected and is not listed yet; the rest is left out without a word.
    void handleFileSelection(const QStringList &paths);
    Q_INVOKABLE void remove(const QString &path);
    Q_INVOKABLE void clearAll();
    Q_INVOKABLE void cancel();
    /// Closes, then hands the list over. Nothing while it is empty.
    Q_INVOKABLE void protect();

    std::function<void(const QStringList &paths)> onFilesSelected;

Q_SIGNALS:
    void changed();
    void entriesChanged();

private:
    [[nodiscard]] QCoro::Task<> runFilePicker();
    void setIsPresented(bool value);
    void setShowingFilePicker(bool value);
    void setSelectedURLs(const QStringList &paths);

    FilePanels &m_panels;
    ProtectablePaths m_protectablePaths;
    bool m_isPresented = false;
    bool m_showingFilePicker = false;
    QStringList m_selectedURLs;
};

} // namespace quillhaven
