#pragma once

#include <cstdint>
#include <string_view>

namespace pindle::conversion {

/// The words that decide where a text is cut.
class Vocabulary {
public:
    /// The longest known word at a place of a text.
    struct Match {
        std::uint32_t bytes = 0; ///< 0 when no word is known there
        bool counter = false;    ///< it counts the numeral before it
    };

    Vocabulary() = default;
    Vocabulary(const Vocabulary &) = delete;
    Vocabulary &operator=(const Vocabulary &) = delete;
    virtual ~Vocabulary() = default;

    /// Whether a folded word with its apostrophe ("l'") stands apart from what follows it.
    virtual bool elides(std::string_view folded) const = 0;
    /// For scripts without spaces.
    virtual Match longest(std::string_view text, std::size_t at) const = 0;
};

/// The words of all lexicons.
const Vocabulary &lexiconVocabulary();

} // namespace pindle::conversion
