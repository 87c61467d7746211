#pragma once

#include <string_view>

#include "PindleConversion/lexicons/LexiconIndex.h"

namespace pindle::conversion {

/// The words that decide where a text is cut.
class Vocabulary {
public:
    Vocabulary() = default;
    Vocabulary(const Vocabulary &) = delete;
    Vocabulary &operator=(const Vocabulary &) = delete;
    virtual ~Vocabulary() = default;

    /// Whether a folded word with its apostrophe ("l'") stands apart from what follows it.
    virtual bool elides(std::string_view folded) const = 0;
    /// For scripts without spaces, see `longestUnspaced`.
    virtual UnspacedWord longest(std::string_view text, std::size_t at, CodePoint letter) const = 0;
};

/// The words of all lexicons.
const Vocabulary &lexiconVocabulary();

} // namespace pindle::conversion
