#pragma once

#include <algorithm>

#include "PindleConversion/tokens/Token.h"

namespace pindle::conversion {

// What an expression can start with, by the readers of its kind: where one of these says no, that
// reader finds nothing. Most words have a meaning that starts no expression, and asking here is
// much quicker than trying all readers. A reader that learns a new beginning tells it here.

inline bool isNumber(const Reader &reader, std::uint32_t i) {
    const Token *token = reader.at(i);
    return token && token->kind == TokenKind::Number;
}

/// Meanings that a date can start with, or go on with behind an article or "in".
inline constexpr Meanings kDateWords{
    Meaning::Month,  Meaning::Weekday, Meaning::WeakWeekday, Meaning::Repeated,
    Meaning::Number, Meaning::Ordinal, Meaning::RelativeDay, Meaning::UnitWord,
    Meaning::This,   Meaning::Next,    Meaning::Last,        Meaning::AfterNext,
    Meaning::Period, Meaning::DayLead, Meaning::MonthEnd,    Meaning::Era};

/// What stands before a date as a part of it.
inline constexpr Meanings kDateLeads{Meaning::The, Meaning::In};
/// Meanings that a length of time can start with.
inline constexpr Meanings kDurationWords{Meaning::Number, Meaning::HalfBare};
/// Meanings that a time can start with.
inline constexpr Meanings kTimeWords{Meaning::Number,      Meaning::PartOfDay,   Meaning::ClockWord,
                                     Meaning::SpokenClock, Meaning::TowardsHour, Meaning::HalfPast,
                                     Meaning::HalfBare,    Meaning::QuarterWord};
/// Meanings that a zone can start with.
inline constexpr Meanings kZoneWords{Meaning::Zone, Meaning::ZoneWord, Meaning::ZoneOffset};

/// Meanings that any expression can start with.
inline constexpr Meanings kStartWords = [] {
    Meanings all;
    for (const Meanings &each : {kDateWords, kDateLeads, kDurationWords, kTimeWords, kZoneWords})
        all.add(each);
    return all;
}();

/// An article or "in" at token `i` may begin a date: what follows it may be of one. Most articles
/// of a text do not, and they are many.
inline bool leadsToDate(const Reader &reader, std::uint32_t i) {
    constexpr int kMostLeads = 3;
    for (int leads = 0; leads < kMostLeads && reader.mayHave(i, kDateLeads); ++leads) {
        i = std::max(reader.skip(i, Meaning::The), reader.skip(i, Meaning::In));
        if (isNumber(reader, i) || reader.mayHave(i, kDateWords))
            return true;
    }
    return false;
}

/// `readDate` may find a date at token `i`.
inline bool mayStartDate(const Reader &reader, std::uint32_t i) {
    return isNumber(reader, i) || reader.mayHave(i, kDateWords) || leadsToDate(reader, i);
}

/// `readRelativeDate` may find a date at token `i`; digits need company.
inline bool mayStartRelativeDate(const Reader &reader, std::uint32_t i) {
    static constexpr Meanings kBehindDigits{Meaning::OrdinalMark, Meaning::MonthEnd,
                                            Meaning::MonthMark, Meaning::UnitWord,
                                            Meaning::DayMark};
    return reader.mayHave(i, kDateWords) || leadsToDate(reader, i) ||
           (isNumber(reader, i) && reader.mayHave(i + 1, kBehindDigits));
}

/// `readDuration` may find a length of time at token `i`.
inline bool mayStartDuration(const Reader &reader, std::uint32_t i) {
    return isNumber(reader, i) || reader.mayHave(i, kDurationWords);
}

/// `readTime` may find a time at token `i`.
inline bool mayStartTime(const Reader &reader, std::uint32_t i) {
    return isNumber(reader, i) || reader.mayHave(i, kTimeWords);
}

/// `readSpokenClock` may find a time at token `i`; digits need company.
inline bool mayStartSpokenClock(const Reader &reader, std::uint32_t i) {
    static constexpr Meanings kWords{Meaning::Number,   Meaning::SpokenClock, Meaning::TowardsHour,
                                     Meaning::HalfPast, Meaning::HalfBare,    Meaning::QuarterWord};
    static constexpr Meanings kBehindDigits{Meaning::PastWord, Meaning::ToWord, Meaning::UnitWord};
    return reader.mayHave(i, kWords) ||
           (isNumber(reader, i) && reader.mayHave(i + 1, kBehindDigits));
}

/// `readZone` may find a zone at token `i`, which follows no time.
inline bool mayStartZone(const Reader &reader, std::uint32_t i) {
    const std::uint32_t name = reader.skipSymbol(i, '(');
    return reader.mayHave(name, kZoneWords) || (reader.word(name) && reader.symbol(name + 1, '/'));
}

} // namespace pindle::conversion
