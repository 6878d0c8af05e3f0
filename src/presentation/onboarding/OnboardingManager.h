// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "settings/Settings.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace quillhaven {

/// Keeps whether the user has read the introduction, which the main window shows until then. Main thread only.
class OnboardingManager : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Created in C++")
    Q_PROPERTY(bool shouldShowOnboarding READ shouldShowOnboarding NOTIFY shouldShowOnboardingChanged)

public:
    static constexpr const auto &hasCompletedOnboardingKey = settings::hasCompletedOnboarding;

    /// The settings must outlive this object.
    explicit OnboardingManager(UserDefaults &defaults, QObject *parent = nullptr);

    /// Defined in the program only.
    static OnboardingManager &shared();

    [[nodiscard]] bool shouldShowOnboarding() const { return m_shouldShowOnboarding; }

    /// The user has read the introduction. It is never shown again.
    Q_INVOKABLE void getStarted();
    /// Closes the introduction until the next start.
    Q_INVOKABLE void close();

Q_SIGNALS:
    void shouldShowOnboardingChanged();

private:
    UserDefaults &m_defaults;
    bool m_shouldShowOnboarding;
};

} // namespace quillhaven
