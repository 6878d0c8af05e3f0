// SPDX-License-Identifier: GPL-3.0-or-later

// Random sequences of changes. After each one, the rows are what a plain filter and a stable sort of the catalogue
// give, and a view that follows only the signals shows the same.

#include "presentation/dashboard/FilteredItemsModel.h"

#include "ListFixture.h"
#include "support/Sample.h"

#include <QCollator>
#include <QLocale>

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

using Filters = SearchFilterBarModel;

/// Copies of the rows, updated only as the signals of the model say.
class FollowingView : public QObject
{
public:
    explicit FollowingView(const FilteredItemsModel &model) : m_model(model)
    {
        connect(&model, &QAbstractItemModel::rowsInserted, this, [this](const QModelIndex &, int first, int last) {
            for (int row = first; row <= last; ++row) {
                shown.insert(row, m_model.itemAt(row));
            }
        });
        connect(&model, &QAbstractItemModel::rowsRemoved, this,
                [this](const QModelIndex &, int first, int last) { shown.remove(first, last - first + 1); });
        connect(&model, &QAbstractItemModel::dataChanged, this,
                [this](const QModelIndex &first, const QModelIndex &last) {
                    for (int row = first.row(); row <= last.row(); ++row) {
                        shown[row] = m_model.itemAt(row);
                    }
                });
        connect(&model, &QAbstractItemModel::layoutAboutToBeChanged, this, [this] { remember(); });
        connect(&model, &QAbstractItemModel::layoutChanged, this, [this] { rearrange(); });
        connect(&model, &QAbstractItemModel::modelReset, this, [this] { shown = m_model.filteredAndSortedItems(); });
    }

    QList<ProtectedItem> shown;

private:
    void remember()
    {
        m_places.clear();
        for (int row = 0; row < m_model.count(); ++row) {
            m_places.append(m_model.index(row));
        }
    }
    /// Each row is where its persistent index is now.
    void rearrange()
    {
        const QList<ProtectedItem> before = shown;
        for (qsizetype i = 0; i < before.size(); ++i) {
            ASSERT_TRUE(m_places.at(i).isValid());
            shown[m_places.at(i).row()] = before.at(i);
        }
    }

    const FilteredItemsModel &m_model;
    QList<QPersistentModelIndex> m_places;
};

class FilteredItemsProperty : public ::testing::Test, protected ListFixture
{
protected:
    int draw(int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); }
    bool drawBool() { return draw(2) == 1; }
    /// Few enough that names are equal, or equal but for their case, and each is found by some search.
    QString drawName()
    {
        static const QStringList names{QStringLiteral("Alpha"), QStringLiteral("alpha"), QStringLiteral("\u00e9cole"),
                                       QStringLiteral("Ecole"), QStringLiteral("beta"),  QStringLiteral("Zebra 2"),
                                       QStringLiteral("zebra")};
        return names.at(draw(static_cast<int>(names.size())));
    }
    QString drawId() { return catalogue.items().at(draw(static_cast<int>(catalogue.items().size()))).id; }

    void add()
    {
        ProtectedItem item = namedItem(drawName(), drawBool());
        item.id = QString::number(++added);
        item.isFolder = drawBool();
        item.useTouchID = drawBool();
        catalogue.append(item);
    }
    void removeSome()
    {
        QSet<QString> ids;
        for (int count = draw(3); count >= 0; --count) {
            ids.insert(drawId());
        }
        catalogue.remove(ids);
    }
    void change(const ItemCatalogue::Change &change) { catalogue.updateUnsaved(drawId(), change); }
    void search()
    {
        static const QStringList texts{QString(),
                                       QStringLiteral("A"),
                                       QStringLiteral("alph"),
                                       QStringLiteral("E"),
                                       QStringLiteral("\u00c9"),
                                       QStringLiteral(" "),
                                       QStringLiteral("nothing")};
        filters.setSearchText(texts.at(draw(static_cast<int>(texts.size()))));
    }
    void filter()
    {
        switch (draw(3)) {
        case 0:
            filters.setStatusFilter(Filters::StatusFilter(draw(3)));
            break;
        case 1:
            filters.setAuthFilter(Filters::AuthFilter(draw(3)));
            break;
        default:
            filters.setTypeFilter(Filters::TypeFilter(draw(3)));
        }
    }
    /// Returns what was done.
    const char *step()
    {
        switch (catalogue.items().size() < 3 ? 0 : draw(11)) {
        case 0:
        case 1:
            add();
            return "add";
        case 2:
            removeSome();
            return "remove";
        case 3:
            change([this](ProtectedItem &item) { item.originalName = drawName(); });
            return "rename";
        case 4:
            change([this](ProtectedItem &item) { item.useTouchID = drawBool(); });
            return "change how it is protected";
        case 5:
            search();
            return "search";
        case 6:
            filter();
            return "filter";
        case 7:
            filters.clearAllFilters();
            return "clear the filters";
        case 8:
            filters.setSortOption(Filters::SortOption(draw(2)));
            return "sort";
        default:
            change([](ProtectedItem &item) { item.isMounted = !item.isMounted; });
            return "lock or unlock";
        }
    }

    [[nodiscard]] bool isExpected(const ProtectedItem &item) const
    {
        const QString name = QLocale().toLower(item.originalName);
        const bool isLocked = !item.isMounted;
        return name.contains(QLocale().toLower(filters.searchText())) &&
               (filters.statusFilter() == Filters::StatusFilter::all ||
                isLocked == (filters.statusFilter() == Filters::StatusFilter::locked)) &&
               (filters.authFilter() == Filters::AuthFilter::all ||
                item.useTouchID == (filters.authFilter() == Filters::AuthFilter::touchID)) &&
               (filters.typeFilter() == Filters::TypeFilter::all ||
                item.isFolder == (filters.typeFilter() == Filters::TypeFilter::folders));
    }
    [[nodiscard]] QList<ProtectedItem> expected() const
    {
        QCollator collator;
        collator.setCaseSensitivity(Qt::CaseInsensitive);
        const bool isByName = filters.sortOption() == Filters::SortOption::name;
        const auto precedes = [&](const ProtectedItem &left, const ProtectedItem &right) {
            return isByName ? collator.compare(left.originalName, right.originalName) < 0
                            : left.isMounted < right.isMounted;
        };
        QList<ProtectedItem> items;
        for (const ProtectedItem &item : catalogue.items()) {
            if (isExpected(item)) {
                items.insert(std::ranges::upper_bound(items, item, precedes), item);
            }
        }
        return items;
    }

    std::mt19937 random{Sample::seed()};
    FollowingView view{shown};
    int added = 0;
};

} // namespace

TEST_F(FilteredItemsProperty, RowsMatchTheCatalogueAfterAnySequenceOfChanges)
{
    const RowChanges changes(shown);
    for (int number = 0; number < 2000; ++number) {
        const std::string done = "step " + std::to_string(number) + ": " + step();
        ASSERT_EQ(rows.items(), catalogue.items()) << done;
        ASSERT_EQ(shown.filteredAndSortedItems(), expected()) << done;
        ASSERT_EQ(view.shown, expected()) << done;
        for (int row = 0; row < shown.count(); ++row) {
            ASSERT_EQ(shown.rowOf(shown.idAt(row)), row) << done;
        }
    }
    EXPECT_EQ(changes.reset.size(), 0);
}
