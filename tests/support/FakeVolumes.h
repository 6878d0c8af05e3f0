// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/VolumeInspector.h"

#include <QHash>

namespace quillhaven::test {

/// Knows what the test says of each path, and nothing of the others.
class FakeVolumes : public VolumeInspector
{
public:
    [[nodiscard]] StorageFacts factsAbout(const QString &path) const override { return facts.value(path); }

    QHash<QString, StorageFacts> facts; ///< not to be changed while a question is under way
};

} // namespace quillhaven::test
