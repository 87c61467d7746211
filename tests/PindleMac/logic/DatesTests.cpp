#include "tests/PindleMac/logic/TestAccess.h"

#include "PindleMac/DateFormat.h"

namespace pindle {

namespace {

using namespace std::chrono;

sys_seconds utc(int y, unsigned m, unsigned d, int hour, int minute) {
    return sys_days{year{y} / month{m} / day{d}} + hours{hour} + minutes{minute};
}

struct Dates : LogicFixture {
    ResolvedDateRange resolve(const CalendarEventDetails &details) {
        return TestAccess::resolve(services, details);
    }
    void expectInvalid(const CalendarEventDetails &details) {
        try {
            resolve(details);
            FAIL() << "the dates were accepted";
        } catch (const AppError &error) {
            EXPECT_EQ(error.errorCase(), AppError::Case::invalidDates);
        }
    }
};

const QString day = QStringLiteral("2025-03-14");
const QString newYork = QStringLiteral("America/New_York");

} // namespace

TEST_F(Dates, aBareDateStartsAtNineAndLastsAnHour) {
    const auto range = resolve(draft(day));
    EXPECT_EQ(range.startDate, utc(2025, 3, 14, 13, 0));
    EXPECT_EQ(range.endDate, utc(2025, 3, 14, 14, 0));
    EXPECT_EQ(range.timeZone.identifier, newYork);
}

TEST_F(Dates, anEndBeforeTheStartBecomesHalfAnHour) {
    const auto range = resolve(draft(day, QStringLiteral("14:00"), {}, QStringLiteral("13:00")));
    EXPECT_EQ(range.endDate, utc(2025, 3, 14, 18, 30));
}

TEST_F(Dates, anEndEqualToTheStartBecomesHalfAnHour) {
    const auto range = resolve(draft(day, QStringLiteral("14:00"), day, QStringLiteral("14:00")));
    EXPECT_EQ(range.endDate - range.startDate, minutes{30});
}

TEST_F(Dates, anEventShorterThanHalfAnHourIsStretched) {
    const auto range = resolve(draft(day, QStringLiteral("10:00"), {}, QStringLiteral("10:15")));
    EXPECT_EQ(range.endDate, utc(2025, 3, 14, 14, 30));
}

TEST_F(Dates, aStartAtHalfPastElevenWithoutEndLastsHalfAnHour) {
    const auto range = resolve(draft(day, QStringLiteral("23:30")));
    EXPECT_EQ(range.startDate, utc(2025, 3, 15, 3, 30));
    EXPECT_EQ(range.endDate, utc(2025, 3, 15, 4, 0));
}

TEST_F(Dates, aStartAtElevenWithoutEndLastsHalfAnHour) {
    const auto range = resolve(draft(day, QStringLiteral("23:00")));
    EXPECT_EQ(range.endDate - range.startDate, minutes{30});
}

TEST_F(Dates, onlyStartsFromElevenAtNightLoseHalfOfTheDefaultHour) {
    for (int hour = 0; hour < 24; ++hour) {
        for (int minute : {0, 1, 30, 59}) {
            const auto time = QStringLiteral("%1:%2")
                                  .arg(hour, 2, 10, QLatin1Char('0'))
                                  .arg(minute, 2, 10, QLatin1Char('0'));
            const auto range = resolve(draft(day, time));
            EXPECT_EQ(range.endDate - range.startDate, minutes{hour == 23 ? 30 : 60})
                << time.toStdString();
        }
    }
}

TEST_F(Dates, anEndDateWithoutTimeTakesTheDefaultTimeOnThatDay) {
    const auto range = resolve(draft(day, QStringLiteral("10:00"), QStringLiteral("2025-03-15")));
    EXPECT_EQ(range.endDate, utc(2025, 3, 15, 15, 0));
}

TEST_F(Dates, anUnknownZoneBecomesTheMachinesZone) {
    for (const QString &zone : {QStringLiteral("Not/AZone"), QString(), QStringLiteral("europe"),
                                QStringLiteral("GMT+25"), QStringLiteral("Etc/Unknown")}) {
        const auto range = resolve(draft(day, {}, {}, {}, zone));
        EXPECT_EQ(range.timeZone.identifier, QStringLiteral("Europe/Berlin"));
        EXPECT_EQ(range.startDate, utc(2025, 3, 14, 8, 0)) << zone.toStdString();
    }
}

TEST_F(Dates, anAbbreviationIsNoZoneOfTheDatabase) {
    // The library behind takes BST for Dhaka; the tz database does not know the name at all.
    EXPECT_FALSE(isKnownTimeZone(QStringLiteral("BST")));
    EXPECT_FALSE(isKnownTimeZone(QStringLiteral("PST")));
    EXPECT_FALSE(isKnownTimeZone(QStringLiteral("GMT+5")));
    EXPECT_TRUE(isKnownTimeZone(QStringLiteral("UTC")));
    EXPECT_TRUE(isKnownTimeZone(QStringLiteral("EST5EDT")));
    EXPECT_TRUE(isKnownTimeZone(QStringLiteral("Asia/Calcutta")));
    EXPECT_TRUE(isKnownTimeZone(QStringLiteral("Etc/GMT+6")));
}

TEST_F(Dates, anEmptyStartDateIsInvalid) {
    expectInvalid(draft(QString()));
}

TEST_F(Dates, aDateInAnotherFormIsInvalid) {
    expectInvalid(draft(QStringLiteral("14/03/2025")));
}

TEST_F(Dates, aTimeInAnotherFormIsInvalid) {
    expectInvalid(draft(day, QStringLiteral("9am")));
}

TEST_F(Dates, anImpossibleEndTimeIsInvalidWithTheStartDateMessage) {
    expectInvalid(draft(day, {}, {}, QStringLiteral("25:00")));
    EXPECT_EQ(AppError(AppError::Case::invalidDates).errorDescription(),
              QStringLiteral("The converted event is missing a valid start date."));
}

TEST_F(Dates, aTimeWithSecondsIsInvalid) {
    expectInvalid(draft(day, QStringLiteral("09:00:00")));
}

TEST_F(Dates, aStringOfBlanksIsNotAnEmptyOne) {
    expectInvalid(draft(QStringLiteral("   ")));
    expectInvalid(draft(day, QStringLiteral("  ")));
    expectInvalid(draft(day, {}, QStringLiteral(" ")));
}

TEST_F(Dates, aDayThatDoesNotExistIsInvalid) {
    expectInvalid(draft(QStringLiteral("2025-02-30")));
    expectInvalid(draft(QStringLiteral("2025-13-01")));
}

TEST_F(Dates, aRangeAcrossTheEndOfDaylightSavingKeepsItsWallClock) {
    // New York leaves daylight saving on 2 November 2025 at 2:00.
    const auto range = resolve(draft(QStringLiteral("2025-11-01"), QStringLiteral("20:00"),
                                     QStringLiteral("2025-11-02"), QStringLiteral("08:00")));
    EXPECT_EQ(range.endDate - range.startDate, hours{13});
}

TEST_F(Dates, aWallClockTimeInAGapStillResolves) {
    const auto range = resolve(draft(QStringLiteral("2025-03-09"), QStringLiteral("02:30")));
    EXPECT_GE(range.endDate - range.startDate, minutes{30});
    EXPECT_EQ(range.startDate, utc(2025, 3, 9, 7, 30));
}

TEST_F(Dates, theEarlierOfTwoRepeatedWallClockTimesIsMeant) {
    const auto range = resolve(draft(QStringLiteral("2025-11-02"), QStringLiteral("01:30")));
    EXPECT_EQ(range.startDate, utc(2025, 11, 2, 5, 30));
}

TEST_F(Dates, readingOneTextLeavesNoTraceOnTheNext) {
    const CalendarEventDetails good = draft(day, QStringLiteral("10:00"));
    expectInvalid(draft(QStringLiteral("2025-02-30"), QStringLiteral("23:59")));
    EXPECT_EQ(resolve(good).startDate, utc(2025, 3, 14, 14, 0));
    expectInvalid(draft(day, QStringLiteral("10")));
    EXPECT_EQ(resolve(good).startDate, utc(2025, 3, 14, 14, 0));
}

TEST_F(Dates, zonesUsedInTurnAreKeptApart) {
    const auto instant = utc(2025, 3, 14, 14, 0);
    const QString pattern = QStringLiteral("HH:mmXXX");
    // More than are remembered, and twice around.
    for (int round = 0; round < 2; ++round) {
        for (int hour = 1; hour <= 12; ++hour) {
            const TimeZone west{QStringLiteral("Etc/GMT+%1").arg(hour)};
            const TimeZone east{QStringLiteral("Etc/GMT-%1").arg(hour)};
            const QLatin1Char zero('0');
            EXPECT_EQ(
                formatDate(instant, west, pattern),
                QStringLiteral("%1:00-%2:00").arg(14 - hour, 2, 10, zero).arg(hour, 2, 10, zero));
            EXPECT_EQ(formatDate(instant, east, pattern), QStringLiteral("%1:00+%2:00")
                                                              .arg((14 + hour) % 24, 2, 10, zero)
                                                              .arg(hour, 2, 10, zero));
        }
    }
}

TEST_F(Dates, aZoneYoungerThanTheDateLibraryIsTakenFromTheSystem) {
    // Both were split off after the library's own data were made: Juárez in 2022, Coyhaique in
    // 2025.
    struct Case {
        const char *zone;
        const char *date;
        int hoursBehind;
    };
    const Case cases[] = {{"America/Ciudad_Juarez", "2027-01-14", 7},
                          {"America/Ciudad_Juarez", "2027-07-14", 6},
                          {"America/Coyhaique", "2027-01-14", 3},
                          {"America/Coyhaique", "2027-07-14", 3}};
    for (const Case &c : cases) {
        SCOPED_TRACE(c.zone);
        const QString zone = QString::fromLatin1(c.zone);
        const QString date = QString::fromLatin1(c.date);
        ASSERT_TRUE(isKnownTimeZone(zone));
        const auto range = resolve(draft(date, QStringLiteral("22:15"), {}, {}, zone));
        EXPECT_EQ(range.timeZone.identifier, zone);
        EXPECT_EQ(range.endDate - range.startDate, hours{1});
        const auto civil = parseDate(date, {QStringLiteral("UTC")}, QStringLiteral("yyyy-MM-dd"));
        ASSERT_TRUE(civil);
        EXPECT_EQ(range.startDate, *civil + hours{22 + c.hoursBehind} + minutes{15});
        EXPECT_EQ(formatDate(range.startDate, {zone}, QStringLiteral("yyyy-MM-dd'T'HH:mm:ssXXX")),
                  date + QStringLiteral("T22:15:00-0%1:00").arg(c.hoursBehind));
    }
}

TEST_F(Dates, aMachineInAYoungZoneKeepsItsClock) {
    desktop.clock.zone = {QStringLiteral("America/Coyhaique")};
    const auto range = resolve(draft(day, QStringLiteral("10:00"), {}, {}, QString()));
    EXPECT_EQ(range.startDate, utc(2025, 3, 14, 13, 0));
    EXPECT_EQ(range.timeZone.identifier, desktop.clock.zone.identifier);
}

TEST_F(Dates, aYoungZonesGapAndRepeatedHourResolveLikeAnyOthers) {
    // Juárez moves its clocks at 2:00 on 14 March and back at 2:00 on 7 November 2027.
    const QString zone = QStringLiteral("America/Ciudad_Juarez");
    const auto start = [&](const char *date, const char *time) {
        return resolve(draft(QString::fromLatin1(date), QString::fromLatin1(time), {}, {}, zone))
            .startDate;
    };
    EXPECT_EQ(start("2027-03-14", "01:59"), utc(2027, 3, 14, 8, 59));
    EXPECT_EQ(start("2027-03-14", "02:30"), utc(2027, 3, 14, 9, 30));
    EXPECT_EQ(start("2027-03-14", "03:00"), utc(2027, 3, 14, 9, 0));
    EXPECT_EQ(start("2027-11-07", "00:59"), utc(2027, 11, 7, 6, 59));
    EXPECT_EQ(start("2027-11-07", "01:30"), utc(2027, 11, 7, 7, 30));
    EXPECT_EQ(start("2027-11-07", "02:00"), utc(2027, 11, 7, 9, 0));
}

TEST_F(Dates, aNameThatOnlyLooksLikeAYoungZoneIsNone) {
    for (const char *name : {"America", "America/", "America/Argentina", "posix/Europe/Berlin",
                             "right/America/Coyhaique", "../zoneinfo/America/Coyhaique",
                             "america/coyhaique", "UTC+03:00", "America/Coyhaique ",
                             "America/Coyhaique\n", "/usr/share/zoneinfo/America/Coyhaique"})
        EXPECT_FALSE(isKnownTimeZone(QString::fromLatin1(name))) << name;
}

} // namespace pindle
