#include "PindleConversion/expressions/NumericDates.h"

#include <algorithm>

#include "PindleConversion/expressions/CalendarParts.h"

namespace pindle::conversion {

namespace {

constexpr std::uint32_t kLastHour = 24;
constexpr std::uint32_t kMonths = 12;

int fullYear(const Token &token) {
    return static_cast<int>(token.digits <= 2 ? 2000 + token.number : token.number);
}

/// "2026-06-05", "2026/6/5", "115/6/5" where years of an era are counted.
std::optional<DateMention> readYearFirst(const Reader &reader, std::uint32_t i) {
    if (!(reader.symbol(i + 1, '-') || reader.symbol(i + 1, '/') || reader.symbol(i + 1, '.')))
        return std::nullopt;
    const int counted = reader.symbol(i + 1, '-') ? 0 : yearOfEra(reader, i);
    if (counted == 0 && !isYear(reader, i))
        return std::nullopt;
    const char32_t separator = reader.token(i + 1).symbol;
    if (!reader.number(i + 2, 1, kMonths) || !reader.symbol(i + 3, separator) ||
        !reader.number(i + 4, 1, 31) || !reader.glued(i + 2) || !reader.glued(i + 4))
        return std::nullopt;
    return mentionOf(i, i + 5, static_cast<int>(reader.token(i + 2).number),
                     static_cast<int>(reader.token(i + 4).number),
                     counted != 0 ? counted : static_cast<int>(reader.token(i).number));
}

/// "20260605", before a "T".
std::optional<DateMention> readCompactDate(const Reader &reader, std::uint32_t i) {
    const Token *token = reader.at(i);
    if (!token || token->kind != TokenKind::Number || token->digits != 8 || !reader.word(i + 1) ||
        !reader.glued(i + 1) || !reader.glued(i + 2))
        return std::nullopt;
    const auto letter = reader.document().slice(reader.token(i + 1));
    const int month = static_cast<int>(token->number / 100 % 100);
    const int day = static_cast<int>(token->number % 100);
    const std::uint32_t year = token->number / 10000;
    if (letter != "T" || year < kFirstYear || year > kLastYear || month < 1 || month > 12 ||
        day < 1 || day > 31)
        return std::nullopt;
    return mentionOf(i, i + 1, month, day, static_cast<int>(year));
}

/// "11-4 15:20", "za 30-8 van 5 tot 8": a day with a hyphen, told by the time behind it or by the
/// weekday before it, where no hour has its first number.
bool isHyphenDayBesideTime(const Reader &reader, std::uint32_t i) {
    const std::uint32_t next = i + 3;
    if (!reader.symbol(i + 1, '-') || !reader.number(i + 2, 1, kMonths) || reader.glued(next) ||
        reader.language(i).dayOrder != DayOrder::DayFirst)
        return false;
    if (i > 0 && reader.number(i, kLastHour + 1, 31) &&
        (reader.has(i - 1, Meaning::Weekday) || reader.has(i - 1, Meaning::WeakWeekday)))
        return true;
    // "vrijdag 12-06": a range of hours goes up.
    constexpr std::uint32_t kTwoDigits = 10;
    if (i > 0 && reader.number(i + 2, 1, kTwoDigits - 1) && reader.token(i + 2).digits == 2 &&
        reader.token(i).number > reader.token(i + 2).number &&
        reader.mayHave(i - 1, kWeekdayNames) && !reader.has(next, Meaning::HourMark))
        return true;
    // "3-9 kwart voor 12"
    static constexpr Meanings kSpoken{Meaning::QuarterWord, Meaning::SpokenClock};
    if (reader.mayHave(next, kSpoken) &&
        (reader.has(next, Meaning::SpokenClock) || reader.number(next + 2, 1, kMonths)))
        return true;
    // "apk 3-6 8u"
    const bool hour = reader.number(next, 0, kLastHour) && reader.glued(next + 1) &&
                      reader.has(next + 1, Meaning::HourMark);
    if (hour && !(reader.glued(next + 2) && reader.word(next + 2)))
        return true;
    return reader.number(next, 0, kLastHour) && reader.glued(next + 1) && reader.glued(next + 2) &&
           (reader.symbol(next + 1, ':') || reader.has(next + 1, Meaning::HourMark)) &&
           reader.number(next + 2, 0, 59) && reader.token(next + 2).digits == 2;
}

/// "6-4 om 8.20": two numbers with a hyphen are a day only where a time is said of them.
bool isHyphenDay(const Reader &reader, std::uint32_t i) {
    const std::uint32_t next = i + 3;
    // "3-15 10:00" where the month stands first.
    if (reader.symbol(i + 1, '-') && reader.language(i).script != Script::Latin &&
        reader.number(next, 0, 23) && !reader.glued(next) && reader.symbol(next + 1, ':'))
        return true;
    if (isHyphenDayBesideTime(reader, i))
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

/// "20.06", "8.3": hardly a time, since such minutes are rounded.
bool isUnlikeTime(const Reader &reader, std::uint32_t i) {
    constexpr std::uint32_t kStep = 5;
    const Token &month = reader.token(i + 2);
    return month.digits == 1 || month.number % kStep != 0;
}

/// "Sa 16.05 Grillen": behind a weekday a day of May sooner than five past four.
bool isDayOfMonth(const Reader &reader, std::uint32_t i) {
    constexpr std::uint32_t kNoon = 12;
    static constexpr Meanings kTimes{Meaning::HourMark, Meaning::Meridiem, Meaning::OClock,
                                     Meaning::RangeTo};
    return reader.language(i).clock24 && reader.number(i, kNoon + 1, 31) &&
           reader.number(i + 2, 1, kMonths) && reader.token(i + 2).digits == 2 &&
           reader.word(i + 3) && !reader.glued(i + 3) && !reader.mayHave(i + 3, kTimes);
}

/// "14-17" behind a number that may be a date: no time goes before such hours.
bool startsHourRange(const Reader &reader, std::uint32_t i) {
    constexpr std::uint32_t kEarliest = 6;
    const Sense *to = reader.number(i, kEarliest, kLastHour) && !reader.glued(i)
                          ? reader.sense(i + 1, Meaning::RangeTo)
                          : nullptr;
    if (!to)
        return false;
    const std::uint32_t end = i + 1 + to->length;
    static constexpr Meanings kCounted{Meaning::Measure, Meaning::Counter, Meaning::Month};
    const bool goesOn = (reader.symbol(end + 1, '.') || reader.symbol(end + 1, '/') ||
                         reader.symbol(end + 1, '-')) &&
                        reader.glued(end + 1) && reader.at(end + 2);
    return reader.number(end, reader.token(i).number + 1, kLastHour) && !goesOn &&
           !reader.mayHave(end + 1, kCounted);
}

/// "6.3" may be anything, but a weekday or a time beside it, or another such number behind
/// "to", tells a date.
bool isDatedBeside(const Reader &reader, std::uint32_t i) {
    const bool day = reader.number(i, kLastHour + 1, 31) || reader.number(i + 2, kLastHour + 1, 31);
    if (i > 0 && reader.has(i - 1, Meaning::DateMarker) && !reader.has(i - 1, Meaning::TimeMarker))
        return true;
    if (i > 0 && day && reader.has(i - 1, Meaning::Weekday))
        return true;
    // "sobota 20.06", "czw. 11.06 | 12:00"
    static constexpr Meanings kTimes{Meaning::HourMark, Meaning::Meridiem};
    const std::uint32_t before = i > 1 && reader.symbol(i - 1, '.') ? i - 2 : i - 1;
    if (i > 0 && reader.mayHave(before, kWeekdayNames) &&
        (isUnlikeTime(reader, i) || isDayOfMonth(reader, i)) && !reader.mayHave(i + 3, kTimes) &&
        !(reader.has(i + 3, Meaning::RangeTo) && reader.number(i + 4, 0, kLastHour)))
        return true;
    // "26.12 obiad rodzinny"
    if (day && reader.token(i + 2).digits == 2 && reader.has(i + 3, Meaning::Event))
        return true;
    constexpr std::uint32_t kFirstOfRange = 4;
    if (i >= kFirstOfRange && reader.has(i - 1, Meaning::RangeTo) &&
        isDotted(reader, i - kFirstOfRange) &&
        (day || reader.number(i - kFirstOfRange, kLastHour + 1, 31)))
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
    // "16.05, 14-17", "20.05 19 Uhr"
    return clock != next || reader.symbol(clock + 1, ':') || startsHourRange(reader, clock) ||
           (reader.has(clock + 1, Meaning::HourMark) && !reader.glued(clock));
}

/// "Sat 3.21 | doors 7": behind a weekday, where no minutes are written so and no word follows.
bool isBehindName(const Reader &reader, std::uint32_t i) {
    const std::uint32_t name = i > 1 && reader.symbol(i - 1, '.') ? i - 2 : i - 1;
    return i > 0 && reader.mayHave(name, kWeekdayNames) && isDotted(reader, i) &&
           reader.language(i).script == Script::Latin && !reader.word(i + 3) &&
           isUnlikeTime(reader, i) && !(reader.symbol(i + 3, '-') || reader.symbol(i + 3, '/'));
}

/// "le 18.12", "27.10, 07:40": where dates are not written so, only a word that leads to a day or a
/// time behind them tells. "9.10 alle 12" are two times.
bool isDatedHere(const Reader &reader, std::uint32_t i) {
    if (isBehindName(reader, i))
        return true;
    if (reader.language(i).dayOrder != DayOrder::DayFirst || !isDotted(reader, i) ||
        (i > 0 && reader.has(i - 1, Meaning::TimeMarker)))
        return false;
    if (i > 0 && reader.has(i - 1, Meaning::DayLead))
        return true;
    const std::uint32_t next = reader.skipSymbol(i + 3, ',');
    if (reader.has(next, Meaning::RangeTo))
        return false;
    const std::uint32_t clock = reader.skip(next, Meaning::TimeMarker);
    // "sab. 16.05 14-17"
    const std::uint32_t name = i > 1 && reader.symbol(i - 1, '.') ? i - 2 : i - 1;
    const bool named = i > 0 && reader.mayHave(name, kWeekdayNames);
    if (named && isDayOfMonth(reader, i))
        return true;
    if ((clock == i + 3 && !named) || reader.glued(clock) || !reader.number(clock, 0, kLastHour))
        return false;
    return clock != next || reader.symbol(clock + 1, ':') || startsHourRange(reader, clock) ||
           (reader.has(clock + 1, Meaning::HourMark) && reader.glued(clock + 1));
}

/// "27.4.8(木)": the year comes first, the weekday tells that it is a date.
bool endsBriefDate(const Reader &reader, std::uint32_t i) {
    return reader.language(i).script != Script::Latin && reader.token(i).digits == 2 &&
           reader.number(i + 4, 1, 31) && reader.symbol(i + 5, '(') &&
           (reader.has(i + 6, Meaning::Weekday) || reader.has(i + 6, Meaning::WeakWeekday));
}

/// "ul. Krzywa 11/3": house and flat.
bool isHouseNumber(const Reader &reader, std::uint32_t i) {
    constexpr std::uint32_t kLongestStreet = 3;
    // "Lindenstr. 11/3", but "a talk by Anand. 26/3, 6pm"
    if (i > 1 && reader.language(i).dayOrder != DayOrder::ByZone && reader.symbol(i - 1, '.') &&
        reader.document().tokens[i - 2].capital && reader.document().tokens[i - 2].word == 0)
        return true;
    // "Kwiatowa 8/14": no day where the month stands second.
    if (i > 0 && reader.number(i + 2, kMonths + 1, 999) && reader.number(i, 1, kMonths) &&
        reader.language(i).dayOrder == DayOrder::DayFirst &&
        reader.document().tokens[i - 1].word == 0 && reader.document().tokens[i - 1].upper() &&
        !reader.symbol(i + 3, '/'))
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

/// "10-11-12 October": days of the month behind them.
bool isRowOfDays(const Reader &reader, std::uint32_t i) {
    return reader.has(reader.skip(i + 5, Meaning::Of), Meaning::Month) &&
           reader.token(i + 2).number == reader.token(i).number + 1 &&
           reader.number(i + 4, reader.token(i).number + 2, reader.token(i).number + 2);
}

/// How day, month and perhaps year are written between equal marks.
struct NumericForm {
    char32_t mark = 0;
    bool three = false;  ///< with a third number, the year
    bool dotted = false; ///< "14.03." with its second full stop is a date, "14.03" may be anything
    bool bare = false;   ///< "14.03", but what stands beside it tells a date
    std::uint32_t year = 0; ///< the third number
    std::uint32_t next = 0;
};

/// "09 / 02 / 2027": blanks around the marks, where a whole year follows.
bool isSpacedDate(const Reader &reader, std::uint32_t i) {
    constexpr std::uint32_t kYear = 4; ///< behind the day
    return !reader.glued(i + 1) && !reader.glued(i + 2) && reader.token(i + 1).spaceBefore &&
           reader.symbol(i + 3, reader.token(i + 1).symbol) && !reader.glued(i + 3) &&
           reader.at(i + kYear) && reader.token(i + kYear).digits == 4 &&
           isYear(reader, i + kYear) && !reader.symbol(i + kYear + 1, '/');
}

/// The form of the numbers at `i`, if it may be a date's.
std::optional<NumericForm> readNumericForm(const Reader &reader, std::uint32_t i) {
    const Token *separator = reader.at(i + 1);
    if (!reader.number(i, 1, 31) || !separator || separator->kind != TokenKind::Symbol ||
        !reader.number(i + 2, 1, 31))
        return std::nullopt;
    const bool spaced = !(reader.glued(i + 1) && reader.glued(i + 2));
    if (spaced && !isSpacedDate(reader, i))
        return std::nullopt;
    const char32_t c = separator->symbol;
    if ((c != '/' && c != '.' && c != '-') || (c == '/' && isHouseNumber(reader, i)))
        return std::nullopt;
    NumericForm form;
    form.mark = c;
    const bool goesOn = reader.symbol(i + 3, c);
    // "1 1/2 hours"
    if (c == '/' && !goesOn && i > 0 && reader.document().tokens[i - 1].kind == TokenKind::Number &&
        !reader.glued(i) && reader.number(i, 1, 9) &&
        reader.number(i + 2, reader.token(i).number + 1, 9) && reader.word(i + 3) &&
        !reader.document().tokens[i - 1].used)
        return std::nullopt;
    // "attempt 4/5"
    if (c == '/' && !goesOn && i > 0 && reader.has(i - 1, Meaning::Numbered))
        return std::nullopt;
    // "12-11-'27"
    form.year = goesOn && reader.symbol(i + 4, '\'') && reader.glued(i + 4) ? i + 5 : i + 4;
    const Token *year = reader.at(form.year);
    form.three = goesOn && year && year->kind == TokenKind::Number &&
                 (reader.glued(form.year) || spaced) &&
                 (year->digits == 2 || isYear(reader, form.year) || endsBriefDate(reader, i)) &&
                 !isRowOfDays(reader, i);
    const bool stops = c == '.' && goesOn && reader.glued(i + 3);
    // "4.11.x" is a version.
    if (stops && reader.word(i + 4) && reader.glued(i + 4) && !reader.token(i + 4).unspaced)
        return std::nullopt;
    // "upgrade from 3.11." ends a sentence.
    const bool written = reader.token(i + 2).digits == 2 &&
                         (reader.token(i).digits == 2 || reader.at(i + 4) != nullptr);
    // "at 10.05." is a time where dates have no full stops, but for "say 11.02., 13:00".
    const std::uint32_t clock = reader.skipSymbol(i + 4, ',');
    const bool beforeTime =
        reader.number(clock, 0, kLastHour) &&
        (reader.symbol(clock + 1, ':') || reader.has(clock + 1, Meaning::Meridiem));
    const bool timed = i > 0 && !reader.language(i).dottedDates && !beforeTime &&
                       reader.has(i - 1, Meaning::TimeMarker) &&
                       !reader.has(i - 1, Meaning::DateMarker);
    form.dotted = !form.three && stops && !timed && (written || reader.language(i).dottedDates) &&
                  !(reader.glued(i + 4) && reader.number(i + 4, 0, 9999, 4));
    form.bare =
        !form.three && !form.dotted && c == '.' && !stops &&
        (reader.language(i).dottedDates ? isDatedBeside(reader, i) : isDatedHere(reader, i));
    form.next = form.three ? form.year + 1 : i + (form.dotted ? 4U : 3U);
    const bool slashed = c == '/' && !goesOn;
    if (!form.three && !form.dotted && !form.bare && !slashed && !isHyphenDay(reader, i))
        return std::nullopt;
    // A longer chain of numbers is a version, an address or a telephone number.
    if (form.three && reader.symbol(form.next, c) && reader.glued(form.next) &&
        reader.number(form.next + 1, 0, 9999, 4))
        return std::nullopt;
    return form;
}

/// "25/12/08" is 2025 where years come first, and where the month comes before the day.
std::optional<DateMention> readBriefYearFirst(const Reader &reader, std::uint32_t i,
                                              std::uint32_t next) {
    const Token &first = reader.token(i);
    const Token &last = reader.token(i + 4);
    if (last.digits > 2 || !reader.number(i + 2, 1, kMonths) || !reader.number(i + 4, 1, 31))
        return std::nullopt;
    const int month = static_cast<int>(reader.token(i + 2).number);
    const int day = static_cast<int>(last.number);
    if (reader.language(i).script != Script::Latin)
        return mentionOf(i, next, month, day, fullYear(first));
    if (last.digits == 2 && reader.language(i).dayOrder == DayOrder::MonthFirst &&
        first.number > 12)
        return mentionOf(i, next, month, day, 2000 + static_cast<int>(first.number));
    return std::nullopt;
}

/// "5/6", "5/6/26", "15.11.2026", "11-15-25".
std::optional<DateMention> readNumeric(const Reader &reader, std::uint32_t i) {
    const auto form = readNumericForm(reader, i);
    if (!form)
        return std::nullopt;
    const bool three = form->three;
    const std::uint32_t last = form->year;
    if (auto date =
            three && last == i + 4 ? readBriefYearFirst(reader, i, form->next) : std::nullopt)
        return date;
    const LanguageInfo &language = reader.language(i);
    const bool dayFirst = language.dayOrder == DayOrder::DayFirst;
    const int first = static_cast<int>(reader.token(i).number);
    const int second = static_cast<int>(reader.token(i + 2).number);
    if ((first > 12 || form->dotted || (form->bare && dayFirst)) && second > 12)
        return std::nullopt;
    const int year = three ? fullYear(reader.token(last)) : 0;
    DateMention result = second > 12 ? mentionOf(i, form->next, first, second, year)
                                     : mentionOf(i, form->next, second, first, year);
    result.first.monthThenDay = second > 12 && !three && form->mark == '/';
    const bool habit = form->mark == '.' && (language.dottedDates || form->bare);
    const bool settled = form->dotted || (habit && dayFirst);
    result.first.eitherOrder = first <= 12 && second <= 12 && !settled;
    // Where the year comes first, a date that ends with it was written in another habit.
    const bool foreign = three && language.script != Script::Latin;
    result.first.order = foreign ? DayOrder::ByZone : language.dayOrder;
    result.first.shortYear = three && reader.token(last).digits == 2;
    // "20.05." can hardly be anything else.
    const bool full =
        form->dotted && reader.token(i).digits == 2 && reader.token(i + 2).digits == 2;
    result.weak = !three && !full;
    return result;
}

/// "26/6" behind "22-", or what only its place makes a date: "26.06".
std::optional<DateMention> readRangeEnd(const Reader &reader, std::uint32_t i) {
    if (auto date = readNumeric(reader, i))
        return date;
    // "13 t/m 15-6"
    const bool hyphen = reader.symbol(i + 1, '-') && reader.glued(i + 2) &&
                        !reader.symbol(i - 1, '-') && !reader.symbol(i + 3, '-');
    if (!(hyphen || isDotted(reader, i)) || !reader.number(i + 2, 1, kMonths) ||
        !(hyphen || reader.number(i, kLastHour + 1, 31) || isUnlikeTime(reader, i)))
        return std::nullopt;
    return mentionOf(i, i + 3, static_cast<int>(reader.token(i + 2).number),
                     static_cast<int>(reader.token(i).number), 0);
}

/// "22.-26.6.", "22-26/06/2026", "22 t/m 26-06-2026": the month is said once, for the last day.
std::optional<DateMention> readDaysOfMonth(const Reader &reader, std::uint32_t i) {
    const bool dot = reader.symbol(i + 1, '.') && reader.glued(i + 1);
    const std::uint32_t join = i + (dot ? 2 : 1);
    const Sense *to = reader.has(join, Meaning::RangeTo) ? readDayRange(reader, join) : nullptr;
    if (!to || !reader.number(i, 1, 30))
        return std::nullopt;
    const std::uint32_t end = join + to->length;
    const std::uint32_t first = reader.token(i).number;
    const bool dayFirst = reader.language(i).dayOrder == DayOrder::DayFirst;
    const bool marked =
        reader.symbol(end + 1, '/') || reader.symbol(end + 1, '.') || reader.symbol(end + 1, '-');
    if (!marked || !reader.glued(end + 1) || isMovedFrom(reader, i) ||
        !reader.number(end, std::max(first, dayFirst ? 0 : kMonths) + 1, 31))
        return std::nullopt;
    auto date = readRangeEnd(reader, end);
    if (!date || date->last || date->first.day != static_cast<int>(reader.token(end).number))
        return std::nullopt;
    date->span.begin = i;
    // "10-12/6" may be a measure.
    date->weak = date->weak && !dot && reader.number(end, 1, kMonths) && !reader.word(join);
    date->first.eitherOrder = false;
    date->last = date->first;
    date->first.day = static_cast<int>(first);
    return date;
}

} // namespace

std::optional<DateMention> readNumericDate(const Reader &reader, std::uint32_t i) {
    if (auto date = readYearFirst(reader, i))
        return date;
    if (auto date = readCompactDate(reader, i))
        return date;
    if (auto date = readDaysOfMonth(reader, i))
        return date;
    return readNumeric(reader, i);
}

} // namespace pindle::conversion
