// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/WindowEngine.h"

#include "presentation/controls/AccessibleStates.h"
#include "presentation/tokens/Design.h"

#include <QQuickStyle>

namespace quillhaven {

std::unique_ptr<QQmlEngine> makeWindowEngine(const DisplayPreferences &display)
{
    // The style applies to the whole process, and must be set before the first control is created.
    static const bool isStyleChosen = [] {
        QQuickStyle::setStyle(QStringLiteral("Basic"));
        return true;
    }();
    Q_UNUSED(isStyleChosen)
    reportDisabledControls();
    auto engine = std::make_unique<QQmlEngine>();
    installDesign(*engine);
    followDisplay(*engine, display);
    return engine;
}

} // namespace quillhaven
