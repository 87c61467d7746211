#pragma once

#include <string_view>

#include "PindleConversion/lexicons/Lexicon.h"

namespace pindle::conversion {

/// What stands before the "=" of a table's lines.
enum class Values : std::uint8_t {
    Number, ///< a number, or nothing for 0
    None,   ///< nothing
    Note,   ///< a text
    Unit,
    Part,
    Label,
    Event,
    Role,
    Which,
    Period, ///< "next-week"
    Holiday ///< 1225, "easter+1", or "4/4/11": the fourth Thursday of November, "-1/1/5"
};

struct TableKind {
    std::string_view name;
    Meaning meaning;
    Values values;
    int value = 0; ///< of `None` and `Note`
};

/// The table of that name, or null.
const TableKind *findTable(std::string_view name);

/// The number behind a word that stands for a value ("evening"), -1 for no such word.
int valueNamed(Values values, std::string_view word);

/// The notice of that name ("today-assumed"), `None` for no such name.
Notice noticeNamed(std::string_view name);
std::string_view noticeName(Notice notice);

} // namespace pindle::conversion
