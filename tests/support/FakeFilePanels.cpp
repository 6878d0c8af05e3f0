// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/FakeFilePanels.h"

#include <QFileInfo>

namespace quillhaven::testing {

QCoro::Task<std::optional<QString>> FakeFilePanels::open(OpenPanelRequest request)
{
    requests.append(request);
    if (answer) {
        co_return answer(request);
    }
    const QString path = request.directory + QLatin1Char('/') + request.preselected;
    const QFileInfo info(path);
    const bool isAllowed = info.isDir() ? request.canChooseDirectories : info.exists() && request.canChooseFiles;
    co_return isAllowed ? std::optional(path) : std::nullopt;
}

QCoro::Task<std::optional<QStringList>> FakeFilePanels::openSeveral(OpenPanelRequest request)
{
    const std::optional<QString> one = co_await open(std::move(request));
    co_return one ? std::optional(QStringList(*one)) : std::nullopt;
}

QCoro::Task<std::optional<QStringList>> FakeFilePanels::grantAccess(AccessRequest request)
{
    accessRequests.append(request);
    co_return grant ? grant(request) : std::optional(request.paths);
}

std::optional<QString> FakeFilePanels::runModal(const OpenPanelRequest &request)
{
    requests.append(request);
    return answer ? answer(request) : std::nullopt;
}

} // namespace quillhaven::testing
