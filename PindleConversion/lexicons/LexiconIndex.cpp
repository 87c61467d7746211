#include "PindleConversion/lexicons/LexiconIndex.h"

#include <algorithm>

#include "PindleConversion/tokens/Tokenizer.h"

namespace pindle::conversion {

LexiconIndex::LexiconIndex(const Lexicon &lexicon)
    : m_dayOrder(lexicon.dayOrder) {
    for (const auto &entries : {lexicon.calendar, lexicon.zones, lexicon.context})
        for (const Entry &entry : entries)
            add(entry);
    const auto longerFirst = [](const Phrase &a, const Phrase &b) {
        return a.sense.length > b.sense.length;
    };
    for (auto &phrases : m_phrases)
        std::stable_sort(phrases.begin(), phrases.end(), longerFirst);
}

std::uint32_t LexiconIndex::word(std::string_view folded) const {
    const auto found = m_words.find(folded);
    return found == m_words.end() ? 0 : found->second;
}

void LexiconIndex::add(const Entry &entry) {
    std::string_view rest = entry.words;
    while (!rest.empty()) {
        const auto bar = rest.find('|');
        addPhrase(rest.substr(0, bar), entry);
        rest = bar == std::string_view::npos ? std::string_view{} : rest.substr(bar + 1);
    }
}

void LexiconIndex::addPhrase(std::string_view words, const Entry &entry) {
    Phrase phrase;
    std::size_t length = 0;
    for (const Token &token : tokenize(words)) {
        if (length == kLongestPhrase)
            return;
        phrase.words[length++] =
            intern(foldWord(words.substr(token.begin, token.end - token.begin)));
    }
    if (length == 0)
        return;
    phrase.sense = {entry.meaning, static_cast<std::uint8_t>(length),
                    static_cast<std::int16_t>(entry.value), entry.note};
    m_phrases[phrase.words[0]].push_back(phrase);
}

std::uint32_t LexiconIndex::intern(const std::string &folded) {
    const auto [found, isNew] =
        m_words.try_emplace(folded, static_cast<std::uint32_t>(m_phrases.size()));
    if (isNew)
        m_phrases.emplace_back();
    return found->second;
}

const LexiconIndex &lexiconIndex() {
    static const LexiconIndex index(kEnglish);
    return index;
}

} // namespace pindle::conversion
