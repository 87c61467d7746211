#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

#include "PindleConversion/clean/Utf8.h"
#include "PindleConversion/lexicons/Lexicon.h"

namespace pindle::conversion {

/// Longest phrase of a lexicon, in tokens.
inline constexpr std::size_t kLongestPhrase = 8;

/// One meaning of a phrase that starts at some token.
struct Sense {
    Meaning meaning;
    std::uint8_t length; ///< tokens
    std::int16_t value;
    std::uint16_t note;      ///< number of a text, see `noteOf`; 0 for none
    std::uint16_t languages; ///< a bit each

    bool isOf(LanguageId language) const { return (languages >> language & 1U) != 0; }
};

/// A phrase of several words: those behind its first one, and what it means.
struct Phrase {
    std::uint32_t second; ///< number of its second word
    std::uint32_t rest;   ///< where the words behind the second start in `Tables::phraseWords`
    Sense sense;
};

inline constexpr std::size_t kOwnLetters = 12; ///< bytes of a word that are kept with it
inline constexpr std::size_t kOwnSenses = 3;   ///< that fit in beside them

/// A word of the lexicons: what most texts need of it, in one line of the processor's cache.
struct alignas(64) LexiconWord {
    std::uint64_t followers;   ///< a bit for each second word of its phrases, see `mayFollow`
    std::uint32_t text;        ///< where its letters start in `Tables::text`
    std::uint32_t firstPhrase; ///< of several words
    std::uint32_t firstSense;  ///< where its senses start in `Tables::senses`, for many
    std::uint16_t languages;   ///< a bit per lexicon that has the word
    std::uint16_t phrases;     ///< by their second word, then longest first
    std::uint8_t singles;      ///< senses that it has alone
    std::uint8_t length;       ///< bytes
    std::uint8_t flags;        ///< see `kCounter`, `kElision`
    std::uint8_t known;        ///< how many languages have the word; each gains its share
    std::array<char, kOwnLetters> letters; ///< the first ones
    std::array<Sense, kOwnSenses> senses;  ///< all that it has alone, if they are not many
};
static_assert(sizeof(LexiconWord) == 64);

inline constexpr std::uint8_t kCounter = 1; ///< counts the numeral before it: "日"
inline constexpr std::uint8_t kElision = 2; ///< ends with an apostrophe: "l'"

/// A letter of the words in scripts without spaces, behind the letters before it: such words are
/// looked for at every letter of a text, so one step has to be short.
struct LetterSlot {
    std::uint64_t followers; ///< a bit for each letter behind it, see `followerBit`
    std::uint32_t key;       ///< see `letterKey`; 0 for a free place
    std::uint32_t word;      ///< the word that ends here, 0 for none, with the flag below
};
inline constexpr std::uint32_t kLetterCounter = 1U << 31U;       ///< the word has `kCounter`
inline constexpr std::uint32_t kLetterWord = kLetterCounter - 1; ///< all bits of the word's number

/// Where languages are spoken.
struct SpokenZone {
    std::string_view name;   ///< a zone's identifier or the beginning of some
    std::uint32_t languages; ///< a bit each; also of all shorter names that begin this one
    std::uint32_t shorter;   ///< counted from 1, the longest of those; 0 for none
};

/// A place of `Tables::places`: the word's number, and bits of its hash above. 0 is free. Most
/// words that no lexicon has are told by it alone.
struct WordPlace {
    static constexpr int kNumberBits = 17;
    static constexpr std::uint32_t kMostWords = (1U << kNumberBits) - 1;
    static constexpr std::uint32_t tag(std::uint32_t hash) { return hash & ~kMostWords; }
    static constexpr std::uint32_t number(std::uint32_t place) { return place & kMostWords; }
};

/// All lexicons in one, made when the program is built.
struct Tables {
    std::span<const std::uint32_t> places; ///< of words by hash, a power of two; see `WordPlace`
    std::span<const LexiconWord> words;    ///< those with most phrases first
    const char *text;
    std::span<const Sense> senses; ///< of words that have many
    std::span<const Phrase> phrases;
    std::span<const std::uint32_t> phraseWords;
    std::span<const std::string_view> notes;
    std::span<const LanguageInfo> languages; ///< the shared words first
    std::span<const SpokenZone> zones;       ///< by name
    std::span<const std::uint32_t> oneByte;  ///< the words of one ASCII letter, digit or mark
    std::span<const LetterSlot> letters;     ///< a power of two of them, at most 32,768
    /// For each letter from `kFirstTableLetter` on, its place in `letters` as the first of a word,
    /// counted from 1.
    std::span<const std::uint16_t> firstLetters;
};
extern const Tables kTables;

/// The bit of a word in `LexiconWord::followers`, or of a letter in `LetterSlot::followers`.
inline constexpr std::uint64_t followerBit(std::uint32_t follower) {
    return std::uint64_t{1} << (follower % 64);
}

/// Hashes a word letter by letter (FNV-1a, 32 bits).
inline constexpr std::uint32_t kHashStart = 2166136261U;
inline constexpr std::uint32_t hashByte(std::uint32_t hash, char c) {
    return (hash ^ static_cast<unsigned char>(c)) * 16777619U;
}
inline constexpr std::uint32_t hashWord(std::string_view folded) {
    std::uint32_t hash = kHashStart;
    for (char c : folded)
        hash = hashByte(hash, c);
    return hash;
}

/// The place in `Tables::letters` where a letter is looked for first: Fibonacci hashing.
inline constexpr std::size_t letterPlace(std::uint32_t key, std::size_t letters) {
    constexpr std::uint64_t kGolden = 0x9E3779B97F4A7C15U;
    return static_cast<std::size_t>((key * kGolden) >> 40U) & (letters - 1);
}
inline constexpr std::uint32_t kWordBegin = 0xFFFF;       ///< stands for the place before a word
inline constexpr std::int32_t kFirstTableLetter = 0x2E80; ///< no script without spaces is before
inline constexpr std::int32_t kLastTableLetter = 0xFFFF;  ///< no lexicon has a letter beyond
/// The key of `letter`, of these, behind the letters that end at place `before`.
inline constexpr std::uint32_t letterKey(std::uint32_t before, std::int32_t letter) {
    return before << 16U | static_cast<std::uint32_t>(letter);
}

/// The longest word in a script without spaces that stands at the begin of some text.
struct UnspacedWord {
    std::uint32_t bytes = 0;  ///< 0 when there is none
    std::uint32_t letter = 0; ///< its last letter's `LetterSlot::word`

