// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/preferences/WatchedSourcesModel.h"

#include <algorithm>
#include <array>

namespace quillhaven {

namespace {

using Source = WatchedSources::Source;

struct Row
{
    Source source = Source::Input;
    QLatin1String title;
};

constexpr std::array rows{
    Row{Source::Input, QLatin1String("Keyboard and pointer")},
    Row{Source::Sleep, QLatin1String("Sleep")},
    Row{Source::ScreenLock, QLatin1String("Screen lock")},
    Row{Source::ScreenSaver, QLatin1String("Screen saver")},
    Row{Source::Tray, QLatin1String("Tray icon")},
    Row{Source::FileManagerMenus, QLatin1String("File manager menus")},
    Row{Source::Links, QLatin1String("Links to Quillhaven")},
    Row{Source::LaunchAtLogin, QLatin1String("Launch at login")},
};

} // namespace

WatchedSourcesModel::WatchedSourcesModel(const WatchedSources &watched, std::function<void()> lockEverything,
                                         Repairs repairs, QObject *parent)
    : QAbstractListModel(parent),
      m_watched(watched),
      m_lockEverything(std::move(lockEverything)),
      m_repairs(std::move(repairs))
{
    connect(&watched, &WatchedSources::stateChanged, this, [this](Source source) {
        const auto row =
            std::find_if(rows.begin(), rows.end(), [source](const Row &each) { return each.source == source; });
        const QModelIndex changed = index(int(row - rows.begin()));
        Q_EMIT dataChanged(changed, changed);
    });
}

int WatchedSourcesModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(rows.size());
}

QVariant WatchedSourcesModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const Row &row = rows.at(size_t(index.row()));
    const std::optional<WatchedSources::State> state = m_watched.state(row.source);
    switch (role) {
    case TitleRole:
        return row.title;
    case SentenceRole:
        return state ? state->sentence : QStringLiteral("Not looked for yet.");
    case IsAvailableRole:
        return state && state->isAvailable;
    case CanRepairRole:
        return m_repairs.contains(row.source);
    default:
        return {};
    }
}

QHash<int, QByteArray> WatchedSourcesModel::roleNames() const
{
    return {{TitleRole, "title"},
            {SentenceRole, "sentence"},
            {IsAvailableRole, "isAvailable"},
            {CanRepairRole, "canRepair"}};
}

void WatchedSourcesModel::repair(int row) const
{
    const auto found = m_repairs.find(rows.at(size_t(row)).source);
    if (found != m_repairs.end()) {
        found->second();
    }
}

} // namespace quillhaven
