#include "PindleConversion/compose/Compose.h"

#include <algorithm>

#include "PindleConversion/clean/Utf8.h"

namespace pindle::conversion {

bool isEdgeMark(const Token &token) {
    if (token.kind == TokenKind::LineBreak)
        return true;
    if (token.kind != TokenKind::Symbol)
        return false;
    constexpr std::u32string_view marks =
        U",;:-.!?\u00BF\u00A1\u3002|/\\<>•~=*\"'@&+_^\t\U0001F4CD\U0001F4C5\U000023F0→…";
    return marks.find(token.symbol) != std::u32string_view::npos;
}

TokenSpan inReach(const Field &field, std::uint32_t anchor) {
    constexpr std::uint32_t kReach = 600;
    const TokenSpan around{std::max(field.begin, anchor - std::min(anchor, kReach)),
                           std::min(field.end, anchor + kReach)};
    return around.empty() ? TokenSpan{field.begin, std::min(field.end, kReach)} : around;
}

std::vector<Run> runsOf(const Document &document, TokenSpan part) {
    std::vector<Run> runs;
    bool afterUsed = false;
    for (std::uint32_t i = part.begin; i < part.end;) {
        if (document.tokens[i].used) {
            afterUsed = true;
            ++i;
            continue;
        }
        Run run;
        run.span = {i, i};
        run.afterUsed = afterUsed;
        while (i < part.end && !document.tokens[i].used && document.sameSentence(i, run.span.begin))
            ++i;
        run.span.end = i;
        run.beforeUsed = i < part.end && document.tokens[i].used;
        afterUsed = false;
        runs.push_back(run);
    }
    return runs;
}

std::string spanText(const Document &document, TokenSpan span) {
    std::string text;
    bool space = false;
    for (char c : document.slice(span)) {
        if (c == ' ' || c == '\n' || c == '\t') {
            space = !text.empty();
            continue;
        }
        if (space)
            text += ' ';
        space = false;
        text += c;
    }
    return text;
}

std::string describe(const Document &document, TokenSpan title, TokenSpan place) {
    constexpr std::size_t kLongest = 4000;
    const auto inside = [](TokenSpan span, std::uint32_t i) {
        return i >= span.begin && i < span.end;
    };
    bool more = false;
    for (std::uint32_t i = 0; i < document.tokens.size() && !more; ++i) {
        const Token &token = document.tokens[i];
        const Reader reader(document, static_cast<std::uint32_t>(document.tokens.size()));
        const bool says = token.kind != TokenKind::Symbol && token.kind != TokenKind::LineBreak;
        const bool filler = reader.has(i, Meaning::TitleTail) ||
                            reader.has(i, Meaning::TitleLead) ||
                            reader.has(i, Meaning::PlaceMarker);
        more = says && !filler && !token.used && !inside(title, i) && !inside(place, i);
    }
    if (!more)
        return {};
    if (document.text.size() <= kLongest)
        return document.text;
    return document.text.substr(0, letterBegin(document.text, kLongest));
}

} // namespace pindle::conversion
