#pragma once

#include <QTimeZone>
#include <chrono>
#include <libical/ical.h>

namespace pindle {

/// A VTIMEZONE (RFC 5545, 3.6.5) named by the zone's plain tz identifier, made from the system's
/// tz database. It is exact for every instant from `first` to `last`; where the zone changes its
/// offset by a yearly rule, the rule goes along and the years after that are right too. The caller
/// owns it.
icalcomponent *makeVTimezone(const QTimeZone &zone, std::chrono::sys_seconds first,
                             std::chrono::sys_seconds last);

/// The same clock shows `instant` and another instant in that zone, as when summer time ends.
bool isAmbiguousIn(const QTimeZone &zone, std::chrono::sys_seconds instant);

/// What a clock that is `offset` seconds ahead of UTC shows, as iCalendar's local time.
icaltimetype localTime(std::chrono::sys_seconds instant, int offset);

/// Seconds that the zone's clocks are ahead of UTC at that instant.
int utcOffset(const QTimeZone &zone, std::chrono::sys_seconds instant);

} // namespace pindle
