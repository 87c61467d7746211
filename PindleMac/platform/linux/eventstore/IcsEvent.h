#pragma once

#include "PindleMac/platform/EventStore.h"

#include <QByteArray>

namespace pindle {

/// A new event of the calendar folder, as its fields.
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

/// The event as an iCalendar file of its own (RFC 5545). Its instants are exact: an end whose wall
/// clock time says two things in its zone, as when summer time ends, is written in UTC, and so is
/// everything in a zone the system does not know. Line breaks of the texts are kept as such,
/// other control characters but the tab are left out. Absent for a year iCalendar cannot write.
std::optional<QByteArray> icsText(const IcsEvent &event, const QByteArray &uid,
                                  std::chrono::sys_seconds stamp);

} // namespace pindle
