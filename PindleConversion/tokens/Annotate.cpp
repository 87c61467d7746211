#include "PindleConversion/tokens/Annotate.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "PindleConversion/clean/Utf8.h"
#include "PindleConversion/tokens/Languages.h"
#include "PindleConversion/tokens/Tokenizer.h"
#include "PindleConversion/tokens/Unspaced.h"

namespace pindle::conversion {

namespace {

constexpr std::size_t kLongestWord = 64;   ///< bytes of a word that is looked up
constexpr std::size_t kShortestTail = 4;   ///< bytes of a compound's last part
constexpr std::size_t kShortestStreet = 3; ///< of the end of a street's name
constexpr std::size_t kLongestTail = 16;
/// Another language of the text counts when it has this share of the first one's evidence.
constexpr int kSecondaryShare = 4;
constexpr int kSecondaryLeast = 200; ///< more than one word tells
/// A line is in the text's language unless another one has so much more evidence there.
constexpr int kDocumentShare = 6;

class Words : public Vocabulary {
public:
    bool elides(std::string_view folded) const override {
        const std::uint32_t word = findWord(folded);
        return word != 0 && (lexiconWord(word).flags & kElision) != 0;
    }

    UnspacedWord longest(std::string_view text, std::size_t at, CodePoint letter) const override {
        return longestUnspaced(text, at, letter);
    }
};

/// Meanings that a foreign word keeps among words of another language.
constexpr Meanings kContent{
    Meaning::Month,     Meaning::Weekday,    Meaning::RelativeDay, Meaning::Event,
    Meaning::Zone,      Meaning::ZoneWord,   Meaning::LabelWord,   Meaning::Online,
    Meaning::PlaceNoun, Meaning::StreetWord, Meaning::UnitWord,    Meaning::Holiday,
    Meaning::PartOfDay, Meaning::ClockWord,  Meaning::Meridiem,    Meaning::Wrote};

/// ASCII letters in lower case; 0 for all other bytes.
constexpr auto kLower = [] {
    std::array<char, 256> lower{};
    for (char c = 'a'; c <= 'z'; ++c)
        lower[static_cast<unsigned char>(c)] = lower[static_cast<unsigned char>(c - 'a' + 'A')] = c;
    return lower;
}();

struct Line {
    std::uint32_t begin;
    std::uint32_t end;
};

class Annotator {
public:
    Annotator(Document &document, std::string_view userZone)
        : m_document(document) {
        m_total.addZone(userZone);
    }

    void run() {
        cutLines();
        chooseLanguages();
        m_document.senses.reserve(m_document.tokens.size());
        for (std::size_t i = 0; i < m_lines.size(); ++i)
            annotate(m_lines[i], languageOf(i));
        m_document.lines = static_cast<std::uint32_t>(m_lines.size());
    }

private:
    /// What tells the language of a line.
    struct Evidence {
        LanguageScores scores;
        int unspaced = 0;   ///< words in scripts without spaces
        int ideographs = 0; ///< of them those of ideographs
    };

    void cutLines() {
        const auto size = static_cast<std::uint32_t>(m_document.tokens.size());
        constexpr std::size_t kUsual = 8;
        m_lines.reserve(kUsual);
        m_scores.reserve(kUsual);
        std::uint32_t begin = 0;
        Evidence line;
        for (std::uint32_t i = 0; i < size; ++i) {
            Token &token = m_document.tokens[i];
            lookUp(token, line);
            if (token.kind != TokenKind::LineBreak && i + 1 < size)
                continue;
            line.scores.addScript(Script::Japanese, line.unspaced);
            line.scores.addScript(Script::Chinese, line.ideographs);
            m_lines.push_back({begin, i + 1});
            m_scores.push_back(line.scores);
            m_total.add(line.scores);
            line = {};
            begin = i + 1;
        }
    }

    void lookUp(Token &token, Evidence &line) {
        const auto text = m_document.slice(token);
        if (token.kind == TokenKind::Symbol) {
            lookUpSymbol(token);
        } else if (token.kind == TokenKind::Number && token.digits <= 2 && !token.unspaced) {
            token.word = token.digits == 1 ? kTables.oneByte[static_cast<unsigned char>(text[0])]
                                           : findWord(text);
        } else if (token.kind == TokenKind::Word && text.size() <= kLongestWord) {
            // Words without spaces were found when they were cut.
            if (!token.unspaced)
                lookUpWord(token, text);
            if (token.word != 0 && !isAbbreviation(text, lexiconWord(token.word)))
                line.scores.addWord(lexiconWord(token.word), text.size());
            if (token.unspaced)
                tellScript(text, line);
        }
    }

    /// "9:00 BST", "15:00 EST": what all languages abbreviate so tells none, though a word of one
    /// may be spelled alike.
    static bool isAbbreviation(std::string_view text, const LexiconWord &word) {
        constexpr std::size_t kLongest = 5; ///< bytes
        return (word.languages >> kSharedWords & 1U) != 0 && text.size() <= kLongest &&
               allCapitals(text);
    }

