#include <algorithm>

#include "PindleConversion/compose/Compose.h"
#include "PindleConversion/compose/PlaceNames.h"
#include "PindleConversion/compose/TitleParts.h"

namespace pindle::conversion {

TokenSpan TitleParts::trim(TokenSpan span) const {
    for (bool changed = true; changed && !span.empty();) {
        const TokenSpan before = span;
        span = trimFront(span);
        span = trimBack(span);
        changed = span.begin != before.begin || span.end != before.end;
    }
    return span;
}

TokenSpan TitleParts::trimMarks(TokenSpan span) const {
    while (!span.empty() && isEdgeMark(token(span.begin)))
        ++span.begin;
    while (!span.empty() && isEdgeMark(token(span.end - 1)))
        --span.end;
    return span;
}

TokenSpan TitleParts::trimFront(TokenSpan span) const {
    const Reader reader(m_document, span.end);
    if (span.empty())
        return span;
    if (enclosesName(span, span.begin))
        return span;
    if (isEdgeMark(token(span.begin)) || reader.symbol(span.begin, ')') ||
        reader.symbol(span.begin, ']') || isUnclosed(span, span.begin))
        return {span.begin + 1, span.end};
    // "ORD#7781 Sofa delivery"
    if (reader.symbol(span.begin + 1, '#') && reader.glued(span.begin + 1) &&
        reader.glued(span.begin + 2) && reader.number(span.begin + 2, 0, 99999999, 99))
        return {span.begin + 3, span.end};
    // "午後イチで棚卸し", "夕方から練習"
    const Sense *part =
        token(span.begin).unspaced ? reader.sense(span.begin, Meaning::PartOfDay) : nullptr;
    const std::uint32_t particle = part ? span.begin + part->length : span.end;
    if (part && reader.has(particle, Meaning::TitleLead) &&
        reader.has(particle, Meaning::Connector) && !reader.has(particle, Meaning::Of))
        return {particle, span.end};
    const Sense *lead = reader.sense(span.begin, Meaning::TitleLead);
    // "New Year's Eve bash"
    const Sense *holiday = reader.sense(span.begin, Meaning::Holiday);
    if (lead && holiday && holiday->length > lead->length)
        return span;
    if (!lead || namesEvent(reader, span.begin, *lead))
        return span;
    // "お母さん"
    const Sense *kin =
        token(span.begin).unspaced ? reader.sense(span.begin, Meaning::Person) : nullptr;
    if (kin && kin->length > lead->length)
        return span;
    // "「はじめての…」", "„Am Rand der Karte“": no particle begins what is quoted.
    // and "「夜の図書館」" begins with no time.
    if (lead->length == 1 &&
        (token(span.begin).unspaced != token(span.begin).capital ||
         token(span.begin).isOneSign()) &&
        span.begin > 0 && token(span.begin - 1).symbol == '"' &&
        (token(span.begin).capital || !token(span.begin).spaceBefore))
        return span;
    const std::uint32_t next = span.begin + lead->length;
    if (startsLongerWord(span, next))
        return span;
    // "A27 eastbound closed": a road.
    if (lead->length == 1 && token(span.begin).upper() && reader.glued(next) &&
        token(next).kind == TokenKind::Number)
        return span;
    // "IT maintenance window"
    if (lead->length == 1 && isAbbreviation(reader, span.begin))
        return span;
    // "A-level results"
    if (reader.symbol(next, '-') && reader.glued(next) && reader.glued(next + 1))
        return span;
    // "Invitation: ..." loses its prefix, "Invitation design" keeps its first word.
    if (lead->value == 1 && !reader.symbol(next, ':') && !reader.symbol(next, '-') &&
        !reader.symbol(next, '!') && !reader.symbol(next, ']') && !isPrefix(reader, next) &&
        (next != span.end || isKindAlone(span)))
        return span;
    // "Book festival", "Call the bank": only "book a table" loses its verb.
    if (lead->value == 3 && !reader.has(next, Meaning::Number))
        return span;
    // "The MRI scan for your knee"
    const bool letters = next + 1 < span.end && reader.word(next) &&
                         allCapitals(m_document.slice(token(next))) && reader.word(next + 1) &&
                         !token(next + 1).capital;
    const bool name = !letters && token(span.begin).upper() && next < span.end &&
                      token(next).capital && lead->length == 1 && span.begin != next &&
                      isArticle(reader, span.begin);
    return name ? span : TokenSpan{next, span.end};
}

bool TitleParts::shouts(TokenSpan span) const {
    constexpr std::size_t kShortest = 12; ///< bytes; less may be abbreviations
    const std::string_view text = m_document.slice(span);
    const auto isSmall = [](char c) { return c >= 'a' && c <= 'z'; };
    return text.size() >= kShortest && !token(span.begin).unspaced &&
           std::none_of(text.begin(), text.end(), isSmall);
}

bool TitleParts::isAbbreviation(const Reader &reader, std::uint32_t i) const {
    constexpr std::size_t kLetters = 2;
    const std::string_view text = m_document.slice(token(i));
    const Token &next = reader.token(i + 1);
    return text.size() == kLetters && token(i).upper() && reader.has(i, Meaning::NotAPlace) &&
           allCapitals(text) && next.kind == TokenKind::Word && !next.used &&
           !allCapitals(m_document.slice(next));
}

bool TitleParts::isPrefix(const Reader &reader, std::uint32_t i) {
    const Sense *lead = reader.sense(i, Meaning::TitleLead);
    const std::uint32_t next = lead ? i + lead->length : i;
    return lead && lead->value == 1 &&
           (reader.symbol(next, ':') || (lead->length == 1 && isPrefix(reader, next)));
}

bool TitleParts::isKindAlone(TokenSpan span) const {
    return contains(span, Meaning::Event) && span.end < m_document.tokens.size() &&
           token(span.end).symbol != ':' && token(span.end).symbol != '-';
}

bool TitleParts::startsLongerWord(TokenSpan span, std::uint32_t next) const {
    const Token &first = token(span.begin);
    if (Reader(m_document, span.end).has(span.begin, Meaning::Of))
        return false;
    if (first.unspaced && !first.capital)
        return next < span.end && next == span.begin + 1 &&
               PlaceNames::opensWord(Reader(m_document, span.end), span.begin);
    return first.isOneSign() && next < span.end && next == span.begin + 1 && token(next).unspaced &&
           !token(next).spaceBefore && token(next).word == 0;
}

bool TitleParts::namesEvent(const Reader &reader, std::uint32_t i, const Sense &lead) const {
    const Sense *event = reader.sense(i, Meaning::Event);
    return event && event->length > lead.length;
}

bool TitleParts::isArticle(const Reader &reader, std::uint32_t i) const {
    return reader.has(i, Meaning::The) || reader.has(i, Meaning::Number);
}

TokenSpan TitleParts::trimBack(TokenSpan span) const {
    if (span.empty())
        return span;
    const std::uint32_t last = span.end - 1;
    if (const std::uint32_t length = lengthBehind(span); length != span.end)
        return {span.begin, length};
    if (closesQuote(span, last) || enclosesName(span, last))
        return span;
    if (isEdgeMark(token(last)) || token(last).symbol == '(' || token(last).symbol == '[' ||
        isUnopened(span, last))
        return {span.begin, last};
    // "« Les abeilles et nous »"
    if (span.begin > 0 && token(span.begin - 1).symbol == '"' && token(span.end).symbol == '"' &&
        token(span.begin).upper())
        return span;
    // "Autumn talks (all 7.30pm)": what is left of an aside.
    constexpr std::uint32_t kLongestAside = 3;
    for (std::uint32_t i = last; i > span.begin && last - i < kLongestAside; --i) {
        if (token(i).symbol == ')')
            break;
        if (token(i).symbol == '(')
            return {span.begin, i};
    }
    constexpr std::uint32_t kLongestTail = 4;
    const Reader reader(m_document, span.end);
    // "Grants Q&A"
    if (last > span.begin + 1 && reader.symbol(last - 1, '&') && reader.glued(last) &&
        reader.glued(last - 1))
        return span;
    // "Closing on the Duluth house", of which the place is gone, but "Check in" is whole.
    const bool led = token(span.end).meanings.has(Meaning::The) && token(span.end + 1).used;
    for (const Meaning meaning : {Meaning::Event, Meaning::GeneralEvent})
        if (const Sense *kind = reader.sense(last - (last > span.begin ? 1U : 0U), meaning);
            kind && kind->length == 2 && !led)
            return span;
    // and so is "Drop-in".
    const Sense *joined = last == span.begin + 2 && reader.symbol(last - 1, '-')
                              ? reader.sense(last - 2, Meaning::Event)
                              : nullptr;
    if (joined && joined->length == 3)
        return span;
    // "Bike MOT drop-in"
    if (last > span.begin + 1 && reader.symbol(last - 1, '-') && reader.glued(last) &&
        reader.glued(last - 1))
        return span;
    // "Festa di fine anno della 5A"
    if (last > span.begin && token(last).capital && !token(last).spaceBefore &&
        token(last - 1).kind == TokenKind::Number)
        return span;
    const std::uint32_t low =
        span.end > span.begin + kLongestTail ? span.end - kLongestTail : span.begin;
    for (std::uint32_t i = low; i < span.end; ++i) {
        if (!token(i).meanings.has(Meaning::TitleTail))
            continue;
        for (std::uint32_t s = token(i).firstSense; s < token(i).firstSense + token(i).senses;
             ++s) {
            const Sense &sense = m_document.senses[s];
            if (sense.meaning == Meaning::TitleTail && i + sense.length == span.end &&
                !(token(last).upper() && isName(span, last) && !shouts(span)))
                return {span.begin, i};
        }
    }
    return span;
}

std::uint32_t TitleParts::lengthBehind(TokenSpan span) const {
    constexpr std::uint32_t kShortest = 4;
    if (span.end < span.begin + kShortest)
        return span.end;
    const Reader reader(m_document, span.end);
    const std::uint32_t count = span.end - 2;
    const char32_t mark = token(count - 1).symbol;
    const bool length = reader.number(count, 1, 99) && reader.has(count + 1, Meaning::UnitWord);
    return length && (mark == ':' || mark == ',') ? count - 1 : span.end;
}

bool TitleParts::closesQuote(TokenSpan span, std::uint32_t last) const {
    if (token(last).symbol != '\'' || token(last).spaceBefore)
        return false;
    for (std::uint32_t i = span.begin + 1; i + 1 < last; ++i)
        if (token(i).symbol == '\'' && token(i).spaceBefore)
            return true;
    return false;
}

bool TitleParts::isName(TokenSpan span, std::uint32_t last) const {
    return last > span.begin && token(last - 1).capital && token(last).end - token(last).begin > 3;
}

bool TitleParts::isUnclosed(TokenSpan span, std::uint32_t at) const {
    if (token(at).symbol != '(' && token(at).symbol != '[')
        return false;
    const char32_t close = token(at).symbol == '(' ? ')' : ']';
    for (std::uint32_t i = at + 1; i < span.end; ++i)
        if (token(i).symbol == close)
            return i + 1 == span.end || close == ']';
    return true;
}

bool TitleParts::isUnopened(TokenSpan span, std::uint32_t at) const {
    if (token(at).symbol != ')' && token(at).symbol != ']')
        return false;
    const char32_t open = token(at).symbol == ')' ? '(' : '[';
    for (std::uint32_t i = span.begin; i < at; ++i)
        if (token(i).symbol == open)
            return i == span.begin;
    return true;
}

} // namespace pindle::conversion
