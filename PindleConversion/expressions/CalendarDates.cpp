#include "PindleConversion/expressions/CalendarParts.h"
#include "PindleConversion/expressions/NumericDates.h"

namespace pindle::conversion {

namespace {

struct Day {
    int day;
    bool ordinal;
    std::uint32_t next;
};

std::optional<Day> readDay(const Reader &reader, std::uint32_t i) {
    if (reader.number(i, 1, 31)) {
        const std::uint32_t next =
            reader.glued(i + 1) ? reader.skip(i + 1, Meaning::OrdinalMark) : i + 1;
        const bool ordinal = next != i + 1;
        if (spoilsDay(reader, next))
            return std::nullopt;
        return Day{static_cast<int>(reader.token(i).number), ordinal, next};
    }
    if (const Sense *ordinal = reader.sense(i, Meaning::Ordinal); ordinal && ordinal->value > 0)
        return Day{ordinal->value, true, i + ordinal->length};
    return std::nullopt;
}

/// "-" or "to" or "and" between two days of one month.
std::uint32_t readDayJoin(const Reader &reader, std::uint32_t i) {
    if (const Sense *to = readDayRange(reader, i))
        return i + to->length;
    if (const Sense *both = reader.sense(i, Meaning::And))
        return i + both->length;
    return i;
}

/// Behind the name of a day at `i`, if there is one.
std::uint32_t skipWeekday(const Reader &reader, std::uint32_t i) {
    const std::uint32_t next = reader.skip(i, Meaning::Weekday);
    return next != i ? next : reader.skip(i, Meaning::WeakWeekday);
}

/// A second day of the same month: "4-11" of "July 4-11".
std::uint32_t readSecondDay(const Reader &reader, std::uint32_t i, int firstDay, int &day) {
    const std::uint32_t join = readDayJoin(reader, i);
    if (join == i)
        return i;
    const auto second = readDay(reader, reader.skip(skipWeekday(reader, join), Meaning::The));
    if (!second || second->day <= firstDay || reader.has(second->next, Meaning::Month))
        return i;
    // "May 14 - 15:30" and "May 14, 2-4 pm" are times.
    const std::uint32_t after = second->next;
    if (!second->ordinal &&
        (readDayJoin(reader, after) != after && !reader.has(after, Meaning::And)) &&
        reader.number(readDayJoin(reader, after), 0, 24))
        return i;
    if (reader.symbol(after, '.') && reader.glued(after) && reader.number(after + 1, 0, 59))
        return i;
    // "June 5th - 7 for 7:30"
    if (reader.has(after, Meaning::DurationMark) && reader.number(after + 1, 0, 24))
        return i;
    day = second->day;
    return after;
}

bool isRoman(std::string_view word) {
    return word.find_first_not_of("IVXivx") == std::string_view::npos;
}

/// "June 5", "June 5-7, 2026", "June the 5th".
std::optional<DateMention> readMonthFirst(const Reader &reader, std::uint32_t i) {
    const Sense *month = reader.sense(i, Meaning::Month);
    // "Jana Pawła II 15": numerals name a month only behind its day.
    if (!month || isRoman(reader.document().slice(reader.token(i))))
        return std::nullopt;
    std::uint32_t j = reader.skipSymbol(i + month->length, '.');
    j = reader.skip(j, Meaning::The);
    const auto day = readDay(reader, j);
    if (!day)
        return std::nullopt;
    DateMention result = mentionOf(i, day->next, month->value, day->day, 0);
    int second = 0;
    std::uint32_t next = readSecondDay(reader, day->next, day->day, second);
    // "lun 8-14, mar 7-15": where the day stands first, the weekday of that name and its hours.
    if (second > 0 && reader.mayHave(i, kWeekdayNames) && reader.symbol(day->next, '-') &&
        reader.language(i).dayOrder == DayOrder::DayFirst)
        return std::nullopt;
    next = readYear(reader, next, result.first.year);
    if (second > 0) {
        result.last = result.first;
        result.last->day = second;
    }
    result.span.end = next;
    return result;
}

/// A day before its month; in words, too, where they count days: "dix-huit mai".
std::optional<Day> readLeadingDay(const Reader &reader, std::uint32_t i) {
    if (auto day = readDay(reader, i))
        return day;
    constexpr std::uint32_t kShortestNumber = 3; ///< bytes; "un" is an article first
    const Sense *word = reader.sense(i, Meaning::Number);
    if (!word || word->value < 1 || word->value > 31 ||
        reader.language(i).dayOrder != DayOrder::DayFirst ||
        reader.token(i).end - reader.token(i).begin < kShortestNumber)
        return std::nullopt;
    return Day{word->value, false, i + word->length};
}

/// The days between the first and the last of "5, 6 and 7 December".
std::uint32_t readListedDays(const Reader &reader, std::uint32_t i, int &last, bool &gaps) {
    while (reader.symbol(i, ',')) {
        const auto day = readDay(reader, i + 1);
        if (!day || day->day <= last)
            break;
        gaps = gaps || day->day > last + 1;
        last = day->day;
        i = day->next;
    }
    return i;
}

/// Days that follow each other, behind slashes or, where they are three and more, behind hyphens:
/// "24/25", "21st/22nd/23rd", "16-17-18".
std::uint32_t readSlashedDays(const Reader &reader, std::uint32_t i, int &last) {
    const std::uint32_t begin = i;
    const bool hyphens = reader.symbol(i, '-');
    int day = last;
    while (hyphens ? reader.symbol(i, '-')
                   : reader.symbol(i, '/') && reader.glued(i) && reader.glued(i + 1)) {
        const auto next = readDay(reader, i + 1);
        if (!next || next->day != day + 1)
            return begin;
        day = next->day;
        i = next->next;
    }
    if (hyphens && day < last + 2)
        return begin;
    last = day;
    return i;
}

/// The days that stand before their month.
struct LeadingDays {
    int first = 0;
    int last = 0; ///< 0: there is only one
    std::uint32_t next = 0;
};

/// The mark at `i` joins a day and its month: "11-Sep-2027", "11 - Sep - 2027", "11/Sep/2027".
bool joinsMonth(const Reader &reader, std::uint32_t i) {
    const bool hyphen = reader.symbol(i, '-');
    const Sense *month =
        hyphen || reader.symbol(i, '/') ? reader.sense(i + 1, Meaning::Month) : nullptr;
    const std::uint32_t next = i + 1 + (month ? month->length : 0);
    if (!hyphen)
        return month && reader.glued(i) && reader.glued(i + 1) && reader.symbol(next, '/') &&
               reader.glued(next) && isYear(reader, next + 1);
    return month && (reader.glued(i) || (reader.symbol(next, '-') && isYear(reader, next + 1)));
}

/// "5", "4-11", "4 to 11", "5, 6 and 7" before a month.
std::optional<LeadingDays> readLeadingDays(const Reader &reader, std::uint32_t i) {
    const auto day = readLeadingDay(reader, i);
    if (!day)
        return std::nullopt;
    int listed = day->day;
    // "2, 9, 16 and 23 October" are days of their own.
    bool gaps = false;
    LeadingDays days{day->day, 0, readListedDays(reader, day->next, listed, gaps)};
    if (days.next != day->next)
        days.last = listed;
    // "Paper 2, 12 January": two numbers that only a comma joins are no list.
    const bool pair = days.last > day->day + 1 && days.next == day->next + 2;
    if (pair && readDayJoin(reader, days.next) == days.next)
        return std::nullopt;
    // "the night of 24/25 December", "21st/22nd/23rd May"
    if (const std::uint32_t next = readSlashedDays(reader, days.next, listed); next != days.next)
        return LeadingDays{days.first, listed, next};
    // "18 or 19 March": the first of them.
    if (const std::uint32_t other = reader.skip(days.next, Meaning::Or); other != days.next) {
        const auto last = readLeadingDay(reader, reader.skip(other, Meaning::The));
        if (last && last->day > listed && reader.word(other - 1) &&
            reader.has(reader.skip(last->next, Meaning::Of), Meaning::Month))
            return LeadingDays{days.first, 0, last->next};
    }
    if (const std::uint32_t join = readDayJoin(reader, days.next);
        join != days.next && !joinsMonth(reader, days.next)) {
        // "Monday 1 and Tuesday 2 March"
        const std::uint32_t number = reader.skip(join, Meaning::The);
        const bool named =
            i > 0 && reader.mayHave(i - 1, kWeekdayNames) && reader.has(days.next, Meaning::And);
        const auto last = readLeadingDay(reader, named ? skipWeekday(reader, number) : number);
        // "rescheduled from 20 to 27 May"
        // "28th to 3rd April"
        const bool wraps = last && day->ordinal && last->ordinal && days.next == day->next &&
                           last->day < listed && reader.has(last->next, Meaning::Month);
        if (isMovedFrom(reader, i) || !last || (last->day <= listed && !wraps))
            return std::nullopt;
        gaps = gaps || (reader.has(days.next, Meaning::And) && last->day > listed + 1);
        days.last = last->day;
        days.next = last->next;
    }
    days.last = gaps ? 0 : days.last;
    return days;
}

/// "5 June", "5th of June 2026", "4-11 July", "4 to 11 July".
std::optional<DateMention> readDayFirst(const Reader &reader, std::uint32_t i) {
    const auto days = readLeadingDays(reader, i);
    if (!days)
        return std::nullopt;
    // "the 24th day of March", but not "the 5th working day of March"
    const Sense *word = reader.sense(days->next, Meaning::DayWord);
    std::uint32_t j = word && word->value == 0 ? days->next + word->length : days->next;
    j = reader.skip(j == days->next || reader.has(j, Meaning::Of) ? j : days->next, Meaning::Of);
    j = reader.skipSymbol(j, '.');
    if (joinsMonth(reader, j))
        ++j;
    const Sense *month = reader.sense(j, Meaning::Month);
    if (!month)
        return std::nullopt;
    const bool slash = reader.symbol(j - 1, '/');
    j = reader.skipSymbol(j + month->length, slash ? '/' : '-');
    const bool joinedYear = j > i && (slash || reader.symbol(j - 1, '-')) && isYear(reader, j);
    if (!joinedYear && reader.symbol(j - 1, '-'))
        --j;
    if (reader.symbol(j, '.') && isYear(reader, j + 1))
        ++j;
    DateMention result = mentionOf(i, j, month->value, days->first, 0);
    // "02MAR26", as on tickets.
    const bool ticket = reader.glued(i + 1) && reader.word(i + 1) && reader.glued(j) &&
                        reader.number(j, 0, 99) && reader.token(j).digits == 2;
    if (ticket)
        result.first.year = 2000 + static_cast<int>(reader.token(j).number);
    result.span.end = ticket ? j + 1 : readYear(reader, j, result.first.year);
    if (days->last > 0) {
        result.last = result.first;
        result.last->day = days->last;
        if (days->last < days->first)
            beginMonthBefore(result.first);
    }
    return result;
}

/// "in der Nacht von Sa 27.6." before token `i`.
bool isNightBefore(const Reader &reader, std::uint32_t i) {
    constexpr std::uint32_t kReach = 12;
    for (std::uint32_t k = i; k > 0 && i - k < kReach; --k) {
        if (reader.document().tokens[k - 1].kind == TokenKind::LineBreak)
            return false;
        const Sense *part = reader.sense(k - 1, Meaning::PartOfDay);
        if (part && part->value == static_cast<int>(DayPart::Night))
            return true;
    }
    return false;
}

bool continuesNumber(const Reader &reader, std::uint32_t i) {
    if (i == 0 || !reader.glued(i))
        return false;
    const Token &before = reader.document().tokens[i - 1];
    if (before.kind == TokenKind::Word && !before.unspaced)
        return before.end == reader.token(i).begin && reader.token(i).kind == TokenKind::Number;
    // "Fri.14.Mar" starts behind the weekday.
    const bool named =
        i > 1 && before.symbol == '.' &&
        (reader.has(i - 2, Meaning::Weekday) || reader.has(i - 2, Meaning::WeakWeekday));
    const bool chain = before.kind == TokenKind::Symbol && !named &&
                       (before.symbol == '.' || before.symbol == '$' || before.symbol == '#' ||
                        before.symbol == U'€' || before.symbol == U'£');
    return chain && reader.token(i).kind == TokenKind::Number;
}

} // namespace

std::optional<DateMention> readCalendarDate(const Reader &reader, std::uint32_t i) {
    if (continuesNumber(reader, i))
        return std::nullopt;
    if (auto date = readNumericDate(reader, i))
        return date;
    if (auto date = readCountedDate(reader, i))
        return date;
    if (auto date = readMonthFirst(reader, i))
        return date;
    return readDayFirst(reader, i);
}

const Sense *readDayRange(const Reader &reader, std::uint32_t i) {
    const Sense *to = reader.sense(i, Meaning::RangeTo);
    if (to && to->value == 0)
        return to;
    const Sense *night = reader.sense(i, Meaning::NightTo);
    return night && isNightBefore(reader, i) ? night : nullptr;
}

namespace {

/// "cena di Natale il 18", "mercadillo solidario de Navidad": the holiday before token `i` says
/// what kind of event it is.
bool namesKind(const Reader &reader, std::uint32_t i) {
    static constexpr Meanings kDays{Meaning::DayWord,  Meaning::Weekday, Meaning::UnitWord,
                                    Meaning::MonthEnd, Meaning::Ordinal, Meaning::Number};
    constexpr std::uint32_t kLongestOf = 3; ///< "de l'"
    for (std::uint32_t back = 1; back <= kLongestOf && back < i; ++back) {
        const Sense *of = reader.sense(i - back, Meaning::Of);
        const std::uint32_t kind = i - back - 1;
        if (!of || of->length != back || !reader.word(kind))
            continue;
        if (reader.mayHave(kind, kDays))
            return false;
        const bool told = kind > 0 && reader.token(kind).word == 0 && !reader.token(kind).capital;
        return reader.has(kind, Meaning::Event) || (told && reader.has(kind - 1, Meaning::Event));
    }
    return false;
}

} // namespace

std::optional<DateMention> readHoliday(const Reader &reader, std::uint32_t i) {
    const Sense *holiday = reader.sense(i, Meaning::Holiday);
    if (!holiday)
        return std::nullopt;
    DateMention result;
    result.holiday = true;
    result.span = {i, i + holiday->length};
    if (holiday->note != 0) {
        result.first.base = DateSpec::Base::Easter;
        result.first.days = holiday->value;
    } else if (holiday->value <= 0) {
        // The Sunday before Christmas Day, and days before that one.
        constexpr int kSundayBefore = -7;
        result.first.month = 12;
        result.first.day = 25;
        result.first.beside = kSundayBefore;
        result.first.days = holiday->value;
    } else if (holiday->value >= kNthHoliday) {
        const int week = holiday->value / kNthHoliday;
        result.first.base = DateSpec::Base::NthWeekday;
        result.first.nth = week == kLastWeek ? -1 : week;
        result.first.month = holiday->value % kNthHoliday / 100;
        result.first.weekday = holiday->value % 100;
    } else {
        result.first.month = holiday->value / 100;
        result.first.day = holiday->value % 100;
    }
    result.span.end = readYear(reader, result.span.end, result.first.year);
    // "Christmas party" names an event, "closed Good Friday" a day.
    const std::uint32_t next = result.span.end;
    result.weak = (reader.word(next) && !reader.has(next, Meaning::Connector) &&
                   !reader.has(next, Meaning::TimeMarker)) ||
                  namesKind(reader, i);
    return result;
}

} // namespace pindle::conversion
