// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QAbstractListModel>
#include <QList>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <functional>

namespace quillhaven {

/// Something that the user has to know before going on, shown above the list until it is settled.
struct Notice
{
    QString id; ///< names the notice, so that it can be replaced or taken away
    QString text;
    QString actionTitle = {}; ///< the label of the button; no button when empty
    std::function<void()> action = {};
    QString otherActionTitle = {}; ///< a second button
    std::function<void()> otherAction = {};
    bool isDismissible = false; ///< the user can close it
    bool isWaiting = false;     ///< something goes on by itself; a busy mark is shown
};

/// The notices above the list, in the order in which they came. Main thread only.
class NoticesModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Created in C++")
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    enum Role { TextRole = Qt::UserRole, ActionTitleRole, OtherActionTitleRole, IsDismissibleRole, IsWaitingRole };

    using QAbstractListModel::QAbstractListModel;

    /// Adds the notice, or replaces the one with its id.
    void show(const Notice &notice);
    /// Does nothing when there is none.
    void remove(const QString &id);
    [[nodiscard]] bool contains(const QString &id) const { return indexOf(id) >= 0; }
    [[nodiscard]] int count() const { return static_cast<int>(m_notices.size()); }

    /// The buttons of the notice in a row. `dismiss` takes it away.
    Q_INVOKABLE void act(int row);
    Q_INVOKABLE void actOtherwise(int row);
    Q_INVOKABLE void dismiss(int row);

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void countChanged();

private:
    [[nodiscard]] qsizetype indexOf(const QString &id) const;
    void removeAt(qsizetype row);

    QList<Notice> m_notices;
};

} // namespace quillhaven
