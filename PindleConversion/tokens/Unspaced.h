#pragma once

#include <cstdint>
#include <string_view>

#include "PindleConversion/clean/Utf8.h"
#include "PindleConversion/tokens/Vocabulary.h"

namespace pindle::conversion {

/// The scripts that are written without spaces between words.
enum class Unspaced : std::uint8_t { None, Ideograph, Hiragana, Katakana };

inline Unspaced unspacedScript(std::int32_t c) {
    if (c < 0x2E80)
        return Unspaced::None;
    if (c >= 0x4E00 && c <= 0x9FFF)
        return Unspaced::Ideograph;
    if (c >= 0x3041 && c <= 0x309F)
        return Unspaced::Hiragana;
    if ((c >= 0x30A1 && c <= 0x30FA) || (c >= 0x30FC && c <= 0x30FF) ||
        (c >= 0xFF66 && c <= 0xFF9F))
        return Unspaced::Katakana;
    const bool ideograph = (c >= 0x3400 && c <= 0x4DBF) || (c >= 0xF900 && c <= 0xFAFF) ||
                           (c >= 0x20000 && c <= 0x3FFFF) || c == 0x3005 || c == 0x3006 ||
                           c == 0x3007;
    return ideograph ? Unspaced::Ideograph : Unspaced::None;
}

/// A piece of unspaced text: a word, or a number in ideographs.
struct UnspacedPiece {
    std::uint32_t end = 0;
    bool known = false;     ///< a word of the vocabulary, or a number
    std::uint32_t word = 0; ///< number of the word that all its letters are, 0 for none
    bool number = false;
    std::uint32_t value = 0; ///< of a number
    std::uint8_t digits = 0; ///< of a number, as if written in Arabic digits
};

/// A number written in ideographs.
struct Numeral {
    std::uint32_t end = 0;
    std::uint32_t value = 0;
    int letters = 0;
    bool positional = false; ///< written digit by digit
};

/// What was cut before the piece looked for.
enum class Before : std::uint8_t { Other, Known, Unknown };

/// Cuts the pieces of a text in a script without spaces, from its begin to its end.
class UnspacedCutter {
public:
    UnspacedCutter(std::string_view text, const Vocabulary &vocabulary)
        : m_text(text)
        , m_vocabulary(vocabulary) {}

    /// The piece that starts at `at` with `letter`, of an unspaced script: the longest known word,
    /// a numeral before a word that counts it, or the letters up to the next of those. Linear.
    UnspacedPiece cut(std::uint32_t at, CodePoint letter, Before before);

private:
    /// What may start at one place.
    struct Start {
        std::uint32_t at = 0xFFFFFFFF;
        UnspacedWord word;
        Numeral numeral;
        bool counted = false; ///< the numeral is one
    };
    /// What starts at `at` with `letter`. Where one piece ends since the next one starts, this is
    /// asked twice.
    const Start &startAt(std::uint32_t at, CodePoint letter) {
        if (m_start.at != at)
            readStart(at, letter);
        return m_start;
    }
    void readStart(std::uint32_t at, CodePoint letter);
    bool isNumeral(const Numeral &numeral, const UnspacedWord &word, std::uint32_t at) const;

    std::string_view m_text;
    const Vocabulary &m_vocabulary;
    Start m_start;
};

} // namespace pindle::conversion
