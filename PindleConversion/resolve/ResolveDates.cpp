#include "PindleConversion/resolve/Resolve.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdlib>
#include <string>

namespace pindle::conversion {

namespace {

using namespace std::chrono;
using Base = DateSpec::Base;

constexpr int kDaysInWeek = 7;
constexpr int kFarthestShortYear = 15; ///< years ahead that two digits can mean

/// 1 (Monday) to 7.
int weekdayOf(Day day) {
    return static_cast<int>(weekday(day).iso_encoding());
}

std::optional<Day> civil(int y, int m, int d) {
    const year_month_day date{year(y), month(static_cast<unsigned>(m)),
                              day(static_cast<unsigned>(d))};
    if (!date.ok() || y < 1 || y > 9999)
        return std::nullopt;
    return Day(date);
}

/// The same day some months later; the month's last day where it has none.
Day addMonths(Day from, int count) {
    const year_month_day date(from);
    const auto target = year_month(date.year(), date.month()) + months(count);
    const year_month_day_last last = target / std::chrono::last;
    return Day(target / std::min(date.day(), last.day()));
}

/// The next day with that day and month, this year or (29 February) a few years on.
std::optional<Day> nextYearly(int m, int d, Day from) {
    constexpr int kLeapCycle = 8;
    const int y = static_cast<int>(year_month_day(from).year());
    for (int i = 0; i <= kLeapCycle; ++i)
        if (const auto date = civil(y + i, m, d); date && *date >= from)
            return date;
    return std::nullopt;
}

std::optional<Day> calendarDay(int y, int m, int d, Day from) {
    return y > 0 ? civil(y, m, d) : nextYearly(m, d, from);
}

struct Written {
    std::optional<Day> day;
    bool assumed = false;
};

/// Day and month in the order that the weekday, validity and the reader's habit ask for.
Written calendar(const DateSpec &spec, const Reference &reference, Day from) {
    int m = spec.month;
    int d = spec.day;
    if (!spec.eitherOrder)
        return {calendarDay(spec.year, m, d, from), false};
    const auto dayFirst = calendarDay(spec.year, m, d, from);
    const auto monthFirst = calendarDay(spec.year, d, m, from);
    if (spec.weekday > 0 && dayFirst && monthFirst && *dayFirst != *monthFirst) {
        const bool fitsDayFirst = weekdayOf(*dayFirst) == spec.weekday;
        const bool fitsMonthFirst = weekdayOf(*monthFirst) == spec.weekday;
        if (fitsDayFirst != fitsMonthFirst)
            return {fitsDayFirst ? dayFirst : monthFirst, false};
    }
    const bool swapped = spec.order == DayOrder::MonthFirst ||
                         (spec.order == DayOrder::ByZone && reference.monthFirst);
    return {swapped ? monthFirst : dayFirst, m != d && spec.order == DayOrder::ByZone};
}

Day weekdayFrom(const DateSpec &spec, Day today) {
    const int distance = spec.weekday - weekdayOf(today);
    const Day thisWeeks = today + days(distance);
    switch (spec.which) {
    case Which::Next:
        return thisWeeks + days(kDaysInWeek);
    case Which::AfterNext:
        return thisWeeks + days(2 * kDaysInWeek);
    case Which::Last:
        return distance < 0 ? thisWeeks : thisWeeks - days(kDaysInWeek);
    case Which::This:
        return distance < 0 ? thisWeeks + days(kDaysInWeek) : thisWeeks;
    case Which::Nearest:
        break;
    }
    return distance <= 0 ? thisWeeks + days(kDaysInWeek) : thisWeeks;
}

/// A day of the current or a later month: the next such day, on the stated weekday if it can be.
std::optional<Day> dayOfMonth(const DateSpec &spec, Day today) {
    constexpr int kMostMonths = 14;
    const year_month_day now(today);
    const year_month current(now.year(), now.month());
    std::optional<Day> first;
    for (int i = spec.months; i < spec.months + kMostMonths; ++i) {
        const year_month target = current + months(i);
        const auto date = civil(static_cast<int>(target.year()),
                                static_cast<int>(static_cast<unsigned>(target.month())), spec.day);
        if (spec.monthGiven)
            return date;
        if (!date || *date < today)
            continue;
        if (spec.weekday == 0 || weekdayOf(*date) == spec.weekday)
            return date;
        first = first ? first : date;
    }
    return first;
}

/// "the last working day of the month"; nothing where a month has fewer of them.
std::optional<Day> nthWorkingDay(int nth, Day begin, Day end) {
    constexpr int kFriday = 5;
    const days step(nth < 0 ? -1 : 1);
    int left = nth < 0 ? 1 : nth;
    for (Day date = nth < 0 ? end : begin; date >= begin && date <= end; date += step)
        if (weekdayOf(date) <= kFriday && --left == 0)
            return date;
    return std::nullopt;
}

std::optional<Day> nthIn(const DateSpec &spec, year_month target) {
    const Day begin = Day(target / day(1));
    const Day end = Day(target / std::chrono::last);
    if (spec.weekday == kWorkingDay)
        return nthWorkingDay(spec.nth, begin, end);
    if (spec.nth < 0) {
        const int back =
            spec.weekday > 0 ? (weekdayOf(end) - spec.weekday + kDaysInWeek) % kDaysInWeek : 0;
        return end - days(back);
    }
    const int ahead =
        spec.weekday > 0 ? (spec.weekday - weekdayOf(begin) + kDaysInWeek) % kDaysInWeek : 0;
    const int step = spec.weekday > 0 ? kDaysInWeek : 1;
    const Day result = begin + days(ahead + (spec.nth - 1) * step);
    return result <= end ? std::optional(result) : std::nullopt;
}

std::optional<Day> nthWeekday(const DateSpec &spec, Day today) {
    const year_month_day now(today);
    if (spec.month > 0 && spec.year > 0)
        return nthIn(spec, year(spec.year) / spec.month);
    if (spec.month > 0) {
        const auto thisYear = nthIn(spec, now.year() / spec.month);
        return thisYear && *thisYear >= today ? thisYear
                                              : nthIn(spec, (now.year() + years(1)) / spec.month);
    }
    const year_month current = year_month(now.year(), now.month());
    const auto named = nthIn(spec, current + months(spec.months));
    return spec.months == 0 && named && *named < today ? nthIn(spec, current + months(1)) : named;
}

/// Easter Sunday by the Gregorian computus (Meeus, Jones and Butcher).
Day easterSunday(int y) {
    const int a = y % 19;
    const int b = y / 100;
    const int c = y % 100;
    const int g = (8 * b + 13) / 25;
    const int h = (19 * a + b - b / 4 - g + 15) % 30;
    const int l = (32 + 2 * (b % 4) + 2 * (c / 4) - h - c % 4) % 7;
    const int m = (a + 11 * h + 22 * l) / 451;
    const int n = h + l - 7 * m + 114;
    return *civil(y, n / 31, n % 31 + 1);
}

Day easter(const DateSpec &spec, Day today) {
    const int y = spec.year > 0 ? spec.year : static_cast<int>(year_month_day(today).year());
    const Day date = easterSunday(y) + days(spec.days);
    return spec.year > 0 || date >= today ? date : easterSunday(y + 1) + days(spec.days);
}

Day weekend(Which which, Day today) {
    DateSpec saturday;
    saturday.weekday = 6;
    saturday.which = which == Which::Nearest ? Which::This : which;
    if (weekdayOf(today) == kDaysInWeek && saturday.which == Which::This)
        return today - days(1);
    return weekdayFrom(saturday, today);
}

std::optional<Day> base(const DateSpec &spec, const Reference &reference, Day from,
                        bool &orderAssumed) {
    const Day today = reference.today;
    switch (spec.base) {
    case Base::Calendar: {
        // "1.6.43" of today is a version or a date of birth.
        if (spec.shortYear &&
            spec.year > static_cast<int>(year_month_day(today).year()) + kFarthestShortYear)
            return std::nullopt;
        const Written written = calendar(spec, reference, from);
        orderAssumed = written.assumed;
        return written.day;
    }
    case Base::DayOnly:
        return spec.month > 0 ? calendarDay(spec.year, spec.month, spec.day, from)
                              : dayOfMonth(spec, from);
    case Base::Today:
        return today;
    case Base::Weekday:
        return weekdayFrom(spec, from);
    case Base::Week:
        if (spec.which == Which::Last)
            return today - days(kDaysInWeek);
        if (spec.months > 0) {
            const year_month_day next(addMonths(today, spec.months));
            return Day(next.year() / next.month() / day(1));
        }
        if (spec.which == Which::AfterNext)
            return today + days(2 * kDaysInWeek + 1 - weekdayOf(today));
        return spec.which == Which::Next ? today + days(kDaysInWeek + 1 - weekdayOf(today)) : today;
    case Base::Weekend:
        return weekend(spec.which, today);
    case Base::NthWeekday:
        return nthWeekday(spec, today);
    case Base::Easter:
        return easter(spec, today);
    }
    return std::nullopt;
}

/// "the Monday after", "the Friday before": a weekday beside a day that has a name.
Day besideDay(Day day, int beside) {
    const int ahead = (std::abs(beside) - weekdayOf(day) + kDaysInWeek) % kDaysInWeek;
    if (beside > 0)
        return day + days(ahead == 0 ? kDaysInWeek : ahead);
    return day - days(kDaysInWeek - ahead);
}

std::optional<Day> settle(const DateSpec &spec, const Reference &reference, Day from,
                          bool &orderAssumed) {
    auto day = base(spec, reference, from, orderAssumed);
    if (day && spec.beside != 0)
        return besideDay(*day, spec.beside) + days(spec.base == Base::Easter ? 0 : spec.days);
    if (!day || spec.base == Base::Easter || spec.base == Base::Week)
        return day;
    const bool monthsMeant =
        spec.base == Base::Calendar || spec.base == Base::Today || spec.base == Base::Weekday;
    if (monthsMeant && spec.months != 0)
        day = addMonths(*day, spec.months);
    return *day + days(spec.days);
}

} // namespace

std::optional<Day> parseDay(std::string_view text) {
    if (text.size() != 10 || text[4] != '-' || text[7] != '-')
        return std::nullopt;
    int numbers[3] = {};
    int part = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (i == 4 || i == 7) {
            ++part;
            continue;
        }
        if (text[i] < '0' || text[i] > '9')
            return std::nullopt;
        numbers[part] = numbers[part] * 10 + (text[i] - '0');
    }
    return civil(numbers[0], numbers[1], numbers[2]);
}

