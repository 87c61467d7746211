#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "PindleConversion/lexicons/LexiconIndex.h"

namespace pindle::conversion {

/// Most lexicons there can be: a bit each.
inline constexpr std::size_t kMostLanguages = 16;

/// Counts what tells a language.
class LanguageScores {
public:
    /// A word that lexicons have.
    void addWord(const LexiconWord &word, std::size_t bytes);
    /// So many words in letters of a script that only this script's languages use.
    void addScript(Script script, int words);
    void add(const LanguageScores &other);
    /// A hint, for texts that tell little: the languages spoken in a zone.
    void addZone(std::string_view zone);

    int of(LanguageId language) const { return m_scores[language]; }
    /// The best of those in `among`, a bit each; `otherwise` when nothing tells.
    LanguageId best(std::uint32_t among, LanguageId otherwise) const;

private:
    std::array<int, kMostLanguages> m_scores{};
};

/// The number of English, which lends its words to all others.
LanguageId englishLanguage();

} // namespace pindle::conversion
