// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dashboard/Announcer.h"

#include "presentation/dashboard/FilteredItemsModel.h"
#include "presentation/dashboard/FinderRowTexts.h"
#include "presentation/dashboard/NoticesModel.h"
#include "presentation/dashboard/ProtectedItemsModel.h"
#include "presentation/dashboard/SearchFilterBarModel.h"

#include <utility>

namespace quillhaven {

namespace {

using namespace std::chrono_literals;

constexpr auto collectingTime = 200ms;
constexpr auto typingPause = 800ms;
constexpr auto shownTime = 5s; // screen readers ask for the text when they come to it
constexpr qsizetype maxNamedItems = 3;

QString count(qsizetype number, const QString &noun)
{
    return QString::number(number) + QLatin1Char(' ') + noun + (number == 1 ? QString() : QStringLiteral("s"));
}

} // namespace

Announcer::Announcer(Clock &clock, const FilteredItemsModel &items, const SearchFilterBarModel &filters,
                     const NoticesModel &notices, QObject *parent)
    : QObject(parent), m_clock(clock), m_items(items), m_filters(filters), m_known(currentTexts())
{
    const ProtectedItemsModel &rows = items.rows();
    connect(&rows, &QAbstractItemModel::rowsInserted, this,
            [this](const QModelIndex &, int first, int last) { noteItems(first, last); });
    connect(&rows, &QAbstractItemModel::rowsAboutToBeRemoved, this, [this](const QModelIndex &, int first, int last) {
        for (int row = first; row <= last; ++row) {
            noteItem(m_items.rows().items().at(row).id, QString());
        }
    });
    connect(&rows, &QAbstractItemModel::modelReset, this, [this] { m_known = currentTexts(); });
    connect(&rows, &QAbstractItemModel::dataChanged, this,
            [this](const QModelIndex &first, const QModelIndex &last, const QList<int> &roles) {
                if (roles.isEmpty()) { // a record, and not only a mark of the window
                    noteItems(first.row(), last.row());
                } else if (roles.contains(ProtectedItemsModel::ShowingCopySuccessRole) &&
                           first.data(ProtectedItemsModel::ShowingCopySuccessRole).toBool()) {
                    announce(QStringLiteral("Path copied to clipboard"));
                }
            });
    const auto announceNotice = [this, &notices](int row) {
        announce(notices.index(row).data(NoticesModel::TextRole).toString());
    };
    connect(&notices, &NoticesModel::rowsInserted, this,
            [announceNotice](const QModelIndex &, int row) { announceNotice(row); });
    connect(&notices, &NoticesModel::dataChanged, this,
            [announceNotice](const QModelIndex &index) { announceNotice(index.row()); });
    connect(&filters, &SearchFilterBarModel::filtersChanged, this, [this] {
        m_typing = m_clock.startOneShot(typingPause, [this] {
            if (m_filters.hasActiveFilters()) {
                announce(m_items.count() == 0 ? QStringLiteral("No results")
                                              : count(m_items.count(), QStringLiteral("result")));
            }
        });
    });
}

void Announcer::announce(const QString &sentence)
{
    m_sentences.append(sentence);
    startCollecting();
}

void Announcer::startCollecting()
{
    if (!m_collecting) {
        m_collecting = m_clock.startOneShot(collectingTime, [this] { publish(); });
    }
}

void Announcer::publish()
{
    m_collecting.reset();
    const QStringList sentences = changedItems() + std::exchange(m_sentences, {});
    if (sentences.isEmpty()) {
        return;
    }
    setText(QString()); // so that the same text is announced again
    setText(sentences.join(QStringLiteral(". ")));
    m_showing = m_clock.startOneShot(shownTime, [this] { setText(QString()); });
}

QHash<QString, QString> Announcer::currentTexts() const
{
    QHash<QString, QString> texts;
    for (const ProtectedItem &item : m_items.rows().items()) {
        texts.insert(item.id, finder_row::accessibleText(item));
    }
    return texts;
}

void Announcer::noteItems(int first, int last)
{
    for (int row = first; row <= last; ++row) {
        const ProtectedItem &item = m_items.rows().items().at(row);
        noteItem(item.id, finder_row::accessibleText(item));
    }
}

void Announcer::noteItem(const QString &id, const QString &text)
{
    if (!m_before.contains(id)) {
        m_before.insert(id, m_known.value(id));
        m_changedIds.append(id);
    }
    if (text.isEmpty()) {
        m_known.remove(id);
    } else {
        m_known.insert(id, text);
    }
    startCollecting();
}

QStringList Announcer::changedItems()
{
    const QHash<QString, QString> before = std::exchange(m_before, {});
    QStringList sentences;
    int unlocked = 0;
    int removed = 0;
    for (const QString &id : std::exchange(m_changedIds, {})) {
        const QString text = m_known.value(id);
        if (text.isEmpty()) {
            removed += before.value(id).isEmpty() ? 0 : 1;
        } else if (before.value(id) != text) {
            const int row = m_items.rows().rowOf(id);
            sentences.append(text);
            unlocked += row >= 0 && m_items.rows().items().at(row).isMounted ? 1 : 0;
        }
    }
    if (sentences.size() > maxNamedItems) {
        const qsizetype locked = sentences.size() - unlocked;
        sentences.clear();
        if (locked > 0) {
            sentences.append(count(locked, QStringLiteral("item")) + QStringLiteral(" locked"));
        }
        if (unlocked > 0) {
            sentences.append(count(unlocked, QStringLiteral("item")) + QStringLiteral(" unlocked"));
        }
    }
    if (removed > 0) {
        sentences.append(count(removed, QStringLiteral("item")) + QStringLiteral(" removed from the list"));
    }
    return sentences;
}

void Announcer::setText(const QString &text)
{
    if (m_text != text) {
        m_text = text;
        Q_EMIT textChanged();
    }
}

} // namespace quillhaven
