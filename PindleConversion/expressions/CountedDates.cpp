#include "PindleConversion/expressions/CalendarParts.h"

namespace pindle::conversion {

namespace {

struct Counted {
    int value = 0;
    std::uint32_t next = 0;
};

/// A number and the word that counts it, glued or not: "6月".
Counted readCounted(const Reader &reader, std::uint32_t i, std::uint32_t most, int digits,
                    Meaning mark) {
    if (!reader.number(i, 1, most, digits))
        return {};
    const Sense *sense = reader.sense(i + 1, mark);
    if (!sense)
        return {};
    return {static_cast<int>(reader.token(i).number), i + 1 + sense->length};
}

struct Year {
    int value = 0;
    std::uint32_t next = 0;
};

/// "2026年", "令和8年", "26年".
Year readYear(const Reader &reader, std::uint32_t i) {
    const Sense *era = reader.sense(i, Meaning::Era);
    const std::uint32_t number = era ? i + era->length : i;
    const Counted year = readCounted(reader, number, 2199, 4, Meaning::YearMark);
    if (year.next == 0)
        return {0, i};
    if (era)
        return {era->value + year.value, year.next};
    constexpr int kCentury = 100;
    constexpr int kFirstYear = 1000;
    if (year.value < kCentury)
        return {2000 + year.value, year.next};
    if (const int bare = yearOfEra(reader, number); bare != 0)
        return {bare, year.next};
    return year.value < kFirstYear ? Year{0, i} : Year{year.value, year.next};
}

/// The day behind a month: "5日", or "5" where the word is left out.
Counted readDay(const Reader &reader, std::uint32_t i) {
    const Counted day = readCounted(reader, i, 31, 2, Meaning::DayMark);
    if (day.next != 0)
        return day;
    const bool time = reader.symbol(i + 1, ':') || reader.has(i + 1, Meaning::HourMark);
    if (!reader.number(i, 1, 31) || time || !reader.glued(i))
        return {};
    return {static_cast<int>(reader.token(i).number), i + 1};
}

/// The weekday between a day and the end of a range: "5日（金）".
std::uint32_t readWeekday(const Reader &reader, std::uint32_t i, int &weekday) {
    const std::uint32_t open = reader.skipSymbol(reader.skipSymbol(i, '('), '[');
    const Sense *name = reader.sense(open, Meaning::Weekday);
    if (!name && open != i)
        name = reader.sense(open, Meaning::WeakWeekday);
    if (!name)
        return i;
    weekday = name->value;
    const std::uint32_t end = open + name->length;
    return open != i ? reader.skipSymbol(reader.skipSymbol(end, ')'), ']') : end;
}

/// The second day of a range in the same month: "5日〜7日".
std::uint32_t readLastDay(const Reader &reader, std::uint32_t i, DateMention &date) {
    const Sense *to = reader.sense(i, Meaning::RangeTo);
    if (!to)
        to = reader.sense(i, Meaning::And);
    if (!to)
        return i;
    const Counted day = readCounted(reader, i + to->length, 31, 2, Meaning::DayMark);
    if (day.next == 0 || day.value <= date.first.day)
        return i;
    date.last = date.first;
    date.last->day = day.value;
    date.last->weekday = 0;
    return readWeekday(reader, day.next, date.last->weekday);
}

} // namespace

std::optional<DateMention> readCountedDate(const Reader &reader, std::uint32_t i) {
    static constexpr Meanings kMarks{Meaning::YearMark, Meaning::MonthMark};
    if (!reader.has(i, Meaning::Era) && !reader.mayHave(i + 1, kMarks))
        return std::nullopt;
    const Year year = readYear(reader, i);
    const Counted month = readCounted(reader, year.next, 12, 2, Meaning::MonthMark);
    if (month.next == 0)
        return std::nullopt;
    const Counted day = readDay(reader, month.next);
    if (day.next == 0)
        return std::nullopt;
    DateMention result;
    result.first.year = year.value;
    result.first.month = month.value;
    result.first.day = day.value;
    std::uint32_t next = readWeekday(reader, day.next, result.first.weekday);
    next = readLastDay(reader, next, result);
    result.span = {i, next};
    return result;
}

} // namespace pindle::conversion
