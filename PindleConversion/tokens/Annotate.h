#pragma once

#include <string_view>

#include "PindleConversion/tokens/Token.h"

namespace pindle::conversion {

/// Third step: looks every token up, recognises the language of each line, and notes for each
/// token the meanings that count there. A line has the words of one language; words that this
/// one lacks may come from the other languages of the text, or from English. Where little tells
/// the language, it is the one spoken in the user's zone. Linear in the text's length.
void annotate(Document &document, std::string_view userZone);

} // namespace pindle::conversion
