#pragma once

#include <cstdint>
#include <string_view>

#include "PindleConversion/tokens/Vocabulary.h"

namespace pindle::conversion {

/// The scripts that are written without spaces between words.
enum class Unspaced : std::uint8_t { None, Ideograph, Hiragana, Katakana };

Unspaced unspacedScript(std::int32_t c);

/// A piece of unspaced text: a word, or a number in ideographs.
struct UnspacedPiece {
    std::uint32_t end = 0;
    bool known = false; ///< a word of the vocabulary
    bool number = false;
    std::uint32_t value = 0; ///< of a number
    std::uint8_t digits = 0; ///< of a number, as if written in Arabic digits
};

/// What was cut before the piece looked for.
enum class Before : std::uint8_t { Other, Known, Unknown };

/// Cuts the piece that starts at `at`, where an unspaced script stands: the longest known word,
/// a numeral before a word that counts it, or the letters up to the next of those. Linear.
UnspacedPiece cutUnspaced(std::string_view text, std::uint32_t at, Before before,
                          const Vocabulary &vocabulary);

} // namespace pindle::conversion
