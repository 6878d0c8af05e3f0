// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/preferences/SettingsViewModel.h"
#include "platform/UserDefaults.h"
#include "presentation/tokens/ColorTokens.h"
#include "settings/Settings.h"
#include "support/LogCapture.h"
#include "support/PrintText.h"
#include "support/RunTask.h"
#include "support/TestPlatform.h"

#include <QQmlEngine>
#include <QSignalSpy>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <utility>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

using namespace std::chrono_literals;

const QString tooShort = QStringLiteral("Auto-lock time must be at least 1 minute");
const QString tooLong = QStringLiteral("Auto-lock time cannot exceed 120 minutes");
const QString shorterThanAdvised =
    QStringLiteral("For better security, consider setting auto-lock to at least 5 minutes");
const QString noLockOnSleep = QStringLiteral("Disabling lock on sleep may reduce security when your Mac goes to sleep");
const QString hiddenIcon = QStringLiteral("Hiding the menu bar icon will make it harder to access Quillhaven quickly");
const QString noTouchID = QStringLiteral("Touch ID is not available on this Mac or is not configured");
const QString unusedTouchID = QStringLiteral("Touch ID provides convenient and secure authentication");
const QString weakPasswords = QStringLiteral("Weak passwords may compromise the security of your protected files");
const QString invalidAppearance = QStringLiteral("Invalid appearance mode selected");
const QString neitherProtection =
    QStringLiteral("Consider enabling either Touch ID or strong password enforcement for better security");
const QString longWithoutSleep =
    QStringLiteral("With long auto-lock times, consider enabling lock on sleep for better security");
const QString hiddenAndNotStarted =
    QStringLiteral("If you hide the menu bar icon, consider enabling startup at login for easier access");

const QStringList allKeys{QStringLiteral("autoLockMinutes"), QStringLiteral("lockOnSleep"),
                          QStringLiteral("startAtLogin"),    QStringLiteral("hideMenuBarIcon"),
                          QStringLiteral("enableTouchID"),   QStringLiteral("enforceStrongPasswords"),
                          QStringLiteral("appearanceMode")};

/// Notes the keys in the order of their reading and writing, and has values of its own.
class NotingDefaults : public UserDefaults
{
public:
    [[nodiscard]] QVariant objectForKey(const QString &key) const override
    {
        if (onRead) {
            onRead();
        }
        reads.append(key);
        return values.value(key);
    }
    void setObject(const QString &key, const QVariant &value) override
    {
        writes.append(key);
        values[key] = value;
    }
    void removeObject(const QString &key) override { values.remove(key); }
    [[nodiscard]] bool setArray(const QString &, const QList<ArrayElement> &) override { return false; }
    [[nodiscard]] bool changeArray(const QString &, const ArrayChange &) override { return false; }

    std::function<void()> onRead;
    mutable QStringList reads;
    QStringList writes;
    QVariantMap values;
};

class NotingProvider : public UserDefaultsProvider
{
public:
    [[nodiscard]] UserDefaults &standard() override { return domain; }
    [[nodiscard]] std::optional<QString> problem() const override { return std::nullopt; }
    [[nodiscard]] bool reopen() override { return true; }
    [[nodiscard]] UserDefaults *suite(const QString &) override { return nullptr; }

    NotingDefaults domain;
};

template <typename Issue>
QStringList messagesOf(const QList<Issue> &issues)
{
    QStringList messages;
    for (const Issue &issue : issues) {
        messages.append(issue.message);
    }
    return messages;
}

/// A machine with a fingerprint reader, unless the test takes it away before it creates the model.
class SettingsViewModelTest : public ::testing::Test
{
protected:
    ~SettingsViewModelTest() override
    {
        model.reset();
        spinOnce();
    }
    SettingsViewModel &create()
    {
        model = std::make_unique<SettingsViewModel>(services.platform());
        return *model;
    }
    void createWith(UserDefaultsProvider &defaults)
    {
        const Platform platform = services.platform(services.fileManager, defaults, services.credentials);
        model = std::make_unique<SettingsViewModel>(platform);
    }
    /// A model whose first full validation is over.
    SettingsViewModel &createSettled()
    {
        create();
        services.clock.advance(300ms);
        return *model;
    }
    [[nodiscard]] QStringList errors() const { return messagesOf(model->validationErrors()); }
    [[nodiscard]] QStringList warnings() const { return messagesOf(model->validationWarnings()); }
    [[nodiscard]] UserDefaults &store() { return services.defaults.standard(); }

    TestPlatform services;
    std::unique_ptr<SettingsViewModel> model;
};

} // namespace

// Records and enumerations.

