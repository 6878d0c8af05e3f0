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

} // namespace quillhaven::testing
