// SPDX-License-Identifier: GPL-3.0-or-later

#include "contract/BiometricAuthenticatorContract.h"
#include "platform/linux/session/FprintAuthenticator.h"
#include "platform/linux/session/FprintClient.h"
#include "support/FakeBiometricAuthenticator.h"

namespace quillhaven::test {
namespace {

/// A virtual reader of a real fprintd.
class RealReader
{
public:
    RealReader()
    {
        m_other.forgetAllFingers();
        m_other.enrol("alice");
        m_other.setScanType("press");
    }

    [[nodiscard]] BiometricAuthenticator &authenticator() { return m_authenticator; }
    void placeFinger() { send("SCAN alice"); }
    void placeOtherFinger() { send("SCAN mallory"); }
    void failReader() { send("ERROR 0"); }
    void forgetFingers() { m_other.forgetAllFingers(); }

private:
    static void send(const QByteArray &event) { EXPECT_TRUE(FprintClient::sendToReader(event)); }

    FprintClient m_other;
    FprintAuthenticator m_authenticator;
};

class FakeReader
{
public:
    FakeReader() { m_authenticator.waitsForFinger = true; }

    [[nodiscard]] BiometricAuthenticator &authenticator() { return m_authenticator; }
    void placeFinger() { m_authenticator.decide(true); }
    void placeOtherFinger() { m_authenticator.decide(false); }
    void failReader() { m_authenticator.decide(false); }
    void forgetFingers() { m_authenticator.isAvailable = false; }

private:
    FakeBiometricAuthenticator m_authenticator;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Fprint, BiometricAuthenticatorContract, RealReader);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, BiometricAuthenticatorContract, FakeReader);

} // namespace
} // namespace quillhaven::test