TEST(SettingsValidation, EachSeverityHasItsValueSymbolAndColour)
{
    const ColorTokens tokens;
    ASSERT_EQ(allValidationSeverities.size(), 3U);
    EXPECT_EQ(allValidationSeverities[0], ValidationSeverity::error);
    EXPECT_EQ(allValidationSeverities[1], ValidationSeverity::warning);
    EXPECT_EQ(allValidationSeverities[2], ValidationSeverity::info);
    EXPECT_EQ(int(ValidationSeverity::error), 0);
    EXPECT_EQ(int(ValidationSeverity::warning), 1);
    EXPECT_EQ(int(ValidationSeverity::info), 2);
    EXPECT_EQ(iconName(ValidationSeverity::error), QStringLiteral("xmark.circle.fill"));
    EXPECT_EQ(iconName(ValidationSeverity::warning), QStringLiteral("exclamationmark.triangle.fill"));
    EXPECT_EQ(iconName(ValidationSeverity::info), QStringLiteral("info.circle.fill"));
    EXPECT_EQ(color(ValidationSeverity::error, tokens), tokens.error);
    EXPECT_EQ(color(ValidationSeverity::warning, tokens), tokens.warning);
    EXPECT_EQ(color(ValidationSeverity::info, tokens), tokens.info);
}

TEST(SettingsValidation, TheColourOfASeverityFollowsTheScheme)
{
    const ColorTokens other{.platformBlue = QColor(Qt::cyan)};
    EXPECT_EQ(color(ValidationSeverity::info, other), QColor(Qt::cyan));
}

TEST(SettingsValidation, EachStatusIsShownAsOneTypeOfStatus)
{
    EXPECT_EQ(statusType(ValidationStatus::valid), StatusType::Enabled);
    EXPECT_EQ(statusType(ValidationStatus::warning), StatusType::Warning);
    EXPECT_EQ(statusType(ValidationStatus::error), StatusType::Error);
}

TEST(SettingsValidation, IssuesAreEqualWhenAllFourFieldsAre)
{
    const SettingValidationError error{
        {.setting = QStringLiteral("a"), .message = QStringLiteral("b"), .severity = ValidationSeverity::error}};
    SettingValidationError same = error;
    EXPECT_EQ(same, error);
    same.id = QUuid::createUuid();
    EXPECT_NE(same, error);
    same = error;
    same.setting = QStringLiteral("c");
    EXPECT_NE(same, error);
    same = error;
    same.message = QStringLiteral("c");
    EXPECT_NE(same, error);
    same = error;
    same.severity = ValidationSeverity::info;
    EXPECT_NE(same, error);
}

TEST(SettingsValidation, EachIssueHasAnIdOfItsOwn)
{
    const SettingValidationWarning one{{.setting = QStringLiteral("a"), .message = QStringLiteral("b")}};
    const SettingValidationWarning other{{.setting = QStringLiteral("a"), .message = QStringLiteral("b")}};
    EXPECT_FALSE(one.id.isNull());
    EXPECT_NE(one.id, other.id);
    EXPECT_NE(one, other);
}

TEST(SettingsValidation, AResultHasIssuesWhenEitherListHasOne)
{
    EXPECT_FALSE(ValidationResult().hasIssues());
    EXPECT_TRUE((ValidationResult{.errors = {SettingValidationError()}}.hasIssues()));
    EXPECT_TRUE((ValidationResult{.warnings = {SettingValidationWarning()}}.hasIssues()));
}

// Construction and loading.

TEST_F(SettingsViewModelTest, AnEmptyStoreGivesTheDefaultsWithNothingToSave)
{
    create();
    EXPECT_EQ(model->autoLockMinutes(), 5);
    EXPECT_TRUE(model->lockOnSleep());
    EXPECT_FALSE(model->startAtLogin());
    EXPECT_FALSE(model->hideMenuBarIcon());
    EXPECT_TRUE(model->enableTouchID());
    EXPECT_TRUE(model->enforceStrongPasswords());
    EXPECT_EQ(model->appearanceMode(), QStringLiteral("system"));
    EXPECT_TRUE(model->allSettingsValid());
    EXPECT_FALSE(model->hasValidationWarnings());
    EXPECT_FALSE(model->hasUnsavedChanges());
    EXPECT_FALSE(model->isValidating());
    EXPECT_TRUE(model->touchIDAvailable());
    EXPECT_TRUE(model->systemAppearanceSupported());
}

TEST_F(SettingsViewModelTest, TheStoredValuesAreLoadedAndNothingIsUnsaved)
{
    store().setInteger(QStringLiteral("autoLockMinutes"), 30);
    store().setBool(QStringLiteral("lockOnSleep"), false);
    store().setBool(QStringLiteral("startAtLogin"), true);
    store().setBool(QStringLiteral("hideMenuBarIcon"), true);
    store().setBool(QStringLiteral("enableTouchID"), false);
    store().setBool(QStringLiteral("enforceStrongPasswords"), false);
    store().setString(QStringLiteral("appearanceMode"), QStringLiteral("dark"));
    create();
    EXPECT_EQ(model->autoLockMinutes(), 30);
    EXPECT_FALSE(model->lockOnSleep());
    EXPECT_TRUE(model->startAtLogin());
    EXPECT_TRUE(model->hideMenuBarIcon());
    EXPECT_FALSE(model->enableTouchID());
    EXPECT_FALSE(model->enforceStrongPasswords());
    EXPECT_EQ(model->appearanceMode(), QStringLiteral("dark"));
    EXPECT_FALSE(model->hasUnsavedChanges());
}

