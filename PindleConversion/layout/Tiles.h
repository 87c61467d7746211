#pragma once

#include "PindleConversion/tokens/Token.h"

namespace pindle::conversion {

/// Joins the lines of a calendar tile, where weekday, day and month stand below each other, into
/// one line that reads as a date.
void joinDateTiles(Document &document);

} // namespace pindle::conversion