    void lookUpSymbol(Token &token) {
        if (token.symbol < kTables.oneByte.size()) {
            token.word = kTables.oneByte[token.symbol];
            return;
        }
        m_folded.clear();
        appendPoint(m_folded, static_cast<std::int32_t>(token.symbol));
        token.word = findWord(m_folded);
    }

    void lookUpWord(Token &token, std::string_view text) {
        if (!foldPlain(text, token))
            return lookUpLetters(token, text);
    }

    /// The common case: a word of unaccented letters. Folds and hashes at once.
    static bool foldPlain(std::string_view text, Token &token) {
        std::array<char, kLongestWord> folded;
        std::uint32_t hash = kHashStart;
        for (std::size_t i = 0; i < text.size(); ++i) {
            const char c = kLower[static_cast<unsigned char>(text[i])];
            if (c == 0)
                return false;
            folded[i] = c;
            hash = hashByte(hash, c);
        }
        token.word = findWord({folded.data(), text.size()}, hash);
        return true;
    }

    void lookUpLetters(Token &token, std::string_view text) {
        foldWord(text, m_folded);
        token.word = findWord(m_folded);
        if (token.word != 0 || m_folded.size() <= 2 || !m_folded.ends_with("'s"))
            return;
        token.possessive = true;
        token.word = findWord(std::string_view(m_folded).substr(0, m_folded.size() - 2));
    }

    static void tellScript(std::string_view text, Evidence &line) {
        ++line.unspaced;
        if (unspacedScript(decodeAt(text, 0).value) == Unspaced::Ideograph)
            ++line.ideographs;
    }

    void chooseLanguages() {
        const std::uint32_t all = (1U << kTables.languages.size()) - 2U;
        m_main = m_total.best(all, m_english);
        for (std::size_t i = 1; i < kTables.languages.size(); ++i) {
            const int score = m_total.of(static_cast<LanguageId>(i));
            if (score >= kSecondaryLeast && score * kSecondaryShare >= m_total.of(m_main) &&
                hasOwnLine(static_cast<LanguageId>(i)))
                m_active |= 1U << i;
        }
        m_active |= 1U << m_main;
    }

    /// Languages that share their letters lend each other no words within a line.
    bool hasOwnLine(LanguageId language) const {
        if (languageInfo(language).script == Script::Latin)
            return true;
        return std::any_of(m_scores.begin(), m_scores.end(), [&](const LanguageScores &line) {
            return line.of(language) > line.of(m_main);
        });
    }

    LanguageId languageOf(std::size_t line) const {
        LanguageId best = m_main;
        int most = m_scores[line].of(m_main) + m_total.of(m_main) / kDocumentShare;
        for (std::size_t i = 1; i < kTables.languages.size(); ++i) {
            const auto language = static_cast<LanguageId>(i);
            if ((m_active >> i & 1U) == 0 || language == m_main)
                continue;
            const int score = m_scores[line].of(language) + m_total.of(language) / kDocumentShare;
            if (score > most) {
                most = score;
                best = language;
            }
        }
        return best;
    }

    void annotate(const Line &line, LanguageId language) {
        for (std::uint32_t i = line.begin; i < line.end; ++i) {
            Token &token = m_document.tokens[i];
            token.language = language;
            token.firstSense = static_cast<std::uint32_t>(m_document.senses.size());
            if (token.word != 0)
                noteSenses(i, lexiconWord(token.word), language);
            if (token.kind == TokenKind::Word && !token.unspaced)
                noteTail(i, language);
            token.senses = static_cast<std::uint16_t>(m_document.senses.size() - token.firstSense);
            m_document.meanings.add(token.meanings);
        }
    }

    void noteSenses(std::uint32_t i, const LexiconWord &word, LanguageId language) {
        const std::uint32_t own = 1U << language | 1U << kSharedWords;
        const bool ownWord = (word.languages >> language & 1U) != 0;
        const std::uint32_t foreign = 0U - static_cast<std::uint32_t>(!ownWord); // no branch
        const std::uint32_t read = own | (m_active & foreign);
        const std::uint32_t lent = 1U << m_english & foreign;
        const auto isRead = [&](const Sense &sense) {
            const std::uint32_t from = read | (kContent.has(sense.meaning) ? lent : 0);
            return (from & sense.languages) != 0;
        };
        auto &senses = m_document.senses;
        auto &tokens = m_document.tokens;
        Meanings &meanings = tokens[i].meanings;
        const std::uint32_t next = i + 1 < tokens.size() ? tokens[i + 1].word : 0;
        // The longer ones come first.
        if (next != 0 && mayFollow(word, next))
            for (const Phrase &phrase : phrasesWith(word, next))
                if (isRead(phrase.sense) && matches(i, phrase)) {
                    senses.push_back(phrase.sense);
                    meanings.add(phrase.sense.meaning);
                }
        // Which languages have a word is hard to foresee, for the processor as well: each sense
        // is written down, and the next one takes its place if it is not read.
        const auto single = sensesOf(word);
        if (single.empty())
            return;
        std::size_t count = senses.size();
        senses.resize(count + single.size());
        for (const Sense &sense : single) {
            const bool taken = isRead(sense);
            senses[count] = sense;
            count += taken ? 1U : 0U;
            meanings.addIf(taken, sense.meaning);
        }
        senses.resize(count);
    }

