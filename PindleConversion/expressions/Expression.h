#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "PindleConversion/tokens/Token.h"

namespace pindle::conversion {

/// Monday to Friday, in "the last working day of the month".
inline constexpr int kWorkingDay = 8;

/// A day as the text gives it, before a reference date settles it.
struct DateSpec {
    enum class Base : std::uint8_t {
        Calendar,   ///< day and month, the year perhaps
        DayOnly,    ///< a day of some month
        Today,      ///< counted from the reference date
        Weekday,    ///< `weekday`, `which`
        Week,       ///< `which` week or month without a day, see `months`
        Weekend,    ///< `which`
        NthWeekday, ///< `nth` (-1: last) `weekday` of a month; weekday 0: any day
        Easter,     ///< `days` from Easter Sunday
    };
    Base base = Base::Calendar;
    int year = 0; ///< 0: not given
    int month = 0;
    int day = 0;
    int weekday = 0; ///< 1 (Monday) to 7; with Calendar the day that the text claims; with
                     ///< NthWeekday also `kWorkingDay`
    int nth = 0;
    Which which = Which::Nearest;
    int beside = 0; ///< 1 to 7: the next such weekday after the day; negative: the last before it
    int days = 0;   ///< added after all else
    int months = 0; ///< added after all else; with DayOnly and NthWeekday: from the current month
    bool monthGiven = false;           ///< `months` is meant: "this month", "next month"
    bool shortYear = false;            ///< two digits of a year were given
    bool monthThenDay = false;         ///< numeric: the month stands first
    bool eitherOrder = false;          ///< numeric: `month` and `day` may be swapped
    DayOrder order = DayOrder::ByZone; ///< with `eitherOrder`: how the text's language reads it
};

struct DateMention {
    TokenSpan span;
    DateSpec first;
    std::optional<DateSpec> last; ///< of a span of days
    bool weak = false;            ///< could well be no date
    bool repeated = false;
    bool holiday = false; ///< by a name that may be the event's as well
};

/// A clock time as the text gives it.
struct ClockSpec {
    int hour = 0;
    int minute = 0;
    int meridiem = -1;    ///< 0 before noon, 1 after noon, -1 not said
    bool literal = false; ///< can only be meant on the 24-hour clock
    bool minuteGiven = false;
    bool sure = false;     ///< a time by its own form
    bool hourWord = false; ///< a word says that it is an hour: "Uhr", "時"
    bool spoken = false;   ///< in words that count on the 12-hour clock: "half past two"
    bool clock24 = false;  ///< the text's language writes times on the 24-hour clock
    bool seconds = false;  ///< odd seconds follow: what something happened at
};

struct TimeMention {
    TokenSpan span;
    ClockSpec start;
    std::optional<ClockSpec> end;
    std::string_view zone; ///< identifiers of the lexicon, '|' between them
    int offsetMinutes = 0; ///< with `hasOffset`: the zone by its offset from UTC
    bool hasOffset = false;
    bool zoneWritten = false; ///< `zone` is an identifier as the text has it, known or not
    bool marked = false;      ///< a word before it says that it is a time
    TokenSpan zoneSpan;
    DayPart part = DayPart::None; ///< said directly behind or before it
};

struct PartMention {
    TokenSpan span;
    DayPart part;
};

struct DurationMention {
    TokenSpan span;
    int minutes = 0; ///< 0 when counted in days
    int days = 0;
};

struct RoleMention {
    std::uint32_t token;
    Role role;
    bool behind = false; ///< said of what stands before it
};

/// Every date and time expression of a text, in order of appearance.
struct Expressions {
    std::vector<DateMention> dates;
    std::vector<TimeMention> times;
    std::vector<PartMention> parts;
    std::vector<DurationMention> durations;
    std::vector<RoleMention> roles;
    std::vector<TimeMention> zones; ///< zones that stand alone: only the zone's members are set
};

/// Most expressions of one kind that are taken from a text; what follows is not looked at.
inline constexpr std::size_t kMostExpressions = 64;

/// Fourth step: finds the expressions and marks their tokens as used.
Expressions findExpressions(Document &document);

/// The date that starts at token `i`, with everything that belongs to it.
std::optional<DateMention> readDate(const Reader &reader, std::uint32_t i);
/// "moved from" stands right before token `i`: what follows is no first half of a range.
bool isMovedFrom(const Reader &reader, std::uint32_t i);
/// A day by the calendar ("5 June", "2026-06-05"), without ranges and weekdays behind it.
std::optional<DateMention> readCalendarDate(const Reader &reader, std::uint32_t i);
/// A day by its distance or place in a week or month.
std::optional<DateMention> readRelativeDate(const Reader &reader, std::uint32_t i);
/// A day by words that count its parts: "2026年6月5日".
std::optional<DateMention> readCountedDate(const Reader &reader, std::uint32_t i);
/// A word that stands between two days of a range, or null. Some stand only between times.
const Sense *readDayRange(const Reader &reader, std::uint32_t i);
/// A holiday by its name. Weak: it may as well name the event.
std::optional<DateMention> readHoliday(const Reader &reader, std::uint32_t i);

/// A clock time or a range of times at token `i`. `marked`: a word before it announces a time.
std::optional<TimeMention> readTime(const Reader &reader, std::uint32_t i, bool marked,
                                    bool afterDate);
/// One clock time; `next` becomes the token behind it.
std::optional<ClockSpec> readClock(const Reader &reader, std::uint32_t i, std::uint32_t &next);

/// A word for hours announces the number at `i`: "ore 21", but not "2 ore 3".
bool isHourWord(const Reader &reader, std::uint32_t i);
/// Two digits behind a full stop, without a blank, follow the number at `i`: "7.45", "08.59".
bool hasDottedMinutes(const Reader &reader, std::uint32_t i);
/// "7.45": minutes as a clock shows them.
bool isDottedTime(const Reader &reader, std::uint32_t i);
/// Behind the hours of a day at `i`, from morning on: "9-1", "10-11.30"; else `i`.
std::uint32_t skipDayHours(const Reader &reader, std::uint32_t i);
/// "18:30/20:30": a second time behind a slash ends a range.
bool isTimeBehindSlash(const Reader &reader, std::uint32_t i);
/// A clock time in words: "half past two", "halb acht".
std::optional<ClockSpec> readSpokenClock(const Reader &reader, std::uint32_t i,
                                         std::uint32_t &next);
/// "pm" behind the digits at `i`; returns the token behind it, or `i`.
std::uint32_t readMeridiem(const Reader &reader, std::uint32_t i, ClockSpec &clock);
/// What may stand behind a time without changing it: "ish", "o'clock", "sharp".
std::uint32_t readClockTail(const Reader &reader, std::uint32_t i, ClockSpec &clock);
/// Minutes that stand behind the hour: "y media", "menos cuarto", "半".
std::uint32_t readMinutesBehind(const Reader &reader, std::uint32_t i, ClockSpec &clock);

/// Reads the zone at token `i` into `mention`; `afterTime` allows abbreviations.
/// Returns the token behind it, or `i` when there is none.
std::uint32_t readZone(const Reader &reader, std::uint32_t i, bool afterTime, TimeMention &mention);

/// A length of time at token `i`. `marked`: a word before it announces a length.
std::optional<DurationMention> readDuration(const Reader &reader, std::uint32_t i, bool marked);

/// The token behind a row of groups of digits such as a telephone number, or `i`.
std::uint32_t skipNumberRow(const Reader &reader, std::uint32_t i);
/// "the 8th, 40th and 55th minute": a number at `next` goes on a row that counts no days.
bool isCounted(const Reader &reader, std::uint32_t next);

/// A count: digits or a number word. `next` becomes the token behind it.
std::optional<int> readCount(const Reader &reader, std::uint32_t i, std::uint32_t &next);

} // namespace pindle::conversion
