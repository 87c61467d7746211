#include "PindleConversion/expressions/Expression.h"

#include <algorithm>

namespace pindle::conversion {

namespace {

constexpr std::uint32_t kFirstYear = 1900;
constexpr std::uint32_t kLastYear = 2199;
constexpr std::uint32_t kFirstOldYear = 1000;

struct Day {
    int day;
    bool ordinal;
    std::uint32_t next;
};

/// What follows digits that are no day: "5:30", "5 %", "5pm".
bool spoilsDay(const Reader &reader, std::uint32_t next) {
    if (reader.symbol(next, ':') && reader.glued(next) && reader.number(next + 1, 0, 59))
        return true;
    const Sense *hour = reader.sense(next, Meaning::HourMark);
    return reader.symbol(next, '%') || reader.has(next, Meaning::Meridiem) ||
           (hour && (hour->value == 1 || reader.glued(next)));
}

std::optional<Day> readDay(const Reader &reader, std::uint32_t i) {
    if (reader.number(i, 1, 31)) {
        const bool ordinal = reader.has(i + 1, Meaning::OrdinalMark) && reader.glued(i + 1);
        const std::uint32_t next = i + (ordinal ? 2 : 1);
        if (spoilsDay(reader, next))
            return std::nullopt;
        return Day{static_cast<int>(reader.at(i)->number), ordinal, next};
    }
    if (const Sense *ordinal = reader.sense(i, Meaning::Ordinal); ordinal && ordinal->value > 0)
        return Day{ordinal->value, true, i + ordinal->length};
    return std::nullopt;
}

bool isYear(const Reader &reader, std::uint32_t i) {
    const Token *token = reader.at(i);
    return token && token->kind == TokenKind::Number && token->digits == 4 &&
           token->number >= kFirstYear && token->number <= kLastYear && !spoilsDay(reader, i + 1);
}

/// "9 May 1749": long ago, and no time such as "1745".
bool isOldYear(const Reader &reader, std::uint32_t i) {
    constexpr std::uint32_t kStep = 5;
    const Token *token = reader.at(i);
    return token && token->kind == TokenKind::Number && token->digits == 4 &&
           token->number >= kFirstOldYear && token->number < kFirstYear &&
           (token->number % 100 > 59 || token->number % kStep != 0 ||
            reader.has(i + 1, Meaning::YearMark)) &&
           !spoilsDay(reader, i + 1);
}

/// A year behind day and month: ", 2026", "2026", "'26", "duemilaventisei".
std::uint32_t readYear(const Reader &reader, std::uint32_t i, int &year) {
    const std::uint32_t j = reader.skip(reader.skipSymbol(i, ','), Meaning::Of);
    if (isYear(reader, j) || isOldYear(reader, j)) {
        year = static_cast<int>(reader.at(j)->number);
        return reader.skip(j + 1, Meaning::YearMark);
    }
    if (const Sense *words = reader.sense(j, Meaning::Number);
        words && words->value >= static_cast<int>(kFirstYear)) {
        year = words->value;
        return reader.skip(j + words->length, Meaning::YearMark);
    }
    if (const Sense *words = reader.sense(j, Meaning::YearWord)) {
        year = words->value;
        return reader.skip(j + words->length, Meaning::YearMark);
    }
    const Sense *thisYear = reader.sense(i, Meaning::YearMark);
    if (thisYear && thisYear->value == 1)
        return i + thisYear->length;
    const Token *digits = reader.at(j + 1);
    if (reader.symbol(j, '\'') && digits && digits->digits == 2 && reader.glued(j + 1)) {
        year = 2000 + static_cast<int>(digits->number);
        return j + 2;
    }
    return i;
}

/// "-" or "to" or "and" between two days of one month.
std::uint32_t readDayJoin(const Reader &reader, std::uint32_t i) {
    if (const Sense *to = readDayRange(reader, i))
        return i + to->length;
    if (const Sense *both = reader.sense(i, Meaning::And))
        return i + both->length;
    return i;
}

DateMention mention(std::uint32_t begin, std::uint32_t end, int month, int day, int year) {
    DateMention result;
    result.span = {begin, end};
    result.first.month = month;
    result.first.day = day;
    result.first.year = year;
    return result;
}

/// A second day of the same month: "4-11" of "July 4-11".
std::uint32_t readSecondDay(const Reader &reader, std::uint32_t i, int firstDay, int &day) {
    const std::uint32_t join = readDayJoin(reader, i);
    if (join == i)
        return i;
    std::uint32_t j = join;
    if (const Sense *weekday = reader.sense(j, Meaning::Weekday))
        j += weekday->length;
    else if (const Sense *weak = reader.sense(j, Meaning::WeakWeekday))
        j += weak->length;
    const auto second = readDay(reader, reader.skip(j, Meaning::The));
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
    if (!month || isRoman(reader.document().slice(*reader.at(i))))
        return std::nullopt;
    std::uint32_t j = reader.skipSymbol(i + month->length, '.');
    j = reader.skip(j, Meaning::The);
    const auto day = readDay(reader, j);
    if (!day)
        return std::nullopt;
    DateMention result = mention(i, day->next, month->value, day->day, 0);
    int second = 0;
    std::uint32_t next = readSecondDay(reader, day->next, day->day, second);
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
        reader.at(i)->end - reader.at(i)->begin < kShortestNumber)
        return std::nullopt;
    return Day{word->value, false, i + word->length};
}

/// The days between the first and the last of "5, 6 and 7 December".
std::uint32_t readListedDays(const Reader &reader, std::uint32_t i, int &last) {
    while (reader.symbol(i, ',')) {
        const auto day = readDay(reader, i + 1);
        if (!day || day->day <= last)
            break;
        last = day->day;
        i = day->next;
    }
    return i;
}

/// "5 June", "5th of June 2026", "4-11 July", "4 to 11 July".
std::optional<DateMention> readDayFirst(const Reader &reader, std::uint32_t i) {
    const auto day = readLeadingDay(reader, i);
    if (!day)
        return std::nullopt;
    int second = 0;
    int listed = day->day;
    std::uint32_t j = readListedDays(reader, day->next, listed);
    if (j != day->next)
        second = listed;
    // "11-Sep-2027" is one day.
    if (const std::uint32_t join = readDayJoin(reader, j);
        join != j && !(reader.glued(j) && reader.has(join, Meaning::Month))) {
        const auto last = readLeadingDay(reader, reader.skip(join, Meaning::The));
        if (!last || last->day <= listed)
            return std::nullopt;
        second = last->day;
        j = last->next;
    }
    j = reader.skip(j, Meaning::Of);
    j = reader.skipSymbol(j, '.');
    if (reader.symbol(j, '-') && reader.glued(j))
        ++j;
    const Sense *month = reader.sense(j, Meaning::Month);
    if (!month)
        return std::nullopt;
    j = reader.skipSymbol(j + month->length, '-');
    const bool hyphenYear = j > i && reader.symbol(j - 1, '-') && isYear(reader, j);
    if (!hyphenYear && reader.symbol(j - 1, '-'))
        --j;
    if (reader.symbol(j, '.') && isYear(reader, j + 1))
        ++j;
    DateMention result = mention(i, j, month->value, day->day, 0);
    // "02MAR26", as on tickets.
    const bool ticket = reader.glued(i + 1) && reader.word(i + 1) && reader.glued(j) &&
                        reader.number(j, 0, 99) && reader.at(j)->digits == 2;
    if (ticket)
        result.first.year = 2000 + static_cast<int>(reader.at(j)->number);
    result.span.end = ticket ? j + 1 : readYear(reader, j, result.first.year);
    if (second > 0) {
        result.last = result.first;
        result.last->day = second;
    }
    return result;
}

int fullYear(const Token &token) {
    return static_cast<int>(token.digits <= 2 ? 2000 + token.number : token.number);
}

/// "2026-06-05", "2026/6/5".
std::optional<DateMention> readYearFirst(const Reader &reader, std::uint32_t i) {
    if (!isYear(reader, i) ||
        !(reader.symbol(i + 1, '-') || reader.symbol(i + 1, '/') || reader.symbol(i + 1, '.')))
        return std::nullopt;
    const char32_t separator = reader.at(i + 1)->symbol;
    if (!reader.number(i + 2, 1, 12) || !reader.symbol(i + 3, separator) ||
        !reader.number(i + 4, 1, 31) || !reader.glued(i + 2) || !reader.glued(i + 4))
        return std::nullopt;
    return mention(i, i + 5, static_cast<int>(reader.at(i + 2)->number),
                   static_cast<int>(reader.at(i + 4)->number),
                   static_cast<int>(reader.at(i)->number));
}

/// "20260605", before a "T".
std::optional<DateMention> readCompactDate(const Reader &reader, std::uint32_t i) {
    const Token *token = reader.at(i);
    if (!token || token->kind != TokenKind::Number || token->digits != 8 || !reader.word(i + 1) ||
        !reader.glued(i + 1) || !reader.glued(i + 2))
        return std::nullopt;
    const auto letter = reader.document().slice(*reader.at(i + 1));
    const int month = static_cast<int>(token->number / 100 % 100);
    const int day = static_cast<int>(token->number % 100);
    const std::uint32_t year = token->number / 10000;
    if (letter != "T" || year < kFirstYear || year > kLastYear || month < 1 || month > 12 ||
        day < 1 || day > 31)
        return std::nullopt;
    return mention(i, i + 1, month, day, static_cast<int>(year));
}

/// "6-4 om 8.20": two numbers with a hyphen are a day only where a time is said of them.
bool isHyphenDay(const Reader &reader, std::uint32_t i) {
    const std::uint32_t next = i + 3;
    // "3-15 10:00" where the month stands first.
    if (reader.symbol(i + 1, '-') && reader.language(i).script != Script::Latin &&
        reader.number(next, 0, 23) && !reader.glued(next) && reader.symbol(next + 1, ':'))
        return true;
    const Sense *marker = reader.sense(next, Meaning::TimeMarker);
    if (!reader.symbol(i + 1, '-') || !marker || reader.has(next, Meaning::RangeTo) ||
        reader.language(i).dayOrder != DayOrder::DayFirst)
        return false;
    std::uint32_t behind = next;
    const auto clock = readClock(reader, next + marker->length, behind);
    return clock && (clock->minuteGiven || clock->sure);
}

bool isDotted(const Reader &reader, std::uint32_t i) {
    return reader.number(i, 1, 31) && reader.symbol(i + 1, '.') && reader.glued(i + 1) &&
           reader.number(i + 2, 1, 31) && reader.glued(i + 2);
}

/// "6.3" may be anything, but a weekday or a time beside it, or another such number behind
/// "to", tells a date.
bool isDatedBeside(const Reader &reader, std::uint32_t i) {
    constexpr std::uint32_t kLastHour = 24;
    const bool day = reader.number(i, kLastHour + 1, 31) || reader.number(i + 2, kLastHour + 1, 31);
    if (i > 0 && reader.has(i - 1, Meaning::DateMarker) && !reader.has(i - 1, Meaning::TimeMarker))
        return true;
    if (i > 0 && day && reader.has(i - 1, Meaning::Weekday))
        return true;
    // "26.12 obiad rodzinny"
    if (day && reader.at(i + 2)->digits == 2 && reader.has(i + 3, Meaning::Event))
        return true;
    constexpr std::uint32_t kFirstOfRange = 4;
    if (i >= kFirstOfRange && day && reader.has(i - 1, Meaning::RangeTo) &&
        isDotted(reader, i - kFirstOfRange))
        return true;
    const std::uint32_t next = reader.skipSymbol(i + 3, ',');
    const std::uint32_t name = reader.skipSymbol(next, '(');
    if (reader.has(name, Meaning::Weekday) ||
        (name != next && reader.has(name, Meaning::WeakWeekday)))
        return true;
    if (const Sense *to = reader.sense(next, Meaning::RangeTo);
        to && isDotted(reader, next + to->length))
        return day || reader.number(next + to->length, kLastHour + 1, 31);
    const std::uint32_t time = reader.skip(next, Meaning::PartOfDay);
    const std::uint32_t clock = reader.skip(time, Meaning::TimeMarker);
    if (!reader.number(clock, 0, kLastHour))
        return false;
    return clock != next || reader.symbol(clock + 1, ':');
}

/// "27.4.8(木)": the year comes first, the weekday tells that it is a date.
bool endsBriefDate(const Reader &reader, std::uint32_t i) {
    return reader.language(i).script != Script::Latin && reader.at(i)->digits == 2 &&
           reader.number(i + 4, 1, 31) && reader.symbol(i + 5, '(') &&
           (reader.has(i + 6, Meaning::Weekday) || reader.has(i + 6, Meaning::WeakWeekday));
}

/// "ul. Krzywa 11/3": house and flat.
bool isHouseNumber(const Reader &reader, std::uint32_t i) {
    constexpr std::uint32_t kLongestStreet = 3;
    // "Lindenstr. 11/3"
    if (i > 1 && reader.symbol(i - 1, '.') && reader.document().tokens[i - 2].capital &&
        reader.document().tokens[i - 2].word == 0)
        return true;
    for (std::uint32_t k = 1; k <= std::min(kLongestStreet, i); ++k) {
        const Token &before = reader.document().tokens[i - k];
        if (reader.has(i - k, Meaning::StreetWord))
            return !before.used && (k > 1 || before.word == 0);
        if (before.used || (before.symbol != '.' && !before.capital))
            return false;
    }
    return false;
}

/// "5/6", "5/6/26", "15.11.2026", "11-15-25".
std::optional<DateMention> readNumeric(const Reader &reader, std::uint32_t i) {
    const Token *separator = reader.at(i + 1);
    if (!reader.number(i, 1, 31) || !separator || separator->kind != TokenKind::Symbol ||
        !reader.glued(i + 1) || !reader.glued(i + 2) || !reader.number(i + 2, 1, 31))
        return std::nullopt;
    const char32_t c = separator->symbol;
    if ((c != '/' && c != '.' && c != '-') || (c == '/' && isHouseNumber(reader, i)))
        return std::nullopt;
    const Token *year = reader.at(i + 4);
    const bool three = reader.symbol(i + 3, c) && year && year->kind == TokenKind::Number &&
                       reader.glued(i + 4) &&
                       (year->digits == 2 || isYear(reader, i + 4) || endsBriefDate(reader, i));
    // "14.03." with its second full stop is a date, "14.03" may be anything.
    const bool dotted = !three && c == '.' && reader.symbol(i + 3, '.') && reader.glued(i + 3) &&
                        (reader.at(i + 2)->digits == 2 || reader.language(i).dottedDates) &&
                        !(reader.glued(i + 4) && reader.number(i + 4, 0, 9999, 4));
    const bool bare = !three && !dotted && c == '.' && reader.language(i).dottedDates &&
                      !(reader.symbol(i + 3, '.') && reader.glued(i + 3)) &&
                      isDatedBeside(reader, i);
    if (!three && !dotted && !bare && !isHyphenDay(reader, i) &&
        (c != '/' || reader.symbol(i + 3, '/')))
        return std::nullopt;
    // A longer chain of numbers is a version, an address or a telephone number.
    const std::uint32_t next = i + (three ? 5U : dotted ? 4U : 3U);
    if (three && reader.symbol(next, c) && reader.glued(next) &&
        reader.number(next + 1, 0, 9999, 4))
        return std::nullopt;
    // Where years come first, "25/12/08" is 2025.
    if (three && year->digits <= 2 && reader.language(i).script != Script::Latin &&
        reader.number(i + 2, 1, 12) && reader.number(i + 4, 1, 31))
        return mention(i, next, static_cast<int>(reader.at(i + 2)->number),
                       static_cast<int>(year->number), fullYear(*reader.at(i)));
    const int first = static_cast<int>(reader.at(i)->number);
    const int second = static_cast<int>(reader.at(i + 2)->number);
    if ((first > 12 || dotted || (bare && reader.language(i).dayOrder == DayOrder::DayFirst)) &&
        second > 12)
        return std::nullopt;
    // Where the month comes first, the year does too: "25/12/08".
    if (three && year->digits == 2 && reader.language(i).dayOrder == DayOrder::MonthFirst &&
        first > 12 && reader.number(i + 2, 1, 12) && reader.number(i + 4, 1, 31))
        return mention(i, next, second, static_cast<int>(year->number), 2000 + first);
    DateMention result = mention(i, next, second, first, three ? fullYear(*year) : 0);
    if (second > 12)
        result = mention(i, next, first, second, result.first.year);
    const bool habit = c == '.' && reader.language(i).dottedDates;
    const bool settled = dotted || (habit && reader.language(i).dayOrder == DayOrder::DayFirst) ||
                         (bare && reader.language(i).dayOrder == DayOrder::DayFirst);
    result.first.eitherOrder = first <= 12 && second <= 12 && !settled;
    // Where the year comes first, a date that ends with it was written in another habit.
    const bool foreign = three && reader.language(i).script != Script::Latin;
    result.first.order = foreign ? DayOrder::ByZone : reader.language(i).dayOrder;
    result.first.shortYear = three && year->digits == 2;
    result.weak = !three;
    return result;
}

bool continuesNumber(const Reader &reader, std::uint32_t i) {
    if (i == 0 || !reader.glued(i))
        return false;
    const Token &before = reader.document().tokens[i - 1];
    if (before.kind == TokenKind::Word && !before.unspaced)
        return before.end == reader.at(i)->begin && reader.at(i)->kind == TokenKind::Number;
    const bool chain = before.kind == TokenKind::Symbol &&
                       (before.symbol == '.' || before.symbol == '$' || before.symbol == '#' ||
                        before.symbol == U'€' || before.symbol == U'£');
    return chain && reader.at(i)->kind == TokenKind::Number;
}

} // namespace

