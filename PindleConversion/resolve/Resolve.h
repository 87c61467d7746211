#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

#include "PindleConversion/expressions/Expression.h"

namespace pindle::conversion {

using Day = std::chrono::sys_days;

/// Where and when the text was highlighted.
struct Reference {
    Day today;
    std::string_view zone;
    bool monthFirst = false; ///< "5/6" is May 6
};

/// A date mention settled against the reference.
struct ResolvedDate {
    Day first;
    std::optional<Day> last;
    bool yearGiven = false;
    bool weekdayConflict = false; ///< the weekday in the text is not that date's
    bool orderAssumed = false;    ///< day and month could be swapped
};

/// Reads "yyyy-MM-dd"; nothing for any other form or a day that does not exist.
std::optional<Day> parseDay(std::string_view text);
std::string formatDay(Day day);
std::string formatMinute(int minuteOfDay);

/// Fifth step: the days a mention means; nothing for a day that does not exist.
std::optional<ResolvedDate> resolveDate(const DateMention &mention, const Reference &reference);

/// A time mention on the 24-hour clock, in minutes of the day.
struct ResolvedTime {
    int start = 0;          ///< 1440 and more: on the next day
    std::optional<int> end; ///< 1440 and more: on the next day
    bool assumed = false;   ///< morning or afternoon was only guessed
};

/// What the text around a time says about the half of the day.
struct TimeContext {
    DayPart part = DayPart::None;
    EventKind kind = EventKind::None;
    bool twentyFour = false; ///< other times of the text use the 24-hour clock
};

ResolvedTime resolveTime(const TimeMention &mention, const TimeContext &context);

/// What the clocks of a zone do at a local time.
enum class ClockChange : std::uint8_t { None, Skipped, Repeated };

/// Whether a minute of a day is left out or comes twice when the clocks of `zone` change. Asks the
/// tz database only for the early hours, in which clocks are changed.
ClockChange clockChangeAt(Day day, int minuteOfDay, const std::string &zone);

/// The tz identifier for a zone as the text names it: the user's own when the name covers it.
std::string resolveZone(const TimeMention &mention, std::string_view userZone);

} // namespace pindle::conversion