TEST_F(SettingsViewModelTest, AValueOfAnotherTypeCountsAsAbsent)
{
    store().setString(QStringLiteral("autoLockMinutes"), QStringLiteral("30"));
    store().setInteger(QStringLiteral("lockOnSleep"), 0);
    store().setInteger(QStringLiteral("startAtLogin"), 1);
    store().setString(QStringLiteral("hideMenuBarIcon"), QStringLiteral("true"));
    store().setObject(QStringLiteral("enableTouchID"), 0.0);
    store().setData(QStringLiteral("enforceStrongPasswords"), "0");
    store().setBool(QStringLiteral("appearanceMode"), true);
    create();
    EXPECT_EQ(model->autoLockMinutes(), 5);
    EXPECT_TRUE(model->lockOnSleep());
    EXPECT_FALSE(model->startAtLogin());
    EXPECT_FALSE(model->hideMenuBarIcon());
    EXPECT_TRUE(model->enableTouchID());
    EXPECT_TRUE(model->enforceStrongPasswords());
    EXPECT_EQ(model->appearanceMode(), QStringLiteral("system"));
}

TEST_F(SettingsViewModelTest, TheKeysAreReadAndWrittenInTheOrderOfTheTable)
{
    NotingProvider noting;
    createWith(noting);
    EXPECT_EQ(noting.domain.reads, allKeys);
    EXPECT_TRUE(noting.domain.writes.isEmpty());
    model->saveSettings();
    EXPECT_EQ(noting.domain.writes, allKeys);
}

TEST_F(SettingsViewModelTest, WithoutUsableBiometricsTheDefaultsAreNotValidAndASaveIsRefused)
{
    services.biometrics.isAvailable = false;
    create();
    EXPECT_FALSE(model->touchIDAvailable());
    EXPECT_FALSE(model->allSettingsValid());
    EXPECT_EQ(errors(), QStringList{noTouchID});
    model->saveSettings();
    EXPECT_FALSE(store().boolForKey(QStringLiteral("enableTouchID")));
    model->setEnableTouchID(false);
    EXPECT_TRUE(model->allSettingsValid());
    model->saveSettings();
    EXPECT_EQ(store().boolForKey(QStringLiteral("enableTouchID")), false);
}

TEST_F(SettingsViewModelTest, TheReaderIsAskedBeforeTheSettingsAreRead)
{
    NotingProvider noting;
    QList<int> questions;
    noting.domain.onRead = [&] { questions.append(services.biometrics.availabilityQuestions); };
    createWith(noting);
    EXPECT_EQ(questions, QList<int>(allKeys.size(), 1));
}

TEST_F(SettingsViewModelTest, AReaderThatNeedsTimeCountsAsMissingUntilItAnswers)
{
    const Answer<bool> answer;
    services.biometrics.laterAvailability = answer;
    create();
    EXPECT_FALSE(model->touchIDAvailable());
    EXPECT_EQ(errors(), QStringList{noTouchID});
    const QSignalSpy changes(model.get(), &SettingsViewModel::validationErrorsChanged);
    answer.give(true);
    ASSERT_TRUE(spinUntil([this] { return model->touchIDAvailable(); }));
    EXPECT_TRUE(model->allSettingsValid());
    EXPECT_EQ(changes.size(), 1);
    EXPECT_FALSE(model->hasUnsavedChanges());
}

TEST_F(SettingsViewModelTest, TheReadersAnswerAfterTheEndOfTheModelDoesNothing)
{
    const Answer<bool> answer;
    services.biometrics.laterAvailability = answer;
    create();
    model.reset();
    answer.give(true);
    spinOnce();
    EXPECT_EQ(services.biometrics.availabilityQuestions, 1);
}

// The rules of one setting.

TEST_F(SettingsViewModelTest, ZeroMinutesAreTooShortAndAlsoLessThanAdvised)
{
    create().setAutoLockMinutes(0);
    EXPECT_EQ(errors(), QStringList{tooShort});
    EXPECT_EQ(warnings(), QStringList{shorterThanAdvised});
    EXPECT_EQ(model->validationErrors().first().setting, QStringLiteral("autoLockMinutes"));
    EXPECT_EQ(model->validationErrors().first().severity, ValidationSeverity::error);
    EXPECT_EQ(model->validationWarnings().first().setting, QStringLiteral("autoLockMinutes"));
    EXPECT_EQ(model->validationWarnings().first().severity, ValidationSeverity::warning);
}

