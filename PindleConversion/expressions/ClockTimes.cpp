#include <algorithm>

#include "PindleConversion/expressions/Expression.h"
#include "PindleConversion/expressions/Starts.h"

namespace pindle::conversion {

namespace {

constexpr std::uint32_t kSecondsAnnounced = 30; ///< an appointment is at such seconds at most
constexpr int kNoon = 12;
constexpr std::uint32_t kFirstYearLike = 1900;
constexpr std::uint32_t kLastYearLike = 2100;

/// "1930", "0900": four digits behind a word that announces a time, or before "hrs", "pm".
std::optional<ClockSpec> readCompact(const Reader &reader, std::uint32_t i, std::uint32_t &next) {
    const Token *token = reader.at(i);
    if (!token || token->kind != TokenKind::Number)
        return std::nullopt;
    // "T140500": the seconds go.
    const bool seconds = token->digits == 6 && i > 0 && reader.glued(i);
    if (!seconds && (token->digits < 3 || token->digits > 4))
        return std::nullopt;
    const std::uint32_t number = seconds ? token->number / 100 : token->number;
    ClockSpec clock;
    clock.hour = static_cast<int>(number / 100);
    clock.minute = static_cast<int>(number % 100);
    clock.minuteGiven = true;
    if (clock.hour > 23 || clock.minute > 59)
        return std::nullopt;
    next = readMeridiem(reader, i + 1, clock);
    if (next == i + 1 && token->digits == 3)
        return std::nullopt;
    if (const Sense *mark = next == i + 1 ? reader.sense(next, Meaning::HourMark) : nullptr) {
        clock.sure = clock.literal = true;
        next += mark->length;
    }
    clock.literal = clock.literal || (clock.meridiem < 0 && token->digits != 3);
    const bool yearLike =
        token->number >= kFirstYearLike && token->number <= kLastYearLike && token->number % 5 != 0;
    if (!clock.sure && (yearLike || reader.has(next, Meaning::Counter)))
        return std::nullopt;
    return clock;
}

/// A phrase that announces a time ends right before token `i`: "a las".
bool isBehindTimeMarker(const Reader &reader, std::uint32_t i) {
    constexpr std::uint32_t kLongest = 3;
    return reader.senseBefore(i, Meaning::TimeMarker, kLongest) != nullptr;
}

/// "ore 18,30", "alle 18,30 in sala": the comma parts hour and minutes where a word announces a
/// time and no amount can be meant. `i` is the comma.
bool isCommaTime(const Reader &reader, std::uint32_t i) {
    constexpr std::uint32_t kQuarter = 15;
    if (!reader.symbol(i, ',') || i == 0 || reader.language(i).dayOrder != DayOrder::DayFirst)
        return false;
    const std::uint32_t next = i + 2;
    constexpr std::uint32_t kLongestTold = 6; ///< hours; "1,25 h" is a length
    if (reader.has(next, Meaning::HourMark) && reader.token(i - 1).number > kLongestTold)
        return true;
    const Field &field = reader.document().fields[reader.token(i - 1).field];
    if (field.label == Label::Time && field.begin == i - 1)
        return true;
    if (!isBehindTimeMarker(reader, i - 1))
        return false;
    if (isHourWord(reader, i - 1))
        return true;
    const Token *behind = reader.at(next);
    const bool ends = !behind || behind->kind == TokenKind::LineBreak ||
                      ((behind->symbol == ',' || behind->symbol == '.') &&
                       behind->spaceBefore == false && !reader.glued(next + 1)) ||
                      (behind->symbol == '-' && behind->spaceBefore && !reader.glued(next + 1));
    const bool goesOn =
        reader.word(next) && !reader.glued(next) &&
        (reader.has(next, Meaning::PlaceMarker) || reader.has(next, Meaning::PartOfDay) ||
         reader.has(next, Meaning::RelativeDay) || reader.has(next, Meaning::RangeTo) ||
         reader.has(next, Meaning::StreetWord) || reader.has(next, Meaning::PlaceNoun));
    // "alle 6,25" tells more than "a 6,25".
    constexpr std::uint32_t kFive = 5;
    constexpr std::uint32_t kPlainMarker = 3; ///< bytes
    const Token &marker = reader.token(i - 2);
    const std::uint32_t step = marker.end - marker.begin > kPlainMarker ? kFive : kQuarter;
    return reader.token(i + 1).number % step == 0 && (ends || goesOn);
}

/// "09 : 20 am": spaces around the colon; without "am" it may be a score.
bool readSpacedMinutes(const Reader &reader, std::uint32_t &i, ClockSpec &clock) {
    constexpr std::uint32_t kStep = 5;
    const bool half = reader.has(i + 2, Meaning::Meridiem);
    const bool round = reader.token(i - 1).digits == 2 || reader.token(i + 1).number % kStep == 0;
    if (!reader.symbol(i, ':') || !(half || (!reader.glued(i) && !reader.glued(i + 1) && round)))
        return false;
    clock.minute = static_cast<int>(reader.token(i + 1).number);
    clock.minuteGiven = true;
    clock.sure = half;
    i += 2;
    return true;
}

/// The minutes behind the hour: ":30", ".30", "h30"; `i` is behind them then.
bool readMinutes(const Reader &reader, std::uint32_t &i, ClockSpec &clock) {
    const Token *minutes = reader.at(i + 1);
    if (!minutes || minutes->kind != TokenKind::Number || minutes->digits != 2 ||
        minutes->number > 59)
        return false;
    if (!reader.glued(i) || !reader.glued(i + 1))
        return readSpacedMinutes(reader, i, clock);
    const bool comma = isCommaTime(reader, i);
    const bool colon = reader.symbol(i, ':') || comma;
    const bool hour = reader.has(i, Meaning::HourMark);
    if (!colon && !hour && !reader.symbol(i, '.'))
        return false;
    clock.minute = static_cast<int>(minutes->number);
    clock.minuteGiven = true;
    clock.sure = colon || hour;
    i = hour ? reader.skip(i + 2, Meaning::MinuteMark) : i + 2;
    return true;
}

/// ":00" and fractions behind the minutes.
std::uint32_t skipSeconds(const Reader &reader, std::uint32_t i) {
    if (!reader.symbol(i, ':') || !reader.number(i + 1, 0, 59) || !reader.glued(i) ||
        !reader.glued(i + 1))
        return i;
    i += 2;
    if (reader.symbol(i, '.') && reader.glued(i) && reader.number(i + 1, 0, 999999, 6))
        i += 2;
    return i;
}

/// Money, shares, versions and parts of longer numbers are no times.
bool spoiled(const Reader &reader, std::uint32_t begin, std::uint32_t next) {
    if (begin > 0) {
        const Token &before = reader.document().tokens[begin - 1];
        const bool close = before.end == reader.token(begin).begin;
        if (before.kind == TokenKind::Symbol &&
            (before.symbol == '$' || before.symbol == U'€' || before.symbol == U'£' ||
             before.symbol == U'¥' || before.symbol == '#' || (close && before.symbol == '.') ||
             (close && before.symbol == ':' && begin > 1 &&
              reader.document().tokens[begin - 2].kind == TokenKind::Number)))
            return true;
        if (before.unspaced)
            return false;
        // "h17:00"
        if (close && before.end - before.begin == 1 && isHourWord(reader, begin))
            return false;
        if (close && before.kind == TokenKind::Word && !reader.document().tokens[begin - 1].capital)
            return true;
        if (close && before.kind == TokenKind::Word && before.end - before.begin > 1)
            return true;
    }
    if (isTimeBehindSlash(reader, next))
        return false;
    // "7pm £5": the sign belongs to the amount behind it.
    const bool price = !reader.symbol(next, '%') && !reader.symbol(next, '/') &&
                       !reader.glued(next) && reader.glued(next + 1) &&
                       reader.number(next + 1, 0, 999999, 6);
    if (!price &&
        (reader.symbol(next, '%') || reader.symbol(next, '$') || reader.symbol(next, U'€') ||
         reader.symbol(next, U'£') || reader.symbol(next, '/')))
        // "13:00-16:30／理由" goes on with another thing.
        return !(reader.symbol(next, '/') &&
                 (reader.token(next).spaceBefore ||
                  (next > begin + 1 && !reader.number(next + 1, 0, 999999, 6))));
    // "4,377" is an amount, "24,95" as well where the comma is the decimal mark; "9時、2階" is
    // none.
    if (next == begin + 1 && reader.symbol(next, ',') && reader.glued(next) &&
        reader.glued(next + 1) && reader.number(next + 1, 0, 999, 3) &&
        (reader.token(next + 1).digits == 3 || reader.language(begin).clock24))
        return true;
    const bool more = (reader.symbol(next, '.') || reader.symbol(next, ':')) &&
                      reader.glued(next) && reader.glued(next + 1) &&
                      reader.number(next + 1, 0, 99999999, 99);
    return more;
}

} // namespace

bool isHourWord(const Reader &reader, std::uint32_t i) {
    if (i == 0 || !reader.has(i - 1, Meaning::TimeMarker))
        return false;
    const Sense *unit = reader.sense(i - 1, Meaning::UnitWord);
    const Sense *label = reader.sense(i - 1, Meaning::LabelWord);
    const bool hours = (unit && unit->value == static_cast<int>(Unit::Hour)) ||
                       (label && label->value == static_cast<int>(Label::Time));
    const bool counted = i > 1 && reader.document().tokens[i - 2].kind == TokenKind::Number &&
                         !reader.document().tokens[i - 2].used;
    return hours && !counted && reader.word(i - 1);
}

bool hasDottedMinutes(const Reader &reader, std::uint32_t i) {
    return reader.symbol(i + 1, '.') && reader.glued(i + 1) && reader.glued(i + 2) &&
           reader.number(i + 2, 0, 59) && reader.token(i + 2).digits == 2;
}

bool isDottedTime(const Reader &reader, std::uint32_t i) {
    return reader.number(i, 1, 12) && hasDottedMinutes(reader, i) &&
           reader.token(i + 2).number % 5 == 0;
}

std::uint32_t skipDayHours(const Reader &reader, std::uint32_t i) {
    constexpr std::uint32_t kEarliest = 8;
    constexpr std::uint32_t kDial = 12;
    constexpr std::uint32_t kLongest = 8; ///< hours
    if (!reader.number(i, kEarliest, kDial) || !reader.symbol(i + 1, '-') ||
        !reader.number(i + 2, 1, kDial) || !reader.glued(i + 1) || !reader.glued(i + 2))
        return i;
    const std::uint32_t next = isDottedTime(reader, i + 2) ? i + 5 : i + 3;
    if (reader.glued(next) && !reader.symbol(next, ',') && !reader.symbol(next, '.'))
        return i;
    const std::uint32_t hours =
        (reader.token(i + 2).number + kDial - reader.token(i).number) % kDial;
    return hours > 0 && hours <= kLongest ? next : i;
}

bool isTimeBehindSlash(const Reader &reader, std::uint32_t i) {
    return reader.symbol(i, '/') && reader.glued(i) && reader.glued(i + 1) &&
           reader.number(i + 1, 0, 24) && reader.glued(i + 2) && reader.number(i + 3, 0, 59) &&
           (reader.symbol(i + 2, ':') || reader.symbol(i + 2, '.') ||
            reader.has(i + 2, Meaning::HourMark));
}

namespace {

/// Behind "Uhr", "時": minutes may follow, and the hour is one for sure.
std::uint32_t readHourWord(const Reader &reader, std::uint32_t i, ClockSpec &clock,
                           bool minutesRead) {
    clock.sure = true;
    clock.hourWord = true;
    clock.literal = clock.literal || minutesRead;
    if (minutesRead || !reader.number(i, 0, 59))
        return i;
    const Sense *mark = reader.sense(i + 1, Meaning::MinuteMark);
    // "10 h 40." ends a sentence.
    const bool longer = (reader.symbol(i + 1, '.') || reader.symbol(i + 1, ':')) &&
                        reader.glued(i + 2) && reader.number(i + 2, 0, 9999, 4);
    const bool bare = reader.token(i).digits == 2 && !longer &&
                      !reader.has(i + 1, Meaning::Month) && !reader.has(i + 1, Meaning::HourMark);
    if (!mark && !(bare && !reader.token(i).unspaced))
        return i;
    clock.minute = static_cast<int>(reader.token(i).number);
    clock.minuteGiven = true;
    return i + 1 + (mark ? mark->length : 0U);
}

/// "às 15 horas", but not "curso de 15 horas": the word for hours tells a time only there.
bool isAnnounced(const Reader &reader, std::uint32_t i) {
    return i > 0 && (reader.has(i - 1, Meaning::TimeMarker) || reader.has(i - 1, Meaning::RangeTo));
}

/// "25:30", "26時": hours go on past midnight where programmes and opening hours are written so.
bool isLateHour(const Reader &reader, std::uint32_t i) {
    constexpr std::uint32_t kLastLate = 29;
    const Sense *mark = reader.sense(i + 1, Meaning::HourMark);
    const bool minutes = reader.symbol(i + 1, ':') && reader.number(i + 2, 0, 59);
    return reader.number(i, 24, kLastLate) && reader.language(i).script == Script::Japanese &&
           ((mark && mark->value == 1) || minutes);
}

/// "14:40 heure de Paris", "a las 9 hora Colombia": the word for hours belongs to the zone.
bool leadsToZone(const Reader &reader, std::uint32_t i, bool minutes) {
    static constexpr Meanings kZones{Meaning::Zone, Meaning::ZoneWord};
    TimeMention zone;
    return reader.mayHave(i, kZones) &&
           ((minutes && reader.has(i, Meaning::ZoneWord)) || readZone(reader, i, true, zone) != i);
}

std::optional<ClockSpec> readDigits(const Reader &reader, std::uint32_t i, std::uint32_t &next) {
    const bool late = isLateHour(reader, i);
    if (!late && !reader.number(i, 0, 24))
        return readCompact(reader, i, next);
    const Token &token = reader.token(i);
    ClockSpec clock;
    clock.hour = static_cast<int>(token.number);
    std::uint32_t j = i + 1;
    const bool minutes = readMinutes(reader, j, clock);
    const std::uint32_t seconds = minutes ? skipSeconds(reader, j) : j;
    clock.seconds = seconds != j && reader.token(j + 1).number % kSecondsAnnounced != 0;
    j = readMeridiem(reader, seconds, clock);
    const bool zone = leadsToZone(reader, j, minutes);
    const Sense *mark = clock.meridiem < 0 && !zone ? reader.sense(j, Meaning::HourMark) : nullptr;
    if (mark && mark->value == 1) {
        j = readHourWord(reader, j + mark->length, clock, minutes);
    } else if (mark && mark->value == 2 && isAnnounced(reader, i)) {
        clock.sure = clock.hourWord = true;
        j += mark->length;
    } else if (mark && minutes) {
        clock.literal = clock.sure = true;
        j += mark->length;
    } else if (mark && (clock.hour > 4 || (isAnnounced(reader, i) && reader.glued(j))) &&
               (reader.glued(j) || (reader.language(i).clock24 && isBehindTimeMarker(reader, i)))) {
        clock.sure = true;
        clock.literal = clock.literal || clock.hour > 4;
        j += mark->length;
    }
    j = readMinutesBehind(reader, j, clock);
    j = readClockTail(reader, j, clock);
    if (spoiled(reader, i, j))
        return std::nullopt;
    if (clock.hour == 24 && clock.minute != 0 && !late)
        return std::nullopt;
    if (reader.has(j, Meaning::Counter) && !clock.sure)
        return std::nullopt;
    if (clock.meridiem < 0 &&
        (clock.hour > 12 || clock.hour == 0 || (token.digits == 2 && clock.hour < 10)))
        clock.literal = true;
    next = j;
    return clock;
}

} // namespace

namespace {

std::optional<ClockSpec> readBareClock(const Reader &reader, std::uint32_t i, std::uint32_t &next) {
    // "Brussels-Midi" is a station, "9am-noon" are hours.
    const bool hours = i > 1 && (reader.has(i - 2, Meaning::Meridiem) ||
                                 reader.token(i - 2).kind == TokenKind::Number);
    const bool joined = i > 0 && reader.glued(i) && reader.symbol(i - 1, '-') &&
                        reader.glued(i - 1) && !reader.token(i).unspaced && !hours;
    if (const Sense *named = joined ? nullptr : reader.sense(i, Meaning::ClockWord)) {
        ClockSpec clock;
        clock.hour = named->value / 60;
        clock.minute = named->value % 60;
        clock.literal = clock.sure = clock.minuteGiven = true;
        // "noon-4" ends in the afternoon.
        if (clock.hour == kNoon)
            clock.meridiem = 1;
        next = i + named->length;
        return clock;
    }
    if (auto clock =
            mayStartSpokenClock(reader, i) ? readSpokenClock(reader, i, next) : std::nullopt)
        return clock;
    if (reader.at(i) && reader.token(i).kind == TokenKind::Number) {
        auto clock = readDigits(reader, i, next);
        // "12 noon"
        if (const Sense *named = clock ? reader.sense(next, Meaning::ClockWord) : nullptr;
            named && clock->hour == 12) {
            clock->hour = named->value / 60;
            clock->literal = clock->sure = true;
            next += named->length;
        }
        return clock;
    }
    return std::nullopt;
}

/// "午後3時", "abends 8 Uhr": the half of the day stands before the hour.
void applyPart(DayPart part, ClockSpec &clock) {
    if (clock.meridiem >= 0 || clock.hour > 12)
        return;
    const bool late = part == DayPart::Afternoon || part == DayPart::Evening ||
                      (part == DayPart::Noon && clock.hour < 11) ||
                      (part == DayPart::Night && clock.hour >= 5 && clock.hour < 12);
    if (clock.hour == 0 && !late)
        return;
    const bool midnight = clock.hour == 12 && (part == DayPart::Evening || part == DayPart::Night);
    clock.meridiem = (late && !midnight) || (part == DayPart::Noon && clock.hour == 12) ? 1 : 0;
    clock.literal = false;
    clock.sure = true;
}

} // namespace

std::optional<ClockSpec> readClock(const Reader &reader, std::uint32_t i, std::uint32_t &next) {
    const Sense *part = reader.sense(i, Meaning::PartOfDay);
    if (!part)
        return readBareClock(reader, i, next);
    const std::uint32_t at =
        reader.skip(reader.skip(i + part->length, Meaning::Of), Meaning::TimeMarker);
    auto clock = readBareClock(reader, at, next);
    if (!clock || !(clock->sure || reader.glued(at)))
        return std::nullopt;
    applyPart(static_cast<DayPart>(part->value), *clock);
    return clock;
}

} // namespace pindle::conversion
