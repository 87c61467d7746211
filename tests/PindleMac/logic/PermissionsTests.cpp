#include "tests/PindleMac/logic/TestAccess.h"

namespace pindle {

namespace {

using Permissions = LogicFixture;

const QString base = QStringLiteral("x-apple.systempreferences:com.apple.preference.security?");
const QString calendars = base + QStringLiteral("Privacy_Calendars");
const QString calendar = base + QStringLiteral("Privacy_Calendar");
const QString accessibilityPage = base + QStringLiteral("Privacy_Accessibility");
const QString pane = QStringLiteral("file:///System/Library/PreferencePanes/Security.prefPane");

QStringList opens(const QStringList &addresses) {
    QStringList lines;
    for (const QString &address : addresses)
        lines += QStringLiteral("workspace open ") + address;
    return lines;
}

} // namespace

TEST_F(Permissions, theCalendarStatusHasSixTexts) {
    const QList<QPair<int, QString>> texts = {
        {0, QStringLiteral("Not requested")}, {1, QStringLiteral("Restricted")},
        {2, QStringLiteral("Denied")},        {3, QStringLiteral("Full access")},
        {4, QStringLiteral("Write only")},    {5, QStringLiteral("Unknown")},
        {-1, QStringLiteral("Unknown")}};
    for (const auto &[status, text] : texts) {
        desktop.eventStore.status = static_cast<EKAuthorizationStatus>(status);
        EXPECT_EQ(services.calendarPermissionStatusText(), text);
    }
    EXPECT_TRUE(desktop.log.isEmpty());
}

TEST_F(Permissions, aGrantTurnsNotRequestedIntoWriteOnly) {
    EXPECT_EQ(services.calendarPermissionStatusText(), QStringLiteral("Not requested"));
    EXPECT_TRUE(resultOf(services.requestCalendarPermissionIfNeeded()));
    EXPECT_EQ(services.calendarPermissionStatusText(), QStringLiteral("Write only"));
}

TEST_F(Permissions, aRefusalIsDeniedAndAnErrorPropagates) {
    desktop.eventStore.userAllows = false;
    EXPECT_FALSE(resultOf(services.requestCalendarPermissionIfNeeded()));
    EXPECT_EQ(services.calendarPermissionStatusText(), QStringLiteral("Denied"));
    desktop.eventStore.accessError = PlatformError(QStringLiteral("away"));
    EXPECT_EQ(errorDescription(errorOf(services.requestCalendarPermissionIfNeeded())),
              QStringLiteral("away"));
}

TEST_F(Permissions, theFirstPageThatOpensIsEnough) {
    services.openCalendarSettings();
    services.openAccessibilitySettings();
    EXPECT_EQ(desktop.log, opens({calendars, accessibilityPage}));
}

TEST_F(Permissions, theSecondCalendarPageIsTriedBeforeTheSecurityPane) {
    desktop.workspace.refused = {calendars};
    services.openCalendarSettings();
    EXPECT_EQ(desktop.log, opens({calendars, calendar}));
}

TEST_F(Permissions, theSecurityPaneIsTheLastResort) {
    desktop.workspace.refusesAll = true;
    services.openCalendarSettings();
    EXPECT_EQ(desktop.log, opens({calendars, calendar, pane}));
}

TEST_F(Permissions, theAccessibilityPageIsTriedTwice) {
    desktop.workspace.refusesAll = true;
    services.openAccessibilitySettings();
    EXPECT_EQ(desktop.log, opens({accessibilityPage, accessibilityPage, pane}));
}

TEST_F(Permissions, aPromptWhenTrustedShowsNothing) {
    services.promptForAccessibilityPermission();
    EXPECT_EQ(desktop.accessibility.prompts, 0);
    desktop.accessibility.trusted = false;
    services.promptForAccessibilityPermission();
    EXPECT_EQ(desktop.accessibility.prompts, 1);
    EXPECT_EQ(desktop.log, QStringList({QStringLiteral("ax trusted prompt=1"),
                                        QStringLiteral("ax trusted prompt=1")}));
}

TEST_F(Permissions, theTrustQueryNeverPrompts) {
    desktop.accessibility.trusted = false;
    EXPECT_FALSE(services.accessibilityPermissionEnabled());
    EXPECT_EQ(desktop.accessibility.prompts, 0);
}

TEST_F(Permissions, anAddressIsHandedToTheWorkspace) {
    services.openURL(QUrl(QStringLiteral("https://pindle.example/a?b=c%26d")));
    EXPECT_EQ(desktop.workspace.opened,
              QStringList(QStringLiteral("https://pindle.example/a?b=c%26d")));
}

} // namespace pindle