TEST_F(SettingsViewModelTest, TheMinutesHaveTheirBounds)
{
    struct Case
    {
        qlonglong minutes;
        QStringList errors;
        QStringList warnings;
    };
    const QList<Case> cases{{-1, {tooShort}, {shorterThanAdvised}},
                            {1, {}, {shorterThanAdvised}},
                            {4, {}, {shorterThanAdvised}},
                            {5, {}, {}},
                            {120, {}, {}},
                            {121, {tooLong}, {}}};
    create();
    for (const Case &each : cases) {
        model->setAutoLockMinutes(each.minutes);
        EXPECT_EQ(errors(), each.errors) << each.minutes;
        EXPECT_EQ(warnings(), each.warnings) << each.minutes;
    }
}

TEST_F(SettingsViewModelTest, LockOnSleepTurnedOffIsAWarningAtOnce)
{
    create().setLockOnSleep(false);
    ASSERT_EQ(warnings(), QStringList{noLockOnSleep});
    EXPECT_EQ(model->validationWarnings().first().setting, QStringLiteral("lockOnSleep"));
    EXPECT_EQ(model->validationWarnings().first().severity, ValidationSeverity::warning);
    model->setLockOnSleep(true);
    EXPECT_FALSE(model->hasValidationWarnings());
}

TEST_F(SettingsViewModelTest, StartAtLoginHasNoRuleOfItsOwn)
{
    create().setStartAtLogin(true);
    EXPECT_TRUE(model->allSettingsValid());
    EXPECT_FALSE(model->hasValidationWarnings());
    EXPECT_TRUE(model->hasUnsavedChanges());
}

TEST_F(SettingsViewModelTest, AHiddenIconIsAHint)
{
    create().setHideMenuBarIcon(true);
    ASSERT_EQ(warnings(), QStringList{hiddenIcon});
    EXPECT_EQ(model->validationWarnings().first().setting, QStringLiteral("hideMenuBarIcon"));
    EXPECT_EQ(model->validationWarnings().first().severity, ValidationSeverity::info);
    model->setHideMenuBarIcon(false);
    EXPECT_FALSE(model->hasValidationWarnings());
}

TEST_F(SettingsViewModelTest, TouchIDWithoutAReaderIsAnErrorUntilItIsTurnedOff)
{
    services.biometrics.isAvailable = false;
    create();
    ASSERT_EQ(errors(), QStringList{noTouchID});
    EXPECT_EQ(model->validationErrors().first().setting, QStringLiteral("enableTouchID"));
    EXPECT_EQ(model->validationErrors().first().severity, ValidationSeverity::error);
    model->setEnableTouchID(false);
    EXPECT_TRUE(model->allSettingsValid());
    EXPECT_FALSE(model->hasValidationWarnings());
}

TEST_F(SettingsViewModelTest, AnUnusedReaderIsAHint)
{
    create().setEnableTouchID(false);
    ASSERT_EQ(warnings(), QStringList{unusedTouchID});
    EXPECT_EQ(model->validationWarnings().first().setting, QStringLiteral("enableTouchID"));
    EXPECT_EQ(model->validationWarnings().first().severity, ValidationSeverity::info);
    EXPECT_TRUE(model->allSettingsValid());
}

TEST_F(SettingsViewModelTest, WeakPasswordsAreAWarning)
{
    create().setEnforceStrongPasswords(false);
    ASSERT_EQ(warnings(), QStringList{weakPasswords});
    EXPECT_EQ(model->validationWarnings().first().setting, QStringLiteral("enforceStrongPasswords"));
    EXPECT_EQ(model->validationWarnings().first().severity, ValidationSeverity::warning);
    model->setEnforceStrongPasswords(true);
    EXPECT_FALSE(model->hasValidationWarnings());
}

TEST_F(SettingsViewModelTest, OnlyThreeAppearanceModesAreValidAndCaseMatters)
{
    create();
    for (const char *valid : {"light", "dark", "system"}) {
        model->setAppearanceMode(QString::fromLatin1(valid));
        EXPECT_TRUE(model->allSettingsValid()) << valid;
    }
    for (const char *invalid : {"System", "", "dark ", "automatic"}) {
        model->setAppearanceMode(QString::fromLatin1(invalid));
        ASSERT_EQ(errors(), QStringList{invalidAppearance}) << invalid;
        EXPECT_EQ(model->validationErrors().first().setting, QStringLiteral("appearanceMode"));
        EXPECT_EQ(model->validationErrors().first().severity, ValidationSeverity::error);
    }
}

// The rules over several settings.

TEST_F(SettingsViewModelTest, NeitherTouchIDNorStrongPasswordsIsAWarningAfterAFullValidation)
{
    createSettled().setEnableTouchID(false);
    model->setEnforceStrongPasswords(false);
    EXPECT_FALSE(warnings().contains(neitherProtection));
    services.clock.advance(300ms);
    ASSERT_EQ(model->validationWarnings().last().message, neitherProtection);
    EXPECT_EQ(model->validationWarnings().last().setting, QStringLiteral("security"));
    EXPECT_EQ(model->validationWarnings().last().severity, ValidationSeverity::warning);
}

