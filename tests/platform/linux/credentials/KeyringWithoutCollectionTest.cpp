// SPDX-License-Identifier: GPL-3.0-or-later

#include "credentials/KeychainManager.h"
#include "platform/linux/OpenSslRandomSource.h"
#include "platform/linux/credentials/SystemCredentialStore.h"
#include "support/LogCapture.h"
#include "support/TemporaryHome.h"

#include <gtest/gtest.h>

using namespace quillhaven;
using namespace quillhaven::test;

TEST(KeyringWithoutCollection, AllCallsReturnTheirOwnStatusAndShowNoPrompt)
{
    const TemporaryHome home;
    LogCapture log;
    OpenSslRandomSource random;
    SystemCredentialStore store(home.directories().configuration, random);
    const QString account = QStringLiteral("master_password");
    EXPECT_EQ(store.copyMatching(keychainServiceName, account).status, credentialNoDefaultCollection);
    EXPECT_EQ(store.add(keychainServiceName, account, "secret"), credentialNoDefaultCollection);
    EXPECT_EQ(store.update(keychainServiceName, account, "secret"), credentialNoDefaultCollection);
    EXPECT_EQ(store.remove(keychainServiceName, account), credentialNoDefaultCollection);
    EXPECT_EQ(store.place(), CredentialStore::Place::Keyring);
}
