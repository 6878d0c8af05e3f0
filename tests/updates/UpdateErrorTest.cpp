// SPDX-License-Identifier: GPL-3.0-or-later

#include "updates/UpdateError.h"

#include <gtest/gtest.h>

using namespace quillhaven;

TEST(UpdateError, EachCaseHasItsText)
{
    EXPECT_EQ(UpdateError::invalidURL().errorDescription(), QStringLiteral("Invalid update URL"));
    EXPECT_EQ(UpdateError::networkError().errorDescription(),
              QStringLiteral("Network error while checking for updates"));
    EXPECT_EQ(UpdateError::parseError().errorDescription(), QStringLiteral("Failed to parse update information"));
    EXPECT_EQ(UpdateError::gistNotFound().errorDescription(),
              QStringLiteral("Update information not found. Please check the gist URL."));
}

TEST(UpdateError, EachErrorKnowsItsCase)
{
    EXPECT_EQ(UpdateError::invalidURL().errorCase(), UpdateError::Case::invalidURL);
    EXPECT_EQ(UpdateError::networkError().errorCase(), UpdateError::Case::networkError);
    EXPECT_EQ(UpdateError::parseError().errorCase(), UpdateError::Case::parseError);
    EXPECT_EQ(UpdateError::gistNotFound().errorCase(), UpdateError::Case::gistNotFound);
}
