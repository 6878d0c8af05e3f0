// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/Clock.h"

#include <QHash>
#include <QObject>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

namespace quillhaven {

class FilteredItemsModel;
class NoticesModel;
class SearchFilterBarModel;

/// What a screen reader reads out by itself, since it happened away from the keyboard focus: items that were locked,
/// unlocked, added or removed, a copied path, notices, and how many items a search has found. Main thread only.
class Announcer : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Part of the dashboard")
    /// Empty, except for a while after each announcement.
    Q_PROPERTY(QString text READ text NOTIFY textChanged)

public:
    /// The references must outlive this object.
    Announcer(Clock &clock, const FilteredItemsModel &items, const SearchFilterBarModel &filters,
              const NoticesModel &notices, QObject *parent = nullptr);

    [[nodiscard]] QString text() const { return m_text; }
    /// Announces a sentence, together with everything else that happens shortly after it.
    void announce(const QString &sentence);

Q_SIGNALS:
    void textChanged();

private:
    [[nodiscard]] QHash<QString, QString> currentTexts() const;
    /// Notes the rows as changed, or one item, without a text when it was removed.
    void noteItems(int first, int last);
    void noteItem(const QString &id, const QString &text);
    [[nodiscard]] QStringList changedItems();
    void startCollecting();
    void publish();
    void setText(const QString &text);

    Clock &m_clock;
    const FilteredItemsModel &m_items;
    const SearchFilterBarModel &m_filters;
    QHash<QString, QString> m_known;  ///< the text of each item's row
    QHash<QString, QString> m_before; ///< the same at the last announcement, of the items that have changed since
    QStringList m_changedIds;         ///< in the order of their first changes
    QStringList m_sentences;
    QString m_text;
    std::unique_ptr<RunningTimer> m_collecting;
    std::unique_ptr<RunningTimer> m_typing;
    std::unique_ptr<RunningTimer> m_showing;
};

} // namespace quillhaven