TEST_F(SettingsViewModelTest, AutoLockAfterMoreThanAnHourWithoutLockOnSleepIsAHint)
{
    createSettled().setLockOnSleep(false);
    model->setAutoLockMinutes(60);
    services.clock.advance(300ms);
    EXPECT_FALSE(warnings().contains(longWithoutSleep));
    model->setAutoLockMinutes(61);
    services.clock.advance(300ms);
    ASSERT_EQ(model->validationWarnings().last().message, longWithoutSleep);
    EXPECT_EQ(model->validationWarnings().last().setting, QStringLiteral("autoLock"));
    EXPECT_EQ(model->validationWarnings().last().severity, ValidationSeverity::info);
    model->setLockOnSleep(true);
    services.clock.advance(300ms);
    EXPECT_FALSE(warnings().contains(longWithoutSleep));
}

TEST_F(SettingsViewModelTest, AHiddenIconWithoutTheStartAtLoginIsAHintAtTheNextFullValidation)
{
    createSettled().setHideMenuBarIcon(true);
    services.clock.advance(1s);
    EXPECT_EQ(warnings(), QStringList{hiddenIcon}) << "the icon alone starts no full validation";
    model->setAutoLockMinutes(10);
    services.clock.advance(300ms);
    ASSERT_EQ(warnings(), QStringList({hiddenIcon, hiddenAndNotStarted}));
    EXPECT_EQ(model->validationWarnings().last().setting, QStringLiteral("accessibility"));
    EXPECT_EQ(model->validationWarnings().last().severity, ValidationSeverity::info);
    model->setStartAtLogin(true);
    services.clock.advance(1s);
    EXPECT_TRUE(warnings().contains(hiddenAndNotStarted)) << "it remains until one of the four changes";
    model->setAutoLockMinutes(10);
    services.clock.advance(300ms);
    EXPECT_EQ(warnings(), QStringList{hiddenIcon});
}

TEST_F(SettingsViewModelTest, LockOnSleepTurnedOffWaitsForTheDebounceWithTheRuleOverTwoSettings)
{
    createSettled().setAutoLockMinutes(90);
    services.clock.advance(300ms);
    model->setLockOnSleep(false);
    EXPECT_EQ(warnings(), QStringList{noLockOnSleep});
    services.clock.advance(299ms);
    EXPECT_EQ(warnings(), QStringList{noLockOnSleep});
    services.clock.advance(1ms);
    EXPECT_EQ(warnings(), QStringList({noLockOnSleep, longWithoutSleep}));
}

// The order of the issues.

TEST_F(SettingsViewModelTest, AFullValidationListsTheIssuesInTheOrderOfTheRules)
{
    store().setInteger(QStringLiteral("autoLockMinutes"), 121);
    store().setBool(QStringLiteral("lockOnSleep"), false);
    store().setBool(QStringLiteral("hideMenuBarIcon"), true);
    store().setBool(QStringLiteral("enableTouchID"), false);
    store().setBool(QStringLiteral("enforceStrongPasswords"), false);
    store().setString(QStringLiteral("appearanceMode"), QStringLiteral("blue"));
    createSettled();
    EXPECT_EQ(errors(), QStringList({tooLong, invalidAppearance}));
    EXPECT_EQ(warnings(), QStringList({noLockOnSleep, hiddenIcon, unusedTouchID, weakPasswords, neitherProtection,
                                       longWithoutSleep, hiddenAndNotStarted}));
}

TEST_F(SettingsViewModelTest, ACheckOfOneSettingMovesItsIssuesToTheEndAndKeepsTheOthersInOrder)
{
    create().setAutoLockMinutes(3);
    model->setLockOnSleep(false);
    model->setEnforceStrongPasswords(false);
    const SettingValidationWarning kept = model->validationWarnings().at(1);
    model->setAutoLockMinutes(2);
    EXPECT_EQ(warnings(), QStringList({noLockOnSleep, weakPasswords, shorterThanAdvised}));
    EXPECT_EQ(model->validationWarnings().first(), kept);
}

TEST_F(SettingsViewModelTest, ACheckGivesAnIssueAnotherId)
{
    create().setLockOnSleep(false);
    const QUuid before = model->validationWarnings().first().id;
    (void)model->validateSetting(QStringLiteral("lockOnSleep"));
    ASSERT_EQ(warnings(), QStringList{noLockOnSleep});
    EXPECT_NE(model->validationWarnings().first().id, before);
}

TEST_F(SettingsViewModelTest, AnIssueUnderANameThatIsNoKeyIsNotRemovedWithTheSetting)
{
    createSettled().setLockOnSleep(false);
    model->setAutoLockMinutes(90);
    services.clock.advance(300ms);
    model->setAutoLockMinutes(10);
    EXPECT_EQ(warnings(), QStringList({noLockOnSleep, longWithoutSleep}));
}

// The subscriptions.

