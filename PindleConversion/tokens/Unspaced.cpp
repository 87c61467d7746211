#include "PindleConversion/tokens/Unspaced.h"

#include "PindleConversion/clean/Utf8.h"

namespace pindle::conversion {

namespace {

constexpr int kNoDigit = -1;
constexpr std::uint32_t kLargest = 99'999'999;
/// Letters of one unknown word; a longer one is cut, which changes nothing but where.
constexpr std::uint32_t kLongestUnknown = 96;

struct Numeral {
    std::uint32_t end = 0;
    std::uint32_t value = 0;
    int letters = 0;
    bool positional = false; ///< written digit by digit
};

/// 0 to 9, or 10, 100 and 1000 for the signs of those.
int digitOf(std::int32_t c) {
    switch (c) {
    case 0x3007:
    case 0x96F6: // another zero
    case 0x25CB:
        return 0;
    case 0x4E00:
        return 1;
    case 0x4E8C:
    case 0x4E24: // "both", for two
    case 0x5169:
        return 2;
    case 0x4E09:
        return 3;
    case 0x56DB:
        return 4;
    case 0x4E94:
        return 5;
    case 0x516D:
        return 6;
    case 0x4E03:
        return 7;
    case 0x516B:
        return 8;
    case 0x4E5D:
        return 9;
    case 0x5341:
        return 10;
    case 0x767E:
        return 100;
    case 0x5343:
        return 1000;
    default:
        return kNoDigit;
    }
}

Numeral readNumeral(std::string_view text, std::uint32_t at) {
    constexpr int kMostLetters = 8;
    Numeral result{at, 0, 0, true};
    std::uint32_t last = 0;
    std::uint32_t plain = 0;
    for (std::size_t i = at; i < text.size() && result.letters < kMostLetters;) {
        const CodePoint point = decodeAt(text, i);
        const int digit = digitOf(point.value);
        if (digit == kNoDigit)
            break;
        if (digit >= 10) {
            result.value += (last == 0 ? 1 : last) * static_cast<std::uint32_t>(digit);
            result.positional = false;
            last = 0;
        } else {
            last = static_cast<std::uint32_t>(digit);
            plain = plain * 10 + last;
        }
        ++result.letters;
        i = point.end;
        result.end = static_cast<std::uint32_t>(i);
    }
    result.value = result.positional ? plain : result.value + last;
    if (result.value > kLargest)
        result.value = kLargest;
    return result;
}

std::uint8_t digitsOf(const Numeral &numeral) {
    if (numeral.positional)
        return static_cast<std::uint8_t>(numeral.letters);
    std::uint8_t digits = 1;
    for (std::uint32_t rest = numeral.value; rest >= 10; rest /= 10)
        ++digits;
    return digits;
}

/// A word of one letter: what it is depends on what stands before it.
bool mayBeWord(std::string_view text, std::uint32_t at, Vocabulary::Match match, Unspaced script,
               Before before) {
    const bool single = decodeAt(text, at).end == at + match.bytes;
    // "バル" in "グローバル"
    constexpr std::uint32_t kThreeSigns = 9; ///< bytes
    if (script == Unspaced::Katakana && before == Before::Unknown && match.bytes < kThreeSigns)
        return false;
    if (!single)
        return true;
    if (script == Unspaced::Katakana)
        return false;
    return before != Before::Unknown || (script == Unspaced::Ideograph && !match.counter);
}

bool isNumeral(std::string_view text, const Numeral &numeral, Vocabulary::Match word,
               const Vocabulary &vocabulary, std::uint32_t at) {
    if (numeral.letters == 0 || word.bytes > numeral.end - at)
        return false;
    const bool counted = numeral.end < text.size() && vocabulary.longest(text, numeral.end).counter;
    return counted || (numeral.letters >= 4 && numeral.positional);
}

} // namespace

UnspacedPiece cutUnspaced(std::string_view text, std::uint32_t at, Before before,
                          const Vocabulary &vocabulary) {
    const Unspaced script = unspacedScript(decodeAt(text, at).value);
    const Vocabulary::Match word = vocabulary.longest(text, at);
    const Numeral numeral = readNumeral(text, at);
    if (isNumeral(text, numeral, word, vocabulary, at))
        return {numeral.end, true, true, numeral.value, digitsOf(numeral)};
    if (word.bytes > 0 && mayBeWord(text, at, word, script, before))
        return {at + word.bytes, true, false, 0, 0};
    UnspacedPiece piece{at, false, false, 0, 0};
    CodePoint letter = decodeAt(text, at);
    for (std::uint32_t letters = 0; letters < kLongestUnknown; ++letters) {
        piece.end = static_cast<std::uint32_t>(letter.end);
        if (piece.end >= text.size())
            break;
        letter = decodeAt(text, piece.end);
        if (unspacedScript(letter.value) != script)
            break;
        const Vocabulary::Match next = vocabulary.longest(text, piece.end);
        if (next.bytes > 0 && mayBeWord(text, piece.end, next, script, Before::Unknown))
            break;
        if (isNumeral(text, readNumeral(text, piece.end), next, vocabulary, piece.end))
            break;
    }
    return piece;
}

} // namespace pindle::conversion
