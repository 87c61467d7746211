#include "PindleConversion/expressions/Expression.h"

namespace pindle::conversion {

namespace {

constexpr std::uint32_t kFirstYearLike = 1900;
constexpr std::uint32_t kLastYearLike = 2100;

/// "pm", "a.m." behind the digits.
std::uint32_t readMeridiem(const Reader &reader, std::uint32_t i, ClockSpec &clock) {
    const Sense *sense = reader.sense(i, Meaning::Meridiem);
    if (!sense || clock.hour > 12 || clock.hour == 0)
        return i;
    // "at 5 am I" would be an odd time; "am" needs to stand close or end the thought.
    clock.meridiem = sense->value;
    clock.sure = true;
    return i + sense->length;
}

/// What may stand behind a time without changing it: "ish", "o'clock", "sharp", "h".
std::uint32_t readTail(const Reader &reader, std::uint32_t i, ClockSpec &clock) {
    if (const Sense *oclock = reader.sense(i, Meaning::OClock)) {
        clock.sure = true;
        i = readMeridiem(reader, i + oclock->length, clock);
    }
    const Sense *mark = reader.sense(i, Meaning::Approximate);
    if (mark && mark->value == 0) {
        clock.sure = clock.sure || reader.glued(i);
        i = readMeridiem(reader, i + mark->length, clock);
    }
    return i;
}

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
    if (!clock.sure && yearLike)
        return std::nullopt;
    return clock;
}

/// The minutes behind the hour: ":30", ".30", "h30"; `i` is behind them then.
bool readMinutes(const Reader &reader, std::uint32_t &i, ClockSpec &clock) {
    const Token *minutes = reader.at(i + 1);
    if (!minutes || minutes->kind != TokenKind::Number || minutes->digits != 2 ||
        minutes->number > 59 || !reader.glued(i) || !reader.glued(i + 1))
        return false;
    const bool colon = reader.symbol(i, ':');
    const bool hour = reader.has(i, Meaning::HourMark);
    if (!colon && !hour && !reader.symbol(i, '.'))
        return false;
    clock.minute = static_cast<int>(minutes->number);
    clock.minuteGiven = true;
    clock.sure = colon || hour;
    i += 2;
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
        const bool close = before.end == reader.at(begin)->begin;
        if (before.kind == TokenKind::Symbol &&
            (before.symbol == '$' || before.symbol == U'€' || before.symbol == U'£' ||
             before.symbol == U'¥' || before.symbol == '#' || (close && before.symbol == '.') ||
             (close && before.symbol == ':')))
            return true;
        if (close && before.kind == TokenKind::Word && !reader.document().tokens[begin - 1].capital)
            return true;
        if (close && before.kind == TokenKind::Word && before.end - before.begin > 1)
            return true;
    }
    if (reader.symbol(next, '%') || reader.symbol(next, '$') || reader.symbol(next, U'€') ||
        reader.symbol(next, U'£') || reader.symbol(next, '/'))
        return !(reader.symbol(next, '/') && reader.at(next)->spaceBefore);
    const bool more = (reader.symbol(next, '.') || reader.symbol(next, ':')) &&
                      reader.glued(next) && reader.glued(next + 1) &&
                      reader.number(next + 1, 0, 99999999, 99);
    return more;
}

std::optional<ClockSpec> readDigits(const Reader &reader, std::uint32_t i, std::uint32_t &next) {
    if (!reader.number(i, 0, 24))
        return readCompact(reader, i, next);
    const Token &token = *reader.at(i);
    ClockSpec clock;
    clock.hour = static_cast<int>(token.number);
    std::uint32_t j = i + 1;
    const bool minutes = readMinutes(reader, j, clock);
    const std::uint32_t seconds = minutes ? skipSeconds(reader, j) : j;
    j = readMeridiem(reader, seconds, clock);
    if (const Sense *mark = clock.meridiem < 0 ? reader.sense(j, Meaning::HourMark) : nullptr;
        mark && minutes) {
        clock.literal = true;
        j += mark->length;
    } else if (mark && reader.glued(j) && clock.hour > 4) {
        clock.literal = clock.sure = true;
        j += mark->length;
    }
    j = readTail(reader, j, clock);
    if (spoiled(reader, i, j))
        return std::nullopt;
    if (clock.hour == 24 && clock.minute != 0)
        return std::nullopt;
    if (clock.meridiem < 0 &&
        (clock.hour > 12 || clock.hour == 0 || (token.digits == 2 && clock.hour < 10)))
        clock.literal = true;
    next = j;
    return clock;
}

