// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/onboarding/OnboardingManager.h"

namespace quillhaven {

OnboardingManager::OnboardingManager(UserDefaults &defaults, QObject *parent)
    : QObject(parent), m_defaults(defaults), m_shouldShowOnboarding(!hasCompletedOnboardingKey.read(defaults))
{
}

void OnboardingManager::getStarted()
{
    hasCompletedOnboardingKey.write(m_defaults, true);
    close();
}

void OnboardingManager::close()
{
    if (m_shouldShowOnboarding) {
        m_shouldShowOnboarding = false;
        Q_EMIT shouldShowOnboardingChanged();
    }
}

} // namespace quillhaven
