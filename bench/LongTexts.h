#pragma once

#include <cstddef>
#include <span>
#include <string>

namespace pindle::bench {

/// A kind of long text that can be made in any length.
struct LongText {
    const char *name;  ///< one word, for the command line
    const char *title; ///< for the tables
    std::string (*make)(std::size_t bytes);
};

/// What people write comes first, then what is made to be slow to read.
std::span<const LongText> longTexts();

} // namespace pindle::bench
