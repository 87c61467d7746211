#include "PindleConversion/lexicons/LexiconIndex.h"

#include <algorithm>
#include <cstring>

namespace pindle::conversion {

std::uint32_t findWord(std::string_view folded, std::uint32_t hash) {
    const auto mask = static_cast<std::uint32_t>(kTables.slots.size() - 1);
    for (std::uint32_t at = hash & mask;; at = (at + 1) & mask) {
        const WordSlot &slot = kTables.slots[at];
        if (slot.length == 0)
            return 0;
        if (slot.hash == hash && slot.length == folded.size() &&
            std::memcmp(kTables.text + slot.text, folded.data(), folded.size()) == 0)
            return at + 1;
    }
}

std::span<const Phrase> phrasesWith(std::span<const Phrase> phrases, std::uint32_t second) {
    const auto [first, last] = std::ranges::equal_range(phrases, second, {}, &Phrase::second);
    return {first, last};
}

} // namespace pindle::conversion
