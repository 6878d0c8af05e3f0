// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/VolumeInspector.h"

#include <QHash>

#include <functional>

namespace quillhaven::test {

/// Knows what the test says of each path, and nothing of the others.
class FakeVolumes : public VolumeInspector
{
public:
    [[nodiscard]] StorageFacts factsAbout(const QString &path) const override
    {
        if (onQuestion) {
            onQuestion(path);
        }
        return facts.value(path);
    }

    // Neither may be changed while a question is under way.
    QHash<QString, StorageFacts> facts;
    std::function<void(const QString &path)> onQuestion; ///< called on the asking thread, which it may hold up
};

} // namespace quillhaven::test
