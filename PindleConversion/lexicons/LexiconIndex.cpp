#include "PindleConversion/lexicons/LexiconIndex.h"

#include <algorithm>
#include <cstring>

#include "PindleConversion/clean/Utf8.h"

namespace pindle::conversion {

namespace {

/// Words are short: most are compared in two steps, without a call.
bool sameBytes(const char *a, const char *b, std::size_t size) {
    if (size < sizeof(std::uint32_t)) {
        for (std::size_t i = 0; i < size; ++i)
            if (a[i] != b[i])
                return false;
        return true;
    }
    if (size > 2 * sizeof(std::uint32_t))
        return std::memcmp(a, b, size) == 0;
    const auto word = [](const char *from) {
        std::uint32_t bytes = 0;
        std::memcpy(&bytes, from, sizeof bytes);
        return bytes;
    };
    const std::size_t last = size - sizeof(std::uint32_t);
    return word(a) == word(b) && word(a + last) == word(b + last);
}

const LetterSlot *findLetter(std::uint32_t key) {
    const auto letters = kTables.letters;
    for (std::size_t at = letterPlace(key, letters.size());; at = (at + 1) & (letters.size() - 1)) {
        if (letters[at].key == key)
            return &letters[at];
        if (letters[at].key == 0)
            return nullptr;
    }
}

} // namespace

UnspacedWord longestUnspaced(std::string_view text, std::size_t at) {
    UnspacedWord longest;
    std::uint32_t before = kWordBegin;
    for (std::size_t end = at; end < text.size();) {
        const CodePoint letter = decodeAt(text, end);
        if (letter.value < 0 || letter.value > kLastTableLetter)
            break;
        const LetterSlot *slot = findLetter(letterKey(before, letter.value));
        if (!slot)
            break;
        end = letter.end;
        if ((slot->word & kLetterWord) != 0)
            longest = {static_cast<std::uint32_t>(end - at), slot->word};
        if ((slot->word & kLetterGoesOn) == 0)
            break;
        before = static_cast<std::uint32_t>(slot - kTables.letters.data());
    }
    return longest;
}

std::uint32_t findWord(std::string_view folded, std::uint32_t hash) {
    const auto mask = static_cast<std::uint32_t>(kTables.places.size() - 1);
    for (std::uint32_t at = hash & mask;; at = (at + 1) & mask) {
        const std::uint32_t place = kTables.places[at];
        if (place == 0)
            return 0;
        if (WordPlace::tag(place) != WordPlace::tag(hash))
            continue;
        const std::uint32_t number = WordPlace::number(place);
        const LexiconWord &word = lexiconWord(number);
        const char *letters =
            word.length <= kOwnLetters ? word.letters.data() : kTables.text + word.text;
        if (word.length == folded.size() && sameBytes(letters, folded.data(), folded.size()))
            return number;
    }
}

std::span<const Phrase> phrasesWith(const LexiconWord &word, std::uint32_t second) {
    const auto phrases = kTables.phrases.subspan(word.firstPhrase, word.phrases);
    struct BySecond {
        bool operator()(const Phrase &phrase, std::uint32_t other) const {
            return phrase.second < other;
        }
        bool operator()(std::uint32_t other, const Phrase &phrase) const {
            return other < phrase.second;
        }
    };
    const auto [first, last] = std::equal_range(phrases.begin(), phrases.end(), second, BySecond{});
    return {first, last};
}

} // namespace pindle::conversion
