#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "PindleConversion/tokens/Token.h"
#include "PindleConversion/tokens/Vocabulary.h"

namespace pindle::conversion {

/// Second step: cuts a clean text into tokens. Linear in the text's length.
std::vector<Token> tokenize(std::string_view text, const Vocabulary &vocabulary);

/// A word as the lexicons spell it: lower case, plain apostrophes.
std::string foldWord(std::string_view word);
void foldWord(std::string_view word, std::string &folded);

} // namespace pindle::conversion
