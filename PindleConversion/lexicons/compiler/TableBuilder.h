#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "PindleConversion/lexicons/LexiconIndex.h"
#include "PindleConversion/lexicons/compiler/LexiconFile.h"

namespace pindle::conversion {

/// Merges lexicons into the tables that the engine reads.
class TableBuilder {
public:
    /// The shared words must come first. Throws std::runtime_error for a phrase that cannot be.
    explicit TableBuilder(std::vector<LexiconFile> lexicons);

    /// The tables as C++ source, which defines `kTables`.
    std::string source() const;

private:
    struct Built {
        std::vector<std::string> words;
        Sense sense;
    };

    void addLexicon(LanguageId language, const LexiconFile &lexicon);
    void addCompounds(LanguageId language, const LexiconFile &lexicon);
    void addEntry(LanguageId language, const LexiconEntry &entry);
    void addPhrase(LanguageId language, const std::string &phrase, const LexiconEntry &entry);
    void addWords(const std::vector<std::string> &words, const Sense &sense);
    std::uint16_t noteNumber(const std::string &note);
    void writePlaces(std::string &out) const;
    void writeWords(std::string &out) const;
    void writeLanguages(std::string &out) const;
    void writeZones(std::string &out) const;
    void writeShortCuts(std::string &out) const;
    void writeLetters(std::string &out) const;
    void writePhrases(std::string &out) const;
    void place();
    std::uint32_t second(const Built &phrase) const;

    struct Word {
        std::vector<Built> phrases;
        std::uint32_t languages = 0;
        std::uint8_t flags = 0;
        std::uint32_t number = 0; ///< counted from 1
        std::size_t singles = 0;  ///< phrases that are the word alone, which come first
    };

    std::vector<LexiconFile> m_lexicons;
    std::set<std::string> m_elisions;
    std::set<std::string> m_spelled; ///< the phrases of the lexicon at hand
    std::map<std::string, Word> m_words;
    std::vector<std::string> m_notes{""};
    std::vector<const std::string *> m_order; ///< the words by their numbers
};

} // namespace pindle::conversion
