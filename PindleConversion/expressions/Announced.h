#pragma once

#include "PindleConversion/expressions/Expression.h"

namespace pindle::conversion {

/// What stands around the number at token `i` of `field` announces it as a time, where no word such
/// as "at" does: the kind of event ("dinner 7"), a day's sentence before it, the place that is
/// left, or a second stop with its time. `found`: the expressions before it.
bool isAnnounced(const Reader &reader, std::uint32_t i, const Field &field,
                 const Expressions &found);

} // namespace pindle::conversion
