#include "PindleConversion/lexicons/LexiconIndex.h"

#include <algorithm>
#include <cstring>

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

bool isTableLetter(std::int32_t letter) {
    return letter >= kFirstTableLetter && letter <= kLastTableLetter;
}

/// Where words that begin with the letter start, if some do.
const LetterSlot *firstLetter(std::int32_t letter) {
    if (!isTableLetter(letter))
        return nullptr;
    const auto place = static_cast<std::size_t>(letter - kFirstTableLetter);
    const std::uint16_t slot = kTables.firstLetters[place];
    return slot == 0 ? nullptr : &kTables.letters[slot - 1U];
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

UnspacedWord longestUnspaced(std::string_view text, std::size_t at, CodePoint letter) {
    UnspacedWord longest;
    const LetterSlot *slot = firstLetter(letter.value);
    while (slot) {
        if ((slot->word & kLetterWord) != 0)
            longest = {static_cast<std::uint32_t>(letter.end - at), slot->word};
        if (slot->followers == 0 || letter.end >= text.size())
            break;
        letter = decodeAt(text, letter.end);
        if (!isTableLetter(letter.value) ||
            (slot->followers & followerBit(static_cast<std::uint32_t>(letter.value))) == 0)
            break;
        const auto before = static_cast<std::uint32_t>(slot - kTables.letters.data());
        slot = findLetter(letterKey(before, letter.value));
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
