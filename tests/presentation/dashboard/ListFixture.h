// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "Items.h"
#include "catalogue/ItemCatalogue.h"
#include "presentation/dashboard/FilteredItemsModel.h"
#include "presentation/dashboard/ProtectedItemsModel.h"
#include "presentation/dashboard/SearchFilterBarModel.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

namespace quillhaven::test {

/// Counts the changes of a model's rows, by kind.
struct RowChanges
{
    explicit RowChanges(QAbstractItemModel &model)
        : inserted(&model, &QAbstractItemModel::rowsInserted),
          removed(&model, &QAbstractItemModel::rowsRemoved),
          changed(&model, &QAbstractItemModel::dataChanged),
          layoutChanged(&model, &QAbstractItemModel::layoutChanged),
          reset(&model, &QAbstractItemModel::modelReset)
    {
    }

    void clear()
    {
        for (QSignalSpy *spy : {&inserted, &removed, &changed, &layoutChanged, &reset}) {
            spy->clear();
        }
    }
    [[nodiscard]] qsizetype count() const
    {
        return inserted.size() + removed.size() + changed.size() + layoutChanged.size() + reset.size();
    }

    QSignalSpy inserted;
    QSignalSpy removed;
    QSignalSpy changed;
    QSignalSpy layoutChanged;
    QSignalSpy reset;
};

/// The models of the list, with a catalogue in a new home.
struct ListFixture
{
    void load(const QList<ProtectedItem> &items)
    {
        services.defaults.standard().setData(settings::protectedItems.key, encodeProtectedItems(items));
        catalogue.load();
    }
    /// Loads records with these names, which are separated by spaces.
    void load(const char *names)
    {
        QList<ProtectedItem> items;
        for (const QString &name : QString::fromUtf8(names).split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
            items.append(namedItem(name));
        }
        load(items);
    }
    void setMounted(const QString &name, bool value)
    {
        catalogue.updateUnsaved(QStringLiteral("ID-") + name, [value](ProtectedItem &item) { item.isMounted = value; });
    }
    [[nodiscard]] QString shownNames() const { return namesOf(shown.filteredAndSortedItems()).join(QLatin1Char(' ')); }

    TestPlatform services;
    ItemCatalogue catalogue{services.defaults};
    ProtectedItemsModel rows{catalogue, QStringLiteral("/home/ada")};
    SearchFilterBarModel filters;
    FilteredItemsModel shown{rows, filters};
    QAbstractItemModelTester rowsTester{&rows, QAbstractItemModelTester::FailureReportingMode::Warning};
    QAbstractItemModelTester shownTester{&shown, QAbstractItemModelTester::FailureReportingMode::Warning};
};

} // namespace quillhaven::test