TEST_F(SettingsViewModelTest, TheValuesAtTheStartLeadToAFullValidationToo)
{
    store().setBool(QStringLiteral("hideMenuBarIcon"), true);
    create();
    services.clock.advance(299ms);
    EXPECT_EQ(warnings(), QStringList{hiddenIcon});
    services.clock.advance(1ms);
    EXPECT_EQ(warnings(), QStringList({hiddenIcon, hiddenAndNotStarted}));
    EXPECT_FALSE(model->hasUnsavedChanges());
}

TEST_F(SettingsViewModelTest, AChangeDuringTheDebounceStartsItAgain)
{
    createSettled();
    const QSignalSpy validations(model.get(), &SettingsViewModel::isValidatingChanged);
    model->setAutoLockMinutes(10);
    services.clock.advance(200ms);
    model->setEnforceStrongPasswords(false);
    services.clock.advance(299ms);
    EXPECT_TRUE(validations.isEmpty());
    services.clock.advance(1ms);
    EXPECT_EQ(validations.size(), 2) << "begun and ended, once";
    services.clock.advance(10s);
    EXPECT_EQ(validations.size(), 2);
}

TEST_F(SettingsViewModelTest, EachOfFourSettingsStartsAFullValidationAndTheOtherThreeDoNot)
{
    createSettled();
    QList<std::pair<std::function<void()>, bool>> cases{
        {[this] { model->setAutoLockMinutes(10); }, true},
        {[this] { model->setLockOnSleep(false); }, true},
        {[this] { model->setEnableTouchID(false); }, true},
        {[this] { model->setEnforceStrongPasswords(false); }, true},
        {[this] { model->setStartAtLogin(true); }, false},
        {[this] { model->setHideMenuBarIcon(true); }, false},
        {[this] { model->setAppearanceMode(QStringLiteral("dark")); }, false}};
    for (const auto &[change, isExpected] : cases) {
        const QSignalSpy validations(model.get(), &SettingsViewModel::isValidatingChanged);
        change();
        services.clock.advance(1s);
        EXPECT_EQ(!validations.isEmpty(), isExpected);
    }
}

TEST_F(SettingsViewModelTest, ItIsValidatingOnlyDuringAFullValidation)
{
    createSettled();
    QList<bool> seen;
    QObject::connect(model.get(), &SettingsViewModel::isValidatingChanged, [&] { seen.append(model->isValidating()); });
    model->setLockOnSleep(false);
    EXPECT_FALSE(model->isValidating());
    services.clock.advance(300ms);
    EXPECT_EQ(seen, QList<bool>({true, false}));
}

TEST_F(SettingsViewModelTest, ADebouncedValidationOfADestroyedModelDoesNothing)
{
    createSettled().setAutoLockMinutes(10);
    EXPECT_EQ(services.clock.pendingTimers(), 1);
    model.reset();
    EXPECT_EQ(services.clock.pendingTimers(), 0);
    services.clock.advance(1s);
}

TEST_F(SettingsViewModelTest, AnyChangeIsUnsavedAtOnce)
{
    const QList<std::function<void()>> changes{[this] { model->setAutoLockMinutes(10); },
                                               [this] { model->setLockOnSleep(false); },
                                               [this] { model->setStartAtLogin(true); },
                                               [this] { model->setHideMenuBarIcon(true); },
                                               [this] { model->setEnableTouchID(false); },
                                               [this] { model->setEnforceStrongPasswords(false); },
                                               [this] { model->setAppearanceMode(QStringLiteral("dark")); }};
    for (const auto &change : changes) {
        create();
        const QSignalSpy unsaved(model.get(), &SettingsViewModel::hasUnsavedChangesChanged);
        EXPECT_FALSE(model->hasUnsavedChanges());
        change();
        EXPECT_TRUE(model->hasUnsavedChanges());
        EXPECT_EQ(unsaved.size(), 1);
    }
}

// The questions about one setting.

TEST_F(SettingsViewModelTest, ValidateSettingReturnsTheIssuesOfThatSettingInOrder)
{
    create().setAutoLockMinutes(0);
    model->setLockOnSleep(false);
    const ValidationResult result = model->validateSetting(QStringLiteral("autoLockMinutes"));
    EXPECT_FALSE(result.isValid);
    EXPECT_TRUE(result.hasIssues());
    EXPECT_EQ(messagesOf(result.errors), QStringList{tooShort});
    EXPECT_EQ(messagesOf(result.warnings), QStringList{shorterThanAdvised});
    const ValidationResult sleep = model->validateSetting(QStringLiteral("lockOnSleep"));
    EXPECT_TRUE(sleep.isValid);
    EXPECT_EQ(messagesOf(sleep.warnings), QStringList{noLockOnSleep});
}

