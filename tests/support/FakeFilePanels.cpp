// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/FakeFilePanels.h"

#include "platform/FileError.h"

#include <QFileInfo>

#include <algorithm>

namespace quillhaven::test {

namespace {

/// What the panels make of a chosen path.
QString usable(const QString &path)
{
    const QFileInfo info(path);
    if (info.exists() && !info.isFile() && !info.isDir()) {
        throw FileError::of(FileError::Kind::NotAFileOrFolder, FileError::Action::Use, path);
    }
    return info.isSymLink() ? info.symLinkTarget() : path;
}

} // namespace

std::optional<QString> FakeFilePanels::runModal(const OpenPanelRequest &request)
{
    requests.append(request);
    const std::optional<QString> chosen = answer ? answer(request) : std::nullopt;
    return chosen ? std::optional(usable(*chosen)) : std::nullopt;
}

QCoro::Task<std::optional<QString>> FakeFilePanels::open(OpenPanelRequest request)
{
    co_return runModal(request);
}

QCoro::Task<std::optional<QStringList>> FakeFilePanels::openSeveral(OpenPanelRequest request)
{
    if (!answerSeveral) {
        const std::optional<QString> one = runModal(request);
        co_return one ? std::optional(QStringList(*one)) : std::nullopt;
    }
    requests.append(request);
    std::optional<QStringList> chosen = answerSeveral(request);
    if (chosen) {
        std::ranges::transform(*chosen, chosen->begin(), usable);
        chosen->sort(); // as the list is
    }
    co_return chosen;
}

QCoro::Task<std::optional<QString>> FakeFilePanels::confirmAccess(PlaceRequest request)
{
    placeRequests.append(request);
    const std::optional<QString> chosen = confirm ? confirm(request) : std::optional(request.path);
    co_return chosen && *chosen != request.path ? std::optional(usable(*chosen)) : chosen;
}

QCoro::Task<std::optional<QStringList>> FakeFilePanels::grantAccess(AccessRequest request)
{
    accessRequests.append(request);
    co_return grant ? grant(request) : std::optional(request.paths);
}

} // namespace quillhaven::test
