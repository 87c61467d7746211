#include "EventStoreFixture.h"
#include "PindleMac/platform/linux/eventstore/IcsEvent.h"

#include <QFileInfo>
#include <QTimeZone>
#include <libical/ical.h>

namespace pindle {
namespace {

TEST_F(CalendarFolder, anEventIsOneFileOfTheUsersOwnNamedByItsIdentifier) {
    const QJsonObject read = saved(QStringLiteral("Tea"), summer, "Europe/Berlin");
    const QString file = onlyFile();
    EXPECT_EQ(QFileInfo(file).fileName(),
              read.value(QStringLiteral("uid")).toString() + QStringLiteral(".ics"));
    EXPECT_EQ(modeOf(file), 0600U);
    EXPECT_EQ(modeOf(folder), 0700U);
    EXPECT_TRUE(read.value(QStringLiteral("uid")).toString().contains(QLatin1Char('@')));
}

TEST_F(CalendarFolder, anotherReaderFindsEveryField) {
    const QJsonObject read = saved(QStringLiteral("Tea"), summer, "Europe/Berlin");
    EXPECT_EQ(read.value(QStringLiteral("title")), QStringLiteral("Tea"));
    EXPECT_EQ(read.value(QStringLiteral("location")), QStringLiteral("Room 1"));
    EXPECT_EQ(read.value(QStringLiteral("notes")), QStringLiteral("Bring tea"));
    EXPECT_EQ(read.value(QStringLiteral("version")), QStringLiteral("2.0"));
    EXPECT_FALSE(read.value(QStringLiteral("prodid")).toString().isEmpty());
    EXPECT_TRUE(read.value(QStringLiteral("stamped")).toBool());
    EXPECT_TRUE(read.value(QStringLiteral("crlfOnly")).toBool());
    const QJsonArray keys{QStringLiteral("DESCRIPTION"), QStringLiteral("DTEND"),
                          QStringLiteral("DTSTAMP"),     QStringLiteral("DTSTART"),
                          QStringLiteral("LOCATION"),    QStringLiteral("SUMMARY"),
                          QStringLiteral("UID")};
    EXPECT_EQ(read.value(QStringLiteral("keys")).toArray(), keys);
}

struct InZone {
    const char *zone;
    sys_seconds start;
    const char *wall;
};

TEST_F(CalendarFolder, instantsAndZonesAreExactForAnotherReader) {
    const InZone cases[] = {
        {"Europe/Berlin", summer, "2027-05-20T15:30:00"},
        {"Europe/Berlin", winter, "2027-12-03T09:00:00"},
        {"America/New_York", summer, "2027-05-20T09:30:00"},
        {"America/New_York", winter, "2027-12-03T03:00:00"},
        {"Asia/Kolkata", summer, "2027-05-20T19:00:00"},
        {"Australia/Lord_Howe", summer, "2027-05-21T00:00:00"},
        {"Australia/Lord_Howe", winter, "2027-12-03T19:00:00"},
        {"Africa/Casablanca", winter, "2027-12-03T09:00:00"},
        {"Europe/Dublin", winter, "2027-12-03T08:00:00"},
        {"US/Pacific", summer, "2027-05-20T06:30:00"},
        {"Pacific/Apia", summer, "2027-05-21T02:30:00"},
        {"Etc/GMT+3", summer, "2027-05-20T10:30:00"},
    };
    for (const InZone &c : cases) {
        SCOPED_TRACE(c.zone);
        const QJsonObject read = saved(QStringLiteral("Tea"), c.start, c.zone, 90min);
        const auto start = c.start.time_since_epoch().count();
        EXPECT_EQ(read.value(QStringLiteral("start")).toInteger(), start);
        EXPECT_EQ(read.value(QStringLiteral("end")).toInteger(), start + 90 * 60);
        EXPECT_EQ(read.value(QStringLiteral("wall")), QString::fromLatin1(c.wall));
        EXPECT_EQ(read.value(QStringLiteral("startZone")), QString::fromLatin1(c.zone));
        EXPECT_EQ(read.value(QStringLiteral("endZone")), QString::fromLatin1(c.zone));
        EXPECT_EQ(read.value(QStringLiteral("zones")).toArray(),
                  QJsonArray{QString::fromLatin1(c.zone)});
    }
}

TEST_F(CalendarFolder, universalTimeIsWrittenWithoutAZone) {
    const QJsonObject read = saved(QStringLiteral("Tea"), summer, "UTC");
    EXPECT_EQ(read.value(QStringLiteral("start")).toInteger(), summer.time_since_epoch().count());
    EXPECT_TRUE(contents(onlyFile()).contains("\r\nDTSTART:20270520T133000Z\r\n"));
    EXPECT_TRUE(read.value(QStringLiteral("zones")).toArray().isEmpty());
}

TEST_F(CalendarFolder, aZoneTheSystemDoesNotKnowIsWrittenAsUniversalTime) {
    for (const char *zone : {"Mars/Olympus", "", "Europe/Berlin\r\nATTENDEE:x", "UTC+03:00"}) {
        SCOPED_TRACE(zone);
        const QJsonObject read = saved(QStringLiteral("Tea"), summer, zone);
        EXPECT_EQ(read.value(QStringLiteral("start")).toInteger(),
                  summer.time_since_epoch().count());
        EXPECT_EQ(read.value(QStringLiteral("startZone")), QString());
    }
}

TEST_F(CalendarFolder, bothHoursOfTheEndOfSummerTimeKeepTheirInstants) {
    const sys_seconds first = sys_days{std::chrono::October / 31 / 2027} + 0h + 30min;
    for (const sys_seconds start : {first, first + 1h}) {
        const QJsonObject read = saved(QStringLiteral("Night"), start, "Europe/Berlin", 2h);
        EXPECT_EQ(read.value(QStringLiteral("start")).toInteger(),
                  start.time_since_epoch().count());
        EXPECT_EQ(read.value(QStringLiteral("end")).toInteger(),
                  (start + 2h).time_since_epoch().count());
    }
    // The hours around it are unambiguous and keep the zone.
    EXPECT_EQ(saved(QStringLiteral("Night"), first - 1h, "Europe/Berlin")
                  .value(QStringLiteral("startZone")),
              QStringLiteral("Europe/Berlin"));
    EXPECT_EQ(saved(QStringLiteral("Night"), first + 2h, "Europe/Berlin")
                  .value(QStringLiteral("startZone")),
              QStringLiteral("Europe/Berlin"));
}

/// What the VTIMEZONE of a file alone says of an instant, by a reader that knows no zone by name.
int offsetByFile(const QByteArray &text, sys_seconds instant) {
    icalcomponent *calendar = icalparser_parse_string(text.constData());
    icalcomponent *own = icalcomponent_get_first_component(calendar, ICAL_VTIMEZONE_COMPONENT);
    icaltimezone *zone = icaltimezone_new();
    icaltimezone_set_component(zone, icalcomponent_new_clone(own));
    icaltimetype time = icaltime_from_timet_with_zone(instant.time_since_epoch().count(), 0,
                                                      icaltimezone_get_utc_timezone());
    int daylight = 0;
    const int offset = icaltimezone_get_utc_offset_of_utc_time(zone, &time, &daylight);
    icaltimezone_free(zone, 1);
    icalcomponent_free(calendar);
    return offset;
}

TEST_F(CalendarFolder, theZoneInTheFileIsExactForTheEventAndItsYearlyRuleForLaterYears) {
    for (const char *name :
         {"Europe/Berlin", "America/New_York", "Australia/Lord_Howe", "Asia/Kolkata",
          "America/Santiago", "Africa/Casablanca", "Asia/Jerusalem", "Europe/Dublin",
          "Pacific/Kiritimati", "Europe/Istanbul", "CET"}) {
        SCOPED_TRACE(name);
        const QTimeZone zone(name);
        for (int month = 0; month < 12; ++month) {
            IcsEvent event;
            event.start =
                sys_days{std::chrono::January / 15 / 2027} + std::chrono::days(30 * month);
            event.end = event.start + 1h;
            event.zone = {QString::fromLatin1(name)};
            const auto text = icsText(event, "uid", event.start);
            ASSERT_TRUE(text);
            for (const sys_seconds instant :
                 {event.start, event.end, event.start + std::chrono::days(200),
                  event.start + std::chrono::days(365 * 3)}) {
                const int wanted = zone.offsetFromUtc(
                    QDateTime::fromSecsSinceEpoch(instant.time_since_epoch().count(), Qt::UTC));
                EXPECT_EQ(offsetByFile(*text, instant), wanted)
                    << month << " " << instant.time_since_epoch().count();
            }
        }
    }
}

TEST_F(CalendarFolder, aYearlyRuleHoldsForDecades) {
    IcsEvent event;
    event.start = summer;
    event.end = summer + 1h;
    for (const char *name : {"Europe/Berlin", "America/New_York", "Australia/Lord_Howe"}) {
        event.zone = {QString::fromLatin1(name)};
        const auto text = icsText(event, "uid", summer);
        for (int year = 2028; year < 2060; ++year) {
            for (const auto month : {std::chrono::January, std::chrono::July}) {
                const sys_seconds instant = sys_days{month / 10 / year};
                const int wanted = QTimeZone(name).offsetFromUtc(
                    QDateTime::fromSecsSinceEpoch(instant.time_since_epoch().count(), Qt::UTC));
                EXPECT_EQ(offsetByFile(*text, instant), wanted) << name << " " << year;
            }
        }
    }
}

QByteArray lastingText(const char *zone, sys_seconds start) {
    IcsEvent event;
    event.start = start;
    event.end = start + 1h;
    event.zone = {QString::fromLatin1(zone)};
    return icsText(event, "uid", start, IcsTimes::lastingZone).value_or(QByteArray());
}

QByteArray definitionIn(const QByteArray &text) {
    const auto from = text.indexOf("BEGIN:VTIMEZONE");
    return text.mid(from, text.indexOf("END:VTIMEZONE") - from);
}

TEST_F(CalendarFolder, aLastingDefinitionIsTheSameForEveryEventAndExactForItsYears) {
    for (const char *name :
         {"Europe/Berlin", "America/New_York", "Australia/Lord_Howe", "Africa/Casablanca",
          "America/Santiago", "Asia/Jerusalem", "Asia/Gaza", "Asia/Tehran", "America/Nuuk",
          "America/Mexico_City", "America/Coyhaique", "Asia/Kolkata", "Europe/Volgograd"}) {
        SCOPED_TRACE(name);
        const QByteArray text = lastingText(name, summer);
        EXPECT_TRUE(text.contains(QByteArray("DTSTART;TZID=") + name));
        EXPECT_EQ(definitionIn(text), definitionIn(lastingText(name, winter)));
        for (int year = 2020; year < 2038; year += 2) {
            for (unsigned month = 1; month < 13; month += 3) {
                const sys_seconds instant =
                    sys_days{std::chrono::year{year} / std::chrono::month{month} / 15};
                EXPECT_EQ(offsetByFile(text, instant),
                          QTimeZone(name).offsetFromUtc(QDateTime::fromSecsSinceEpoch(
                              instant.time_since_epoch().count(), Qt::UTC)))
                    << year << " " << month;
            }
        }
    }
}

TEST_F(CalendarFolder, outsideTheYearsOfALastingDefinitionTimesAreUniversal) {
    for (const int year : {2019, 2038, 2100}) {
        const sys_seconds start = sys_days{std::chrono::July / 1 / year} + 9h;
        const QByteArray text = lastingText("Europe/Berlin", start);
        EXPECT_TRUE(text.contains("0701T090000Z\r\n")) << year;
        EXPECT_FALSE(text.contains("VTIMEZONE")) << year;
    }
}

TEST_F(CalendarFolder, textArrivesCharacterByCharacter) {
    const QString titles[] = {
        QString(),
        QStringLiteral("a, b; c\\d \"e\" : f"),
        QStringLiteral("  spaces and\ta tab  "),
        QStringLiteral("😀 東京 Grüße ") + QStringLiteral("e\u0301"),
        QStringLiteral("日本語😀").repeated(60),
        QStringLiteral("BEGIN:VEVENT"),
        QStringLiteral("x").repeated(5000),
    };
    for (const QString &title : titles) {
        const QJsonObject read = saved(title, summer, "Europe/Berlin");
        EXPECT_EQ(read.value(QStringLiteral("title")).toString(), title);
        EXPECT_LE(read.value(QStringLiteral("longestLine")).toInt(), 75);
    }
}

TEST_F(CalendarFolder, aBackslashBeforeAnNIsNoLineBreak) {
    // The other reader gets this one wrong; RFC 5545 (3.3.11) wants the backslash doubled.
    allow();
    store->save(*event(QStringLiteral("C:\\new"), summer, "UTC"), EKSpan::thisEvent);
    EXPECT_TRUE(contents(onlyFile()).contains("\r\nSUMMARY:C:\\\\new\r\n"));
}

TEST_F(CalendarFolder, noLineBreakBecomesAnotherProperty) {
    const QString breaks[] = {QStringLiteral("\n"),     QStringLiteral("\r"),
                              QStringLiteral("\r\n"),   QStringLiteral("\v"),
                              QStringLiteral("\f"),     QStringLiteral("\u0085"),
                              QStringLiteral("\u2028"), QStringLiteral("\u2029")};
    for (const QString &brk : breaks) {
        const QString text = QStringLiteral("Tea") + brk + QStringLiteral("ATTENDEE:mailto:x@y.z");
        auto made = event(text, summer, "Europe/Berlin");
        made->setLocation(text);
        made->setNotes(text);
        const auto uid = QByteArrayLiteral("u");
        const auto written = icsText(static_cast<IcsEvent &>(*made), uid, summer);
        ASSERT_TRUE(written);
        EXPECT_FALSE(written->contains("\nATTENDEE"));
        EXPECT_FALSE(written->contains("\rATTENDEE"));
        const QJsonObject read = saved(text, summer, "Europe/Berlin");
        EXPECT_EQ(read.value(QStringLiteral("title")).toString(),
                  QStringLiteral("Tea\nATTENDEE:mailto:x@y.z"));
        EXPECT_EQ(read.value(QStringLiteral("keys")).toArray().size(), 7);
    }
}

TEST_F(CalendarFolder, controlCharactersAreLeftOut) {
    const QString title =
        QStringLiteral("a") + QChar(0) + QStringLiteral("b\x1b[31mc\x7f") + QChar(0x9b);
    const QJsonObject read = saved(title, summer, "Europe/Berlin");
    EXPECT_EQ(read.value(QStringLiteral("title")).toString(), QStringLiteral("ab[31mc"));
}

TEST_F(CalendarFolder, aYearTheFormatCannotWriteIsRefused) {
    allow();
    const auto made = event(QStringLiteral("Far"), sys_days{std::chrono::May / 1 / 12027}, "UTC");
    EXPECT_TRUE(refusal(*made).contains(QStringLiteral("year")));
    EXPECT_TRUE(files().isEmpty());
}

} // namespace
} // namespace pindle
