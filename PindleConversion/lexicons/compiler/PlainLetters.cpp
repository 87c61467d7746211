#include "PindleConversion/lexicons/compiler/PlainLetters.h"

#include <unicode/normalizer2.h>
#include <unicode/uchar.h>

#include "PindleConversion/clean/Utf8.h"

namespace pindle::conversion {

namespace {

struct Spelling {
    std::int32_t letter;
    std::string_view plain;
    std::string_view expanded;
};

/// Letters that stand for two, or that Unicode does not take apart.
constexpr Spelling kSpellings[] = {
    {0xE4, "a", "ae"},   {0xF6, "o", "oe"},  {0xFC, "u", "ue"}, {0xDF, "ss", "ss"},
    {0x153, "oe", "oe"}, {0xE6, "ae", "ae"}, {0x142, "l", "l"}, {0xF8, "o", "oe"},
};

/// Only letters of Latin script lose their marks: elsewhere a mark makes another letter.
std::string plainLetter(std::int32_t c, bool expand) {
    for (const Spelling &each : kSpellings)
        if (each.letter == c)
            return std::string(expand ? each.expanded : each.plain);
    std::string out;
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2 *normalizer = icu::Normalizer2::getNFDInstance(status);
    icu::UnicodeString parts;
    constexpr std::int32_t kLastLatin = 0x24F;
    if (U_SUCCESS(status) && c >= 0xC0 && c <= kLastLatin &&
        normalizer->getDecomposition(c, parts)) {
        appendPoint(out, parts.char32At(0));
        return out;
    }
    appendPoint(out, c);
    return out;
}

} // namespace

std::vector<std::string> plainSpellings(std::string_view phrase) {
    std::string plain;
    std::string expanded;
    for (std::size_t at = 0; at < phrase.size();) {
        const CodePoint point = decodeAt(phrase, at);
        plain += plainLetter(point.value, false);
        expanded += plainLetter(point.value, true);
        at = point.end;
    }
    std::vector<std::string> spellings;
    if (plain != phrase)
        spellings.push_back(plain);
    if (expanded != phrase && expanded != plain)
        spellings.push_back(expanded);
    return spellings;
}

} // namespace pindle::conversion
