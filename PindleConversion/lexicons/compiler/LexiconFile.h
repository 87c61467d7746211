#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "PindleConversion/lexicons/Lexicon.h"

namespace pindle::conversion {

/// One line of a table: alternatives with one meaning.
struct LexiconEntry {
    std::vector<std::string> phrases;
    Meaning meaning = Meaning::Common;
    int value = 0;
    std::string note;
};

/// A lexicon as its file gives it.
struct LexiconFile {
    std::string code; ///< ISO 639-1; "" for the words that all languages share
    DayOrder dayOrder = DayOrder::DayFirst;
    Script script = Script::Latin;
    bool clock24 = true;
    bool dottedDates = false;
    bool capitalNouns = false;
    int eraYears = 0;
    std::string zones;
    std::vector<std::pair<Meaning, Meaning>> compounds; ///< words made of two: "Freitagabend"
    std::vector<Meaning> tails;
    std::array<std::string, kNotices> messages;
    std::vector<LexiconEntry> entries;
};

/// Reads a lexicon's text. Throws std::runtime_error with `name` and the line for anything it
/// does not know.
LexiconFile readLexicon(std::string_view text, const std::string &name);

/// The tables that every language must fill but this one does not, as a lexicon spells them.
/// Nothing is mandatory for the shared words.
std::vector<std::string> missingTables(const LexiconFile &lexicon);

/// "part-of-day" for `Meaning::PartOfDay`.
std::string_view tableName(Meaning meaning);

} // namespace pindle::conversion