    std::uint32_t word() const { return letter & kLetterWord; }
    bool counter() const { return (letter & kLetterCounter) != 0; }
};
/// Looks for it at byte `at` of a text, where `letter` is. Steps through its letters once.
UnspacedWord longestUnspaced(std::string_view text, std::size_t at, CodePoint letter);

/// The number of a folded word, 0 when no lexicon has it. Constant time.
std::uint32_t findWord(std::string_view folded, std::uint32_t hash);
inline std::uint32_t findWord(std::string_view folded) {
    return findWord(folded, hashWord(folded));
}

inline const LexiconWord &lexiconWord(std::uint32_t word) {
    return kTables.words[word - 1];
}
inline std::string_view textOf(const LexiconWord &word) {
    return {kTables.text + word.text, word.length};
}
/// What the word means alone.
inline std::span<const Sense> sensesOf(const LexiconWord &word) {
    if (word.singles <= kOwnSenses)
        return {word.senses.data(), word.singles};
    return kTables.senses.subspan(word.firstSense, word.singles);
}
/// Some phrase of the first word may have this second one. May be wrong when it says yes.
inline bool mayFollow(const LexiconWord &word, std::uint32_t second) {
    return (word.followers & followerBit(second)) != 0;
}
/// The phrases whose second word is `second`, which is not 0. Logarithmic: some words start
/// hundreds of phrases.
std::span<const Phrase> phrasesWith(const LexiconWord &word, std::uint32_t second);
inline std::string_view noteOf(const Sense &sense) {
    return kTables.notes[sense.note];
}
inline const LanguageInfo &languageInfo(LanguageId language) {
    return kTables.languages[language];
}

} // namespace pindle::conversion
