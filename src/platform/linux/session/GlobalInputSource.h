// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/UserInput.h"

#include <QObject>

#include <chrono>

namespace quillhaven {

/// One way in which a desktop reports input to any program; an object for each monitor. A receiver of its signals must
/// not destroy it before it returns. Main thread only.
class GlobalInputSource : public QObject
{
    Q_OBJECT

public:
    /// After input was reported, more of it need not be reported for this time.
    static constexpr std::chrono::seconds defaultPeriod{10};

    using QObject::QObject;

    /// Where the reports come from, in a sentence for the user.
    [[nodiscard]] virtual QString sentence() const = 0;

Q_SIGNALS:
    void inputSeen();
    /// The desktop has ended the reports.
    void lost();
};

} // namespace quillhaven
