#include "PindleConversion/expressions/Expression.h"

namespace pindle::conversion {

namespace {

constexpr std::uint32_t kMostGroups = 8;
constexpr int kShortestRow = 9; ///< digits; a date and an hour have fewer

/// A blank (0), or a full stop or hyphen without blanks around it; nothing else joins a row.
std::optional<char32_t> joint(const Reader &reader, std::uint32_t i, std::uint32_t &next) {
    const auto isNumber = [&](std::uint32_t at) {
        return reader.at(at) && reader.token(at).kind == TokenKind::Number;
    };
    if (isNumber(i)) {
        next = i + 1;
        return U'\0';
    }
    const bool mark = reader.symbol(i, '.') || reader.symbol(i, '-');
    if (!mark || !reader.glued(i) || !reader.glued(i + 1) || !isNumber(i + 1))
        return std::nullopt;
    next = i + 2;
    return reader.token(i).symbol;
}

} // namespace

std::uint32_t skipNumberRow(const Reader &reader, std::uint32_t i) {
    const Token *first = reader.at(i);
    if (!first || first->kind != TokenKind::Number)
        return i;
    int digits = first->digits;
    std::optional<char32_t> kind;
    std::uint32_t end = i + 1;
    for (std::uint32_t groups = 1; groups < kMostGroups; ++groups) {
        std::uint32_t next = end;
        const auto by = joint(reader, end, next);
        if (!by || (kind && *kind != *by))
            break;
        kind = by;
        end = next;
        digits += reader.token(end - 1).digits;
    }
    return digits >= kShortestRow && end > i + 2 ? end : i;
}

bool isCounted(const Reader &reader, std::uint32_t next) {
    constexpr std::uint32_t kLastDay = 31;
    std::uint32_t second = reader.skip(next, Meaning::And);
    second = reader.skipSymbol(second, ',');
    return second != next && reader.number(second, kLastDay + 1, 9999, 4) &&
           !reader.symbol(second + 1, ':');
}

} // namespace pindle::conversion
