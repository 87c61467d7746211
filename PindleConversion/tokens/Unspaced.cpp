#include "PindleConversion/tokens/Unspaced.h"

#include <array>

namespace pindle::conversion {

namespace {

constexpr int kNoDigit = -1;
constexpr std::uint32_t kLargest = 99'999'999;
/// Letters of one unknown word; a longer one is cut, which changes nothing but where.
constexpr std::uint32_t kLongestUnknown = 96;

struct Digit {
    std::int32_t letter;
    int value; ///< 0 to 9, or 10, 100 and 1000 for the signs of those
};
/// Zero and two are written in several ways.
constexpr std::array<Digit, 17> kDigits{{{0x3007, 0},
                                         {0x96F6, 0},
                                         {0x25CB, 0},
                                         {0x4E00, 1},
                                         {0x4E8C, 2},
                                         {0x4E24, 2},
                                         {0x5169, 2},
                                         {0x4E09, 3},
                                         {0x56DB, 4},
                                         {0x4E94, 5},
                                         {0x516D, 6},
                                         {0x4E03, 7},
                                         {0x516B, 8},
                                         {0x4E5D, 9},
                                         {0x5341, 10},
                                         {0x767E, 100},
                                         {0x5343, 1000}}};

/// Most letters are no digits, which their last bits tell.
bool mayBeDigit(std::int32_t c) {
    constexpr std::uint32_t kLast = 64;
    constexpr std::uint64_t kLastBits = [] {
        std::uint64_t bits = 0;
        for (const Digit &digit : kDigits)
            bits |= std::uint64_t{1} << (static_cast<std::uint32_t>(digit.letter) % kLast);
        return bits;
    }();
    return (kLastBits >> (static_cast<std::uint32_t>(c) % kLast) & 1U) != 0;
}

int digitOf(std::int32_t c) {
    if (mayBeDigit(c))
        for (const Digit &digit : kDigits)
            if (digit.letter == c)
                return digit.value;
    return kNoDigit;
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
bool mayBeWord(bool single, const UnspacedWord &match, Unspaced script, Before before) {
    // "バル" in "グローバル"
    constexpr std::uint32_t kThreeSigns = 9; ///< bytes
    if (script == Unspaced::Katakana && before == Before::Unknown && match.bytes < kThreeSigns)
        return false;
    if (!single)
        return true;
    if (script == Unspaced::Katakana)
        return false;
    return before != Before::Unknown || (script == Unspaced::Ideograph && !match.counter());
}

} // namespace

bool UnspacedCutter::isNumeral(const Numeral &numeral, const UnspacedWord &word,
                               std::uint32_t at) const {
    if (numeral.letters == 0 || word.bytes > numeral.end - at)
        return false;
    const bool counted =
        numeral.end < m_text.size() &&
        m_vocabulary.longest(m_text, numeral.end, decodeAt(m_text, numeral.end)).counter();
    return counted || (numeral.letters >= 4 && numeral.positional);
}

void UnspacedCutter::readStart(std::uint32_t at, CodePoint letter) {
    m_start.at = at;
    m_start.word = m_vocabulary.longest(m_text, at, letter);
    m_start.counted = false;
    if (mayBeDigit(letter.value)) {
        m_start.numeral = readNumeral(m_text, at);
        m_start.counted = isNumeral(m_start.numeral, m_start.word, at);
    }
}

UnspacedPiece UnspacedCutter::cut(std::uint32_t at, CodePoint letter, Before before) {
    const Unspaced script = unspacedScript(letter.value);
    const Start &first = startAt(at, letter);
    if (first.counted)
        return {first.numeral.end, true, 0, true, first.numeral.value, digitsOf(first.numeral)};
    const auto isSingle = [&](const Start &start) {
        return start.at + start.word.bytes == letter.end;
    };
    if (first.word.bytes > 0 && mayBeWord(isSingle(first), first.word, script, before))
        return {at + first.word.bytes, true, first.word.word(), false, 0, 0};
    const UnspacedWord word = first.word;
    UnspacedPiece piece;
    for (std::uint32_t letters = 0; letters < kLongestUnknown; ++letters) {
        piece.end = static_cast<std::uint32_t>(letter.end);
        if (piece.end >= m_text.size())
            break;
        letter = decodeAt(m_text, piece.end);
        if (unspacedScript(letter.value) != script)
            break;
        const Start &next = startAt(piece.end, letter);
        if (next.counted ||
            (next.word.bytes > 0 && mayBeWord(isSingle(next), next.word, script, Before::Unknown)))
            break;
    }
    // What is no word where it stands may still have a meaning.
    if (at + word.bytes == piece.end)
        piece.word = word.word();
    return piece;
}

} // namespace pindle::conversion
