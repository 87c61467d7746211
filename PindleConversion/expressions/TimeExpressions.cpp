#include <algorithm>

#include "PindleConversion/expressions/Expression.h"

namespace pindle::conversion {

namespace {

bool isDateLike(const Reader &reader, std::uint32_t i) {
    return reader.has(i, Meaning::RelativeDay) || reader.has(i, Meaning::Weekday) ||
           reader.has(i, Meaning::WeakWeekday) || reader.has(i, Meaning::PartOfDay) ||
           reader.has(i, Meaning::Repeated);
}

/// "3 Main St": the number belongs to an address.
bool startsAddress(const Reader &reader, std::uint32_t i) {
    constexpr std::uint32_t kLongestStreet = 4;
    for (std::uint32_t j = i; j < i + kLongestStreet && reader.word(j); ++j)
        if (j > i && reader.has(j, Meaning::StreetWord))
            return true;
    return false;
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

/// What may follow a number that only its place makes a time.
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

/// "in the morning", "tonight" behind the time.
std::uint32_t readPartBehind(const Reader &reader, std::uint32_t i, TimeMention &mention) {
    std::uint32_t j = i;
    const Sense *part = reader.sense(j, Meaning::PartOfDay);
    if (!part) {
        j = reader.skip(reader.skip(j, Meaning::In), Meaning::The);
        part = j != i ? reader.sense(j, Meaning::PartOfDay) : nullptr;
    }
    // "(3 nights)"
    if (!part || (j == i && reader.has(i, Meaning::UnitWord)))
        return i;
    mention.part = static_cast<DayPart>(part->value);
    // "tonight" and "vrijdagavond" also are dates; those are read as such.
    static constexpr Meanings kDays{Meaning::RelativeDay, Meaning::Weekday};
    return reader.mayHave(j, kDays) ? i : j + part->length;
}

void setHalf(ClockSpec &clock, DayPart part) {
    constexpr int kNoon = 12;
    if (clock.meridiem < 0 && clock.hour <= kNoon && clock.hour > 0)
        clock.meridiem = part == DayPart::Morning ? 0 : 1;
}

struct End {
    ClockSpec clock;
    std::uint32_t next = 0;
};

/// "0635 - LIS 0830": the code of the airport before the second time on a ticket.
std::uint32_t skipAirport(const Reader &reader, std::uint32_t i, std::uint32_t range) {
    constexpr std::uint32_t kCode = 3;
    constexpr int kCompact = 4;
    const auto isCompact = [&](std::uint32_t at) {
        const Token *token = reader.at(at);
        return token && token->kind == TokenKind::Number && token->digits == kCompact;
    };
    const Token *code = reader.at(i);
    const bool ticket = code && range > 0 && isCompact(range - 1) && isCompact(i + 1) &&
                        code->kind == TokenKind::Word && code->capital &&
                        code->end - code->begin == kCode;
    return ticket ? i + 1 : i;
}

/// "19MAR 0725 0850": the second time on a ticket stands beside the first, which ends at `i`.
std::optional<End> readTicketEnd(const Reader &reader, std::uint32_t i) {
    constexpr std::uint32_t kFirstYear = 2020;
    constexpr std::uint32_t kLastYear = 2039;
    constexpr int kCompact = 4;
    const Token *token = reader.at(i);
    if (!token || token->kind != TokenKind::Number || token->digits != kCompact ||
        reader.glued(i) || (token->number >= kFirstYear && token->number <= kLastYear))
        return std::nullopt;
    End end;
    const auto clock = readClock(reader, i, end.next);
    if (!clock || !clock->literal)
        return std::nullopt;
    end.clock = *clock;
    return end;
}

/// "ore 21 sala B": a word for hours before the number tells that it is one, whatever follows. Of
/// the small ones only a place may: "ora 2 persone".
bool isNamedHour(const Reader &reader, std::uint32_t i, const ClockSpec &clock,
                 std::uint32_t next) {
    constexpr int kLastOnDial = 12;
    // "at 16 Elm Grove"
    if (!isHourWord(reader, i) || !reader.word(next) || reader.glued(next) ||
        reader.has(next, Meaning::UnitWord) || startsAddress(reader, next))
        return false;
    // "venerdì ore 9 tampone"
    const bool dated = i > 1 && reader.document().tokens[i - 2].used;
    return clock.hour > kLastOnDial || dated || reader.has(next, Meaning::PlaceNoun) ||
           reader.has(next, Meaning::PlaceMarker);
}

std::optional<End> readEnd(const Reader &reader, std::uint32_t i, bool between) {
    const Sense *to = reader.sense(i, Meaning::RangeTo);
    if (!to && between)
        to = reader.sense(i, Meaning::And);
    End end;
    const bool slash = !to && isTimeBehindSlash(reader, i);
    if (!to && !slash)
        return std::nullopt;
    std::uint32_t at =
        slash ? i + 1 : skipAirport(reader, reader.skip(i + to->length, Meaning::The), i);
    // "ore 15 - ore 18"
    if (const std::uint32_t marked = reader.skip(at, Meaning::TimeMarker);
        marked != at && reader.number(marked, 0, 24) && isHourWord(reader, marked))
        at = marked;
    const auto clock = readClock(reader, at, end.next);
    if (!clock)
        return std::nullopt;
    // "2:15 PM – 1601 Harbor Blvd"
    if (reader.token(at).digits > 2 && end.next == at + 1 && startsAddress(reader, end.next))
        return std::nullopt;
    // "dalle 15.00 alle 18.00 nelle aule", "Tues 7-8 astro"
    const bool written =
        (clock->minuteGiven && reader.language(at).clock24 && reader.word(end.next) &&
         !reader.glued(end.next) && !reader.has(end.next, Meaning::UnitWord)) ||
        isNamedHour(reader, at, *clock, end.next) ||
        (reader.has(end.next, Meaning::PlaceNoun) && !reader.glued(end.next) &&
         !reader.token(end.next).unspaced);
    // "19h au 14, rue Basse", but "dalle 20 alle 21, campo 2"
    const bool comma = reader.word(i) && !reader.has(i, Meaning::TimeMarker);
    if (!clock->sure && clock->meridiem < 0 && !written &&
        (!mayFollowBare(reader, end.next, true) ||
         reader.has(comma ? reader.skipSymbol(end.next, ',') : end.next, Meaning::StreetWord)))
        return std::nullopt;
    // "15時から16時に変更"
    const Sense *role =
        reader.token(i).unspaced ? reader.sense(end.next, Meaning::RoleBehind) : nullptr;
    if (role && role->value == static_cast<int>(Role::MovedTo))
        return std::nullopt;
    end.clock = *clock;
    return end;
}

/// "between 5", "entre las 5".
const Sense *rangeWordBefore(const Reader &reader, std::uint32_t i) {
    const std::uint32_t at = i > 1 && reader.has(i - 1, Meaning::The) ? i - 1 : i;
    return at > 0 ? reader.sense(at - 1, Meaning::RangeFrom) : nullptr;
}

/// "between 5" without its other end is no time.
bool lacksEnd(const Reader &reader, std::uint32_t i, const TimeMention &mention) {
    const Sense *from = rangeWordBefore(reader, i);
    return from && from->value == 1 && !mention.end && !mention.start.sure;
}

/// ", 10 to 2" beside a date: the comma stands for "from".
bool isListedRange(const Reader &reader, std::uint32_t i, std::uint32_t next) {
    // "ogni giorno 9.30-15"
    constexpr std::uint32_t kLongestDaily = 3;
    if (reader.senseBefore(i, Meaning::Daily, kLongestDaily))
        return true;
    if (i == 0 || !reader.symbol(i - 1, ',') || reader.word(next))
        return false;
    // "6-4, 3-6, 7-5" are results of games.
    const bool listBehind = reader.symbol(next, ',') && reader.number(next + 1, 0, 999, 3);
    const bool listBefore = i > 2 && reader.number(i - 2, 0, 999, 3) &&
                            (reader.symbol(i - 3, '-') || reader.symbol(i - 3, ':'));
    return !listBehind && !listBefore;
}

/// "2026-08-06T14:05": the T, and an offset glued to the time.
bool isTimestamp(const Reader &reader, std::uint32_t i) {
    // "T5" is a terminal.
    if (i < 2 || !reader.glued(i) || !reader.glued(i - 1) ||
        reader.document().tokens[i - 2].kind != TokenKind::Number)
        return false;
    const auto before = reader.document().slice(reader.document().tokens[i - 1]);
    return before == "T" || before == "t";
}

std::uint32_t readStampZone(const Reader &reader, std::uint32_t i, TimeMention &mention) {
    const bool sign = reader.symbol(i, '-') || reader.symbol(i, '+');
    if (!sign || !reader.number(i + 1, 0, 14) || !reader.symbol(i + 2, ':') ||
        !reader.number(i + 3, 0, 59))
        return i;
    const int minutes =
        static_cast<int>(reader.token(i + 1).number * 60 + reader.token(i + 3).number);
    mention.hasOffset = true;
    mention.offsetMinutes = reader.symbol(i, '-') ? -minutes : minutes;
    mention.zoneSpan = {i, i + 4};
    return i + 4;
}

/// "2-1": from two to one it would be late.
bool mayBeScore(const ClockSpec &start, const ClockSpec &end) {
    constexpr int kHalfDay = 12;
    constexpr int kLongest = 9; ///< hours
    return !start.minuteGiven && !end.minuteGiven && start.hour < kLongest &&
           start.hour > end.hour && end.hour + kHalfDay - start.hour > kLongest;
}

/// "Rate us from 1 to 5", "on a scale of 1 to 10": marks that are given.
bool isScale(const Reader &reader, std::uint32_t i, const TimeMention &mention) {
    constexpr std::uint32_t kReach = 6;
    const ClockSpec &start = mention.start;
    if (!mention.end || start.hour > 1 || start.minuteGiven || start.meridiem >= 0 || start.sure ||
        mention.end->minuteGiven || mention.end->meridiem >= 0 || mention.end->sure)
        return false;
    for (std::uint32_t k = i; k > 0 && i - k < kReach && reader.document().sameSentence(k - 1, i);
         --k)
        if (reader.has(k - 1, Meaning::Numbered))
            return true;
    return false;
}

/// "the 0722 from Leeds", "the 7.40 to Hull": a train by its time.
bool namesDeparture(const Reader &reader, std::uint32_t i, std::uint32_t next,
                    const ClockSpec &start) {
    const Token *name = reader.at(next + 1);
    // "0914 from Leeds"
    const bool compact = start.literal && reader.token(i).digits == 4 && next == i + 1 &&
                         reader.has(next, Meaning::RangeFrom);
    return start.minuteGiven && i > 0 && (compact || reader.has(i - 1, Meaning::The)) &&
           (reader.has(next, Meaning::RangeFrom) || reader.has(next, Meaning::RangeTo)) &&
           reader.word(next) && name && name->kind == TokenKind::Word && name->capital &&
           !reader.language(i).capitalNouns;
}

/// "Dinner with the Hills, 8 on Friday"
bool isBeforeDay(const Reader &reader, std::uint32_t i, std::uint32_t next,
                 const ClockSpec &start) {
    return start.hour > 0 && start.hour <= 12 && i > 0 && reader.symbol(i - 1, ',') &&
           !reader.glued(i) && reader.word(next) && reader.has(next, Meaning::DateMarker) &&
           readDate(reader, reader.skip(next, Meaning::DateMarker));
}

/// "at Judith's, 7.45. We read ...": the sentence ends at token `i`.
bool endsSentence(const Reader &reader, std::uint32_t i) {
    const Token *next = reader.at(i + 1);
    return reader.symbol(i, '.') && !reader.glued(i + 1) && next &&
           next->sentence != reader.token(i).sentence;
}

/// "5.7. ◆ 17 h": behind a day so late an hour is none that is counted.
bool isHourBehindDay(const Reader &reader, std::uint32_t next, const ClockSpec &start) {
    constexpr int kLongestTold = 6;
    return start.hour > kLongestTold && !start.sure && start.meridiem < 0 && !start.minuteGiven &&
           reader.has(next, Meaning::HourMark) && reader.language(next).clock24;
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

/// " to 15 December" behind a number.
bool isMovedToDay(const Reader &reader, std::uint32_t next) {
    const Sense *to = reader.sense(next, Meaning::RangeTo);
    return to && readCalendarDate(reader, next + to->length);
}

bool isAccepted(const Reader &reader, const TimeMention &mention, std::uint32_t next, bool marked,
                bool afterDate) {
    const ClockSpec &start = mention.start;
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
    if (start.literal && start.minuteGiven && start.minute % 5 == 0 && start.hour < 10 &&
        next > 0 && reader.token(next - 1).digits == 4 && reader.mayHave(next, kWeekdayNames))
        return true;
    // "egg hunt 10 sharp!"
    if (const Sense *exact = reader.sense(next, Meaning::Approximate);
        exact && exact->value == 0 && exact->length == 1 && start.hour > 0 && start.hour <= 12 &&
        !reader.glued(next) && !reader.word(next + 1))
        return true;
    // "scan 10.40 thurs"
    if (start.minuteGiven && start.minute % 5 == 0 && reader.has(next, Meaning::Weekday) &&
        !reader.glued(next) && reader.language(next).clock24 == false)
        return true;
    // "lab work 3/11 7a fasting"
    if (afterDate && start.meridiem >= 0)
        return true;
    // "ore 8.30 capannone C": minutes leave little doubt behind a word that announces a time.
    // "eye test 1.40 on the 18th"
    if (start.minuteGiven && start.minute % 5 == 0 && reader.has(next, Meaning::DateMarker) &&
        readDate(reader, reader.skip(next, Meaning::DateMarker)))
        return true;
    // "07.09. 15.30 wg. Vertrag", "11.12.25 19.00 scout hut"
    if (afterDate && start.minuteGiven && start.minute % 5 == 0 && reader.word(next) &&
        !reader.glued(next) && !reader.has(next, Meaning::UnitWord) &&
        (start.clock24 || !reader.has(next, Meaning::Measure)))
        return true;
    // "the 12.30 ceremony"
    if (start.minuteGiven && start.minute % 5 == 0 && reader.has(next, Meaning::Event) &&
        !reader.glued(next))
        return true;
    // "10.30 start", "5.45 finish"
    if (start.minuteGiven && start.minute % 5 == 0 && reader.word(next) && !reader.glued(next) &&
        reader.has(next, Meaning::RoleWord) && reader.has(next, Meaning::TimeMarker))
        return true;
    // "12.45 at Bao House"
    if (const Sense *at = reader.sense(next, Meaning::PlaceMarker);
        at && at->value == 1 && start.minuteGiven && start.minute % 5 == 0 && !reader.glued(next)) {
        const Token *name = reader.at(next + at->length);
        if (name && name->kind == TokenKind::Word &&
            (name->capital || reader.has(next + at->length, Meaning::The)))
            return true;
    }
    const bool written = marked && start.minuteGiven && reader.word(next) && !reader.glued(next) &&
                         !reader.has(next, Meaning::UnitWord) && reader.language(next).clock24;
    return written || ((marked || afterDate) && mayFollowBare(reader, next, marked)) ||
           (marked && isHourBehindMarker(reader, next, start));
}

} // namespace

std::optional<TimeMention> readTime(const Reader &reader, std::uint32_t i, bool marked,
                                    bool afterDate) {
    std::uint32_t next = i;
    const auto start = readClock(reader, i, next);
    if (!start)
        return std::nullopt;
    TimeMention mention;
    mention.start = *start;
    mention.start.clock24 = reader.language(i).clock24;
    mention.marked = marked;
    // "QX7T2M" is a code.
    const bool stamp = start->minuteGiven && isTimestamp(reader, i);
    // "北京首都T3 — 09:45": the number of a terminal.
    if (!stamp && !start->sure && !start->minuteGiven && start->meridiem < 0 && i > 0 &&
        reader.glued(i) && reader.word(i - 1) && !reader.token(i - 1).unspaced)
        return std::nullopt;
    if (stamp) {
        mention.start.sure = true;
        next = readStampZone(reader, next, mention);
    }
    // "2 March 0820"
    if (afterDate && start->literal && reader.token(i).digits == 4)
        mention.start.sure = true;
    if (afterDate && isHourBehindDay(reader, next, mention.start)) {
        mention.start.sure = mention.start.literal = true;
        next = reader.skip(next, Meaning::HourMark);
    }
    const bool namesZone = !start->sure && reader.has(next, Meaning::ZoneAfterTime) &&
                           reader.token(next).capital && !reader.glued(next);
    // Timetables count hours to 24.
    const bool departs = namesDeparture(reader, i, next, *start);
    mention.start.literal = mention.start.literal || departs;
    mention.start.sure =
        mention.start.sure || namesZone || departs || isNamedHour(reader, i, mention.start, next);
    const bool sure = mention.start.sure || marked || afterDate || stamp;
    std::uint32_t zoned = sure ? readZone(reader, next, true, mention) : next;
    zoned = readPartBehind(reader, zoned, mention);
    const bool moved = isMovedFrom(reader, i);
    // "extended from 1 to 15 December"
    if (moved && !mention.start.sure && isMovedToDay(reader, next))
        return std::nullopt;
    if (const auto end =
            moved ? std::nullopt : readEnd(reader, zoned, rangeWordBefore(reader, i) != nullptr);
        end) {
        const DayPart first = mention.part;
        mention.end = end->clock;
        next = end->next;
        zoned = readZone(reader, next, true, mention);
        mention.part = DayPart::None;
        zoned = readPartBehind(reader, zoned, mention);
        // "9 in the evening till 6 in the morning": each end has its own half of the day.
        if (first != DayPart::None && mention.part != DayPart::None) {
            setHalf(mention.start, first);
            setHalf(*mention.end, mention.part);
        }
        mention.part = first != DayPart::None ? first : mention.part;
    } else if (const auto arrival = afterDate && start->literal && reader.token(i).digits == 4
                                        ? readTicketEnd(reader, zoned)
                                        : std::nullopt) {
        mention.end = arrival->clock;
        next = zoned = arrival->next;
    }
    // "10時から11時まで": the word behind the end belongs to the range.
    if (const Sense *until = mention.end ? reader.sense(zoned, Meaning::RoleBehind) : nullptr)
        zoned += until->length;
    // "Sunday roast, mine, 1.30", "v Hollyfield (A) 9.45": only a time is written so at the end of
    // a list.
    const bool last = start->minuteGiven && !start->sure && start->hour <= 12 &&
                      start->minute % 5 == 0 && i > 0 &&
                      (reader.symbol(i - 1, ',') || reader.symbol(i - 1, ')')) &&
                      (!reader.at(zoned) || endsSentence(reader, zoned));
    // "..., 19.45 verzamelen": so are hours past twelve where they are counted on.
    const bool late =
        start->minuteGiven && start->literal && start->hour > 12 && start->minute % 5 == 0 &&
        (mention.start.clock24 || reader.language(i).dayOrder == DayOrder::DayFirst) && i > 0 &&
        reader.symbol(i - 1, ',') &&
        (reader.has(zoned, Meaning::Connector) || reader.has(zoned, Meaning::PlaceMarker) ||
         (reader.token(i).digits == 2 && // "Rua Augusta, 1500, São Paulo"
          (reader.symbol(zoned, ',') || (reader.word(zoned) && reader.token(zoned).upper()))));
    mention.start.sure =
        mention.start.sure || last || late || isBeforeDay(reader, i, zoned, *start);
    const bool listed = mention.end && isListedRange(reader, i, zoned);
    if (lacksEnd(reader, i, mention) || isScale(reader, i, mention) ||
        !isAccepted(reader, mention, zoned, marked, afterDate || listed))
        return std::nullopt;
    // "24h à l'avance" counts hours, "14 Uhr mit dem Hund" does not.
    const Sense *length = start->hourWord && reader.has(next - 1, Meaning::UnitWord)
                              ? reader.sense(next, Meaning::NoDuration)
                              : nullptr;
    if (length && !mention.end && !start->minuteGiven && (length->length > 1 || start->hour == 24))
        return std::nullopt;
    mention.span = {stamp ? i - 1 : i, zoned};
    return mention;
}

} // namespace pindle::conversion
