#include "tests/PindleMac/logic/TestAccess.h"

namespace pindle {

namespace {

struct Links : LogicFixture {
    CalendarEventDetails details = draft(QStringLiteral("2025-03-14"));

    QString address(int index) {
        return QString::fromLatin1(services.calendarLinks(details).at(index).url->toEncoded());
    }
};

constexpr int google = 1;
constexpr int outlook = 2;
constexpr int yahoo = 3;

} // namespace

TEST_F(Links, fourDestinationsComeInTheirOrder) {
    const auto links = services.calendarLinks(details);
    ASSERT_EQ(links.size(), 4);
    const QStringList ids{links[0].id, links[1].id, links[2].id, links[3].id};
    EXPECT_EQ(ids, QStringList({QStringLiteral("apple"), QStringLiteral("google"),
                                QStringLiteral("outlook"), QStringLiteral("yahoo")}));
    EXPECT_EQ(links[0].title, QStringLiteral("Apple Calendar"));
    EXPECT_EQ(links[0].subtitle, QStringLiteral("Save directly on this Mac"));
    EXPECT_EQ(links[0].kind, CalendarDestinationLink::Kind::nativeApple);
    EXPECT_FALSE(links[0].url.has_value());
    EXPECT_EQ(links[1].title, QStringLiteral("Google Calendar"));
    EXPECT_EQ(links[2].title, QStringLiteral("Outlook"));
    EXPECT_EQ(links[3].title, QStringLiteral("Yahoo Calendar"));
    for (int i = google; i <= yahoo; ++i) {
        EXPECT_EQ(links[i].subtitle, QStringLiteral("Open a prefilled browser draft"));
        EXPECT_EQ(links[i].kind, CalendarDestinationLink::Kind::browser);
        EXPECT_TRUE(links[i].url.has_value());
    }
}

TEST_F(Links, theGoogleDraftCarriesUtcInstantsAndTheZone) {
    details.description = QStringLiteral("Bring wine");
    details.location = QStringLiteral("Café Zoë");
    EXPECT_EQ(address(google),
              QStringLiteral("https://calendar.google.com/calendar/render?action=TEMPLATE&"
                             "text=Lunch&details=Bring%20wine&location=Caf%C3%A9%20Zo%C3%AB&"
                             "dates=20250314T130000Z/20250314T140000Z&ctz=America/New_York"));
}

TEST_F(Links, theOutlookDraftCarriesLocalTimesWithOffsets) {
    EXPECT_EQ(address(outlook),
              QStringLiteral("https://outlook.office.com/calendar/0/deeplink/compose?"
                             "path=/calendar/action/compose&rru=addevent&subject=Lunch&body=&"
                             "location=&startdt=2025-03-14T09:00:00-04:00&"
                             "enddt=2025-03-14T10:00:00-04:00"));
}

TEST_F(Links, theYahooDraftCarriesBareLocalTimes) {
    EXPECT_EQ(address(yahoo),
              QStringLiteral("https://calendar.yahoo.com/?v=60&view=d&type=20&title=Lunch&desc=&"
                             "in_loc=&st=20250314T090000&et=20250314T100000"));
}

TEST_F(Links, emptyDescriptionAndLocationAreStillCarried) {
    EXPECT_TRUE(address(google).contains(QStringLiteral("&details=&location=&dates=")));
    EXPECT_TRUE(address(outlook).contains(QStringLiteral("&body=&location=&startdt=")));
    EXPECT_TRUE(address(yahoo).contains(QStringLiteral("&desc=&in_loc=&st=")));
}

TEST_F(Links, anAmpersandInATitleDoesNotSplitTheQuery) {
    details.title = QStringLiteral("Lunch & Learn");
    EXPECT_TRUE(address(google).contains(QStringLiteral("&text=Lunch%20%26%20Learn&")));
}

TEST_F(Links, aPlusSignInATitleStaysLiteral) {
    details.title = QStringLiteral("A+B");
    EXPECT_TRUE(address(google).contains(QStringLiteral("&text=A+B&")));
}

TEST_F(Links, noCharacterOfATitleEscapesItsItem) {
    details.title = QStringLiteral("a=b#c&d;e%20f/g:h?i\"<j>\n😀");
    EXPECT_TRUE(address(google).contains(
        QStringLiteral("&text=a%3Db%23c%26d;e%2520f/g:h?i%22%3Cj%3E%0A%F0%9F%98%80&details=")))
        << address(google).toStdString();
    EXPECT_FALSE(QUrl(address(google)).hasFragment());
}

TEST_F(Links, aZeroOffsetIsWrittenAsZ) {
    details.timeZone = QStringLiteral("UTC");
    EXPECT_TRUE(address(outlook).contains(QStringLiteral("startdt=2025-03-14T09:00:00Z&")));
}

TEST_F(Links, anUnusableZoneIsReplacedByTheCurrentOne) {
    details.timeZone = QStringLiteral("Not/AZone");
    EXPECT_TRUE(address(google).endsWith(QStringLiteral("&ctz=Europe/Berlin")));
}

TEST_F(Links, datesThatDoNotResolveGiveNoLinks) {
    details.startDate.clear();
    EXPECT_THROW(services.calendarLinks(details), AppError);
}

TEST_F(Links, equalDraftsGiveEqualListsOfFour) {
    const auto first = services.calendarLinks(details);
    const auto second = services.calendarLinks(details);
    EXPECT_EQ(first.size(), 4);
    EXPECT_EQ(first, second);
}

TEST_F(Links, aBrowserLinkIsOpenedAndTheSystemCalendarIsNot) {
    const auto links = services.calendarLinks(details);
    services.openCalendarLink(links[0]);
    EXPECT_TRUE(desktop.workspace.opened.isEmpty());
    services.openCalendarLink(links[1]);
    EXPECT_EQ(desktop.workspace.opened, QStringList(address(google)));
}

TEST_F(Links, theBugReportCarriesTheInstallsKey) {
    desktop.urlSession.installBody = R"({"anonymized_key":"k 1&2"})";
    EXPECT_EQ(errorOf(services.openBugReport()), nullptr);
    ASSERT_EQ(desktop.workspace.opened.size(), 1);
    EXPECT_EQ(desktop.workspace.opened.front(),
              QString::fromLatin1(AppLinkDestination::reportBugs().toEncoded()) +
                  QStringLiteral("?reason=bug&anonymized_key=k%201%262"));
}

TEST_F(Links, aBugReportWithoutRegistrationOpensNothing) {
    desktop.urlSession.reply = [](const URLRequest &) {
        return fake::FakeURLSession::failure(QStringLiteral("offline"));
    };
    EXPECT_TRUE(errorOf(services.openBugReport()) != nullptr);
    EXPECT_TRUE(desktop.workspace.opened.isEmpty());
}

TEST_F(Links, theWebsitePagesAreAbsoluteHttpsAddresses) {
    for (const QUrl &url : {AppLinkDestination::about(), AppLinkDestination::reportBugs()}) {
        EXPECT_EQ(url.scheme(), QStringLiteral("https"));
        EXPECT_FALSE(url.host().isEmpty());
    }
    EXPECT_NE(AppLinkDestination::about(), AppLinkDestination::reportBugs());
}

} // namespace pindle
