#pragma once

#include <string_view>

#include "PindleConversion/tokens/Token.h"

namespace pindle::conversion {

/// The first three steps at once: the text cleaned, cut into tokens with their meanings, and laid
/// out. `userZone` is a tz database identifier, a hint at the language; unknown ones give none.
Document readDocument(std::string_view text, std::string_view userZone);

} // namespace pindle::conversion
