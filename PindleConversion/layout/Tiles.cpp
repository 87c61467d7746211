#include "PindleConversion/layout/Tiles.h"

#include <array>
#include <vector>

namespace pindle::conversion {

namespace {

enum class Piece : std::uint8_t { None, Weekday, Day, Month, Year };

/// What a line that starts at token `i` says when it is a single piece of a date; `next` becomes
/// the token behind it.
Piece pieceAt(const Reader &reader, std::uint32_t i, std::uint32_t &next) {
    Piece piece = Piece::None;
    next = i + 1;
    const auto named = [&](Meaning meaning, Piece kind) {
        if (const Sense *sense = reader.sense(i, meaning); sense && piece == Piece::None) {
            piece = kind;
            next = i + sense->length;
        }
    };
    named(Meaning::Month, Piece::Month);
    named(Meaning::Weekday, Piece::Weekday);
    named(Meaning::WeakWeekday, Piece::Weekday);
    if (reader.number(i, 1, 31)) {
        piece = Piece::Day;
        if (reader.has(next, Meaning::OrdinalMark) && reader.glued(next))
            ++next;
    } else if (reader.number(i, 2000, 2199, 4)) {
        piece = Piece::Year;
    }
    if (piece != Piece::None && (reader.symbol(next, ',') || reader.symbol(next, '.')))
        ++next;
    const Token *behind = reader.at(next);
    return !behind || behind->kind == TokenKind::LineBreak ? piece : Piece::None;
}

/// The token behind the last line of the tile at `begin`, or `begin`.
std::uint32_t tileEnd(const Reader &reader, std::uint32_t begin) {
    constexpr std::uint32_t kKinds = 5;
    std::array<bool, kKinds> seen{};
    std::uint32_t end = begin;
    for (std::uint32_t i = begin; reader.at(i);) {
        std::uint32_t next = i;
        const auto kind = static_cast<std::size_t>(pieceAt(reader, i, next));
        if (kind == 0 || seen[kind])
            break;
        seen[kind] = true;
        end = next;
        i = next + 1;
    }
    const bool date =
        seen[static_cast<std::size_t>(Piece::Day)] && seen[static_cast<std::size_t>(Piece::Month)];
    return date ? end : begin;
}

/// "... the measure-up on Tue" above "20 Jan, at 1pm", "on 20" above "January": the end of a line
/// cuts a date in two.
bool cutsDate(const Reader &reader, std::uint32_t lineBreak) {
    static constexpr Meanings kLead{Meaning::DateMarker, Meaning::This, Meaning::Next,
                                    Meaning::The};
    const std::uint32_t next = lineBreak + 1;
    const bool month = reader.has(next, Meaning::Month);
    if (lineBreak < 3 || !(month || reader.number(next, 1, 31)))
        return false;
    std::uint32_t last = lineBreak - 1;
    const bool mark = reader.symbol(last, ',') || reader.symbol(last, '.');
    last -= mark ? 1U : 0U;
    if (reader.mayHave(last, kWeekdayNames))
        return !month && reader.mayHave(last - 1, kLead) &&
               (reader.has(next + 1, Meaning::Month) ||
                (reader.has(next + 1, Meaning::OrdinalMark) && reader.glued(next + 1)));
    return month && !mark && reader.number(last, 1, 31) &&
           (reader.mayHave(last - 1, kLead) || reader.mayHave(last - 1, kWeekdayNames));
}

} // namespace

void joinDateTiles(Document &document) {
    if (document.lines < 2)
        return;
    auto &tokens = document.tokens;
    const auto size = static_cast<std::uint32_t>(tokens.size());
    const Reader reader(document, size);
    std::vector<std::uint32_t> breaks;
    bool lineStart = true;
    for (std::uint32_t i = 0; i < size; ++i) {
        const std::uint32_t end = lineStart ? tileEnd(reader, i) : i;
        for (; i < end; ++i)
            if (tokens[i].kind == TokenKind::LineBreak)
                breaks.push_back(i);
        lineStart = i < size && tokens[i].kind == TokenKind::LineBreak;
        if (lineStart && cutsDate(reader, i)) {
            breaks.push_back(i);
            lineStart = false;
        }
    }
    if (breaks.empty())
        return;
    std::size_t gap = 0;
    std::uint32_t to = 0;
    for (std::uint32_t i = 0; i < size; ++i) {
        if (gap < breaks.size() && breaks[gap] == i) {
            ++gap;
            if (i + 1 < size)
                tokens[i + 1].spaceBefore = true;
            continue;
        }
        tokens[to++] = tokens[i];
    }
    tokens.resize(to);
}

} // namespace pindle::conversion
