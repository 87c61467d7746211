#pragma once

#include <string>
#include <string_view>

namespace pindle::conversion {

/// First step: the text without what only decorates it. Line ends become "\n", odd spaces plain
/// ones; invisible characters, emphasis marks, quotation prefixes, pictures and quotes around the
/// whole are gone. Letters, digits and punctuation stay as written. Invalid UTF-8 reads as a space.
std::string cleanText(std::string_view text);

} // namespace pindle::conversion