std::optional<DateMention> readCalendarDate(const Reader &reader, std::uint32_t i) {
    if (continuesNumber(reader, i))
        return std::nullopt;
    if (auto date = readYearFirst(reader, i))
        return date;
    if (auto date = readCompactDate(reader, i))
        return date;
    if (auto date = readNumeric(reader, i))
        return date;
    if (auto date = readCountedDate(reader, i))
        return date;
    if (auto date = readMonthFirst(reader, i))
        return date;
    return readDayFirst(reader, i);
}

const Sense *readDayRange(const Reader &reader, std::uint32_t i) {
    const Sense *to = reader.sense(i, Meaning::RangeTo);
    return to && to->value == 0 ? to : nullptr;
}

std::optional<DateMention> readHoliday(const Reader &reader, std::uint32_t i) {
    const Sense *holiday = reader.sense(i, Meaning::Holiday);
    if (!holiday)
        return std::nullopt;
    DateMention result;
    result.span = {i, i + holiday->length};
    if (holiday->note != 0) {
        result.first.base = DateSpec::Base::Easter;
        result.first.days = holiday->value;
    } else {
        result.first.month = holiday->value / 100;
        result.first.day = holiday->value % 100;
    }
    result.span.end = readYear(reader, result.span.end, result.first.year);
    // "Christmas party" names an event, "closed Good Friday" a day.
    const std::uint32_t next = result.span.end;
    result.weak = reader.word(next) && !reader.has(next, Meaning::Connector) &&
                  !reader.has(next, Meaning::TimeMarker);
    return result;
}

} // namespace pindle::conversion
