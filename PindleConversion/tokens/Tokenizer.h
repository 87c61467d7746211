#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "PindleConversion/tokens/Token.h"

namespace pindle::conversion {

/// Second step: cuts a clean text into tokens. Linear in the text's length.
std::vector<Token> tokenize(std::string_view text);

/// A word as the lexicon spells it: lower case, plain apostrophes.
std::string foldWord(std::string_view word);

/// Looks every token up and notes its senses in `document.senses`.
void annotate(Document &document, const LexiconIndex &index);

} // namespace pindle::conversion
