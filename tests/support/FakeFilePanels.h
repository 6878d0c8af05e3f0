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

    std::function<std::optional<QString>(const OpenPanelRequest &)> answer;
    QList<OpenPanelRequest> requests;
};

} // namespace quillhaven::testing
