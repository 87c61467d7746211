#pragma once

#include "PindleConversion/tokens/Token.h"

namespace pindle::conversion {

/// What `speaker` returns for a line that names nobody.
inline constexpr std::uint32_t kNoSpeaker = 0;

/// The token behind "Name:" at a line's start, or `kNoSpeaker`.
std::uint32_t speaker(const Reader &reader, std::uint32_t i);
/// The token behind "[11:32]" at a line's start, or `i`.
std::uint32_t afterStamp(const Reader &reader, std::uint32_t i);
/// At least two lines of the text name who says them.
bool isConversation(const Document &document);

} // namespace pindle::conversion
