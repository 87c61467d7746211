#pragma once

#include "PindleConversion/expressions/Expression.h"

namespace pindle::conversion {

/// A day in digits and marks alone: "2026-06-05", "20260605T", "5/6", "15.11.2026".
std::optional<DateMention> readNumericDate(const Reader &reader, std::uint32_t i);

} // namespace pindle::conversion
