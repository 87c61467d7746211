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

std::span<const Phrase> phrasesWith(const WordSlot &slot, std::uint32_t second) {
    const auto longer =
        kTables.phrases.subspan(slot.firstPhrase + slot.singles, slot.phrases - slot.singles);
    struct BySecond {
        bool operator()(const Phrase &phrase, std::uint32_t word) const {
            return phrase.second < word;
        }
        bool operator()(std::uint32_t word, const Phrase &phrase) const {
            return word < phrase.second;
        }
    };
    const auto [first, last] = std::equal_range(longer.begin(), longer.end(), second, BySecond{});
    return {first, last};
}

} // namespace pindle::conversion
