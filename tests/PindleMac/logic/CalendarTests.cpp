#include "tests/PindleMac/logic/TestAccess.h"

namespace pindle {

namespace {

using namespace std::chrono;

struct SavingToTheCalendar : LogicFixture {
    CalendarEventDetails details{QStringLiteral("Lunch"),
                                 QStringLiteral("Bring wine"),
                                 QStringLiteral("Room 4"),
                                 QStringLiteral("2025-03-14"),
                                 QString(),
                                 QStringLiteral("12:30"),
                                 QString(),
                                 QStringLiteral("America/New_York")};
    std::exception_ptr save() { return errorOf(services.saveToCalendar(details)); }
};

} // namespace

TEST_F(SavingToTheCalendar, writesOneEventWithEveryFieldInOrder) {
    EXPECT_EQ(save(), nullptr);
    EXPECT_EQ(
        desktop.logged({QStringLiteral("store"), QStringLiteral("event")}),
        QStringList({QStringLiteral("store request access"), QStringLiteral("store make event"),
                     QStringLiteral("event calendar"), QStringLiteral("event title"),
                     QStringLiteral("event location"), QStringLiteral("event notes"),
                     QStringLiteral("event start"), QStringLiteral("event end"),
                     QStringLiteral("event zone"), QStringLiteral("store save span=0")}));
    ASSERT_EQ(desktop.eventStore.saved.size(), 1U);
    const auto &event = desktop.eventStore.saved.front();
    EXPECT_EQ(event.calendar, desktop.eventStore.calendar);
    EXPECT_EQ(event.title, details.title);
    EXPECT_EQ(event.location, details.location);
    EXPECT_EQ(event.notes, details.description);
    EXPECT_EQ(event.start, sys_days{2025y / 3 / 14} + hours{16} + minutes{30});
    EXPECT_EQ(event.end, event.start + hours{1});
    EXPECT_EQ(event.zone.identifier, details.timeZone);
}

TEST_F(SavingToTheCalendar, asksForAccessTheFirstTimeOnly) {
    EXPECT_EQ(save(), nullptr);
    EXPECT_EQ(save(), nullptr);
    EXPECT_EQ(desktop.eventStore.prompts, 1);
    EXPECT_EQ(desktop.eventStore.saved.size(), 2U);
}

TEST_F(SavingToTheCalendar, aRefusalOnTheFirstSaveIsPermissionDenied) {
    desktop.eventStore.userAllows = false;
    EXPECT_TRUE(isAppError(save(), AppError::Case::calendarPermissionDenied));
    EXPECT_EQ(desktop.eventStore.prompts, 1);
    EXPECT_TRUE(desktop.eventStore.saved.empty());
}

TEST_F(SavingToTheCalendar, anErrorOfTheRequestIsPassedUpUnchanged) {
    desktop.eventStore.accessError = PlatformError(QStringLiteral("The store is away."));
    EXPECT_EQ(errorDescription(save()), QStringLiteral("The store is away."));
    EXPECT_TRUE(desktop.logged({QStringLiteral("store make")}).isEmpty());
}

TEST_F(SavingToTheCalendar, badDatesAreFoundOnlyAfterTheQuestion) {
    details.startDate.clear();
    EXPECT_TRUE(isAppError(save(), AppError::Case::invalidDates));
    EXPECT_EQ(desktop.eventStore.prompts, 1);
    EXPECT_TRUE(desktop.logged({QStringLiteral("store make")}).isEmpty());
}

TEST_F(SavingToTheCalendar, badDatesWithoutAccessArePermissionDenied) {
    desktop.eventStore.userAllows = false;
    details.startDate.clear();
    EXPECT_TRUE(isAppError(save(), AppError::Case::calendarPermissionDenied));
}

TEST_F(SavingToTheCalendar, onlyAStartSavesAnHourInTheDraftsZone) {
    EXPECT_EQ(save(), nullptr);
    const auto &event = desktop.eventStore.saved.front();
    EXPECT_EQ(event.end - event.start, hours{1});
    EXPECT_EQ(event.zone.identifier, QStringLiteral("America/New_York"));
}

TEST_F(SavingToTheCalendar, onlyALateStartSavesHalfAnHour) {
    details.startTime = QStringLiteral("23:00");
    EXPECT_EQ(save(), nullptr);
    const auto &event = desktop.eventStore.saved.front();
    EXPECT_EQ(event.end - event.start, minutes{30});
}

TEST_F(SavingToTheCalendar, anUnknownZoneIsSavedInTheMachinesZone) {
    details.timeZone = QStringLiteral("Not/AZone");
    EXPECT_EQ(save(), nullptr);
    EXPECT_EQ(desktop.eventStore.saved.front().zone.identifier, QStringLiteral("Europe/Berlin"));
}

TEST_F(SavingToTheCalendar, emptyTextsAreWrittenAsTheyAre) {
    details.title.clear();
    details.location.clear();
    details.description.clear();
    EXPECT_EQ(save(), nullptr);
    EXPECT_EQ(desktop.eventStore.saved.front().title, QString());
}

TEST_F(SavingToTheCalendar, anErrorOfTheStoreIsPassedUpUnchangedAndTheNextSaveWorks) {
    desktop.eventStore.saveError = PlatformError(QStringLiteral("No default calendar is set."));
    EXPECT_EQ(errorDescription(save()), QStringLiteral("No default calendar is set."));
    EXPECT_TRUE(desktop.eventStore.saved.empty());
    desktop.eventStore.saveError.reset();
    EXPECT_EQ(save(), nullptr);
    EXPECT_EQ(desktop.eventStore.saved.size(), 1U);
}

} // namespace pindle
