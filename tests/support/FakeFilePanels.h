// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/FilePanels.h"

#include <QList>

#include <functional>

namespace quillhaven::test {

/// Answers each panel immediately with the result of `answer`; by default with the requested item, if it exists, like a
/// user who confirms.
class FakeFilePanels : public FilePanels
{
public:
    [[nodiscard]] QCoro::Task<std::optional<QString>> open(OpenPanelRequest request) override;
    [[nodiscard]] QCoro::Task<std::optional<QStringList>> openSeveral(OpenPanelRequest request) override;
    [[nodiscard]] QCoro::Task<std::optional<QStringList>> grantAccess(AccessRequest request) override;
    [[nodiscard]] std::optional<QString> runModal(const OpenPanelRequest &request) override;

    std::function<std::optional<QString>(const OpenPanelRequest &)> answer;
    /// Answers a panel for several items; `answer` does if it is empty.
    std::function<std::optional<QStringList>(const OpenPanelRequest &)> answerSeveral;
    /// Returns the granted paths if access to several is requested; all of them if it is empty.
    std::function<std::optional<QStringList>(const AccessRequest &)> grant;
    QList<OpenPanelRequest> requests;
    QList<AccessRequest> accessRequests;
};

} // namespace quillhaven::test
