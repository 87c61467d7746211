#pragma once

#include "PindleConversion/expressions/Expression.h"

namespace pindle::conversion {

// What makes a number a time that neither minutes nor "pm" tell as one.

/// "3 Main St": the words at token `i`, behind a number, are a street's.
bool startsAddress(const Reader &reader, std::uint32_t i);
/// Whether token `i` may follow a number that only its place makes a time. `marked`: a word before
/// the number announces a time.
bool mayFollowBare(const Reader &reader, std::uint32_t i, bool marked);
/// Whether what was read as a time, and ends before token `next`, is one. `marked` as above;
/// `afterDate`: a date stands right before it.
bool isAccepted(const Reader &reader, const TimeMention &mention, std::uint32_t next, bool marked,
                bool afterDate);

} // namespace pindle::conversion
