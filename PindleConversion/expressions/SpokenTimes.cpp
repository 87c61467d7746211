#include "PindleConversion/expressions/Expression.h"

namespace pindle::conversion {

namespace {

struct SmallNumber {
    int value = 0;
    std::uint32_t next = 0;
};

/// A number from 1 to 59 in digits or words; "a" and "an" count nothing here.
SmallNumber readSmall(const Reader &reader, std::uint32_t i, int most) {
    if (reader.number(i, 1, static_cast<std::uint32_t>(most)))
        return {static_cast<int>(reader.token(i).number), i + 1};
    const Sense *word = reader.sense(i, Meaning::Number);
    const Token *token = reader.at(i);
    if (!word || word->value > most || token->end - token->begin < 3)
        return {};
    return {word->value, i + word->length};
}

/// "half 7:30": the minutes stand behind the hour. "quarter past nine: ..." goes on.
bool isWrittenOut(const Reader &reader, std::uint32_t next) {
    return reader.symbol(next, ':') && reader.glued(next) && reader.glued(next + 1) &&
           reader.number(next + 1, 0, 59);
}

int mostHours(const Reader &reader, std::uint32_t i) {
    return reader.language(i).clock24 ? 24 : 12;
}

std::optional<ClockSpec> finishWords(const Reader &reader, std::uint32_t hourAt, int minute,
                                     bool down, std::uint32_t &next) {
    const SmallNumber hour = readSmall(reader, hourAt, mostHours(reader, hourAt));
    if (hour.value == 0 || isWrittenOut(reader, hour.next))
        return std::nullopt;
    ClockSpec clock;
    clock.hour = hour.value;
    clock.minute = minute;
    if (down) {
        clock.hour = hour.value == 1 ? 12 : hour.value - 1;
        clock.minute = 60 - minute;
    }
    clock.hour %= 24;
    clock.literal = hour.value > 12;
    clock.minuteGiven = clock.sure = clock.spoken = true;
    const Sense *mark = reader.sense(hour.next, Meaning::HourMark);
    const std::uint32_t behind = mark && mark->value == 1 ? hour.next + mark->length : hour.next;
    next = readClockTail(reader, readMeridiem(reader, behind, clock), clock);
    return clock;
}

/// "half past two", "quarter to five", "ten past nine", "half two".
std::optional<ClockSpec> readFraction(const Reader &reader, std::uint32_t i, std::uint32_t &next) {
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
    // "5 to 7" in digits is a range of hours, "20 to 8" hardly where a day has twice twelve.
    const bool digits = reader.token(i).kind == TokenKind::Number;
    if (!to || (digits && !(minutes.value > 12 && minutes.value % 5 == 0 && minutes.value != 15 &&
                            mostHours(reader, i) == 12 && reader.word(j) &&
                            !(i > 0 && reader.has(i - 1, Meaning::RangeFrom)))))
        return std::nullopt;
    if (reader.word(i) && reader.has(i, Meaning::Number) && minutes.value < 15 &&
        minutes.value % 5 != 0)
        return std::nullopt;
    return finishWords(reader, j + to->length, minutes.value, true, next);
}

/// "seven thirty", "seven o'clock", "seven pm", "seven".
std::optional<ClockSpec> readWords(const Reader &reader, std::uint32_t i, std::uint32_t &next) {
    const Sense *word = reader.sense(i, Meaning::Number);
    const SmallNumber hour = readSmall(reader, i, mostHours(reader, i));
    const Sense *hours = reader.sense(hour.next, Meaning::HourMark);
    const bool announced =
        i > 0 && (reader.has(i - 1, Meaning::TimeMarker) || reader.has(i - 1, Meaning::RangeTo));
    constexpr int kLastOnDial = 12;
    // Numerals in unspaced scripts are numbers already when they count hours.
    if (!word || hour.value == 0 || reader.token(i).unspaced ||
        (hour.value > kLastOnDial && !announced && !(hours && hours->value > 0)))
        return std::nullopt;
    ClockSpec clock;
    clock.hour = hour.value % 24;
    clock.literal = hour.value > kLastOnDial;
    std::uint32_t j = hour.next;
    const Sense *minutes = reader.sense(j, Meaning::Number);
    if (minutes && minutes->value >= 5 && minutes->value < 60 && minutes->value % 5 == 0 &&
        reader.token(j).end - reader.token(j).begin > 2) {
        clock.minute = minutes->value;
        clock.minuteGiven = clock.sure = true;
        j += minutes->length;
    }
    if (const Sense *mark = reader.sense(j, Meaning::HourMark); mark && mark->value > 0) {
        clock.sure = clock.hourWord = true;
        j += mark->length;
    }
    j = readMinutesBehind(reader, j, clock);
    next = readClockTail(reader, readMeridiem(reader, j, clock), clock);
    return clock;
}

/// "halb acht", "viertel acht", "fünf vor halb acht".
std::optional<ClockSpec> readTowards(const Reader &reader, std::uint32_t i, std::uint32_t &next) {
    int shift = 0;
    std::uint32_t j = i;
    if (const SmallNumber minutes = readSmall(reader, i, 20); minutes.value > 0) {
        const Sense *past = reader.sense(minutes.next, Meaning::PastWord);
        const Sense *to = past ? nullptr : reader.sense(minutes.next, Meaning::ToWord);
        if (!past && !to)
            return std::nullopt;
        shift = past ? minutes.value : -minutes.value;
        j = minutes.next + (past ? past : to)->length;
    }
    const Sense *towards = reader.sense(j, Meaning::TowardsHour);
    if (!towards)
        return std::nullopt;
    const SmallNumber hour = readSmall(reader, j + towards->length, mostHours(reader, j));
    if (hour.value == 0 || isWrittenOut(reader, hour.next))
        return std::nullopt;
    ClockSpec clock;
    const int total = hour.value * 60 - 60 + towards->value + shift;
    const int minute = (total + 720) % 720;
    clock.literal = hour.value > 12;
    clock.hour = clock.literal ? total / 60 : minute < 60 ? 12 : minute / 60;
    clock.minute = minute % 60;
    clock.minuteGiven = clock.sure = clock.spoken = true;
    next = readClockTail(reader, readMeridiem(reader, hour.next, clock), clock);
    return clock;
}

/// One word for a clock time: "halfacht".
std::optional<ClockSpec> readSpokenWord(const Reader &reader, std::uint32_t i,
                                        std::uint32_t &next) {
    const Sense *word = reader.sense(i, Meaning::SpokenClock);
    if (!word)
        return std::nullopt;
    ClockSpec clock;
    clock.hour = word->value < 60 ? 12 : word->value / 60;
    clock.minute = word->value % 60;
    clock.minuteGiven = clock.sure = clock.spoken = true;
    next = readClockTail(reader, readMeridiem(reader, i + word->length, clock), clock);
    return clock;
}

void addMinutes(ClockSpec &clock, int minutes, bool spoken) {
    clock.minuteGiven = clock.sure = true;
    clock.spoken = spoken;
    clock.minute = (minutes + 60) % 60;
    if (minutes < 0)
        clock.hour = clock.hour <= 1 ? 12 : clock.hour - 1;
}

/// "10a Sat", but "room 10a Sat"; `i` is the letter.
bool isBesideDay(const Reader &reader, std::uint32_t i) {
    static constexpr Meanings kDays{Meaning::Weekday, Meaning::WeakWeekday, Meaning::RelativeDay};
    static constexpr Meanings kNumbered{Meaning::PlaceNoun, Meaning::StreetWord};
    return reader.mayHave(reader.skip(i + 1, Meaning::DateMarker), kDays) &&
           !(i > 1 && reader.mayHave(i - 2, kNumbered));
}

} // namespace

/// "pm", "a.m." behind the digits.
std::uint32_t readMeridiem(const Reader &reader, std::uint32_t i, ClockSpec &clock) {
    const Sense *sense = reader.sense(i, Meaning::Meridiem);
    if (!sense || clock.hour > 12 || clock.hour == 0)
        return i;
    // "8a-1p": a lone letter belongs to the digits it touches.
    constexpr int kLetter = 2;
    if (sense->value >= kLetter) {
        if (!reader.glued(i) || (reader.word(i + 1) && reader.glued(i + 1)))
            return i;
        clock.meridiem = sense->value - kLetter;
        clock.sure = clock.sure || clock.minuteGiven || isBesideDay(reader, i);
        return i + sense->length;
    }
    // "at 5 am I" would be an odd time; "am" needs to stand close or end the thought.
    clock.meridiem = sense->value;
    clock.sure = true;
    return i + sense->length;
}

/// What may stand behind a time without changing it: "ish", "o'clock", "sharp", "h".
std::uint32_t readClockTail(const Reader &reader, std::uint32_t i, ClockSpec &clock) {
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

std::uint32_t readMinutesBehind(const Reader &reader, std::uint32_t i, ClockSpec &clock) {
    if (clock.minuteGiven || clock.meridiem >= 0)
        return i;
    if (const Sense *behind = reader.sense(i, Meaning::MinutesBehind)) {
        // "10時半" is written like "10時30分", "8時半" may be the evening's.
        constexpr int kNoEveningHour = 10;
        addMinutes(clock, behind->value,
                   !(reader.token(i).unspaced && clock.hour >= kNoEveningHour));
        return i + behind->length;
    }
    const Sense *plus = reader.sense(i, Meaning::PlusMinutes);
    const Sense *minus = plus ? nullptr : reader.sense(i, Meaning::MinusMinutes);
    if (!plus && !minus)
        return i;
    const SmallNumber minutes = readSmall(reader, i + (plus ? plus : minus)->length, 59);
    if (minutes.value < 5 || minutes.value % 5 != 0 ||
        reader.has(minutes.next, Meaning::HourMark) || reader.symbol(minutes.next, ':'))
        return i;
    // "10 y 20" in digits are two numbers, "7 e 15 da manhã" and "20 e 30" are times.
    constexpr int kNoon = 12;
    constexpr int kLastHour = 24;
    if (plus && reader.token(minutes.next - 1).kind == TokenKind::Number &&
        !(minutes.value > kNoon && reader.has(minutes.next, Meaning::PartOfDay)) &&
        !(minutes.value > kLastHour && !reader.word(minutes.next)))
        return i;
    addMinutes(clock, plus ? minutes.value : -minutes.value, true);
    return minutes.next;
}

std::optional<ClockSpec> readSpokenClock(const Reader &reader, std::uint32_t i,
                                         std::uint32_t &next) {
    if (auto clock = readSpokenWord(reader, i, next))
        return clock;
    if (auto clock = readTowards(reader, i, next))
        return clock;
    if (auto clock = readFraction(reader, i, next))
        return clock;
    const Token *token = reader.at(i);
    return token && token->kind == TokenKind::Number ? std::nullopt : readWords(reader, i, next);
}

} // namespace pindle::conversion
