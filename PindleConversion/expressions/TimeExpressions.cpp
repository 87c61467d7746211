#include <algorithm>

#include "PindleConversion/expressions/BareTimes.h"

namespace pindle::conversion {

namespace {

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

/// " to 15 December" behind a number.
bool isMovedToDay(const Reader &reader, std::uint32_t next) {
    const Sense *to = reader.sense(next, Meaning::RangeTo);
    return to && readCalendarDate(reader, next + to->length);
}

/// "voor een borrel": the word for one is the article of what follows.
bool isArticle(const Reader &reader, std::uint32_t i, std::uint32_t next, const ClockSpec &start) {
    static constexpr Meanings kNamed{Meaning::Event, Meaning::PlaceNoun, Meaning::Number,
                                     Meaning::Measure};
    return start.hour == 1 && !start.sure && !start.minuteGiven && start.meridiem < 0 &&
           next == i + 1 && reader.token(i).kind == TokenKind::Word && !reader.token(i).unspaced &&
           reader.word(next) && (reader.mayHave(next, kNamed) || reader.token(next).word == 0);
}

} // namespace

std::optional<TimeMention> readTime(const Reader &reader, std::uint32_t i, bool marked,
                                    bool afterDate) {
    std::uint32_t next = i;
    const auto start = readClock(reader, i, next);
    if (!start)
        return std::nullopt;
    if (isArticle(reader, i, next, *start))
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
