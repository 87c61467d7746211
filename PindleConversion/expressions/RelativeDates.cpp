#include "PindleConversion/expressions/DaysOfMonth.h"
#include "PindleConversion/expressions/Expression.h"
#include "PindleConversion/expressions/RelativeWords.h"

namespace pindle::conversion {

namespace {

using Base = DateSpec::Base;

/// "in a week", "in 14 Tagen" behind a day: so many weeks after the nearest such day.
std::uint32_t readWeeksAhead(const Reader &reader, std::uint32_t i, DateSpec &spec) {
    const Sense *ahead = reader.sense(i, Meaning::In);
    if (!ahead)
        return i;
    auto amount = readAmount(reader, i + ahead->length);
    if (!amount && ahead->value == 1)
        amount = readUnits(reader, i + ahead->length, 1);
    if (!amount || amount->days == 0 || amount->days % 7 != 0)
        return i;
    spec.which = Which::This;
    spec.days += amount->days;
    return amount->next;
}

/// "next week", "of next week", "week" (British: a week later), "after next" behind a weekday.
std::uint32_t readWeekBehind(const Reader &reader, std::uint32_t i, DateSpec &spec) {
    if (const Sense *sense = reader.sense(i, Meaning::AfterNext)) {
        spec.which = Which::AfterNext;
        return i + sense->length;
    }
    if (const std::uint32_t ahead = readWeeksAhead(reader, i, spec); ahead != i)
        return ahead;
    if (const Sense *behind = reader.sense(i, Meaning::Behind)) {
        spec.which = static_cast<Which>(behind->value);
        return i + behind->length;
    }
    const Period of = readPeriodWord(reader, reader.skip(reader.skipSymbol(i, ','), Meaning::Of));
    if (of.unit == Unit::Week && of.which != Which::Last) {
        spec.which = of.which;
        return of.next;
    }
    if (const Sense *week = readUnit(reader, i, Unit::Week)) {
        spec.days += 7;
        return i + week->length;
    }
    if (const Sense *weeks = readUnit(reader, i, Unit::Fortnight)) {
        spec.days += 14;
        return i + weeks->length;
    }
    return i;
}

/// "after Thanksgiving", "before Easter" at `i`: a holiday's name to count from.
std::optional<DateMention> readHolidayBehind(const Reader &reader, std::uint32_t i, int &sign) {
    const Sense *from = reader.sense(i, Meaning::From);
    if (!from)
        return std::nullopt;
    const std::uint32_t name = reader.skip(i + from->length, Meaning::The);
    auto date = reader.has(name, Meaning::Holiday) ? readHoliday(reader, name) : std::nullopt;
    if (!date || date->first.beside != 0)
        return std::nullopt;
    sign = from->value == 1 ? -1 : 1;
    date->weak = date->holiday = false;
    return date;
}

std::optional<DateMention> readWeekday(const Reader &reader, std::uint32_t i) {
    const Qualifier qualifier = readQualifier(reader, i);
    const DayName day = readDayName(reader, qualifier.next, qualifier.next != i);
    if (day.weekday == 0)
        return std::nullopt;
    // "lundi de Pâques"
    if (const Sense *holiday = reader.sense(qualifier.next, Meaning::Holiday);
        holiday && qualifier.next + holiday->length > day.next)
        return std::nullopt;
    int sign = 0;
    if (auto beside = readHolidayBehind(reader, day.next, sign); beside && !day.repeated) {
        beside->span.begin = i;
        beside->first.beside = sign * day.weekday;
        return beside;
    }
    DateMention result = mentionOf(i, day.next, Base::Weekday);
    result.first.weekday = day.weekday;
    result.first.which = qualifier.which;
    result.repeated = day.repeated;
    result.span.end = readWeekBehind(reader, day.next, result.first);
    return result;
}

/// "next month", "来月の3日", "来月末". `next`: where the day may be said.
DateMention readMonthPeriod(const Reader &reader, std::uint32_t i, const Period &period,
                            std::uint32_t next) {
    DateMention result = mentionOf(i, period.next, Base::Week);
    DateSpec &spec = result.first;
    spec.which = period.which;
    spec.months = period.which == Which::Next ? 1 : period.which == Which::AfterNext ? 2 : 0;
    if (const Sense *end = reader.sense(period.next, Meaning::MonthEnd);
        end && reader.token(period.next).unspaced) {
        spec.base = Base::NthWeekday;
        spec.nth = -1;
        spec.monthGiven = true;
        result.span.end = period.next + end->length;
        return result;
    }
    if (const std::uint32_t nth = readNthDay(reader, next, spec); nth != next) {
        result.span.end = nth;
        return result;
    }
    const std::uint32_t end = readBareDay(reader, next, spec.day);
    result.weak = end == next;
    if (!result.weak) {
        spec.base = Base::DayOnly;
        spec.monthGiven = true;
        result.span.end = end;
    }
    return result;
}

/// "next week", "next week Tuesday". `next`: where the day may be said.
DateMention readWeekPeriod(const Reader &reader, std::uint32_t i, const Period &period,
                           std::uint32_t next) {
    DateMention result = mentionOf(i, period.next, Base::Week);
    result.first.which = period.which;
    const DayName day = readDayName(reader, next, true);
    result.weak = day.weekday == 0;
    if (!result.weak) {
        result.first.base = Base::Weekday;
        result.first.weekday = day.weekday;
        result.span.end = day.next;
    }
    return result;
}

/// "next week Tuesday", "next week on Tuesday", "this weekend", "next month", "来月の3日".
std::optional<DateMention> readPeriod(const Reader &reader, std::uint32_t i) {
    const Period period = readPeriodWord(reader, i);
    if (period.unit == Unit::Weekend) {
        DateMention result = mentionOf(i, period.next, Base::Weekend);
        result.first.which = period.which;
        return result;
    }
    if (period.unit != Unit::Week && period.unit != Unit::Month)
        return std::nullopt;
    // "next week, maybe on Wednesday"
    std::uint32_t next = reader.skip(reader.skipSymbol(period.next, ','), Meaning::DateMarker);
    next = reader.skip(next, Meaning::DateMarker);
    next = reader.skip(next, Meaning::Of);
    next = reader.skip(next, Meaning::The);
    return period.unit == Unit::Month ? readMonthPeriod(reader, i, period, next)
                                      : readWeekPeriod(reader, i, period, next);
}

void shift(DateSpec &spec, const Amount &amount, int sign) {
    spec.days += sign * amount.days;
    spec.months += sign * amount.months;
}

std::optional<DateMention> fromAmount(const Reader &reader, std::uint32_t i, const Amount &amount,
                                      int sign, std::uint32_t end) {
    DateMention result = mentionOf(i, end, Base::Today);
    shift(result.first, amount, sign);
    // "in two weeks on Tuesday", "in two weeks on the Tuesday": the weekday of that week.
    const std::uint32_t comma = reader.skipSymbol(end, ',');
    const std::uint32_t marked = reader.skip(comma, Meaning::DateMarker);
    const std::uint32_t on = marked != comma ? reader.skip(marked, Meaning::The) : comma;
    const DayName day = readDayName(reader, on, true);
    if (sign > 0 && day.weekday > 0 && amount.days % 7 == 0 && amount.days > 0) {
        result.first.base = Base::Weekday;
        result.first.weekday = day.weekday;
        result.first.which = Which::This;
        result.span.end = day.next;
    }
    return result;
}

/// "in two weeks", "two weeks from Friday", "3 days ago", "a week tomorrow".
std::optional<DateMention> readDistance(const Reader &reader, std::uint32_t i) {
    const Sense *ahead = reader.sense(i, Meaning::In);
    const std::uint32_t in = ahead ? i + ahead->length : i;
    auto amount = readAmount(reader, in);
    int sign = 0;
    // "the day after Christmas"
    const std::uint32_t unit = amount ? amount->next : reader.skip(i, Meaning::The) + 1;
    if (auto holiday = readHolidayBehind(reader, unit, sign)) {
        const auto day = amount ? amount : readUnits(reader, unit - 1, 1);
        if (!day)
            return std::nullopt;
        holiday->span.begin = i;
        shift(holiday->first, *day, sign);
        return holiday;
    }
    if (!amount && ahead && ahead->value == 1)
        amount = readUnits(reader, in, 1);
    if (!amount || reader.has(i, Meaning::Period))
        return std::nullopt;
    std::uint32_t next = amount->next;
    if (const Sense *ago = reader.sense(next, Meaning::Ago))
        return fromAmount(reader, i, *amount, -1, next + ago->length);
    if (const Sense *now = reader.sense(next, Meaning::FromNow))
        return fromAmount(reader, i, *amount, 1, next + now->length);
    // "within 30 days of purchase" counts from another day.
    if (in != i && reader.has(next, Meaning::NoDuration) && reader.has(next, Meaning::Of) &&
        reader.word(next + 1))
        return std::nullopt;
    if (in != i)
        return fromAmount(reader, i, *amount, 1, next);
    if (const Sense *from = reader.sense(next, Meaning::From); from && from->value == 0)
        next += from->length;
    std::optional<DateMention> base;
    if (const Sense *day = reader.sense(next, Meaning::RelativeDay)) {
        base = mentionOf(next, next + day->length, Base::Today);
        base->first.days = day->value;
    } else if (next != amount->next) {
        base = readWeekday(reader, next);
        if (!base)
            base = readCalendarDate(reader, next);
    }
    if (!base)
        return std::nullopt;
    base->span.begin = i;
    shift(base->first, *amount, 1);
    return base;
}

} // namespace

std::optional<DateMention> readRelativeDate(const Reader &reader, std::uint32_t i) {
    // "hockey tn 9:45", but "Memphis, TN".
    const bool code =
        reader.at(i) && reader.token(i).end - reader.token(i).begin == 2 && reader.token(i).upper();
    if (const Sense *day = code ? nullptr : reader.sense(i, Meaning::RelativeDay)) {
        DateMention result = mentionOf(i, i + day->length, Base::Today);
        result.first.days = day->value;
        // "tomorrow week" is a week later.
        if (const Sense *week = readUnit(reader, result.span.end, Unit::Week)) {
            result.first.days += 7;
            result.span.end += week->length;
        } else {
            // "heute in zwei Wochen"
            result.span.end = readWeeksAhead(reader, result.span.end, result.first);
        }
        return result;
    }
    if (auto date = readNthWeekday(reader, i))
        return date;
    if (auto date = readNthInMonth(reader, i))
        return date;
    if (auto date = readDistance(reader, i))
        return date;
    if (auto date = readWeekday(reader, i))
        return date;
    if (auto date = readPeriod(reader, i))
        return date;
    return readDayOnly(reader, i);
}

} // namespace pindle::conversion