TEST_F(SettingsViewModelTest, ValidateSettingRunsTheChecksOfEachKeyAgain)
{
    create().setAutoLockMinutes(3);
    model->setLockOnSleep(false);
    model->setHideMenuBarIcon(true);
    model->setEnableTouchID(false);
    model->setEnforceStrongPasswords(false);
    for (const char *key :
         {"autoLockMinutes", "lockOnSleep", "hideMenuBarIcon", "enableTouchID", "enforceStrongPasswords"}) {
        const QSignalSpy changes(model.get(), &SettingsViewModel::validationWarningsChanged);
        EXPECT_EQ(model->validateSetting(QString::fromLatin1(key)).warnings.size(), 1) << key;
        EXPECT_EQ(changes.size(), 1) << key;
    }
    EXPECT_FALSE(model->validateSetting(QStringLiteral("startAtLogin")).hasIssues());
    EXPECT_FALSE(model->validateSetting(QStringLiteral("appearanceMode")).hasIssues());
}

TEST_F(SettingsViewModelTest, AnUnknownKeyIsValidAndChecksNothing)
{
    create().setLockOnSleep(false);
    const auto before = model->validationWarnings();
    for (const char *key : {"unknown", "", "LockOnSleep", "lockOnSleep "}) {
        EXPECT_EQ(model->validateSetting(QString::fromLatin1(key)), ValidationResult()) << key;
    }
    EXPECT_EQ(model->validationWarnings(), before);
}

TEST_F(SettingsViewModelTest, ANameThatIsNoKeyReturnsWhatTheLastFullValidationFound)
{
    createSettled().setLockOnSleep(false);
    model->setAutoLockMinutes(90);
    EXPECT_FALSE(model->validateSetting(QStringLiteral("autoLock")).hasIssues());
    services.clock.advance(300ms);
    const auto before = model->validationWarnings();
    const ValidationResult result = model->validateSetting(QStringLiteral("autoLock"));
    EXPECT_EQ(messagesOf(result.warnings), QStringList{longWithoutSleep});
    EXPECT_TRUE(result.isValid);
    EXPECT_EQ(model->validationWarnings(), before);
    EXPECT_FALSE(model->validateSetting(QStringLiteral("autoLockMinutes")).hasIssues());
}

TEST_F(SettingsViewModelTest, TheStatusIsTheWorstIssueAndAHintCountsAsAWarning)
{
    create();
    const QString minutes = QStringLiteral("autoLockMinutes");
    EXPECT_EQ(model->getValidationStatus(minutes), ValidationStatus::valid);
    model->setAutoLockMinutes(4);
    EXPECT_EQ(model->getValidationStatus(minutes), ValidationStatus::warning);
    model->setAutoLockMinutes(0);
    EXPECT_EQ(model->getValidationStatus(minutes), ValidationStatus::error);
    model->setHideMenuBarIcon(true);
    EXPECT_EQ(model->getValidationStatus(QStringLiteral("hideMenuBarIcon")), ValidationStatus::warning);
    EXPECT_EQ(model->getValidationStatus(QStringLiteral("unknown")), ValidationStatus::valid);
}

TEST_F(SettingsViewModelTest, TheMessagesAreThoseOfTheErrorsAndThenOfTheWarnings)
{
    create().setAutoLockMinutes(0);
    model->setLockOnSleep(false);
    EXPECT_EQ(model->getValidationMessages(QStringLiteral("autoLockMinutes")),
              QStringList({tooShort, shorterThanAdvised}));
    EXPECT_EQ(model->getValidationMessages(QStringLiteral("lockOnSleep")), QStringList{noLockOnSleep});
    EXPECT_TRUE(model->getValidationMessages(QStringLiteral("startAtLogin")).isEmpty());
}

// Saving, resetting, discarding.

TEST_F(SettingsViewModelTest, ASaveWritesAllSevenKeysWithTheirTypes)
{
    create().setAutoLockMinutes(15);
    model->setStartAtLogin(true);
    model->setAppearanceMode(QStringLiteral("light"));
    model->saveSettings();
    EXPECT_EQ(store().integerForKey(QStringLiteral("autoLockMinutes")), 15);
    EXPECT_EQ(store().boolForKey(QStringLiteral("lockOnSleep")), true);
    EXPECT_EQ(store().boolForKey(QStringLiteral("startAtLogin")), true);
    EXPECT_EQ(store().boolForKey(QStringLiteral("hideMenuBarIcon")), false);
    EXPECT_EQ(store().boolForKey(QStringLiteral("enableTouchID")), true);
    EXPECT_EQ(store().boolForKey(QStringLiteral("enforceStrongPasswords")), true);
    EXPECT_EQ(store().stringForKey(QStringLiteral("appearanceMode")), QStringLiteral("light"));
    EXPECT_FALSE(model->hasUnsavedChanges());
}

TEST_F(SettingsViewModelTest, AnErrorRefusesTheSaveWithALogLine)
{
    create().setAutoLockMinutes(0);
    model->setStartAtLogin(true);
    LogCapture log;
    model->saveSettings();
    EXPECT_EQ(log.lines(), QStringList{QStringLiteral("Cannot save settings: validation errors present")});
    for (const QString &key : allKeys) {
        EXPECT_FALSE(store().objectForKey(key).isValid()) << key.toStdString();
    }
    EXPECT_TRUE(model->hasUnsavedChanges());
}

