#pragma once

#include "PindleMac/platform/EventStore.h"

#include <QByteArray>

namespace pindle {

/// A new event of this system's calendars, as its fields.
class IcsEvent final : public EKEvent {
public:
    void setCalendar(const std::optional<EKCalendar> &value) override { calendar = value; }
    void setTitle(const QString &value) override { title = value; }
    void setLocation(const QString &value) override { location = value; }
    void setNotes(const QString &value) override { notes = value; }
    void setStartDate(std::chrono::sys_seconds value) override { start = value; }
    void setEndDate(std::chrono::sys_seconds value) override { end = value; }
    void setTimeZone(const TimeZone &value) override { zone = value; }

    std::optional<EKCalendar> calendar;
    QString title;
    QString location;
    QString notes;
    std::chrono::sys_seconds start;
    std::chrono::sys_seconds end;
    TimeZone zone;
};

/// How the times of an event are written.
enum class IcsTimes {
    ownZone,     ///< in its zone, with a definition exact for this event
    lastingZone, ///< in its zone, with the same definition for every event, exact for the years
                 ///< from 2020 to 2037; an event in another year is written in UTC
    universal,   ///< in UTC
};

/// The event as an iCalendar file of its own (RFC 5545). Its instants are exact: an end whose wall
/// clock time says two things in its zone, as when summer time ends, is written in UTC, and so is
/// everything in a zone the system does not know. Line breaks of the texts are kept as such,
/// other control characters but the tab are left out. Absent for a year iCalendar cannot write.
std::optional<QByteArray> icsText(const IcsEvent &event, const QByteArray &uid,
                                  std::chrono::sys_seconds stamp,
                                  IcsTimes times = IcsTimes::ownZone);

/// A UID that no other event has.
QByteArray newEventIdentifier();

/// The fields of an event that is about to be saved. Throws PlatformError when it was not made
/// here, or when the user has not allowed adding events.
const IcsEvent &eventToSave(const EKEvent &event, EKAuthorizationStatus status);

/// For an event whose year iCalendar cannot write.
PlatformError yearNotWritable();

} // namespace pindle
