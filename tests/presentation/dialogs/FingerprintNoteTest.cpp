// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dialogs/FingerprintNote.h"

#include "presentation/dialogs/ProtectionMethodDialogManager.h"
#include "support/FakeBiometricAuthenticator.h"
#include "support/RunTask.h"

#include <gtest/gtest.h>

using namespace quillhaven;
using namespace quillhaven::test;

TEST(FingerprintNote, IsShownOnlyWhileNoFingerprintIsSetUp)
{
    FakeBiometricAuthenticator biometrics;
    ProtectionMethodDialogManager dialog;
    const FingerprintNote note(dialog, biometrics);
    biometrics.isAvailable = false;
    (void)dialog.ask(QStringLiteral("Protect will.pdf"));
    EXPECT_TRUE(spinUntil([&] { return !dialog.touchIDNote().isEmpty(); }));
    EXPECT_TRUE(dialog.touchIDNote().startsWith(QStringLiteral("No fingerprint is set up on this computer.")));

    biometrics.isAvailable = true;
    (void)dialog.ask(QStringLiteral("Protect will.pdf"));
    EXPECT_TRUE(spinUntil([&] { return dialog.touchIDNote().isEmpty(); }));
}