struct SmallNumber {
    int value = 0;
    std::uint32_t next = 0;
};

/// A number from 1 to 59 in digits or words; "a" and "an" count nothing here.
SmallNumber readSmall(const Reader &reader, std::uint32_t i, int most) {
    if (reader.number(i, 1, static_cast<std::uint32_t>(most)))
        return {static_cast<int>(reader.at(i)->number), i + 1};
    const Sense *word = reader.sense(i, Meaning::Number);
    const Token *token = reader.at(i);
    if (!word || word->value > most || token->end - token->begin < 3)
        return {};
    return {word->value, i + word->length};
}

std::optional<ClockSpec> finishWords(const Reader &reader, std::uint32_t hourAt, int minute,
                                     bool down, std::uint32_t &next) {
    const SmallNumber hour = readSmall(reader, hourAt, 12);
    if (hour.value == 0 || (reader.symbol(hour.next, ':') && reader.glued(hour.next)))
        return std::nullopt;
    ClockSpec clock;
    clock.hour = hour.value;
    clock.minute = minute;
    if (down) {
        clock.hour = hour.value == 1 ? 12 : hour.value - 1;
        clock.minute = 60 - minute;
    }
    clock.minuteGiven = clock.sure = true;
    next = readTail(reader, readMeridiem(reader, hour.next, clock), clock);
    return clock;
}

/// "half past two", "quarter to five", "ten past nine", "half two".
std::optional<ClockSpec> readSpoken(const Reader &reader, std::uint32_t i, std::uint32_t &next) {
    if (const Sense *half = reader.sense(i, Meaning::HalfPast))
        return finishWords(reader, i + half->length, half->value, false, next);
    if (const Sense *half = reader.sense(i, Meaning::HalfBare))
        return finishWords(reader, i + half->length, half->value, false, next);
    SmallNumber minutes;
    if (const Sense *quarter = reader.sense(i, Meaning::QuarterWord))
        minutes = {quarter->value, i + quarter->length};
    else
        minutes = readSmall(reader, i, 30);
    if (minutes.value == 0 || (minutes.value % 5 != 0 && !reader.word(i)))
        return std::nullopt;
    std::uint32_t j = minutes.next;
    const Sense *unit = reader.sense(j, Meaning::UnitWord);
    if (unit && unit->value == static_cast<int>(Unit::Minute))
        j += unit->length;
    if (const Sense *past = reader.sense(j, Meaning::PastWord))
        return finishWords(reader, j + past->length, minutes.value, false, next);
    const Sense *to = reader.sense(j, Meaning::ToWord);
    // "5 to 7" in digits is a range of hours.
    if (!to || reader.at(i)->kind == TokenKind::Number)
        return std::nullopt;
    if (reader.word(i) && reader.has(i, Meaning::Number) && minutes.value < 15 &&
        minutes.value % 5 != 0)
        return std::nullopt;
    return finishWords(reader, j + to->length, minutes.value, true, next);
}

/// "seven thirty", "seven o'clock", "seven pm", "seven".
std::optional<ClockSpec> readWords(const Reader &reader, std::uint32_t i, std::uint32_t &next) {
    const Sense *word = reader.sense(i, Meaning::Number);
    const SmallNumber hour = readSmall(reader, i, 12);
    if (!word || hour.value == 0)
        return std::nullopt;
    ClockSpec clock;
    clock.hour = hour.value;
    std::uint32_t j = hour.next;
    const Sense *minutes = reader.sense(j, Meaning::Number);
    if (minutes && minutes->value >= 5 && minutes->value < 60 && minutes->value % 5 == 0 &&
        reader.at(j)->end - reader.at(j)->begin > 2) {
        clock.minute = minutes->value;
        clock.minuteGiven = clock.sure = true;
        j += minutes->length;
    }
    next = readTail(reader, readMeridiem(reader, j, clock), clock);
    return clock;
}

} // namespace

std::optional<ClockSpec> readClock(const Reader &reader, std::uint32_t i, std::uint32_t &next) {
    if (const Sense *named = reader.sense(i, Meaning::ClockWord)) {
        ClockSpec clock;
        clock.hour = named->value / 60;
        clock.minute = named->value % 60;
        clock.literal = clock.sure = clock.minuteGiven = true;
        next = i + named->length;
        return clock;
    }
    if (auto clock = readSpoken(reader, i, next))
        return clock;
    if (reader.at(i) && reader.at(i)->kind == TokenKind::Number) {
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
    return readWords(reader, i, next);
}

} // namespace pindle::conversion
