#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "PindleConversion/lexicons/LexiconIndex.h"

namespace pindle::conversion {

enum class TokenKind : std::uint8_t { Word, Number, Symbol, LineBreak, Link, Mail };

/// A set of meanings.
class Meanings {
public:
    constexpr Meanings() = default;
    constexpr Meanings(std::initializer_list<Meaning> meanings) {
        for (Meaning meaning : meanings)
            add(meaning);
    }
    constexpr void add(Meaning meaning) { m_bits[place(meaning)] |= bit(meaning); }
    /// Without a branch: what is read is hard to foresee for a processor.
    constexpr void addIf(bool read, Meaning meaning) {
        m_bits[place(meaning)] |= read ? bit(meaning) : 0;
    }
    constexpr void add(const Meanings &other) {
        for (std::size_t i = 0; i < m_bits.size(); ++i)
            m_bits[i] |= other.m_bits[i];
    }
    constexpr bool has(Meaning meaning) const {
        return (m_bits[place(meaning)] & bit(meaning)) != 0;
    }
    /// Both have some meaning.
    constexpr bool meets(const Meanings &other) const {
        std::uint64_t common = 0;
        for (std::size_t i = 0; i < m_bits.size(); ++i)
            common |= m_bits[i] & other.m_bits[i];
        return common != 0;
    }

private:
    static constexpr std::size_t place(Meaning meaning) {
        return static_cast<std::size_t>(meaning) / 64;
    }
    static constexpr std::uint64_t bit(Meaning meaning) {
        return std::uint64_t{1} << (static_cast<std::size_t>(meaning) % 64);
    }
    std::array<std::uint64_t, (kMeanings + 63) / 64> m_bits{};
};

/// One word, run of digits, punctuation mark, line break or address of the clean text.
struct Token {
    std::uint32_t begin = 0; ///< bytes of the clean text
    std::uint32_t end = 0;
    std::uint32_t word = 0;   ///< number in the lexicon, 0 when unknown
    std::uint32_t number = 0; ///< value of a Number, saturated
    std::uint32_t firstSense = 0;
    std::uint32_t sentence = 0;
    std::uint32_t field = 0;
    char32_t symbol = 0; ///< of a Symbol; every dash is '-', every quote ' or "
    Meanings meanings;   ///< of all its senses
    std::uint16_t senses = 0;
    std::uint8_t digits = 0; ///< of a Number, saturated
    TokenKind kind = TokenKind::Word;
    bool spaceBefore = false;
    bool capital = false;               ///< a Word whose first letter is upper case
    bool possessive = false;            ///< a Word in the possessive form
    bool used = false;                  ///< belongs to a value already read
    bool unspaced = false;              ///< of a script without spaces between words
    LanguageId language = kSharedWords; ///< of its line

    /// Written like a name; scripts without spaces have no capitals.
    bool upper() const { return capital && !unspaced; }
    /// One letter of a script without spaces, each of which has three bytes.
    bool isOneSign() const { return unspaced && end - begin <= 3; }
};

/// The days of the week by name, certain ("Friday") or likely ("Sun", "Mon").
inline constexpr Meanings kWeekdayNames{Meaning::Weekday, Meaning::WeakWeekday};

inline constexpr char32_t kIdeographicStop = 0x3002; ///< the full stop of Chinese and Japanese
inline constexpr char32_t kMiddleDot = 0x30FB;       ///< between the parts of a name in katakana

/// "EST", "MIT": nothing but A to Z.
inline bool allCapitals(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= 'A' && c <= 'Z'; });
}

/// A box, circle or picture, as notices set between their parts.
inline bool isShape(char32_t symbol) {
    constexpr char32_t kFirst = 0x25A0;
    return symbol >= kFirst;
}

/// `symbol` of a token, where amounts of money carry one.
inline bool isCurrencySign(char32_t symbol) {
    return symbol == U'$' || symbol == U'€' || symbol == U'£' || symbol == U'¥';
}

/// A run of tokens, `end` excluded.
struct TokenSpan {
    std::uint32_t begin = 0;
    std::uint32_t end = 0;
    bool empty() const { return begin >= end; }
};

/// A part of the text with one label or none: a line, a cell, what follows a label in a line.
struct Field {
    std::uint32_t begin = 0;
    std::uint32_t end = 0;
    std::uint32_t line = 0;
    Label label = Label::None;
    bool cell = false;    ///< one of several cells of a line
    bool spoken = false;  ///< a line of a conversation
    bool ignored = false; ///< mail headers and other text about the text
    TokenSpan labelWords; ///< the label as written
};