TEST_F(SettingsViewModelTest, WarningsDoNotRefuseTheSave)
{
    create().setLockOnSleep(false);
    model->saveSettings();
    EXPECT_EQ(store().boolForKey(QStringLiteral("lockOnSleep")), false);
    EXPECT_FALSE(model->hasUnsavedChanges());
}

TEST_F(SettingsViewModelTest, AStoredValueOutOfBoundsIsLoadedAndRefusesTheSaveUntilItIsChanged)
{
    store().setInteger(QStringLiteral("autoLockMinutes"), 500);
    create();
    EXPECT_EQ(model->autoLockMinutes(), 500);
    EXPECT_EQ(errors(), QStringList{tooLong});
    model->saveSettings();
    EXPECT_FALSE(store().objectForKey(QStringLiteral("startAtLogin")).isValid());
    model->setAutoLockMinutes(50);
    model->saveSettings();
    EXPECT_EQ(store().integerForKey(QStringLiteral("autoLockMinutes")), 50);
}

TEST_F(SettingsViewModelTest, AResetTakesEffectOnlyThroughASave)
{
    store().setInteger(QStringLiteral("autoLockMinutes"), 30);
    store().setString(QStringLiteral("appearanceMode"), QStringLiteral("dark"));
    create().resetToDefaults();
    EXPECT_EQ(model->autoLockMinutes(), 5);
    EXPECT_EQ(model->appearanceMode(), QStringLiteral("system"));
    EXPECT_TRUE(model->hasUnsavedChanges());
    EXPECT_EQ(store().integerForKey(QStringLiteral("autoLockMinutes")), 30);
    model->saveSettings();
    EXPECT_EQ(store().integerForKey(QStringLiteral("autoLockMinutes")), 5);
    EXPECT_FALSE(model->hasUnsavedChanges());
}

TEST_F(SettingsViewModelTest, AResetAndADiscardRestoreWhatTheStoreHolds)
{
    store().setInteger(QStringLiteral("autoLockMinutes"), 30);
    store().setBool(QStringLiteral("lockOnSleep"), false);
    create().resetToDefaults();
    EXPECT_TRUE(model->lockOnSleep());
    EXPECT_FALSE(model->hasValidationWarnings());
    model->discardChanges();
    EXPECT_EQ(model->autoLockMinutes(), 30);
    EXPECT_FALSE(model->lockOnSleep());
    EXPECT_EQ(warnings(), QStringList{noLockOnSleep});
    EXPECT_FALSE(model->hasUnsavedChanges());
}

// What the system can do.

TEST_F(SettingsViewModelTest, ARefreshNoticesAReaderThatWasConnected)
{
    services.biometrics.isAvailable = false;
    create();
    EXPECT_EQ(errors(), QStringList{noTouchID});
    services.biometrics.isAvailable = true;
    model->refreshSystemCapabilities();
    EXPECT_TRUE(model->touchIDAvailable());
    EXPECT_TRUE(model->allSettingsValid());
    EXPECT_FALSE(model->hasUnsavedChanges());
}

TEST_F(SettingsViewModelTest, ARefreshNoticesAReaderThatIsGoneWhenItAnswers)
{
    create();
    const Answer<bool> answer;
    services.biometrics.laterAvailability = answer;
    model->refreshSystemCapabilities();
    EXPECT_TRUE(model->allSettingsValid());
    answer.give(false);
    ASSERT_TRUE(spinUntil([this] { return !model->touchIDAvailable(); }));
    EXPECT_EQ(errors(), QStringList{noTouchID});
}

// What a screen sees.

TEST_F(SettingsViewModelTest, AScreenReadsTheIssuesAndAssignsTheSettings)
{
    QQmlEngine engine;
    create();
    QQmlEngine::setObjectOwnership(model.get(), QQmlEngine::CppOwnership);
    engine.globalObject().setProperty(QStringLiteral("model"), engine.newQObject(model.get()));
    const auto evaluated = [&](const char *expression) {
        const QJSValue value = engine.evaluate(QString::fromLatin1(expression));
        EXPECT_FALSE(value.isError()) << value.toString().toStdString();
        return value.toVariant();
    };
    (void)evaluated("model.autoLockMinutes = 0");
    EXPECT_EQ(model->autoLockMinutes(), 0);
    EXPECT_EQ(evaluated("model.validationErrors.length").toInt(), 1);
    EXPECT_EQ(evaluated("model.validationErrors[0].message").toString(), tooShort);
    EXPECT_EQ(evaluated("model.validationErrors[0].iconName").toString(), QStringLiteral("xmark.circle.fill"));
    EXPECT_EQ(evaluated("model.validationWarnings[0].severity").toInt(), 1);
    EXPECT_EQ(evaluated("model.validateSetting('autoLockMinutes').isValid").toBool(), false);
    EXPECT_EQ(evaluated("model.getValidationMessages('autoLockMinutes').length").toInt(), 2);
    EXPECT_EQ(evaluated("model.getValidationStatus('autoLockMinutes')").toInt(), 2);
}
