#include "PindleConversion/compose/TitleParts.h"

#include "PindleConversion/compose/PlaceNames.h"

#include <algorithm>

#include <unicode/uchar.h>

#include "PindleConversion/clean/Utf8.h"

namespace pindle::conversion {

namespace {

constexpr int kWidest = 60;               ///< columns of a title
constexpr int kRoomy = 44;                ///< columns above which a title is cut at its commas
constexpr std::uint32_t kLongestRun = 64; ///< tokens of a run that are looked at

} // namespace

std::vector<TokenSpan> TitleParts::partsOf(TokenSpan run) const {
    run.end = std::min(run.end, run.begin + kLongestRun);
    const Reader reader(m_document, run.end);
    const int width = mayExceed(run, kRoomy) ? columns(trim(run)) : 0;
    const bool wide = width > kRoomy;
    // "From Room 12: our trip is ..." says who writes first. "You're registered for" leads on.
    const bool greeting = (reader.has(run.begin, Meaning::Greeting) &&
                           !leadsOn(reader, run.begin, Meaning::Greeting)) ||
                          (reader.has(run.begin, Meaning::RangeFrom) && token(run.begin).upper());
    constexpr std::size_t kUsual = 4;
    std::vector<TokenSpan> parts;
    parts.reserve(kUsual);
    std::uint32_t begin = run.begin;
    std::uint32_t quoted = 0; ///< where a name in quotes ends
    std::uint32_t joined = 0; ///< where one ends that the name of the event goes on from
    const bool invites = m_document.meanings.has(Meaning::Inviting);
    for (std::uint32_t i = run.begin; i < run.end; ++i) {
        if (token(i).symbol == '"' && i >= quoted && (wide || greeting))
            quoted = quoteEnd(reader, i);
        if (token(i).symbol == '"' && (i > joined || joined == 0))
            joined = joinedQuote(reader, i);
        const bool within = i <= joined && joined != 0 && token(i).symbol == '"';
        const bool hard = !within && isHardBreak(reader, i);
        const bool soft = (wide || greeting) && i >= quoted && isSoftBreak(reader, i) &&
                          !(reader.symbol(i, ':') && !greeting && width <= kWidest);
        // "Convidamos todos os sócios para a festa": who invites and whom says not what happens.
        if (const std::uint32_t event = invites ? invitedTo(reader, i) : i; event != i) {
            begin = event;
            i = event - 1;
            continue;
        }
        if (i > begin && announces(reader, i)) {
            parts.push_back({begin, i});
            begin = i;
        }
        if (i > begin && startsClause(reader, i)) {
            parts.push_back({begin, i});
            begin = i + 1;
            continue;
        }
        // "運動会　雨天の場合は"
        if (i > begin && PlaceNames::startsAside(reader, i) &&
            m_document.fields[token(i).field].label != Label::Title) {
            parts.push_back({begin, i});
            begin = i;
        }
        // "Biscuit (Labrador) is due"
        const bool closed =
            reader.symbol(i, ')') && begin > run.begin && token(begin - 1).symbol == '(';
        if (!(hard || soft || closed))
            continue;
        parts.push_back({begin, i});
        begin = i + 1;
    }
    parts.push_back({begin, run.end});
    return parts;
}

std::uint32_t TitleParts::quoteEnd(const Reader &reader, std::uint32_t open) const {
    constexpr std::uint32_t kLongest = 16;
    for (std::uint32_t i = open + 1; i < open + kLongest && reader.at(i); ++i)
        if (token(i).symbol == '"')
            return mayExceed({open, i}, kWidest) ? 0 : i;
    return 0;
}

std::uint32_t TitleParts::joinedQuote(const Reader &reader, std::uint32_t open) const {
    constexpr std::uint32_t kLongest = 12;
    constexpr std::uint32_t kReach = 5;
    static constexpr Meanings kOver{Meaning::PlaceMarker, Meaning::PlaceBehind,
                                    Meaning::PresentVerb, Meaning::TitleTail, Meaning::Of};
    if (token(open).end - token(open).begin < 2 || bookMark(open) != 0)
        return 0;
    std::uint32_t close = open + 1;
    while (close < open + kLongest && reader.at(close) && token(close).symbol != '"')
        ++close;
    if (!reader.symbol(close, '"'))
        return 0;
    for (std::uint32_t i = close + 1; i <= close + kReach; ++i) {
        if (!reader.word(i) || !reader.glued(i) || !token(i).unspaced)
            return 0;
        if (reader.has(i, Meaning::Event))
            return close;
        // "「ソラノテ」の発表会"
        if (i == close + 1 && reader.has(i, Meaning::Of) && reader.has(i + 1, Meaning::Event))
            return close;
        if (reader.mayHave(i, kOver))
            return 0;
    }
    return 0;
}

bool TitleParts::isHardBreak(const Reader &reader, std::uint32_t i) const {
    if (token(i).kind != TokenKind::Symbol)
        return token(i).kind == TokenKind::Link || token(i).kind == TokenKind::Mail;
    if (reader.symbol(i, ';') || reader.symbol(i, '*') || isCrumb(i))
        return true;
    // "Blood donation: we look forward to seeing you"
    const Sense *greeting =
        reader.symbol(i, ':') ? reader.sense(i + 1, Meaning::Greeting) : nullptr;
    if (greeting && greeting->length > 1)
        return true;
    if (reader.symbol(i, '"'))
        return bookMark(i) == 0;
    // "【通知】": the brackets that enclose a heading.
    if (isWideBracket(i))
        return true;
    // "9PM / DJ MOSS / BASEMENT"
    if (reader.symbol(i, '/') && !reader.glued(i) && !reader.glued(i + 1) &&
        token(m_document.fields[token(i).field].begin).used)
        return true;
    if (reader.symbol(i, '-'))
        return (!reader.glued(i) || !reader.glued(i + 1)) && !isSubtitle(reader, i + 1);
    return false;
}

char TitleParts::bookMark(std::uint32_t i) const {
    if (token(i).symbol != '"')
        return 0;
    const auto mark = m_document.slice(token(i));
    return mark == "\u300A" ? '<' : mark == "\u300B" ? '>' : '\0';
}

bool TitleParts::enclosesName(TokenSpan span, std::uint32_t i) const {
    const char mark = bookMark(i);
    // "「青松」評審会"
    if (mark == 0 && token(i).symbol == '"' && i == span.begin &&
        token(i).end - token(i).begin > 1) {
        for (std::uint32_t k = i + 1; k + 1 < span.end; ++k)
            if (token(k).symbol == '"')
                return true;
    }
    if (mark == 0)
        return false;
    const std::uint32_t edge = mark == '<' ? span.end - 1 : span.begin;
    for (std::uint32_t k = span.begin; k < span.end; ++k)
        if (k != i && k != edge && bookMark(k) != 0 && bookMark(k) != mark)
            return true;
    return false;
}

bool TitleParts::startsClause(const Reader &reader, std::uint32_t i) const {
    static constexpr Meanings kAside{Meaning::Chatter, Meaning::Greeting, Meaning::AsideLead};
    // "with nurse Jill, don't forget your inhaler"
    const Sense *talk = reader.symbol(i, ',') && token(i + 1).spaceBefore && !token(i + 1).capital
                            ? reader.sense(i + 1, Meaning::Chatter)
                            : nullptr;
    if (talk && talk->length > 1 && !token(i + 1).unspaced)
        return m_document.fields[token(i).field].label != Label::Title;
    // "im Urlaub, danach wieder im Büro"
    if (reader.symbol(i, ',') && reader.has(i + 1, Meaning::AsideLead) && reader.word(i + 1) &&
        !token(i + 1).unspaced && !token(i + 1).capital)
        return m_document.fields[token(i).field].label != Label::Title;
    return reader.symbol(i, ',') && m_document.slice(token(i)) != "\u3001" &&
           reader.token(i + 1).unspaced && reader.mayHave(i + 1, kAside) &&
           m_document.fields[token(i).field].label != Label::Title;
}

bool TitleParts::isSubtitle(const Reader &reader, std::uint32_t i) const {
    const Token *next = reader.at(i);
    // "Votre voyage – dossier QX7R4K"
    if (next && isReference(reader, {i, reader.end()}))
        return false;
    return (next && isKindBehind(reader, i)) ||
           (next && next->kind == TokenKind::Word && !next->capital && !next->unspaced &&
            !next->used && !reader.has(i, Meaning::Chatter) &&
            !reader.has(i, Meaning::PlaceMarker) && !reader.has(i, Meaning::PlaceNoun) &&
            !reader.has(i, Meaning::TitleLead) && !reader.has(i, Meaning::AsideLead) &&
            !reader.has(i, Meaning::RoleWord) && !reader.has(i, Meaning::Event));
}

bool TitleParts::isKindBehind(const Reader &reader, std::uint32_t i) const {
    const Sense *event = reader.sense(i, Meaning::Event);
    const Field &field = m_document.fields[token(i).field];
    if (!event || token(i).unspaced || field.spoken || field.cell || i < field.begin + 2)
        return false;
    const std::uint32_t end = i + event->length;
    const bool year = reader.number(end, 1900, 2100, 4) && end + 1 == field.end;
    return (end == field.end || year) && token(i - 2).kind == TokenKind::Word && !token(i - 2).used;
}

bool TitleParts::isSoftBreak(const Reader &reader, std::uint32_t i) const {
    // "€ 48,20"
    const bool decimal = reader.symbol(i, ',') && reader.glued(i) && reader.glued(i + 1) &&
                         token(i + 1).kind == TokenKind::Number;
    // but "1:1"
    return (reader.symbol(i, ',') && !decimal) || reader.symbol(i, '(') ||
           (reader.symbol(i, ':') && !(reader.glued(i) && reader.glued(i + 1)));
}

bool TitleParts::mayExceed(TokenSpan span, int width) const {
    return m_document.slice(span).size() > static_cast<std::size_t>(width);
}

int TitleParts::columns(TokenSpan span) const {
    const auto text = m_document.slice(span);
    int width = 0;
    for (std::size_t at = 0; at < text.size() && width <= 2 * kWidest;) {
        if (static_cast<unsigned char>(text[at]) < 0x80) {
            width += text[at] == ' ' && at > 0 && text[at - 1] == ' ' ? 0 : 1;
            ++at;
            continue;
        }
        const CodePoint point = decodeAt(text, at);
        at = point.end;
        if (point.value < 0x1100) {
            ++width;
            continue;
        }
        const int wide = u_getIntPropertyValue(point.value, UCHAR_EAST_ASIAN_WIDTH);
        width += wide == U_EA_WIDE || wide == U_EA_FULLWIDTH ? 2 : 1;
    }
    return width;
}

TokenSpan TitleParts::shorten(TokenSpan span) const {
    if (!mayExceed(span, kWidest) || columns(span) <= kWidest)
        return span;
    const Reader reader(m_document, span.end);
    TokenSpan shorter = span;
    for (std::uint32_t i = span.begin + 1; i < span.end; ++i)
        if (isSoftBreak(reader, i) && columns({span.begin, i}) <= kWidest)
            shorter.end = i;
    while (columns(shorter) > kWidest && shorter.end > shorter.begin + 1)
        --shorter.end;
    return trim(shorter);
}

} // namespace pindle::conversion