    bool matches(std::uint32_t at, const Phrase &phrase) const {
        if (at + phrase.sense.length > m_document.tokens.size())
            return false;
        for (std::uint32_t k = 2; k < phrase.sense.length; ++k)
            if (m_document.tokens[at + k].word != kTables.phraseWords[phrase.rest + k - 2])
                return false;
        return true;
    }

    /// "Elternabend" is an evening event, "Turnhalle" a place: what a compound ends with tells.
    void noteTail(std::uint32_t i, LanguageId language) {
        const Token &token = m_document.tokens[i];
        const LanguageInfo &info = languageInfo(language);
        const auto text = m_document.slice(token);
        if (!info.hasTails || text.size() > kLongestWord || text.size() < kShortestTail + 2 ||
            hasTailMeaning(token, info))
            return;
        // "hochgeladen" is no shop, "Gastherme" no bath.
        if (token.word != 0 && isOther(token))
            return;
        foldWord(text, m_folded);
        const std::string_view whole = m_folded;
        const std::size_t longest = std::min(kLongestTail, whole.size() - 2);
        for (std::size_t length = longest; length >= kShortestTail; --length) {
            const auto tail = whole.substr(whole.size() - length);
            if ((static_cast<unsigned char>(tail.front()) & 0xC0) == 0x80)
                continue;
            const std::uint32_t word = findWord(tail);
            if (word != 0 && noteTailSenses(i, lexiconWord(word), language, isName(i, info)))
                return;
        }
        // "Rosenweg 5": before its number even so short an end tells a street.
        const Token &next = m_document.token(i + 1);
        if (next.kind == TokenKind::Number && next.spaceBefore && token.capital)
            if (const std::uint32_t word = findWord(whole.substr(whole.size() - kShortestStreet)))
                noteStreet(i, lexiconWord(word), language);
    }

    void noteSense(std::uint32_t i, const Sense &sense) {
        m_document.senses.push_back(sense);
        m_document.tokens[i].meanings.add(sense.meaning);
    }

    void noteStreet(std::uint32_t i, const LexiconWord &word, LanguageId language) {
        for (const Sense &sense : sensesOf(word))
            if (sense.isOf(language) && sense.meaning == Meaning::StreetWord)
                noteSense(i, sense);
    }

    bool hasTailMeaning(const Token &token, const LanguageInfo &info) const {
        return std::any_of(m_document.senses.begin() + token.firstSense, m_document.senses.end(),
                           [&](const Sense &sense) {
                               return sense.length == 1 &&
                                      info.tails[static_cast<std::size_t>(sense.meaning)];
                           });
    }

    bool isOther(const Token &token) const {
        return std::any_of(m_document.senses.begin() + token.firstSense, m_document.senses.end(),
                           [](const Sense &sense) {
                               return sense.meaning == Meaning::PastVerb ||
                                      (sense.meaning == Meaning::NotAPlace && sense.length == 1);
                           });
    }

    /// "Garage Veldkamp": where nouns are not, a capital behind another one is of a name.
    bool isName(std::uint32_t i, const LanguageInfo &info) const {
        return !info.capitalNouns && i > 0 && m_document.tokens[i].capital &&
               m_document.tokens[i - 1].capital && m_document.tokens[i].spaceBefore;
    }

    /// `name`: the end of a name tells no kind of event.
    bool noteTailSenses(std::uint32_t i, const LexiconWord &word, LanguageId language, bool name) {
        const LanguageInfo &info = languageInfo(language);
        bool found = false;
        for (const Sense &sense : sensesOf(word)) {
            if (!sense.isOf(language) || !info.tails[static_cast<std::size_t>(sense.meaning)] ||
                (name && sense.meaning == Meaning::Event))
                continue;
            noteSense(i, sense);
            found = true;
        }
        return found;
    }

    Document &m_document;
    std::vector<Line> m_lines;
    std::vector<LanguageScores> m_scores;
    LanguageScores m_total;
    const LanguageId m_english = englishLanguage();
    LanguageId m_main = kSharedWords;
    std::uint32_t m_active = 0;
    std::string m_folded;
};

} // namespace

const Vocabulary &lexiconVocabulary() {
    static const Words words;
    return words;
}

void annotate(Document &document, std::string_view userZone) {
    Annotator(document, userZone).run();
}

} // namespace pindle::conversion
