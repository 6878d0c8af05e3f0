// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "support/FolderPlatform.h"
#include "support/TemporaryHome.h"

namespace quillhaven::testing {

/// Comes before the platform that lives in it.
class HasTemporaryHome
{
public:
    TemporaryHome home;
};

/// A FolderPlatform over a temporary home.
class TestPlatform : public HasTemporaryHome, public FolderPlatform
{
public:
    TestPlatform() : FolderPlatform(home.directories()) {}
};

} // namespace quillhaven::testing