/// Stands for every token beyond the last: steps look a little ahead.
inline constexpr Token kNoToken{};

/// The text as every step after the tokens sees it.
struct Document {
    std::string text;
    std::vector<Token> tokens;
    std::vector<Sense> senses;
    std::vector<Field> fields;
    Meanings meanings;       ///< of all tokens
    std::uint32_t lines = 0; ///< as the text was written
    bool conversation = false;

    std::string_view slice(const Token &token) const {
        return std::string_view(text).substr(token.begin, token.end - token.begin);
    }
    std::string_view slice(TokenSpan span) const {
        if (span.empty())
            return {};
        const auto begin = tokens[span.begin].begin;
        return std::string_view(text).substr(begin, tokens[span.end - 1].end - begin);
    }
    const Token &token(std::uint32_t i) const { return i < tokens.size() ? tokens[i] : kNoToken; }
    bool sameSentence(std::uint32_t a, std::uint32_t b) const {
        return token(a).sentence == token(b).sentence;
    }
};

/// Looks at tokens, never beyond `end`. Cheap to copy.
class Reader {
public:
    Reader(const Document &document, std::uint32_t end)
        : m_document(&document)
        , m_end(end) {}

    std::uint32_t end() const { return m_end; }
    const Document &document() const { return *m_document; }
    const Token *at(std::uint32_t i) const { return i < m_end ? &m_document->tokens[i] : nullptr; }
    /// Token `i`; beyond the end one that is nothing.
    const Token &token(std::uint32_t i) const {
        return i < m_end ? m_document->tokens[i] : kNoToken;
    }
    /// The longest sense of that meaning at token `i`, or null.
    const Sense *sense(std::uint32_t i, Meaning meaning) const {
        const Token *token = at(i);
        if (!token || !token->meanings.has(meaning))
            return nullptr;
        for (std::uint32_t s = token->firstSense; s < token->firstSense + token->senses; ++s) {
            const Sense &sense = m_document->senses[s];
            if (sense.meaning == meaning && i + sense.length <= m_end)
                return &sense;
        }
        return nullptr;
    }
    bool has(std::uint32_t i, Meaning meaning) const { return sense(i, meaning) != nullptr; }
    /// The longest sense of that meaning, of at most `most` tokens, that ends right before token
    /// `i`, or null.
    const Sense *senseBefore(std::uint32_t i, Meaning meaning, std::uint32_t most) const {
        for (std::uint32_t length = std::min(most, i); length > 0; --length)
            if (const Sense *found = sense(i - length, meaning); found && found->length == length)
                return found;
        return nullptr;
    }
    /// Token `i` may have some of those meanings; without, it has none of them. Quick.
    bool mayHave(std::uint32_t i, const Meanings &meanings) const {
        const Token *token = at(i);
        return token && token->meanings.meets(meanings);
    }
    bool symbol(std::uint32_t i, char32_t symbol) const {
        const Token *token = at(i);
        return token && token->kind == TokenKind::Symbol && token->symbol == symbol;
    }
    bool word(std::uint32_t i) const {
        const Token *token = at(i);
        return token && token->kind == TokenKind::Word;
    }
    /// A run of at most `digits` digits with a value from `low` to `high`.
    bool number(std::uint32_t i, std::uint32_t low, std::uint32_t high, int digits = 2) const {
        const Token *token = at(i);
        return token && token->kind == TokenKind::Number && token->digits <= digits &&
               token->number >= low && token->number <= high;
    }
    /// No space between token `i` and the one before.
    bool glued(std::uint32_t i) const {
        const Token *token = at(i);
        return token && !token->spaceBefore;
    }
    const LanguageInfo &language(std::uint32_t i) const {
        const Token *token = at(i);
        return languageInfo(token ? token->language : kSharedWords);
    }
    /// The position behind the phrase of that meaning at `i`, or `i` itself.
    std::uint32_t skip(std::uint32_t i, Meaning meaning) const {
        const Sense *found = sense(i, meaning);
        return found ? i + found->length : i;
    }
    std::uint32_t skipSymbol(std::uint32_t i, char32_t c) const { return symbol(i, c) ? i + 1 : i; }

private:
    const Document *m_document;
    std::uint32_t m_end;
};

} // namespace pindle::conversion
