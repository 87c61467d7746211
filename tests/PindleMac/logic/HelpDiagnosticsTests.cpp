#include "PindleMac/HelpDiagnosticsModel.h"
#include "tests/PindleMac/logic/TestAccess.h"

#include <QCoreApplication>

namespace pindle {

namespace {

const QString completed = QStringLiteral("Calendar permission check completed.");
const QString mayPrompt = QStringLiteral("macOS may show the Accessibility prompt. If it does not, "
                                         "use Open Settings and verify the installed app entry.");

struct HelpDiagnostics : ::testing::Test {
    fake::FakeDesktop desktop;
    std::unique_ptr<HelpDiagnosticsModel> model =
        std::make_unique<HelpDiagnosticsModel>(desktop.platform);

    static void runTasks() {
        for (int turn = 0; turn < 5; ++turn)
            QCoreApplication::sendPostedEvents();
    }
};

} // namespace

TEST_F(HelpDiagnostics, beforeTheFirstLookNothingIsKnown) {
    desktop.accessibility.trusted = true;
    desktop.eventStore.status = EKAuthorizationStatus::writeOnly;
    EXPECT_FALSE(model->accessibilityEnabled());
    EXPECT_EQ(model->calendarStatus(), QStringLiteral("Unknown"));
    EXPECT_FALSE(model->permissionMessage());
}

TEST_F(HelpDiagnostics, aLookShowsBothPermissionsAndPromptsForNeither) {
    desktop.accessibility.trusted = true;
    desktop.eventStore.status = EKAuthorizationStatus::writeOnly;
    model->refresh();
    EXPECT_TRUE(model->accessibilityEnabled());
    EXPECT_EQ(model->calendarStatus(), QStringLiteral("Write only"));
    EXPECT_FALSE(model->permissionMessage());
    EXPECT_EQ(desktop.accessibility.prompts, 0);
    EXPECT_EQ(desktop.eventStore.prompts, 0);
}

TEST_F(HelpDiagnostics, eachChangeIsAnnouncedBeforeItLands) {
    QList<HelpDiagnosticsModel::Property> announced;
    QObject::connect(model.get(), &HelpDiagnosticsModel::objectWillChange, model.get(),
                     [&](HelpDiagnosticsModel::Property property) {
                         announced.append(property);
                         EXPECT_EQ(model->calendarStatus(), QStringLiteral("Unknown"));
                     });
    model->refresh();
    EXPECT_EQ(announced, (QList{HelpDiagnosticsModel::Property::accessibilityEnabled,
                                HelpDiagnosticsModel::Property::calendarStatus}));
}

TEST_F(HelpDiagnostics, thePromptIsShownThenExplainedThenLookedAt) {
    desktop.accessibility.trusted = false;
    desktop.accessibility.trustAfterPrompt = true;
    model->promptAccessibilityPermission();
    EXPECT_EQ(desktop.accessibility.prompts, 1);
    EXPECT_EQ(model->permissionMessage(), mayPrompt);
    EXPECT_TRUE(model->accessibilityEnabled());
    EXPECT_EQ(model->calendarStatus(), QStringLiteral("Not requested"));
}

TEST_F(HelpDiagnostics, trustThatComesLaterIsNoticed) {
    desktop.accessibility.trusted = false;
    model->promptAccessibilityPermission();
    EXPECT_FALSE(model->accessibilityEnabled());
    desktop.accessibility.trusted = true;
    desktop.accessibility.trustChanged();
    EXPECT_TRUE(model->accessibilityEnabled());
    EXPECT_EQ(model->permissionMessage(), mayPrompt);
}

TEST_F(HelpDiagnostics, trustThatComesAfterTheModelIsGoneIsNobodysBusiness) {
    model.reset();
    desktop.accessibility.trustChanged();
    EXPECT_TRUE(desktop.log.isEmpty());
}

TEST_F(HelpDiagnostics, theCalendarIsAskedForInATaskOfItsOwn) {
    model->requestCalendarPermission();
    EXPECT_EQ(desktop.eventStore.prompts, 0);
    EXPECT_FALSE(model->permissionMessage());
    runTasks();
    EXPECT_EQ(desktop.eventStore.prompts, 1);
    EXPECT_EQ(model->permissionMessage(), completed);
    EXPECT_EQ(model->calendarStatus(), QStringLiteral("Write only"));
}

TEST_F(HelpDiagnostics, aRefusalIsACompletedCheckToo) {
    desktop.eventStore.userAllows = false;
    model->requestCalendarPermission();
    runTasks();
    EXPECT_EQ(model->permissionMessage(), completed);
    EXPECT_EQ(model->calendarStatus(), QStringLiteral("Denied"));
}

TEST_F(HelpDiagnostics, accessDeniedEarlierStaysDenied) {
    desktop.eventStore.status = EKAuthorizationStatus::denied;
    model->requestCalendarPermission();
    runTasks();
    EXPECT_EQ(model->permissionMessage(), completed);
    EXPECT_EQ(model->calendarStatus(), QStringLiteral("Denied"));
    EXPECT_EQ(desktop.eventStore.prompts, 0);
}

TEST_F(HelpDiagnostics, anErrorOfTheRequestIsTheMessage) {
    desktop.eventStore.accessError = PlatformError(QStringLiteral("The calendar is away."));
    model->requestCalendarPermission();
    runTasks();
    EXPECT_EQ(model->permissionMessage(), QStringLiteral("The calendar is away."));
    EXPECT_EQ(model->calendarStatus(), QStringLiteral("Not requested"));
}

TEST_F(HelpDiagnostics, theMessageStaysUntilTheNextActionReplacesIt) {
    model->requestCalendarPermission();
    runTasks();
    model->refresh();
    model->openCalendarSettings();
    EXPECT_EQ(model->permissionMessage(), completed);
    model->promptAccessibilityPermission();
    EXPECT_EQ(model->permissionMessage(), mayPrompt);
}

TEST_F(HelpDiagnostics, theAnswerMayComeWhenTheModelIsGone) {
    desktop.eventStore.holdAccess = true;
    model->requestCalendarPermission();
    runTasks();
    ASSERT_EQ(desktop.eventStore.held.count(), 1U);
    model.reset();
    desktop.eventStore.held.take()();
    EXPECT_EQ(desktop.eventStore.held.count(), 0U);
}

TEST_F(HelpDiagnostics, aTaskThatBeginsWhenTheModelIsGoneDoesNothing) {
    model->requestCalendarPermission();
    model.reset();
    runTasks();
    EXPECT_EQ(desktop.eventStore.prompts, 0);
}

TEST_F(HelpDiagnostics, theSettingsPagesOpenAndNothingIsSaidOrLookedAt) {
    model->openAccessibilitySettings();
    model->openCalendarSettings();
    const QString page =
        QStringLiteral("x-apple.systempreferences:com.apple.preference.security?Privacy_");
    EXPECT_EQ(desktop.workspace.opened, QStringList({page + QStringLiteral("Accessibility"),
                                                     page + QStringLiteral("Calendars")}));
    EXPECT_FALSE(model->permissionMessage());
    EXPECT_EQ(model->calendarStatus(), QStringLiteral("Unknown"));
}

} // namespace pindle
