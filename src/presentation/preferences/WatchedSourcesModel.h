// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/WatchedSources.h"

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <map>

namespace quillhaven {

/// What of the desktop is watched at present, a row for each source. Main thread only.
class WatchedSourcesModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Created in C++")

public:
    enum Role { TitleRole = Qt::UserRole + 1, SentenceRole, IsAvailableRole, CanRepairRole };

    /// What connects the program with a source again; the source's entry says how that went.
    using Repairs = std::map<WatchedSources::Source, std::function<void()>>;

    /// `lockEverything` starts to lock all items. The reference must outlive this object.
    WatchedSourcesModel(const WatchedSources &watched, std::function<void()> lockEverything, Repairs repairs,
                        QObject *parent = nullptr);

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    Q_INVOKABLE void lockEverything() { m_lockEverything(); }
    /// Starts the repair of a row that has one.
    Q_INVOKABLE void repair(int row) const;

private:
    const WatchedSources &m_watched;
    std::function<void()> m_lockEverything;
    Repairs m_repairs;
};

} // namespace quillhaven
