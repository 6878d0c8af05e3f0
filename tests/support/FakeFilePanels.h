// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/FilePanels.h"

#include <QList>

#include <functional>

namespace quillhaven::test {

/// Answers each panel immediately with the result of a function, such as `answer`. Without one the user confirms what a
/// panel asks for, and declines to choose something new.
class FakeFilePanels : public FilePanels
{
public:
    [[nodiscard]] QCoro::Task<std::optional<QString>> open(OpenPanelRequest request) override;
    [[nodiscard]] QCoro::Task<std::optional<QStringList>> openSeveral(OpenPanelRequest request) override;
    [[nodiscard]] QCoro::Task<std::optional<QString>> confirmAccess(PlaceRequest request) override;
    [[nodiscard]] QCoro::Task<std::optional<QStringList>> grantAccess(AccessRequest request) override;
    [[nodiscard]] std::optional<QString> runModal(const OpenPanelRequest &request) override;

    std::function<std::optional<QString>(const OpenPanelRequest &)> answer;
    /// Answers a panel for several items; `answer` does if it is empty.
    std::function<std::optional<QStringList>(const OpenPanelRequest &)> answerSeveral;
    /// Returns the path that is confirmed or chosen instead; the requested one if it is empty.
    std::function<std::optional<QString>(const PlaceRequest &)> confirm;
    /// Returns the granted paths if access to several is requested; all of them if it is empty.
    std::function<std::optional<QStringList>(const AccessRequest &)> grant;
    QList<OpenPanelRequest> requests;
    QList<PlaceRequest> placeRequests;
    QList<AccessRequest> accessRequests;
};

} // namespace quillhaven::test
