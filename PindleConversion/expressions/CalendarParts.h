#pragma once

#include "PindleConversion/expressions/Expression.h"

namespace pindle::conversion {

/// A number of four digits from here to `kLastYear` is a year wherever one may stand.
inline constexpr std::uint32_t kFirstYear = 1900;
inline constexpr std::uint32_t kLastYear = 2199;

/// A day by the calendar over the tokens from `begin` to `end`. Year 0: not given.
DateMention mentionOf(std::uint32_t begin, std::uint32_t end, int month, int day, int year);

/// "the 23rd until 7th April": a first day so late is of the month before.
void beginMonthBefore(DateSpec &first);

/// Behind the mark at token `i` that makes an ordinal of the digits before it, or `i` itself; that
/// of "17.30" makes none.
std::uint32_t skipOrdinalMark(const Reader &reader, std::uint32_t i);
/// What follows digits that are no day: "5:30", "5 %", "5pm".
bool spoilsDay(const Reader &reader, std::uint32_t next);
/// A year of four digits at token `i`.
bool isYear(const Reader &reader, std::uint32_t i);
/// "114": the year of an era, which the text's language counts without naming it; else 0.
int yearOfEra(const Reader &reader, std::uint32_t i);
/// A year behind day and month: ", 2026", "2026", "'26", "duemilaventisei". Returns the token
/// behind it, or `i`; `year` is set unless only "this year" is said.
std::uint32_t readYear(const Reader &reader, std::uint32_t i, int &year);

} // namespace pindle::conversion
