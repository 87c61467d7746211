#pragma once

#include "PindleConversion/expressions/Expression.h"

namespace pindle::conversion {

/// A day of the month by its number and sign alone: "3日". Sets `day` and returns the token
/// behind it, or `i`.
std::uint32_t readBareDay(const Reader &reader, std::uint32_t i, int &day);
/// "second Saturday", "last day": sets the base, the rank and the weekday of `spec` and returns
/// the token behind it, or `i`.
std::uint32_t readNthDay(const Reader &reader, std::uint32_t i, DateSpec &spec);

/// "the last Thursday of the month", "first Monday in June", "last day of May", "end of June".
std::optional<DateMention> readNthWeekday(const Reader &reader, std::uint32_t i);
/// "6月の第2土曜日": the month stands first.
std::optional<DateMention> readNthInMonth(const Reader &reader, std::uint32_t i);
/// "the 14th", "le 14", "the 14th of next month", "Friday the 13th" without its weekday.
std::optional<DateMention> readDayOnly(const Reader &reader, std::uint32_t i);

} // namespace pindle::conversion
