#include "PindleConversion/lexicons/compiler/TableBuilder.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <sstream>
#include <stdexcept>
#include <tuple>

#include "PindleConversion/clean/Utf8.h"
#include "PindleConversion/lexicons/compiler/PlainLetters.h"
#include "PindleConversion/tokens/Languages.h"
#include "PindleConversion/tokens/Tokenizer.h"
#include "PindleConversion/tokens/Unspaced.h"

namespace pindle::conversion {

namespace {

/// Cuts phrases of the lexicons themselves: unspaced words stay whole.
class Elisions : public Vocabulary {
public:
    explicit Elisions(const std::set<std::string> &words)
        : m_words(words) {}
    bool elides(std::string_view folded) const override {
        return m_words.count(std::string(folded)) > 0;
    }
    UnspacedWord longest(std::string_view, std::size_t, CodePoint) const override { return {}; }

private:
    const std::set<std::string> &m_words;
};

bool counts(Meaning meaning) {
    return meaning == Meaning::YearMark || meaning == Meaning::MonthMark ||
           meaning == Meaning::DayMark || meaning == Meaning::HourMark ||
           meaning == Meaning::MinuteMark || meaning == Meaning::UnitWord;
}

/// A word as the engine looks it up.
std::string wordOf(const Token &token, const std::string &phrase) {
    if (token.kind != TokenKind::Symbol)
        return foldWord(phrase.substr(token.begin, token.end - token.begin));
    std::string mark;
    appendPoint(mark, static_cast<std::int32_t>(token.symbol));
    return mark;
}

bool isUnspacedWord(const std::string &word) {
    constexpr unsigned char kFirstIdeographicByte = 0xE2;
    return static_cast<unsigned char>(word.front()) > kFirstIdeographicByte;
}

/// All its letters are of such scripts.
bool isUnspacedThroughout(std::string_view word) {
    for (std::size_t at = 0; at < word.size(); at = decodeAt(word, at).end)
        if (unspacedScript(decodeAt(word, at).value) == Unspaced::None)
            return false;
    return true;
}

bool isShared(const Sense &sense) {
    return sense.isOf(kSharedWords);
}

/// Puts the letters of words into places where `longestUnspaced` finds them.
class LetterTable {
public:
    explicit LetterTable(std::size_t size)
        : m_slots(size, LetterSlot{}) {}

    void add(std::string_view text, std::uint32_t word) {
        std::uint32_t before = kWordBegin;
        for (std::size_t at = 0; at < text.size();) {
            const CodePoint letter = decodeAt(text, at);
            if (letter.value < kFirstTableLetter || letter.value > kLastTableLetter)
                throw std::runtime_error("a word without spaces has too rare a letter: " +
                                         std::string(text));
            if (before != kWordBegin)
                m_slots[before].followers |= followerBit(static_cast<std::uint32_t>(letter.value));
            before = take(letterKey(before, letter.value));
            if (at == 0)
                m_first[static_cast<std::size_t>(letter.value - kFirstTableLetter)] =
                    static_cast<std::uint16_t>(before + 1);
            at = letter.end;
            if (at == text.size())
                m_slots[before].word |= word;
        }
    }

    const std::vector<LetterSlot> &slots() const { return m_slots; }
    /// Of words: for each letter its place, counted from 1.
    const std::vector<std::uint16_t> &first() const { return m_first; }

private:
    std::uint32_t take(std::uint32_t key) {
        std::size_t at = letterPlace(key, m_slots.size());
        while (m_slots[at].key != 0 && m_slots[at].key != key)
            at = (at + 1) & (m_slots.size() - 1);
        m_slots[at].key = key;
        return static_cast<std::uint32_t>(at);
    }

