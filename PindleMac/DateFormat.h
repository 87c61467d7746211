#pragma once

#include "PindleMac/platform/Clock.h"

#include <QString>
#include <chrono>
#include <optional>

namespace pindle {

/// Whether the tz database knows this identifier: ICU's or, for zones younger than that, the
/// system's.
bool isKnownTimeZone(const QString &identifier);

/// Wall-clock text of an instant: a Unicode date-field pattern (UTS #35), Gregorian calendar,
/// locale en_US_POSIX. A zone that is not known counts as UTC.
QString formatDate(std::chrono::sys_seconds instant, const TimeZone &zone, const QString &pattern);

/// The instant of a wall-clock text that matches the pattern as a whole, read strictly (no 25:00,
/// no 30 February). Of a repeated wall-clock time the earlier instant is meant; a skipped one is
/// moved on by the length of the gap.
std::optional<std::chrono::sys_seconds> parseDate(const QString &text, const TimeZone &zone,
                                                  const QString &pattern);

} // namespace pindle
