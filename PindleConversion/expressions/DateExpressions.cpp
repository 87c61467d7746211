#include <utility>

#include "PindleConversion/expressions/CalendarParts.h"
#include "PindleConversion/expressions/Expression.h"
#include "PindleConversion/expressions/Starts.h"

namespace pindle::conversion {

namespace {

using Base = DateSpec::Base;

std::uint32_t skipComma(const Reader &reader, std::uint32_t i) {
    return reader.skipSymbol(reader.skipSymbol(i, '.'), ',');
}

struct Named {
    int weekday = 0;
    std::uint32_t next = 0;
};

/// A weekday's bare name, for a date that stands beside it.
Named readName(const Reader &reader, std::uint32_t i) {
    if (const Sense *sense = reader.sense(i, Meaning::Weekday))
        return {sense->value, i + sense->length};
    // In unspaced scripts a lone sign is a weekday only in brackets.
    const bool lone = reader.at(i) && reader.token(i).unspaced &&
                      !(i > 0 && (reader.symbol(i - 1, '(') || reader.symbol(i - 1, '[')));
    const Sense *weak = lone ? nullptr : reader.sense(i, Meaning::WeakWeekday);
    if (weak)
        return {weak->value, i + weak->length};
    return {};
}

/// "Mon 23 - half day": what happens on that day.
bool isDashBeforeWord(const Reader &reader, std::uint32_t dash) {
    std::uint32_t behind = dash;
    return reader.symbol(dash, '-') && !reader.glued(dash) && reader.word(dash + 1) &&
           !reader.glued(dash + 1) && !mayStartDate(reader, dash + 1) &&
           !readClock(reader, dash + 1, behind);
}

/// Digits behind a weekday that can be no time: "Fri 13", and "vendredi 7" where a time would
/// be "vendredi 7h".
bool isDayNumber(const Reader &reader, std::uint32_t at) {
    const std::uint32_t next = at + 1;
    const std::uint32_t time = reader.skip(next, Meaning::TimeMarker);
    // "Domenica 15: raduno"
    const bool colon =
        reader.symbol(next, ':') && !(reader.word(next + 1) && reader.token(next + 1).spaceBefore);
    if (colon || (reader.symbol(next, '.') && reader.at(next + 1)) ||
        reader.has(next, Meaning::HourMark) || reader.has(next, Meaning::Meridiem) ||
        // but "venerdì 22 ore 18"
        (reader.has(next, Meaning::UnitWord) &&
         !(time != next && reader.number(time, 0, 24) && reader.token(at).spaceBefore)) ||
        (readDayRange(reader, next) && time == next && !isDashBeforeWord(reader, next)))
        return false;
    // "Sonntag, 23 bis 5 Uhr"
    std::uint32_t behind = next;
    const Sense *to = reader.sense(next, Meaning::RangeTo);
    // but "viernes 13 a las 22 h", "sexta-feira 13 às 22 horas"
    const bool atTime =
        reader.has(next + 1, Meaning::The) || (to && to->value == 1 && !reader.symbol(at - 1, ','));
    if (const auto end = to && !atTime && !reader.has(next, Meaning::PlaceMarker)
                             ? readClock(reader, next + to->length, behind)
                             : std::nullopt;
        end && end->hourWord)
        return false;
    constexpr std::uint32_t kLastHour = 12;
    if (reader.token(at).number > kLastHour)
        return true;
    const bool timed =
        time != next && (reader.number(time, 0, 24) || reader.has(time, Meaning::ClockWord) ||
                         reader.has(time, Meaning::Number));
    if (timed && !readDayRange(reader, next))
        return true;
    return reader.language(at).dayOrder == DayOrder::DayFirst && !reader.token(at).unspaced &&
           (timed || !reader.word(next) || reader.has(next, Meaning::Connector) ||
            reader.has(next, Meaning::PartOfDay));
}

DateMention dayOnly(std::uint32_t begin, std::uint32_t end, int day) {
    DateMention result;
    result.span = {begin, end};
    result.first.base = Base::DayOnly;
    result.first.day = day;
    return result;
}

/// "the twenty-third" behind a weekday; `i` is behind the article if `article`.
std::optional<DateMention> readDayInWords(const Reader &reader, std::uint32_t i, bool article) {
    constexpr int kLastRank = 3; ///< "Friday third period" may count something else
    const Sense *ordinal = reader.sense(i, Meaning::Ordinal);
    if (!ordinal || ordinal->value < 1 || (!article && ordinal->value <= kLastRank))
        return std::nullopt;
    const std::uint32_t next = i + ordinal->length;
    const bool ends = !reader.word(next) || reader.has(next, Meaning::Connector) ||
                      reader.has(next, Meaning::TimeMarker) || reader.has(next, Meaning::PartOfDay);
    return ends ? std::optional(dayOnly(i, next, ordinal->value)) : std::nullopt;
}

/// "the 14th" or "14" behind a weekday: a day of the month that falls on it.
std::optional<DateMention> readDayBehindName(const Reader &reader, std::uint32_t i) {
    const std::uint32_t day = reader.skip(i, Meaning::The);
    if (auto words = readDayInWords(reader, day, day != i))
        return words;
    const std::uint32_t end = skipOrdinalMark(reader, day + 1);
    const bool ordinal = end != day + 1;
    if (!reader.number(day, 1, 31) || !(ordinal || isDayNumber(reader, day)))
        return std::nullopt;
    const std::uint32_t number = reader.token(day).number;
    return dayOnly(i, end, static_cast<int>(number));
}

/// A weekday, then the date it belongs to: "Friday, 5 June", "next Friday the 13th".
std::optional<DateMention> readNamedDate(const Reader &reader, std::uint32_t i) {
    std::uint32_t begin = i;
    for (Meaning meaning : {Meaning::Next, Meaning::This})
        if (begin == i)
            begin = reader.skip(i, meaning);
    const Named name = readName(reader, begin);
    if (name.weekday == 0)
        return std::nullopt;
    std::uint32_t j = skipComma(reader, name.next);
    j = reader.symbol(j, '(') || reader.symbol(j, '-') ? j + 1 : j;
    const Sense *before = reader.sense(j, Meaning::DateMarker);
    const Sense *hours = reader.sense(j, Meaning::TimeMarker);
    // "lunes antes de las 12": the longer word announces a time.
    const bool timed = before && hours && hours->length > before->length;
    const std::uint32_t on = timed ? j : reader.skip(j, Meaning::DateMarker);
    const std::uint32_t core = reader.skip(on, Meaning::The);
    std::optional<DateMention> date = readCalendarDate(reader, core);
    if (!date)
        date = readDayBehindName(reader, reader.has(j, Meaning::TimeMarker) ? j : on);
    if (!date)
        return std::nullopt;
    date->span.begin = i;
    date->first.weekday = name.weekday;
    date->weak = false;
    if (reader.symbol(j - 1, '('))
        date->span.end = reader.skipSymbol(date->span.end, ')');
    return date;
}

/// A weekday behind a date: "5 June (Fri)", "6/12, Friday".
void readNameBehind(const Reader &reader, DateMention &date) {
    // "21.05.2026 r. (czwartek)"
    const std::uint32_t mark = reader.skip(date.span.end, Meaning::YearMark);
    const std::uint32_t open = mark != date.span.end ? reader.skipSymbol(mark, '.') : mark;
    std::uint32_t j = reader.symbol(open, '(') ? open : reader.skipSymbol(date.span.end, ',');
    const bool bracket = reader.symbol(j, '(');
    j += bracket ? 1 : 0;
    const Named name = readName(reader, j);
    // "14日（火）"
    // and "no dia 21, quinta-feira, às 14h30"
    const bool listed = j != open && (reader.symbol(name.next, ',') || !reader.word(name.next) ||
                                      reader.has(name.next, Meaning::TimeMarker));
    const bool day = (bracket || listed) && date.first.base == Base::DayOnly;
    if (name.weekday == 0 || !(day || date.first.base == Base::Calendar) || date.first.weekday != 0)
        return;
    const std::uint32_t next = skipComma(reader, name.next);
    const bool clock = reader.symbol(next + 1, ':') || reader.has(next + 1, Meaning::HourMark) ||
                       (reader.symbol(next + 1, '.') && reader.glued(next + 2) &&
                        reader.number(next + 2, 0, 59) && reader.token(next + 2).digits == 2);
    if (!bracket && (reader.has(next, Meaning::Month) || (reader.number(next, 13, 31) && !clock)))
        return;
    if (!bracket && readCalendarDate(reader, next))
        return;
    date.first.weekday = name.weekday;
    date.span.end = bracket ? reader.skipSymbol(name.next, ')') : name.next;
    date.weak = false;
}

/// Most dates do not start with a weekday's name, which one look tells.
bool mayStartWithName(const Reader &reader, std::uint32_t i) {
    static constexpr Meanings kNames{Meaning::Next, Meaning::This, Meaning::Weekday,
                                     Meaning::WeakWeekday};
    return reader.mayHave(i, kNames);
}

std::optional<DateMention> readSingle(const Reader &reader, std::uint32_t i) {
    if (auto date = mayStartWithName(reader, i) ? readNamedDate(reader, i) : std::nullopt)
        return date;
    const std::uint32_t core = reader.skip(i, Meaning::The);
    auto date = readCalendarDate(reader, i);
    if (!date && core != i && !reader.has(core, Meaning::Month))
        date = readCalendarDate(reader, core);
    if (date) {
        date->span.begin = i;
        readNameBehind(reader, *date);
        return date;
    }
    if (mayStartRelativeDate(reader, i))
        date = readRelativeDate(reader, i);
    // "dia 3 de outubro, sexta-feira"
    if (date && (date->first.base == Base::Calendar || date->first.base == Base::DayOnly))
        readNameBehind(reader, *date);
    // "tomorrow (Friday 5 June)": the written date says it best.
    if (date && (reader.symbol(date->span.end, ',') || reader.symbol(date->span.end, '('))) {
        const std::uint32_t inner = date->span.end + 1;
        if (auto exact = readNamedDate(reader, inner)) {
            exact->span.begin = i;
            exact->span.end = reader.skipSymbol(exact->span.end, ')');
            return exact;
        }
    }
    return date;
}

bool canSpan(const DateSpec &spec) {
    return spec.base == Base::Calendar || spec.base == Base::DayOnly ||
           spec.base == Base::Weekday || (spec.base == Base::Today && spec.days >= 0);
}

/// "Mon 3 - Wed 5 August": what the one end says of month and year holds for the other.
void share(DateSpec &first, DateSpec &last) {
    const bool led = first.base == Base::DayOnly && last.base == Base::Calendar;
    if (led) {
        first.base = Base::Calendar;
        first.month = last.month;
    }
    if (last.base == Base::DayOnly && first.base == Base::Calendar) {
        last.base = Base::Calendar;
        last.month = first.month;
    }
    if (first.year == 0)
        first.year = last.year;
    if (led && first.day > last.day)
        beginMonthBefore(first);
    // "Tues-Thurs next week" starts in that week, too.
    if (first.base == Base::Weekday && last.base == Base::Weekday &&
        first.which == Which::Nearest && last.which != Which::Nearest) {
        first.which = last.which;
        last.which = Which::Nearest;
    }
}

/// "Mon" of "Mon 3 - Wed 5 August": day without month, only good at the start of a range.
std::optional<DateMention> readRangeStart(const Reader &reader, std::uint32_t i) {
    const Named name = readName(reader, i);
    if (name.weekday == 0 || !reader.number(name.next, 1, 31))
        return std::nullopt;
    const bool ordinal =
        reader.has(name.next + 1, Meaning::OrdinalMark) && reader.glued(name.next + 1);
    const std::uint32_t next = name.next + (ordinal ? 2 : 1);
    if (!readDayRange(reader, next))
        return std::nullopt;
    DateMention result;
    result.span = {i, next};
    result.first.base = Base::DayOnly;
    result.first.day = static_cast<int>(reader.token(name.next).number);
    result.first.weekday = name.weekday;
    return result;
}

/// "1/2 - 3/4" may be a measure, "1/29 - 2/3" are days, as either is in Chinese and Japanese.
bool mayBeFractions(const LanguageInfo &language, const DateSpec &first, const DateSpec &last) {
    constexpr int kLargest = 8;
    if (language.script != Script::Latin)
        return false;
    return first.base != Base::Calendar || last.base != Base::Calendar ||
           (first.day <= kLargest && last.day <= kLargest && first.month <= kLargest &&
            last.month <= kLargest);
}

/// A word before token `i` tells that something is moved to another time; `roles`: also one that
/// tells which time it is.
bool speaksOfMoving(const Reader &reader, std::uint32_t i, bool roles) {
    constexpr std::uint32_t kReach = 12;
    for (std::uint32_t k = i; k > 0 && i - k < kReach; --k) {
        const Sense *role = reader.sense(k - 1, Meaning::RoleWord);
        if (reader.has(k - 1, Meaning::Moving) ||
            (roles && role &&
             (role->value == static_cast<int>(Role::MovedFrom) ||
              role->value == static_cast<int>(Role::MovedTo))))
            return true;
    }
    return false;
}

/// "4月8日から4月10日14時に変更": a word behind a range tells that the event moves to its end.
bool movesToEnd(const Reader &reader, std::uint32_t end) {
    constexpr std::uint32_t kReach = 10;
    for (std::uint32_t k = end; k < end + kReach && reader.at(k); ++k) {
        if (!reader.document().sameSentence(k, end))
            return false;
        if (const Sense *role = reader.sense(k, Meaning::RoleBehind))
            return role->value == static_cast<int>(Role::MovedTo);
    }
    return false;
}

/// "3/20〜22", "3/20(金)〜22(日)": the month is said once. Sets the last day of `date`.
bool readSameMonth(const Reader &reader, std::uint32_t i, DateMention &date) {
    DateSpec first = date.first;
    if (first.eitherOrder && first.order == DayOrder::MonthFirst)
        std::swap(first.month, first.day);
    if (reader.language(date.span.begin).script == Script::Latin || first.base != Base::Calendar ||
        !reader.number(i, 1, 31) || !reader.glued(i) ||
        static_cast<int>(reader.token(i).number) <= first.day)
        return false;
    static constexpr Meanings kOther{Meaning::HourMark, Meaning::MonthMark, Meaning::UnitWord,
                                     Meaning::Counter, Meaning::Month};
    const std::uint32_t next = reader.skip(i + 1, Meaning::DayMark);
    const bool mark = reader.symbol(next, ':') || reader.symbol(next, '/') ||
                      reader.symbol(next, '.') || reader.symbol(next, '-');
    if (next == i + 1 && (mark || reader.mayHave(next, kOther)))
        return false;
    first.eitherOrder = false;
    date.first = first;
    date.last = first;
    date.last->day = static_cast<int>(reader.token(i).number);
    date.last->weekday = 0;
    date.span.end = next;
    date.weak = false;
    if (const Named name = reader.symbol(next, '(') ? readName(reader, next + 1) : Named{};
        name.weekday != 0) {
        date.last->weekday = name.weekday;
        date.span.end = reader.skipSymbol(name.next, ')');
    }
    return true;
}

bool readRangeEnd(const Reader &reader, DateMention &date) {
    if (date.last || !canSpan(date.first) || date.repeated)
        return false;
    // "pn.–pt. 8:00"
    const std::uint32_t point = date.span.end;
    const bool brief = date.first.base == Base::Weekday && reader.symbol(point, '.') &&
                       readDayRange(reader, point + 1);
    const std::uint32_t i = brief ? point + 1 : point;
    const Sense *to = readDayRange(reader, i);
    if (to && readSameMonth(reader, i + to->length, date))
        return true;
    const Sense *both = reader.sense(i, Meaning::And);
    std::uint32_t next = to ? i + to->length : both ? i + both->length : i;
    if (next == i)
        return false;
    auto last = readSingle(reader, reader.skip(next, Meaning::The));
    if (!last || last->last || !canSpan(last->first) || last->repeated)
        return false;
    // "by 5 June or on Friday" is no range; joined by "and", only two written dates are.
    const bool sameKind = last->first.base == date.first.base ||
                          (last->first.base == Base::Calendar && date.first.base == Base::DayOnly);
    if (!sameKind && !(to && date.first.base == Base::Calendar))
        return false;
    if (to && isMovedFrom(reader, date.span.begin))
        return false;
    // "lundi et jeudi" are two days, "samedi et dimanche" follow each other.
    constexpr int kWeek = 7;
    if (both && !to && date.first.base == Base::Weekday &&
        last->first.weekday != date.first.weekday % kWeek + 1)
        return false;
    // "Wed 3 June and Wed 10 June" are two events.
    if (both && !to && last->first.day > date.first.day + 1 && date.first.base == Base::Calendar)
        return false;
    // "can we shift Tuesday to Thursday", "moved from Monday 16th to Wednesday 18th" name two days
    // for one event, and the second one holds.
    const bool from = date.span.begin > 0 && reader.has(date.span.begin - 1, Meaning::RangeFrom);
    const bool named = date.first.weekday != 0 && last->first.weekday != 0;
    if ((named || from) && to && reader.word(i) &&
        reader.document().tokens[i].end - reader.document().tokens[i].begin <= 2 &&
        speaksOfMoving(reader, date.span.begin, !from)) {
        last->span.begin = date.span.begin;
        date = *last;
        return false;
    }
    if (to && reader.token(i).unspaced && movesToEnd(reader, last->span.end)) {
        share(date.first, last->first);
        last->span.begin = date.span.begin;
        date = *last;
        return false;
    }
    date.last = last->first;
    share(date.first, *date.last);
    date.span.end = last->span.end;
    date.weak =
        date.weak && last->weak && mayBeFractions(reader.language(i), date.first, *date.last);
    return true;
}

/// "da lunedì 12 a mercoledì 14": weekdays tell that the numbers are days.
bool isNamedRange(const DateMention &range) {
    return range.first.base == Base::DayOnly && range.last && range.last->base == Base::DayOnly &&
           range.first.weekday != 0 && range.last->weekday != 0;
}

} // namespace

std::optional<DateMention> readDate(const Reader &reader, std::uint32_t i) {
    if (auto start = mayStartWithName(reader, i) ? readRangeStart(reader, i) : std::nullopt) {
        const std::uint32_t end = start->span.end;
        const bool range = readRangeEnd(reader, *start);
        const bool moved = !range && start->span.end != end;
        if (moved || (range && (start->first.base == Base::Calendar || isNamedRange(*start))))
            return start;
    }
    auto date = readSingle(reader, i);
    if (date)
        readRangeEnd(reader, *date);
    return date;
}

bool isMovedFrom(const Reader &reader, std::uint32_t i) {
    constexpr std::uint32_t kLongestRole = 4;
    for (std::uint32_t k = i; k > 0 && i - k < kLongestRole; --k) {
        const Sense *role = reader.sense(k - 1, Meaning::RoleWord);
        const bool sure = role && (role->length > 1 || reader.token(k - 1).unspaced);
        if (sure && role->value == static_cast<int>(Role::MovedFrom) && k - 1 + role->length >= i)
            return true;
    }
    return false;
}

} // namespace pindle::conversion
