// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dashboard/RescueActions.h"

#include "async/Jobs.h"
#include "engine/QuillhavenManager.h"
#include "platform/FilePanels.h"
#include "presentation/dashboard/FinderRowTexts.h"
#include "presentation/dashboard/NoticesModel.h"
#include "presentation/dialogs/OperationErrors.h"
#include "support/DisplayName.h"
#include "support/Paths.h"

#include <QFileInfo>
#include <QLocale>
#include <QMap>

#include <algorithm>
#include <utility>

namespace quillhaven {

namespace {

const QString noticeId = QStringLiteral("lost-items");

QString nameOf(const LostItem &lost)
{
    if (!lost.name.isEmpty()) {
        return lost.name;
    }
    return lost.isFolder ? QStringLiteral("Unnamed folder") : QStringLiteral("Unnamed file");
}

/// "File, 12.3 kB, changed on 21 Nov 2026 10:30, probably from ~/papers."
QString detailsOf(const LostItem &lost, const QString &home)
{
    const QLocale locale;
    QString details =
        (lost.isFolder ? QStringLiteral("Folder, %1, changed on %2") : QStringLiteral("File, %1, changed on %2"))
            .arg(locale.formattedDataSize(lost.size, 1, QLocale::DataSizeSIFormat),
                 locale.toString(lost.modified, QLocale::ShortFormat));
    if (!lost.probablePlace.isEmpty()) {
        details +=
            QStringLiteral(", probably from ") + displayName(finder_row::shortenedPath(lost.probablePlace, home));
    }
    return details + QLatin1Char('.');
}

QString freePath(const QString &folder, const QString &name)
{
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    const qsizetype end = dot > 0 ? dot : name.size();
    QString path = pathInDirectory(folder, name);
    for (int number = 2; QFileInfo::exists(path) || QFileInfo(path).isSymLink(); ++number) {
        path = pathInDirectory(folder, name.left(end) + QLatin1Char(' ') + QString::number(number) + name.mid(end));
    }
    return path;
}

} // namespace

RescueActions::RescueActions(const DashboardContext &context, FilePanels &panels, NoticesModel &notices,
                             const QString &home, QObject *parent)
    : QObject(parent), m_context(context), m_panels(panels), m_notices(notices), m_home(home)
{
    connect(&context.quillhavenManager, &QuillhavenManager::itemLeftBehind, this, &RescueActions::look);
    connect(&context.quillhavenManager.catalogue(), &ItemCatalogue::problemChanged, this, &RescueActions::look);
    m_dialog.onLookAgain = [this] { look(); };
    m_dialog.onChosen = [this](int entry, int choice) {
        const Found found = m_found.at(entry);
        m_dialog.setIsBusy(true);
        startJob([this, found, choice] { return carryOut(found, found.choices.at(choice)); });
    };
}

void RescueActions::show()
{
    m_dialog.setIsPresented(true);
    look();
}

void RescueActions::look()
{
    if (std::exchange(m_isLooking, true)) {
        m_looksAgain = true;
        return;
    }
    m_dialog.setIsBusy(true);
    startJob([this] { return runSearch(); });
}

QCoro::Task<> RescueActions::runSearch()
{
    do {
        m_looksAgain = false;
        const RescueFindings findings = co_await m_context.quillhavenManager.findLostItems();
        showFindings(findings);
    } while (m_looksAgain);
    m_isLooking = false;
    if (const auto problem = m_context.quillhavenManager.catalogue().problem()) {
        m_dialog.setEntries({{.title = QStringLiteral("The list of items cannot be compared"),
                              .details = *problem,
                              .symbol = QStringLiteral("exclamationmark.triangle.fill"),
                              .choices = {}}});
    }
    m_dialog.setIsBusy(false);
    showNotice();
}

void RescueActions::showFindings(const RescueFindings &findings)
{
    m_found.clear();
    for (const LostItem &lost : findings.lostItems) {
        const QList<Choice> choices = lost.probablePlace.isEmpty()
                                          ? QList{Choice::ChooseFolder, Choice::AddToList}
                                          : QList{Choice::GiveBack, Choice::ChooseFolder, Choice::AddToList};
        m_found.append({.lost = lost, .itemId = {}, .choices = choices});
    }
    for (const QString &id : findings.returnedItems) {
        m_found.append({.lost = {}, .itemId = id, .choices = {Choice::MarkUnlocked, Choice::RemoveFromList}});
    }
    for (const QString &id : findings.interruptedLocks) {
        m_found.append({.lost = {}, .itemId = id, .choices = {Choice::FinishLocking}});
    }
    QList<RescueEntry> entries;
    for (const Found &found : std::as_const(m_found)) {
        entries.append(entryOf(found));
    }
    m_dialog.setEntries(entries);
}

RescueEntry RescueActions::entryOf(const Found &found) const
{
    static const QMap<Choice, QString> labels{{Choice::GiveBack, QStringLiteral("Give Back")},
                                              {Choice::ChooseFolder, QStringLiteral("Give Back To…")},
                                              {Choice::AddToList, QStringLiteral("Add to List")},
                                              {Choice::MarkUnlocked, QStringLiteral("Mark as Unlocked")},
                                              {Choice::RemoveFromList, QStringLiteral("Remove from List")},
                                              {Choice::FinishLocking, QStringLiteral("Finish Locking")}};
    RescueEntry entry;
    for (const Choice choice : found.choices) {
        entry.choices.append(labels.value(choice));
    }
    if (found.lost) {
        entry.title = displayName(nameOf(*found.lost));
        entry.details = detailsOf(*found.lost, m_home);
        entry.symbol = found.lost->isFolder ? QStringLiteral("folder.fill") : finder_row::fileIcon(found.lost->name);
    } else if (const ProtectedItem *item = m_context.quillhavenManager.catalogue().item(found.itemId)) {
        entry.title = displayName(item->originalName);
        const QString text = found.choices.contains(Choice::FinishLocking)
                                 ? QStringLiteral("Locking it was interrupted: it is no longer in %1, although the "
                                                  "list says that it is unlocked.")
                                 : QStringLiteral("Is back in %1, although the list says that it is locked.");
        entry.details = text.arg(displayName(finder_row::shortenedPath(item->originalPath, m_home)));
        entry.symbol = finder_row::leadingIcon(*item);
    }
    return entry;
}

int RescueActions::countWith(Choice choice) const
{
    return static_cast<int>(
        std::ranges::count_if(m_found, [choice](const Found &each) { return each.choices.contains(choice); }));
}

void RescueActions::showNotice()
{
    QStringList sentences;
    const auto add = [&sentences](int count, const QString &one, const QString &several) {
        if (count > 0) {
            sentences.append((count == 1 ? one : several).arg(count));
        }
    };
    add(countWith(Choice::ChooseFolder), QStringLiteral("%1 item in private storage has no entry in the list."),
        QStringLiteral("%1 items in private storage have no entry in the list."));
    add(countWith(Choice::MarkUnlocked),
        QStringLiteral("%1 item is back at its place although the list says that it is locked."),
        QStringLiteral("%1 items are back at their places although the list says that they are locked."));
    add(countWith(Choice::FinishLocking), QStringLiteral("%1 item was being locked when the program ended."),
        QStringLiteral("%1 items were being locked when the program ended."));
    if (sentences.isEmpty()) {
        m_notices.remove(noticeId);
        return;
    }
    m_notices.show({.id = noticeId,
                    .text = sentences.join(QLatin1Char(' ')),
                    .actionTitle = QStringLiteral("Show"),
                    .action = [this] { show(); },
                    .isDismissible = true});
}

QCoro::Task<> RescueActions::carryOut(Found found, Choice choice)
{
    QuillhavenManager &engine = m_context.quillhavenManager;
    try {
        if (found.lost) {
            co_await settle(*found.lost, choice);
        } else if (choice == Choice::FinishLocking) {
            if (const ProtectedItem *item = engine.catalogue().item(found.itemId)) {
                co_await engine.lockItem(*item);
            }
        } else {
            const auto wanted = choice == Choice::MarkUnlocked ? QuillhavenManager::Returned::Unlocked
                                                               : QuillhavenManager::Returned::Removed;
            (void)co_await engine.settleReturnedItem(found.itemId, wanted);
        }
    } catch (...) {
        m_context.errors.report(std::current_exception());
    }
    m_dialog.setIsBusy(false);
    look();
}

QCoro::Task<> RescueActions::settle(LostItem lost, Choice choice)
{
    QuillhavenManager &engine = m_context.quillhavenManager;
    std::optional<QString> place = lost.probablePlace;
    if (choice == Choice::ChooseFolder || lost.probablePlace.isEmpty()) {
        place = co_await askForPlace(lost);
    }
    if (!place) {
        co_return;
    }
    if (choice == Choice::AddToList) {
        (void)co_await engine.listLostItem(lost, *place);
    } else {
        (void)co_await engine.giveBackLostItem(lost, *place);
    }
}

QCoro::Task<std::optional<QString>> RescueActions::askForPlace(LostItem lost)
{
    OpenPanelRequest request;
    request.canChooseFiles = false;
    request.canChooseDirectories = true;
    request.canCreateDirectories = true;
    request.message = QStringLiteral("Choose a folder for ") + displayName(nameOf(lost));
    request.prompt = QStringLiteral("Give Back");
    const std::optional<QString> folder = co_await m_panels.open(request);
    co_return folder ? std::optional(freePath(*folder, nameOf(lost))) : std::nullopt;
}

} // namespace quillhaven
