#include "PindleConversion/expressions/BareTimes.h"

#include <algorithm>

namespace pindle::conversion {

namespace {

bool isDateLike(const Reader &reader, std::uint32_t i) {
    return reader.has(i, Meaning::RelativeDay) || reader.has(i, Meaning::Weekday) ||
           reader.has(i, Meaning::WeakWeekday) || reader.has(i, Meaning::PartOfDay) ||
           reader.has(i, Meaning::Repeated);
}

/// "BON POUR 2 ENTRÉES": where all is in capitals, they tell no name.
bool isShouted(const Reader &reader, std::uint32_t i) {
    constexpr std::size_t kShortest = 4;
    constexpr std::uint32_t kBefore = 2;
    const auto inCapitals = [&](std::uint32_t at) {
        const auto word = reader.document().slice(reader.token(at));
        return word.size() >= kShortest &&
               std::none_of(word.begin(), word.end(), [](char c) { return c >= 'a' && c <= 'z'; });
    };
    return i >= kBefore && reader.word(i - kBefore) && inCapitals(i) && inCapitals(i - kBefore) &&
           !reader.has(i, Meaning::PlaceNoun) && !reader.has(i, Meaning::StreetWord);
}

/// "20.00 *** community centre": a row of stars parts what stands beside it.
bool isStarred(const Reader &reader, std::uint32_t i) {
    return !reader.glued(i) && reader.symbol(i + 1, '*') && reader.glued(i + 1);
}

/// "Three Trains", "at Five Arches": a number word in a name.
bool isInName(const Reader &reader, std::uint32_t i) {
    const Token &number = reader.document().tokens[i - 1];
    const auto word = reader.document().slice(number);
    return number.kind == TokenKind::Word && number.upper() && reader.token(i).upper() &&
           word.back() >= 'a' && word.back() <= 'z';
}

/// "2-1": from two to one it would be late.
bool mayBeScore(const ClockSpec &start, const ClockSpec &end) {
    constexpr int kHalfDay = 12;
    constexpr int kLongest = 9; ///< hours
    return !start.minuteGiven && !end.minuteGiven && start.hour < kLongest &&
           start.hour > end.hour && end.hour + kHalfDay - start.hour > kLongest;
}

/// "venerdì 9 aprile alle 17 tramite il portale": behind a day and a word that announces a time, no
/// other number stands where hours are counted on.
bool isHourBehindMarker(const Reader &reader, std::uint32_t next, const ClockSpec &start) {
    constexpr int kEarly = 6;
    constexpr std::uint32_t kLongest = 2; ///< the announcing words
    if (start.hour <= kEarly || !start.clock24 || !reader.word(next) || reader.glued(next) ||
        reader.token(next).capital)
        return false;
    static constexpr Meanings kCounted{Meaning::UnitWord, Meaning::Measure, Meaning::Month,
                                       Meaning::Counter, Meaning::Number};
    const std::uint32_t number = next - 1;
    if (reader.mayHave(next, kCounted) || number <= kLongest + 1)
        return false;
    const Sense *marker = reader.senseBefore(number, Meaning::TimeMarker, kLongest);
    return marker && reader.document().tokens[number - marker->length - 1].used;
}

} // namespace

bool startsAddress(const Reader &reader, std::uint32_t i) {
    constexpr std::uint32_t kLongestStreet = 4;
    for (std::uint32_t j = i; j < i + kLongestStreet && reader.word(j); ++j)
        if (j > i && reader.has(j, Meaning::StreetWord))
            return true;
    return false;
}

bool mayFollowBare(const Reader &reader, std::uint32_t i, bool marked) {
    const Token *token = reader.at(i);
    if (!token)
        return true;
    // "2.º": an ordinal, or the number of a paragraph.
    if (token->symbol == '.' && reader.glued(i) && reader.word(i + 1) && reader.glued(i + 1))
        return false;
    // "12,50" is an amount.
    if (token->symbol == ',' && reader.glued(i) && reader.glued(i + 1) && reader.at(i + 1) &&
        reader.token(i + 1).kind == TokenKind::Number)
        return false;
    if (token->kind == TokenKind::Symbol)
        return !(reader.glued(i) &&
                 (token->symbol == '-' || token->symbol == '/' || token->symbol == '%' ||
                  token->symbol == '+' || token->symbol == '\'' || token->symbol == '"' ||
                  token->symbol == '=' || token->symbol == '_')) &&
               (token->symbol != '*' || isStarred(reader, i)) && token->symbol != '=';
    if (token->kind == TokenKind::Link)
        return true;
    // "3/6 17-22 3/7 10-15"
    if (token->kind == TokenKind::Number && token->spaceBefore && reader.symbol(i + 1, '/'))
        return readCalendarDate(reader, i).has_value();
    if (token->kind != TokenKind::Word || reader.glued(i))
        return false;
    if (reader.has(i, Meaning::UnitWord) || reader.has(i, Meaning::Month) ||
        reader.has(i, Meaning::Measure))
        return false;
    if (isDateLike(reader, i) || reader.has(i, Meaning::TimeMarker) ||
        reader.has(i, Meaning::ZoneAfterTime) || reader.has(i, Meaning::Zone))
        return true;
    if (isInName(reader, i))
        return false;
    if (reader.has(i, Meaning::Connector) || reader.has(i, Meaning::Event) ||
        (marked && reader.has(i, Meaning::Person)))
        return true;
    if (marked && reader.has(i, Meaning::PresentVerb))
        return true;
    return marked && token->capital && !startsAddress(reader, i) && !isShouted(reader, i);
}

bool isAccepted(const Reader &reader, const TimeMention &mention, std::uint32_t next, bool marked,
                bool afterDate) {
    const ClockSpec &start = mention.start;
    const bool round = start.minuteGiven && start.minute % 5 == 0;
    if (start.sure || (mention.end && mention.end->sure))
        return true;
    if (mention.end && mayBeScore(start, *mention.end))
        return false;
    // "volunteers needed 9-12 Saturday", "happy hour 5 til 7 every Friday"
    if (mention.end &&
        (reader.has(next, Meaning::Weekday) || reader.has(next, Meaning::RelativeDay) ||
         reader.has(next, Meaning::Repeated)))
        return true;
    if (mention.end)
        return marked || afterDate || (start.minuteGiven && mention.end->minuteGiven);
    if (mention.part != DayPart::None)
        return true;
    if (isDateLike(reader, next) && reader.has(next, Meaning::RelativeDay))
        return true;
    // "Blood test 0840 Thu 18/3"
    if (start.literal && round && start.hour < 10 && next > 0 &&
        reader.token(next - 1).digits == 4 && reader.mayHave(next, kWeekdayNames))
        return true;
    // "egg hunt 10 sharp!", "DJ set 10 til late, ..."
    if (const Sense *exact = reader.sense(next, Meaning::Approximate);
        exact && exact->value == 0 && start.hour > 0 && start.hour <= 12 && !reader.glued(next) &&
        !reader.has(next, Meaning::Or) && !reader.word(next + exact->length))
        return true;
    // "scan is 10.40 Mon, can you come?", "scan 10.40 thurs"
    if (round && !reader.glued(next) &&
        ((reader.mayHave(next, kWeekdayNames) && reader.token(next).upper()) ||
         (reader.has(next, Meaning::Weekday) && !reader.language(next).clock24)))
        return true;
    // "leaves the pier 9.30 sat morning", "swim meet at the baths 9.30 sat"
    if (round && reader.has(next, Meaning::WeakWeekday) && !reader.glued(next) &&
        !reader.language(next).clock24 &&
        (reader.has(next + 1, Meaning::PartOfDay) || !reader.word(next + 1)))
        return true;
    // "lab work 3/11 7a fasting"
    if (afterDate && start.meridiem >= 0)
        return true;
    // "eye test 1.40 on the 18th"
    if (round && reader.has(next, Meaning::DateMarker) &&
        readDate(reader, reader.skip(next, Meaning::DateMarker)))
        return true;
    // "07.09. 15.30 wg. Vertrag", "11.12.25 19.00 scout hut"
    if (afterDate && round && reader.word(next) && !reader.glued(next) &&
        !reader.has(next, Meaning::UnitWord) &&
        (start.clock24 || !reader.has(next, Meaning::Measure)))
        return true;
    // "the 12.30 ceremony"
    if (round && reader.has(next, Meaning::Event) && !reader.glued(next))
        return true;
    // "10.30 start", "5.45 finish"
    if (round && reader.word(next) && !reader.glued(next) && reader.has(next, Meaning::RoleWord) &&
        reader.has(next, Meaning::TimeMarker))
        return true;
    // "12.45 at Bao House"
    if (const Sense *at = reader.sense(next, Meaning::PlaceMarker);
        at && at->value == 1 && round && !reader.glued(next)) {
        const Token *name = reader.at(next + at->length);
        if (name && name->kind == TokenKind::Word &&
            (name->capital || reader.has(next + at->length, Meaning::The)))
            return true;
    }
    // "29 points from 18 games"
    constexpr int kDial = 12;
    if (start.hour > kDial && !start.minuteGiven && !start.clock24 && !mention.end &&
        reader.has(next, Meaning::Event) && !reader.glued(next))
        return false;
    // "ore 8.30 capannone C": minutes leave little doubt behind a word that announces a time.
    const bool written = marked && start.minuteGiven && reader.word(next) && !reader.glued(next) &&
                         !reader.has(next, Meaning::UnitWord) && reader.language(next).clock24;
    return written || ((marked || afterDate) && mayFollowBare(reader, next, marked)) ||
           (marked && isHourBehindMarker(reader, next, start));
}

} // namespace pindle::conversion
