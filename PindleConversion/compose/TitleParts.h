#pragma once

#include <vector>

#include "PindleConversion/compose/TitleWords.h"

namespace pindle::conversion {

/// Cuts what may be a title out of a run: its parts, without fillers and loose ends.
class TitleParts : private TitleWords {
public:
    explicit TitleParts(const Document &document)
        : TitleWords(document) {}

    /// A run as a whole, or cut where it is too long for a title or starts with a greeting.
    std::vector<TokenSpan> partsOf(TokenSpan run) const;
    /// Drops fillers from the front and loose ends from the back until nothing more goes.
    TokenSpan trim(TokenSpan span) const;
    /// Drops marks alone from both ends.
    TokenSpan trimMarks(TokenSpan span) const;
    /// A span that is too wide for a title, cut at a comma where there is one.
    TokenSpan shorten(TokenSpan span) const;

private:
    // TitleParts.cpp
    /// The mark that closes the short name in quotes that opens at `open`, or 0.
    std::uint32_t quoteEnd(const Reader &reader, std::uint32_t open) const;
    /// "“青松”项目评审会", "「読書の秋」講座": the mark that closes the quotation from `open`,
    /// behind which the name goes on; else 0.
    std::uint32_t joinedQuote(const Reader &reader, std::uint32_t open) const;
    /// A mark that no title goes beyond.
    bool isHardBreak(const Reader &reader, std::uint32_t i) const;
    /// '<' or '>' for the marks around the name of a work ("话剧《茶馆》"), else 0.
    char bookMark(std::uint32_t i) const;
    /// The mark at the edge `i` belongs to one further inside.
    bool enclosesName(TokenSpan span, std::uint32_t i) const;
    /// "升级维护，期间无法登录": behind the comma something else is said.
    bool startsClause(const Reader &reader, std::uint32_t i) const;
    /// "Osteoporosis – myths and facts" goes on behind its dash.
    bool isSubtitle(const Reader &reader, std::uint32_t i) const;
    /// "Pszczoły w mieście – wykład", "DIE NACHTFALTER – Tour 2025": the kind that closes a line
    /// belongs to the name before it.
    bool isKindBehind(const Reader &reader, std::uint32_t i) const;
    /// A mark at which a title is cut when it is too long.
    bool isSoftBreak(const Reader &reader, std::uint32_t i) const;
    /// Columns that the span takes, with two for a wide sign.
    int columns(TokenSpan span) const;
    /// Quicker: no character takes more columns than it has bytes.
    bool mayExceed(TokenSpan span, int width) const;

    // TitleTrim.cpp
    /// Drops one mark or filler from the front.
    TokenSpan trimFront(TokenSpan span) const;
    /// "re fwd: ...": one prefix of a mail's subject follows another.
    static bool isPrefix(const Reader &reader, std::uint32_t i);
    /// "BOOK FAIR STARTS AT": in capitals because all the text is.
    bool shouts(TokenSpan span) const;
    /// "IT", "US": a pronoun in capitals, where the next word is not.
    bool isAbbreviation(const Reader &reader, std::uint32_t i) const;
    /// "Appointment" that nothing follows names the event itself.
    bool isKindAlone(TokenSpan span) const;
    /// A sign before letters that no lexicon knows is the first of a longer word.
    bool startsLongerWord(TokenSpan span, std::uint32_t next) const;
    /// "On call", "Book fair": the filler's word belongs to a kind of event.
    bool namesEvent(const Reader &reader, std::uint32_t i, const Sense &lead) const;
    /// "The Tempest" and "A Midsummer..." are names.
    bool isArticle(const Reader &reader, std::uint32_t i) const;
    /// Drops one mark, length or loose end from the back.
    TokenSpan trimBack(TokenSpan span) const;
    /// "Course: 3 days" loses its length; returns where it starts, or the end.
    std::uint32_t lengthBehind(TokenSpan span) const;
    /// "Exhibition 'Light'": the quotation mark belongs to the one before.
    bool closesQuote(TokenSpan span, std::uint32_t last) const;
    /// A capitalised last word behind another is part of a name ("Sign On").
    bool isName(TokenSpan span, std::uint32_t last) const;
    /// A bracket at `at` that does not close within the span, a round one that closes at its end,
    /// or a square one.
    bool isUnclosed(TokenSpan span, std::uint32_t at) const;
    /// A bracket at `at` that was not opened within the span, or only at its begin.
    bool isUnopened(TokenSpan span, std::uint32_t at) const;
};

} // namespace pindle::conversion