namespace {

/// Appends `value` with at least so many digits; what is below 0 has its sign first.
void append(std::string &text, int value, std::size_t digits) {
    constexpr std::size_t kMostDigits = 10;
    std::array<char, kMostDigits> number;
    const char *end = std::to_chars(number.data(), number.data() + number.size(),
                                    static_cast<unsigned>(std::abs(value)))
                          .ptr;
    const auto size = static_cast<std::size_t>(end - number.data());
    if (value < 0)
        text += '-';
    text.append(digits - std::min(digits, size), '0').append(number.data(), size);
}

} // namespace

std::string formatDay(Day day) {
    const year_month_day date(day);
    std::string text;
    append(text, static_cast<int>(date.year()), 4);
    text += '-';
    append(text, static_cast<int>(static_cast<unsigned>(date.month())), 2);
    text += '-';
    append(text, static_cast<int>(static_cast<unsigned>(date.day())), 2);
    return text;
}

std::string formatMinute(int minuteOfDay) {
    constexpr int kMinutesInDay = 24 * 60;
    const int minute = ((minuteOfDay % kMinutesInDay) + kMinutesInDay) % kMinutesInDay;
    std::string text;
    append(text, minute / 60, 2);
    text += ':';
    append(text, minute % 60, 2);
    return text;
}

