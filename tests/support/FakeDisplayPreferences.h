// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/DisplayPreferences.h"

namespace quillhaven::test {

class FakeDisplayPreferences : public DisplayPreferences
{
public:
    using DisplayPreferences::setValues;
};

} // namespace quillhaven::test
