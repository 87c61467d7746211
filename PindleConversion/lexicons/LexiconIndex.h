#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "PindleConversion/lexicons/Lexicon.h"

namespace pindle::conversion {

/// Longest phrase of a lexicon, in tokens.
inline constexpr std::size_t kLongestPhrase = 7;

/// One meaning of a phrase that starts at some token.
struct Sense {
    Meaning meaning;
    std::uint8_t length; ///< tokens
    std::int16_t value;
    std::string_view note;
};

/// A phrase by the numbers of its words.
struct Phrase {
    std::array<std::uint32_t, kLongestPhrase> words{};
    Sense sense{};
};

/// A lexicon made ready for look-ups. Built once, then only read, from any thread.
class LexiconIndex {
public:
    explicit LexiconIndex(const Lexicon &lexicon);

    /// The number of a folded word, 0 when no phrase has it.
    std::uint32_t word(std::string_view folded) const;
    /// The phrases that start with a word.
    const std::vector<Phrase> &phrases(std::uint32_t word) const { return m_phrases[word]; }
    DayOrder dayOrder() const { return m_dayOrder; }

private:
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const {
            return std::hash<std::string_view>{}(text);
        }
    };

    void add(const Entry &entry);
    void addPhrase(std::string_view words, const Entry &entry);
    std::uint32_t intern(const std::string &folded);

    std::unordered_map<std::string, std::uint32_t, Hash, std::equal_to<>> m_words;
    std::vector<std::vector<Phrase>> m_phrases{1};
    DayOrder m_dayOrder;
};

/// The index of the lexicon in use.
const LexiconIndex &lexiconIndex();

/// The lexicons, one file each.
extern const Lexicon kEnglish;

} // namespace pindle::conversion
