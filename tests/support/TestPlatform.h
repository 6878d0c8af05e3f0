// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "support/FolderPlatform.h"
#include "support/TemporaryHome.h"

namespace quillhaven::test {

/// A base class, so that the home is created before the platform that uses it.
class HasTemporaryHome
{
public:
    TemporaryHome home;
};

/// A FolderPlatform with a temporary home.
class TestPlatform : public HasTemporaryHome, public FolderPlatform
{
public:
    TestPlatform() : FolderPlatform(home.directories()) {}
};

} // namespace quillhaven::test
