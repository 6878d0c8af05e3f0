// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/FilePanels.h"

#include <QList>

#include <functional>

namespace quillhaven::testing {

/// Answers each panel at once with what `answer` returns; by default with the item that was asked for, when it is
/// there, as a user would who confirms.
class FakeFilePanels : public FilePanels
{
public:
    [[nodiscard]] QCoro::Task<std::optional<QString>> open(OpenPanelRequest request) override;
    [[nodiscard]] QCoro::Task<std::optional<QStringList>> openSeveral(OpenPanelRequest request) override;
    [[nodiscard]] QCoro::Task<std::optional<QStringList>> grantAccess(AccessRequest request) override;
    [[nodiscard]] std::optional<QString> runModal(const OpenPanelRequest &request) override;

    std::function<std::optional<QString>(const OpenPanelRequest &)> answer;
    /// What is ticked when access to several paths is asked for; all of them without it.
    std::function<std::optional<QStringList>(const AccessRequest &)> grant;
    QList<OpenPanelRequest> requests;
    QList<AccessRequest> accessRequests;
};

} // namespace quillhaven::testing
