#include <algorithm>
#include <vector>

#include <unicode/uchar.h>

#include "PindleConversion/clean/Utf8.h"
#include "PindleConversion/compose/Compose.h"
#include "PindleConversion/tokens/Tokenizer.h"

namespace pindle::conversion {

namespace {

constexpr int kFewestLetters = 8;     ///< of a title that shouts; shorter ones may be names
constexpr std::size_t kShortWord = 3; ///< letters of a word that may be an abbreviation

struct Counts {
    int upper = 0;
    int lower = 0;
    int words = 0;
};

Counts countLetters(const std::string &title) {
    Counts counts;
    bool inWord = false;
    for (std::size_t at = 0; at < title.size();) {
        const CodePoint point = decodeAt(title, at);
        at = point.end;
        const bool letter = u_isalpha(point.value) != 0;
        counts.words += letter && !inWord ? 1 : 0;
        inWord = letter;
        counts.upper += u_isupper(point.value) ? 1 : 0;
        counts.lower += u_islower(point.value) ? 1 : 0;
    }
    return counts;
}

bool isSmallWord(const std::string &folded) {
    const std::uint32_t word = findWord(folded);
    if (word == 0)
        return false;
    static constexpr Meanings kSmall{Meaning::The, Meaning::Of, Meaning::And, Meaning::PlaceMarker};
    return std::ranges::any_of(sensesOf(lexiconWord(word)),
                               [](const Sense &sense) { return kSmall.has(sense.meaning); });
}

/// A word in capitals as a title writes it: an abbreviation stays.
std::string softWord(std::string_view word, bool first) {
    std::string folded = foldWord(word);
    if (!first && isSmallWord(folded))
        return folded;
    if (word.size() <= kShortWord && findWord(folded) == 0)
        return std::string(word);
    const CodePoint initial = decodeAt(word, 0);
    return std::string(word.substr(0, initial.end)) + foldWord(word.substr(initial.end));
}

} // namespace

std::string softened(const std::string &title) {
    // Most titles have a small letter.
    if (std::ranges::any_of(title, [](char c) { return c >= 'a' && c <= 'z'; }))
        return title;
    const Counts counts = countLetters(title);
    if (counts.lower > 0 || counts.upper < kFewestLetters || counts.words < 2)
        return title;
    std::string out;
    for (std::size_t at = 0; at < title.size();) {
        std::size_t end = at;
        while (end < title.size() && u_isalpha(decodeAt(title, end).value))
            end = decodeAt(title, end).end;
        if (end == at) {
            end = decodeAt(title, at).end;
            out += title.substr(at, end - at);
        } else {
            out += softWord(std::string_view(title).substr(at, end - at), out.empty());
        }
        at = end;
    }
    return out;
}

} // namespace pindle::conversion
