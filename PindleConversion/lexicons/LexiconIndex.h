#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "PindleConversion/lexicons/Lexicon.h"

namespace pindle::conversion {

/// Longest phrase of a lexicon, in tokens.
inline constexpr std::size_t kLongestPhrase = 8;

/// One meaning of a phrase that starts at some token.
struct Sense {
    Meaning meaning;
    std::uint8_t length; ///< tokens
    std::int16_t value;
    std::uint16_t note; ///< number of a text, see `noteOf`; 0 for none
    LanguageId language;
};

/// A phrase: the words behind its first one, and what it means.
struct Phrase {
    std::uint32_t second; ///< number of its second word, 0 when it has one word
    std::uint32_t rest;   ///< where the words behind the second start in `Tables::phraseWords`
    Sense sense;
};

/// A place of the hash table of words.
struct WordSlot {
    std::uint32_t hash;
    std::uint32_t text; ///< where its letters start in `Tables::text`
    std::uint32_t firstPhrase;
    std::uint32_t languages; ///< a bit per lexicon that has the word
    std::uint64_t followers; ///< a bit for each second word of its phrases, see `mayFollow`
    std::uint16_t phrases;   ///< by their second word, then longest first
    std::uint16_t singles;   ///< those of one word, which come first
    std::uint8_t length;     ///< bytes; 0 for a free place
    std::uint8_t flags;      ///< see `kCounter`, `kElision`
};

inline constexpr std::uint8_t kCounter = 1; ///< counts the numeral before it: "日"
inline constexpr std::uint8_t kElision = 2; ///< ends with an apostrophe: "l'"

/// Where languages are spoken.
struct SpokenZone {
    std::string_view name;   ///< a zone's identifier or the beginning of some
    std::uint32_t languages; ///< a bit each
};

/// All lexicons in one, made when the program is built.
struct Tables {
    std::span<const WordSlot> slots; ///< a power of two of them
    const char *text;
    std::span<const Phrase> phrases;
    std::span<const std::uint32_t> phraseWords;
    std::span<const std::string_view> notes;
    std::span<const LanguageInfo> languages; ///< the shared words first
    std::span<const SpokenZone> zones;       ///< by name
    std::span<const std::uint32_t> oneByte;  ///< the words of one ASCII letter, digit or mark
    std::span<const std::uint8_t> hints;     ///< see `unspacedHint`
};
extern const Tables kTables;

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

/// Whether a word of a script without spaces starts with letters of this hash and goes on, and
/// whether one ends there. May be wrong when it says yes. Such words are looked for at every
/// letter, and nearly always in vain.
inline constexpr unsigned kGoesOn = 1;
inline constexpr unsigned kEnds = 2;
inline constexpr std::size_t kHints = 1U << 16U; ///< four in a byte
inline unsigned unspacedHint(std::uint32_t hash) {
    const std::uint32_t place = hash % kHints;
    return static_cast<unsigned>(kTables.hints[place / 4]) >> (place % 4 * 2) & 3U;
}

/// The number of a folded word, 0 when no lexicon has it. Constant time.
std::uint32_t findWord(std::string_view folded, std::uint32_t hash);
inline std::uint32_t findWord(std::string_view folded) {
    return findWord(folded, hashWord(folded));
}

inline const WordSlot &wordSlot(std::uint32_t word) {
    return kTables.slots[word - 1];
}
inline std::span<const Phrase> phrasesOf(const WordSlot &slot) {
    return kTables.phrases.subspan(slot.firstPhrase, slot.phrases);
}
/// The phrases of this word alone.
inline std::span<const Phrase> singleWords(const WordSlot &slot) {
    return kTables.phrases.subspan(slot.firstPhrase, slot.singles);
}
/// The place of a word's bit in `WordSlot::followers`.
inline constexpr std::uint64_t followerBit(std::uint32_t word) {
    return std::uint64_t{1} << (word % 64);
}
/// Some phrase of the first word may have this second one. May be wrong when it says yes.
inline bool mayFollow(const WordSlot &slot, std::uint32_t second) {
    return (slot.followers & followerBit(second)) != 0;
}
/// The phrases whose second word is `second`, which is not 0. Logarithmic: some words start
/// hundreds of phrases.
std::span<const Phrase> phrasesWith(const WordSlot &slot, std::uint32_t second);
inline std::string_view noteOf(const Sense &sense) {
    return kTables.notes[sense.note];
}
inline const LanguageInfo &languageInfo(LanguageId language) {
    return kTables.languages[language];
}

} // namespace pindle::conversion