namespace {

/// "Result, Sat 24 Jan", two days later: the weekday tells that the day of last year or this year
/// that has just passed is meant, and not the one to come that `date` is.
std::optional<Day> justOver(const DateSpec &spec, Day date, Day today) {
    constexpr auto kRecent = days(45);
    if (spec.base != Base::Calendar || spec.year > 0 || date <= today)
        return std::nullopt;
    const year_month_day next(date);
    const auto over = civil(static_cast<int>(next.year()) - 1,
                            static_cast<int>(static_cast<unsigned>(next.month())),
                            static_cast<int>(static_cast<unsigned>(next.day())));
    const bool meant =
        over && *over < today && *over >= today - kRecent && weekdayOf(*over) == spec.weekday;
    return meant ? over : std::nullopt;
}

} // namespace

std::optional<ResolvedDate> resolveDate(const DateMention &mention, const Reference &reference) {
    ResolvedDate result;
    const auto first = settle(mention.first, reference, reference.today, result.orderAssumed);
    if (!first)
        return std::nullopt;
    result.first = *first;
    result.yearGiven = mention.first.year > 0;
    const bool named = mention.first.weekday > 0 && (mention.first.base == Base::Calendar ||
                                                     mention.first.base == Base::DayOnly);
    result.weekdayConflict = named && weekdayOf(*first) != mention.first.weekday;
    if (const auto over = result.weekdayConflict ? justOver(mention.first, *first, reference.today)
                                                 : std::nullopt) {
        result.first = *over;
        result.weekdayConflict = false;
    }
    if (mention.first.base == Base::Weekend)
        result.last = result.first + days(1);
    if (mention.last) {
        bool ignored = false;
        const auto last = settle(*mention.last, reference, result.first, ignored);
        // "30 Dec - 2 Jan 2027": the year is the end's.
        const year_month_day start(result.first);
        if (last && *last < result.first && mention.first.year > 0)
            if (const auto before = civil(static_cast<int>(start.year()) - 1, mention.first.month,
                                          mention.first.day))
                result.first = *before;
        if (last && *last > result.first)
            result.last = *last;
    }
    return result;
}

} // namespace pindle::conversion
