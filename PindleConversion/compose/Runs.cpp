#include "PindleConversion/compose/Compose.h"

#include <algorithm>
#include <array>

#include "PindleConversion/clean/Utf8.h"

namespace pindle::conversion {

namespace {

constexpr auto kAsciiMarks = [] {
    std::array<bool, 128> marks{};
    for (const char c : std::string_view(",;:-.!?|/\\<>~=*\"'@&+_^\t"))
        marks[static_cast<unsigned char>(c)] = true;
    return marks;
}();

} // namespace

bool isEdgeMark(const Token &token) {
    if (token.kind == TokenKind::LineBreak)
        return true;
    if (token.kind != TokenKind::Symbol)
        return false;
    if (token.symbol < kAsciiMarks.size())
        return kAsciiMarks[token.symbol];
    constexpr std::u32string_view kMarks =
        U"\u00BF\u00A1\u3002•\U0001F4CD\U0001F4C5\U000023F0\U0001F517→…";
    return kMarks.find(token.symbol) != std::u32string_view::npos;
}

TokenSpan inReach(const Field &field, std::uint32_t anchor) {
    constexpr std::uint32_t kReach = 600;
    const TokenSpan around{std::max(field.begin, anchor - std::min(anchor, kReach)),
                           std::min(field.end, anchor + kReach)};
    return around.empty() ? TokenSpan{field.begin, std::min(field.end, kReach)} : around;
}

std::vector<Run> runsOf(const Document &document, TokenSpan part) {
    constexpr std::size_t kUsual = 4;
    std::vector<Run> runs;
    runs.reserve(kUsual);
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
    const auto isBlank = [](char c) { return c == ' ' || c == '\n' || c == '\t'; };
    std::string text(document.slice(span));
    char *end = text.data();
    bool space = false;
    for (const char c : text) {
        if (isBlank(c)) {
            space = end != text.data();
            continue;
        }
        if (space)
            *end++ = ' ';
        space = false;
        *end++ = c;
    }
    text.resize(static_cast<std::size_t>(end - text.data()));
    return text;
}

bool promises(const Document &document, TokenSpan words) {
    const Reader reader(document, words.end);
    for (std::uint32_t i = words.begin; i < words.end; ++i)
        if (const Sense *head = reader.sense(i, Meaning::PageHead);
            head && head->value == static_cast<int>(HeadKind::Promise))
            return true;
    return false;
}

std::string titleText(const Document &document, TokenSpan title) {
    constexpr std::string_view kOpen = "\u201C";
    constexpr std::string_view kClose = "\u201D";
    std::string text = spanText(document, title);
    const auto close = text.starts_with(kOpen) ? text.find(kClose) : std::string::npos;
    if (close != std::string::npos)
        text.erase(close, kClose.size()).erase(0, kOpen.size());
    return softened(text);
}

std::string describe(const Document &document, TokenSpan title, TokenSpan place) {
    constexpr std::size_t kLongest = 4000;
    const auto inside = [](TokenSpan span, std::uint32_t i) {
        return i >= span.begin && i < span.end;
    };
    static constexpr Meanings kFillers{Meaning::TitleTail, Meaning::TitleLead,
                                       Meaning::PlaceMarker};
    bool more = false;
    for (std::uint32_t i = 0; i < document.tokens.size() && !more; ++i) {
        const Token &token = document.tokens[i];
        const bool says = token.kind != TokenKind::Symbol && token.kind != TokenKind::LineBreak;
        more = says && !token.used && !token.meanings.meets(kFillers) && !inside(title, i) &&
               !inside(place, i);
    }
    if (!more)
        return {};
    if (document.text.size() <= kLongest)
        return document.text;
    return document.text.substr(0, letterBegin(document.text, kLongest));
}

} // namespace pindle::conversion