    std::vector<LetterSlot> m_slots;
    std::vector<std::uint16_t> m_first =
        std::vector<std::uint16_t>(kLastTableLetter - kFirstTableLetter + 1, 0);
};

} // namespace

TableBuilder::TableBuilder(std::vector<LexiconFile> lexicons)
    : m_lexicons(std::move(lexicons)) {
    if (m_lexicons.size() > kMostLanguages)
        throw std::runtime_error("there are too many lexicons");
    for (const LexiconFile &lexicon : m_lexicons)
        for (const LexiconEntry &entry : lexicon.entries)
            for (const std::string &phrase : entry.phrases)
                if (phrase.ends_with("'") && phrase.size() > 1 &&
                    phrase.find(' ') == std::string::npos)
                    m_elisions.insert(phrase);
    for (std::size_t i = 0; i < m_lexicons.size(); ++i)
        addLexicon(static_cast<LanguageId>(i), m_lexicons[i]);
    place();
}

void TableBuilder::addLexicon(LanguageId language, const LexiconFile &lexicon) {
    m_spelled.clear();
    for (const LexiconEntry &entry : lexicon.entries)
        m_spelled.insert(entry.phrases.begin(), entry.phrases.end());
    for (const LexiconEntry &entry : lexicon.entries)
        addEntry(language, entry);
    addCompounds(language, lexicon);
}

void TableBuilder::addEntry(LanguageId language, const LexiconEntry &entry) {
    for (const std::string &phrase : entry.phrases) {
        addPhrase(language, phrase, entry);
        // "des" is another word than "dès".
        for (const std::string &plain : plainSpellings(phrase))
            if (m_spelled.count(plain) == 0)
                addPhrase(language, plain, entry);
    }
}

void TableBuilder::addPhrase(LanguageId language, const std::string &phrase,
                             const LexiconEntry &entry) {
    std::vector<std::string> words;
    for (const Token &token : tokenize(phrase, Elisions(m_elisions)))
        words.push_back(wordOf(token, phrase));
    if (words.empty() || words.size() > kLongestPhrase)
        throw std::runtime_error("a phrase is too long: " + phrase);
    for (const std::string &word : words) {
        m_words[word].languages |= 1U << language;
        if (m_elisions.count(word) > 0)
            m_words[word].flags |= kElision;
    }
    if (words.size() == 1 && counts(entry.meaning) && isUnspacedWord(words[0]))
        m_words[words[0]].flags |= kCounter;
    if (entry.meaning == Meaning::Common)
        return;
    addWords(words, Sense{entry.meaning, static_cast<std::uint8_t>(words.size()),
                          static_cast<std::int16_t>(entry.value), noteNumber(entry.note),
                          static_cast<std::uint16_t>(1U << language)});
}

void TableBuilder::addWords(const std::vector<std::string> &words, const Sense &sense) {
    auto &phrases = m_words[words[0]].phrases;
    const auto isAlike = [&](const Built &each) {
        return each.words == words && each.sense.meaning == sense.meaning;
    };
    const auto isSame = [&](const Built &each) {
        return isAlike(each) && each.sense.value == sense.value && each.sense.note == sense.note;
    };
    const auto hasLanguage = [&](const Built &each) {
        return (each.sense.languages & sense.languages) != 0;
    };
    if (std::any_of(phrases.begin(), phrases.end(),
                    [&](const Built &each) { return isSame(each) && hasLanguage(each); }))
        return;
    // Languages share what they have in common, unless it would come before what this one has said
    // first.
    const auto last = std::find_if(phrases.rbegin(), phrases.rend(), [&](const Built &each) {
        return isAlike(each) && (isSame(each) || hasLanguage(each));
    });
    if (last != phrases.rend() && isSame(*last) && !isShared(last->sense))
        last->sense.languages |= sense.languages;
    else
        phrases.push_back({words, sense});
}

/// "Donnerstagabend" has the meanings of both its parts.
void TableBuilder::addCompounds(LanguageId language, const LexiconFile &lexicon) {
    for (const auto &[head, tail] : lexicon.compounds)
        for (const LexiconEntry &first : lexicon.entries)
            for (const LexiconEntry &second : lexicon.entries) {
                if (first.meaning != head || second.meaning != tail)
                    continue;
                for (const std::string &a : first.phrases)
                    for (const std::string &b : second.phrases) {
                        const std::string word = a + b;
                        if (word.find_first_of(" .'") != std::string::npos || a.size() < 4)
                            continue;
                        LexiconEntry one = first;
                        LexiconEntry two = second;
                        one.phrases = two.phrases = {word};
                        if (head == Meaning::TowardsHour) {
                            one.meaning = Meaning::SpokenClock;
                            one.value = (second.value * 60 - 60 + first.value) % 720;
                            if (second.value > 12)
                                continue;
                        } else {
                            addEntry(language, two);
                        }
                        addEntry(language, one);
                    }
            }
}

std::uint16_t TableBuilder::noteNumber(const std::string &note) {
    auto found = std::find(m_notes.begin(), m_notes.end(), note);
    if (found == m_notes.end())
        found = m_notes.insert(found, note);
    return static_cast<std::uint16_t>(found - m_notes.begin());
}

void TableBuilder::place() {
    for (auto &[text, word] : m_words) {
        if (text.size() > std::numeric_limits<std::uint8_t>::max())
            throw std::runtime_error("a word is too long: " + text);
        m_order.push_back(&text);
        // What a language says of a word comes before what all share.
        std::stable_sort(word.phrases.begin(), word.phrases.end(),
                         [](const Built &a, const Built &b) {
                             if (a.sense.length != b.sense.length)
                                 return a.sense.length > b.sense.length;
                             return !isShared(a.sense) && isShared(b.sense);
                         });
    }
    if (m_order.size() > WordPlace::kMostWords)
        throw std::runtime_error("the lexicons have too many words");
    // Words of many phrases are those that most texts have: together they share pages of memory.
    std::stable_sort(m_order.begin(), m_order.end(), [&](const auto *a, const auto *b) {
        return m_words.at(*a).phrases.size() > m_words.at(*b).phrases.size();
    });
    std::uint32_t numbered = 0;
    for (const std::string *text : m_order)
        m_words.at(*text).number = ++numbered;
    for (auto &[text, word] : m_words) {
        std::stable_sort(word.phrases.begin(), word.phrases.end(),
                         [&](const Built &a, const Built &b) { return second(a) < second(b); });
        const auto several = std::find_if(word.phrases.begin(), word.phrases.end(),
                                          [&](const Built &each) { return second(each) != 0; });
        word.singles = static_cast<std::size_t>(several - word.phrases.begin());
        if (word.singles > std::numeric_limits<std::uint8_t>::max())
            throw std::runtime_error("a word has too many senses: " + text);
    }
}

/// The number of a phrase's second word, 0 when it has none.
std::uint32_t TableBuilder::second(const Built &phrase) const {
    return phrase.words.size() < 2 ? 0 : m_words.at(phrase.words[1]).number;
}

namespace {

std::string quoted(std::string_view text) {
    std::string out = "\"";
    for (char c : text) {
        if (c == '"' || c == '\\')
            out += '\\';
        out += c;
    }
    return out + '"';
}

std::string written(const Sense &sense) {
    return "{static_cast<Meaning>(" + std::to_string(static_cast<int>(sense.meaning)) + ")," +
           std::to_string(sense.length) + "," + std::to_string(sense.value) + "," +
           std::to_string(sense.note) + "," + std::to_string(sense.languages) + "}";
}

/// The first letters of a word, a byte each.
std::string firstLetters(std::string_view word) {
    std::string out = "{";
    for (const char c : word.substr(0, kOwnLetters))
        out += std::to_string(static_cast<int>(static_cast<signed char>(c))) + ",";
    return out + "}";
}

} // namespace

void TableBuilder::writePlaces(std::string &out) const {
    // Half full at most: probes are short.
    std::size_t size = 1024;
    while (size < m_order.size() * 2)
        size *= 2;
    std::vector<std::uint32_t> places(size, 0);
    for (const auto &[text, word] : m_words) {
        const std::uint32_t hash = hashWord(text);
        std::size_t at = hash & (size - 1);
        while (places[at] != 0)
            at = (at + 1) & (size - 1);
        places[at] = WordPlace::tag(hash) | word.number;
    }
    out += "constexpr std::uint32_t kPlaces[] = {\n";
    for (const std::uint32_t place : places)
        out += std::to_string(place) + "U,\n";
    out += "};\n";
}

void TableBuilder::writeWords(std::string &out) const {
    std::string text = "constexpr char kText[] =\n\"\"\n";
    static_assert(kMostLanguages <= std::numeric_limits<std::uint16_t>::digits);
    std::string senses = "constexpr Sense kSenses[] = {{},\n";
    std::size_t offset = 0;
    std::size_t phrases = 0;
    std::size_t many = 1;
    out += "constexpr LexiconWord kWords[] = {\n";
    for (const std::string *each : m_order) {
        const Word &word = m_words.at(*each);
        std::uint64_t followers = 0;
        std::string own;
        for (std::size_t i = 0; i < word.phrases.size(); ++i) {
            if (i >= word.singles)
                followers |= followerBit(second(word.phrases[i]));
            else
                own += written(word.phrases[i].sense) + ",";
        }
        const bool fits = word.singles <= kOwnSenses;
        const std::size_t several = word.phrases.size() - word.singles;
        out += "{" + std::to_string(followers) + "U," + std::to_string(offset) + "," +
               std::to_string(phrases) + "," + std::to_string(fits ? 0 : many) + "," +
               std::to_string(word.languages) + "," + std::to_string(several) + "," +
               std::to_string(word.singles) + "," + std::to_string(each->size()) + "," +
               std::to_string(word.flags) + "," +
               std::to_string(std::popcount(word.languages & ~1U)) + "," + firstLetters(*each) +
               ",{{" + (fits ? own : "") + "}}},\n";
        if (!fits) {
            senses += own + "\n";
            many += word.singles;
        }
        text += quoted(*each) + "\n";
        offset += each->size();
        phrases += several;
    }
    out += "};\n" + text + ";\n" + senses + "};\n";
}

void TableBuilder::writePhrases(std::string &out) const {
    std::string rest = "constexpr std::uint32_t kPhraseWords[] = {0,\n";
    std::uint32_t count = 1;
    out += "constexpr Phrase kPhrases[] = {\n";
    for (const std::string *text : m_order) {
        const Word &word = m_words.at(*text);
        for (std::size_t i = word.singles; i < word.phrases.size(); ++i) {
            const Built &phrase = word.phrases[i];
            out += "{" + std::to_string(second(phrase)) + "," + std::to_string(count) + "," +
                   written(phrase.sense) + "},\n";
            for (std::size_t k = 2; k < phrase.words.size(); ++k, ++count)
                rest += std::to_string(m_words.at(phrase.words[k]).number) + ",\n";
        }
    }
    out += "};\n" + rest + "};\n";
}

void TableBuilder::writeZones(std::string &out) const {
    std::map<std::string, std::uint32_t> zones;
    for (std::size_t i = 0; i < m_lexicons.size(); ++i) {
        std::istringstream names(m_lexicons[i].zones);
        for (std::string name; std::getline(names, name, '|');)
            if (!name.empty())
                zones[name] |= 1U << i;
    }
    out += "constexpr SpokenZone kZones[] = {\n";
    struct Shorter {
        std::string name;
        std::uint32_t languages = 0;
        std::size_t line = 0; ///< counted from 1
    };
    std::vector<Shorter> before{{}}; // what begins the name, and what begins that
    std::size_t line = 0;
    for (const auto &[name, languages] : zones) {
        while (!name.starts_with(before.back().name))
            before.pop_back();
        const std::uint32_t all = languages | before.back().languages;
        out += "{" + quoted(name) + "," + std::to_string(all) + "," +
               std::to_string(before.back().line) + "},\n";
        before.push_back({name, all, ++line});
    }
    out += "};\n";
}

void TableBuilder::writeShortCuts(std::string &out) const {
    constexpr std::size_t kAscii = 128;
    std::vector<std::uint32_t> letters(kAscii, 0);
    for (const auto &[text, word] : m_words)
        if (const auto c = static_cast<unsigned char>(text[0]); text.size() == 1 && c < kAscii)
            letters[c] = word.number;
    out += "constexpr std::uint32_t kOneByte[] = {\n";
    for (std::uint32_t letter : letters)
        out += std::to_string(letter) + ",\n";
    out += "};\n";
}

void TableBuilder::writeLetters(std::string &out) const {
    constexpr std::size_t kMost = 1U << 16U; ///< places have 16 bits in a key
    std::vector<std::pair<std::string_view, std::uint32_t>> words;
    std::set<std::string_view> letters; ///< each with those before it
    for (const auto &[text, word] : m_words)
        if (isUnspacedThroughout(text)) {
            for (std::size_t at = 0; at < text.size();)
                letters.insert(std::string_view(text).substr(0, at = decodeAt(text, at).end));
            words.emplace_back(text,
                               word.number | ((word.flags & kCounter) != 0 ? kLetterCounter : 0U));
        }
    // Three quarters full at most: few steps look at a second place.
    const std::size_t size = std::bit_ceil(letters.size() + letters.size() / 3 + 1);
    if (size >= kMost)
        throw std::runtime_error("the words without spaces have too many letters");
    LetterTable table(size);
    for (const auto &[text, word] : words)
        table.add(text, word);
    out += "constexpr LetterSlot kLetters[] = {\n";
    for (const LetterSlot &slot : table.slots())
        out += "{" + std::to_string(slot.followers) + "U," + std::to_string(slot.key) + "U," +
               std::to_string(slot.word) + "U},\n";
    out += "};\nconstexpr std::uint16_t kFirstLetters[] = {\n";
    for (const std::uint16_t place : table.first())
        out += std::to_string(place) + ",\n";
    out += "};\n";
}

void TableBuilder::writeLanguages(std::string &out) const {
    out += "constexpr std::string_view kNotes[] = {\n";
    for (const std::string &note : m_notes)
        out += quoted(note) + ",\n";
    out += "};\nconstexpr LanguageInfo kLanguages[] = {\n";
    for (const LexiconFile &lexicon : m_lexicons) {
        out += "{" + quoted(lexicon.code) + ",static_cast<DayOrder>(" +
               std::to_string(static_cast<int>(lexicon.dayOrder)) + "),static_cast<Script>(" +
               std::to_string(static_cast<int>(lexicon.script)) + ")," +
               (lexicon.clock24 ? "true," : "false,") + (lexicon.dottedDates ? "true," : "false,") +
               (lexicon.capitalNouns ? "true," : "false,") + std::to_string(lexicon.eraYears) +
               "," + (lexicon.tails.empty() ? "false" : "true") + ",{";
        for (std::size_t i = 0; i < kMeanings; ++i)
            out +=
                std::count(lexicon.tails.begin(), lexicon.tails.end(), static_cast<Meaning>(i)) > 0
                    ? "true,"
                    : "false,";
        out += "},{\n";
        for (const std::string &message : lexicon.messages)
            out += quoted(message) + ",\n";
        out += "}},\n";
    }
    out += "};\n";
}

std::string TableBuilder::source() const {
    std::string out = "// Made from the lexicons when the program is built.\n"
                      "#include \"PindleConversion/lexicons/LexiconIndex.h\"\n"
                      "namespace pindle::conversion {\nnamespace {\n";
    writePlaces(out);
    writeWords(out);
    writePhrases(out);
    writeLanguages(out);
    writeZones(out);
    writeShortCuts(out);
    writeLetters(out);
    out += "} // namespace\n"
           "constinit const Tables kTables{kPlaces, kWords, kText, kSenses, kPhrases, "
           "kPhraseWords, kNotes, kLanguages, kZones, kOneByte, kLetters, "
           "kFirstLetters};\n} // namespace "
           "pindle::conversion\n";
    return out;
}

} // namespace pindle::conversion
