#pragma once

#include "PindleConversion/expressions/Expression.h"

namespace pindle::conversion {

/// A date over the tokens from `begin` to `end`, of which only the base is known.
DateMention mentionOf(std::uint32_t begin, std::uint32_t end, DateSpec::Base base);

/// A word such as "next" before a day or period.
struct Qualifier {
    Which which = Which::Nearest;
    std::uint32_t next = 0; ///< the token behind it; the first one when there is none
};

Qualifier readQualifier(const Reader &reader, std::uint32_t i);

/// The word for that unit at token `i`, or null.
const Sense *readUnit(const Reader &reader, std::uint32_t i, Unit wanted);

struct DayName {
    int weekday = 0; ///< 1 (Monday) to 7, 0: there is none
    std::uint32_t next = 0;
    bool repeated = false;
};

/// A weekday by its name. `qualified`: a word before it tells that a weekday is meant, even where
/// the name is an everyday word as well.
DayName readDayName(const Reader &reader, std::uint32_t i, bool qualified);

struct Period {
    Which which = Which::Nearest;
    Unit unit = Unit::Day; ///< Day: there is none
    std::uint32_t next = 0;
};

/// "next week", "la semaine prochaine", "来週".
Period readPeriodWord(const Reader &reader, std::uint32_t i);

/// A distance in the calendar.
struct Amount {
    int days = 0;
    int months = 0;
    std::uint32_t next = 0;
};

/// `count` of the unit at token `i`, if that is a day or longer.
std::optional<Amount> readUnits(const Reader &reader, std::uint32_t i, int count);
/// "two weeks", "3 days".
std::optional<Amount> readAmount(const Reader &reader, std::uint32_t i);

} // namespace pindle::conversion
