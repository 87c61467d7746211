#include "PindleConversion/compose/TitleWords.h"

#include <algorithm>

namespace pindle::conversion {

bool TitleWords::announces(const Reader &reader, std::uint32_t i) {
    constexpr std::uint8_t kLongPhrase = 3;
    const Sense *lead = reader.sense(i, Meaning::TitleLead);
    return lead && lead->value == 0 && lead->length >= kLongPhrase;
}

std::uint32_t TitleWords::invitedTo(const Reader &reader, std::uint32_t i) {
    constexpr std::uint32_t kReach = 14;
    constexpr std::uint32_t kBetween = 4; ///< "unserem ersten gemeinsamen"
    static constexpr Meanings kOthers{Meaning::Of, Meaning::And};
    const Sense *verb = reader.sense(i, Meaning::Inviting);
    if (!verb || verb->value == 1 ||
        (reader.token(i).upper() && reader.language(i).capitalNouns && i > 0 &&
         reader.document().sameSentence(i - 1, i)))
        return i;
    std::uint32_t begin = verb->value == 2 ? i + verb->length : i;
    for (std::uint32_t k = i + verb->length; k < i + kReach && reader.at(k); ++k) {
        if (!reader.document().sameSentence(i, k))
            return i;
        const Sense *to = reader.sense(k, Meaning::Inviting);
        if (to && to->value == 1) {
            begin = k + to->length;
            k = begin - 1;
        } else if (begin != i && reader.has(k, Meaning::Event)) {
            // "invited to the following event:"
            return reader.has(k - 1, Meaning::Next) ? i : begin;
        } else if (k > begin + kBetween || reader.mayHave(k, kOthers)) {
            begin = i;
        }
    }
    return i;
}

bool TitleWords::leadsOn(const Reader &reader, std::uint32_t i, Meaning meaning) {
    const Sense *phrase = reader.sense(i, meaning);
    const Sense *lead = reader.sense(i, Meaning::TitleLead);
    return phrase && phrase->length > 1 && lead && lead->length > phrase->length;
}

bool TitleWords::hasLetters(TokenSpan span) const {
    // "1:1"
    if (!span.empty() && token(span.begin).kind == TokenKind::Number &&
        Reader(m_document, span.end).has(span.begin, Meaning::Event))
        return true;
    // "F L U  C L I N I C": a heading with spaces between its letters.
    constexpr std::uint32_t kFewestLetters = 4;
    std::uint32_t letters = 0;
    for (std::uint32_t i = span.begin; i < span.end; ++i) {
        letters += token(i).upper() ? 1U : 0U;
        // "D&D", "Q&A"
        if (token(i).kind == TokenKind::Word &&
            (token(i).end - token(i).begin > 1 ||
             (token(i + 1).symbol == '&' && !token(i + 1).spaceBefore && i + 1 < span.end)))
            return true;
    }
    return letters >= kFewestLetters;
}

bool TitleWords::hasWordWithout(TokenSpan span, std::span<const Meaning> meanings) const {
    const Reader reader(m_document, span.end);
    for (std::uint32_t i = span.begin; i < span.end;) {
        // "à partir de" is one.
        std::uint32_t next = i;
        for (const Meaning each : meanings)
            next = std::max(next, reader.skip(i, each));
        if (next == i && reader.word(i))
            return true;
        i = std::max(next, i + 1);
    }
    return false;
}

bool TitleWords::says(TokenSpan span) const {
    static constexpr Meaning kAround[] = {Meaning::TimeMarker, Meaning::DateMarker, Meaning::The,
                                          Meaning::Of,         Meaning::RangeTo,    Meaning::And,
                                          Meaning::In,         Meaning::PlaceMarker};
    return hasWordWithout(span, kAround);
}

bool TitleWords::contains(TokenSpan span, Meaning meaning) const {
    if (!m_document.meanings.has(meaning))
        return false;
    const Reader reader(m_document, span.end);
    for (std::uint32_t i = span.begin; i < span.end; ++i)
        if (reader.has(i, meaning))
            return true;
    return false;
}

TokenSpan TitleWords::eventIn(TokenSpan span) const {
    const Reader reader(m_document, span.end);
    for (std::uint32_t i = span.begin; i < span.end; ++i)
        if (const Sense *event = reader.sense(i, Meaning::Event))
            return {i, std::min(i + event->length, span.end)};
    return {};
}

bool TitleWords::isWideBracket(std::uint32_t i) const {
    const Token &mark = token(i);
    return (mark.symbol == '[' || mark.symbol == ']') && mark.end - mark.begin > 1;
}

bool TitleWords::isCode(TokenSpan span) const {
    int numbers = 0;
    for (std::uint32_t i = span.begin; i < span.end; ++i) {
        if (i > span.begin && token(i).spaceBefore)
            return false;
        numbers += token(i).kind == TokenKind::Number ? 1 : 0;
    }
    return numbers > 1;
}

bool TitleWords::isTicket(TokenSpan span) const {
    constexpr std::uint32_t kShortest = 3; ///< letters where no dash follows, and digits
    // "Maintenance window #88213"
    constexpr std::uint32_t kLongNumber = 4; ///< digits; "Match #12" is one of several
    const std::uint32_t last = span.end - 1;
    if (last > span.begin && token(last).kind == TokenKind::Number &&
        token(last - 1).symbol == '#' && !token(last).spaceBefore)
        return token(last).digits >= kLongNumber;
    const std::uint32_t letters = token(span.begin).end - token(span.begin).begin;
    if (token(span.begin).kind != TokenKind::Word ||
        !allCapitals(m_document.slice(token(span.begin))))
        return false;
    const Reader reader(m_document, span.end);
    const bool dash = reader.symbol(span.begin + 1, '-') && reader.glued(span.begin + 1);
    const std::uint32_t number = span.begin + (dash ? 2U : 1U);
    if (!reader.at(number) || token(number).kind != TokenKind::Number || !reader.glued(number) ||
        token(number).digits < kShortest || letters < (dash ? 2U : kShortest))
        return false;
    return number + 1 == span.end || (reader.symbol(number + 1, '[') && !reader.glued(number + 1));
}

bool TitleWords::isInitialed(TokenSpan span) const {
    constexpr std::uint32_t kTokens = 3; ///< "R", ".", "Subramaniam"
    const Token &initial = token(span.begin);
    return span.end == span.begin + kTokens && initial.upper() &&
           initial.end == initial.begin + 1 && token(span.begin + 1).symbol == '.' &&
           token(span.begin + 2).upper() && token(span.begin + 2).word == 0;
}

bool TitleWords::isOfTaken(TokenSpan span) const {
    static constexpr Meanings kSaid{Meaning::RoleBehind};
    const Reader reader(m_document, span.end);
    for (std::uint32_t i = span.begin + 1; i < span.end; ++i)
        if (reader.mayHave(i, kSaid) && reader.has(i - 1, Meaning::PlaceNoun)) {
            const Sense *role = reader.sense(i, Meaning::RoleBehind);
            return role && role->value == static_cast<int>(Role::MovedFrom) && role->length > 1;
        }
    return false;
}

bool TitleWords::isReference(const Reader &reader, TokenSpan span) {
    constexpr int kShortest = 3; ///< digits and letters behind "booking", which "table 4" lacks
    const Sense *label = reader.sense(span.begin, Meaning::LabelWord);
    const Sense *event = reader.sense(span.begin, Meaning::Event);
    const bool sender = label && label->value == static_cast<int>(Label::Sender) &&
                        !(event && event->length >= label->length);
    label = sender ? label : reader.sense(span.begin, Meaning::GeneralEvent);
    if (!label)
        return false;
    bool digits = false;
    int size = 0;
    std::uint32_t code = span.begin + label->length;
    // "Ticket no. 7719-02"
    if (!sender && code < span.end && reader.has(code, Meaning::Abbreviation))
        code = reader.skipSymbol(code + 1, '.');
    // "ORDER #QX-20418-77 NON-REFUNDABLE"
    if (reader.symbol(code, '#') && reader.at(code + 1))
        return true;
    // "Phone +61 2 5550 1177, PIN 40921"
    code = sender ? reader.skipSymbol(code, '+') : code;
    for (std::uint32_t i = code; i < span.end; ++i) {
        const Token &part = reader.token(i);
        if (sender && i > code && part.symbol == ',')
            break;
        const bool number = part.kind == TokenKind::Number;
        if (i > code && part.spaceBefore && !(number && sender))
            return false;
        digits = digits || number;
        size += static_cast<int>(part.end - part.begin);
    }
    return digits && (sender || size >= kShortest);
}

bool TitleWords::hasFlightNumber(TokenSpan span) const {
    const Reader reader(m_document, span.end);
    for (std::uint32_t i = span.begin; i + 1 < span.end; ++i) {
        if (token(i).kind != TokenKind::Word || !token(i).upper() ||
            token(i + 1).kind != TokenKind::Number || token(i + 1).digits > 4)
            continue;
        const std::uint32_t letters = token(i).end - token(i).begin;
        // "G1375次"
        const Sense *counter = reader.sense(i + 2, Meaning::Counter);
        if ((letters == 2 && token(i + 1).digits >= 2) ||
            (letters == 1 && counter && counter->value == 1))
            return true;
    }
    return false;
}

bool TitleWords::isTrail(TokenSpan span) const {
    for (std::uint32_t i = span.begin; i < span.end; ++i)
        if (token(i).symbol == '>')
            return true;
    return false;
}

bool TitleWords::isAddress(TokenSpan span) const {
    const Reader reader(m_document, span.end);
    const Sense *street = reader.sense(span.begin, Meaning::StreetWord);
    return street && street->value == 1 && token(span.end - 1).kind == TokenKind::Number;
}

bool TitleWords::hasMoney(TokenSpan span) const {
    for (std::uint32_t i = span.begin; i < span.end; ++i)
        if (isCurrencySign(token(i).symbol))
            return true;
    return false;
}

bool TitleWords::isPerson(const Reader &reader, std::uint32_t i) const {
    return token(i).capital && reader.has(i, Meaning::Person);
}

bool TitleWords::isPassenger(const Reader &reader, TokenSpan line) {
    constexpr std::uint32_t kShortest = 3;
    constexpr std::uint32_t kLongest = 6;
    const std::uint32_t size = line.end - line.begin;
    if (size < kShortest || size > kLongest || !reader.symbol(line.begin + 1, '/') ||
        !reader.glued(line.begin + 1) || !reader.glued(line.begin + 2) ||
        !(reader.has(line.end - 1, Meaning::Person) || reader.has(line.begin, Meaning::Person)))
        return false;
    for (std::uint32_t i = line.begin; i < line.end; ++i)
        if (i != line.begin + 1 && !reader.token(i).upper())
            return false;
    return true;
}

bool TitleWords::namesHost(TokenSpan trimmed) const {
    const Reader reader(m_document, trimmed.end);
    // but "Church potluck"
    return reader.has(trimmed.begin, Meaning::PlaceNoun) &&
           !reader.has(trimmed.begin, Meaning::Event) &&
           !(trimmed.end == trimmed.begin + 2 && reader.has(trimmed.begin + 1, Meaning::Event));
}

bool TitleWords::isHost(TokenSpan line) const {
    if (!m_document.meanings.has(Meaning::Host))
        return false;
    const Reader reader(m_document, line.end);
    const auto counts = [&](std::uint32_t i) {
        return i >= line.begin && i < line.end && token(i).kind == TokenKind::Number;
    };
    for (std::uint32_t i = line.begin; i < line.end; ++i) {
        const Sense *host = reader.sense(i, Meaning::Host);
        if (!host)
            continue;
        const std::uint32_t next = i + host->length;
        // "5th Grade"
        const bool number =
            counts(next) || (i > line.begin && (counts(i - 1) || (i > 1 && counts(i - 2))));
        // "Soccer Club U10s"
        const bool ends = next >= line.end || !reader.word(next) ||
                          reader.has(next, Meaning::Host) ||
                          (counts(next + 1) && reader.glued(next + 1));
        const auto kind = static_cast<HostKind>(host->value);
        if ((kind == HostKind::Numbered && !number) || (kind == HostKind::AtEnd && !ends))
            continue;
        // "Back to School", "Lanterns at Hill School"
        for (std::uint32_t k = line.begin; k < i; ++k)
            if (!token(k).unspaced && !token(k).capital && reader.has(k, Meaning::PlaceMarker))
                return false;
        return true;
    }
    return false;
}

bool TitleWords::namesDay(const Reader &reader, TokenSpan trimmed) const {
    const std::uint32_t last = trimmed.end - 1;
    return last > trimmed.begin && reader.has(last, Meaning::DayWord) && token(last).upper() &&
           token(last - 1).upper() && !token(last).unspaced;
}

bool TitleWords::hasContent(TokenSpan span) const {
    static constexpr Meaning kAround[] = {
        Meaning::Common,      Meaning::Chatter,  Meaning::Greeting,
        Meaning::PresentVerb, Meaning::PastVerb, Meaning::PartOfDay,
        Meaning::AsideLead,   Meaning::Person,   Meaning::Holiday};
    return hasWordWithout(span, kAround);
}

bool TitleWords::countsThings(TokenSpan span) const {
    const Reader reader(m_document, span.end);
    for (std::uint32_t i = span.begin; i + 1 < span.end; ++i)
        if (const Sense *counter = reader.sense(i + 1, Meaning::Counter);
            counter && counter->value == 0 && token(i).kind == TokenKind::Number)
            return true;
    return false;
}

bool TitleWords::isSmallTalk(TokenSpan span) const {
    const Reader reader(m_document, span.end);
    const Sense *talk = reader.sense(span.begin, Meaning::Greeting);
    if (!talk)
        talk = reader.sense(span.begin, Meaning::Chatter);
    return talk && span.begin + talk->length == span.end &&
           !reader.has(span.begin, Meaning::GeneralEvent) &&
           languageInfo(token(span.begin).language).script != Script::Latin;
}

bool TitleWords::isOneSign(TokenSpan span) const {
    return span.end == span.begin + 1 && token(span.begin).isOneSign();
}

bool TitleWords::isCouple(TokenSpan span) const {
    constexpr std::uint32_t kTokens = 3;
    const std::uint32_t last = span.end - 1;
    return span.end == span.begin + kTokens && token(span.begin).upper() && token(last).upper() &&
           (token(span.begin).word == 0 || token(last).word == 0) &&
           Reader(m_document, span.end).has(span.begin + 1, Meaning::And) &&
           !contains(span, Meaning::Event) && !contains(span, Meaning::PlaceNoun);
}

bool TitleWords::tellsRole(TokenSpan span) const {
    const Reader reader(m_document, span.end);
    const Sense *role = reader.sense(span.begin, Meaning::RoleWord);
    return role && span.begin + role->length == span.end;
}

bool TitleWords::tellsSide(TokenSpan span) const {
    const Sense *role = Reader(m_document, span.end).sense(span.begin, Meaning::RoleWord);
    return role && role->value == static_cast<int>(Role::Side);
}

bool TitleWords::tellsShow(TokenSpan span) const {
    const Reader reader(m_document, span.end);
    const Sense *role = reader.sense(span.begin, Meaning::RoleWord);
    return role && role->value == static_cast<int>(Role::Show) &&
           reader.has(span.begin, Meaning::Event) && !token(span.begin).unspaced;
}

bool TitleWords::isInChatter(const Reader &reader, TokenSpan before, std::uint32_t end) {
    for (std::uint32_t i = before.begin + 1; i < before.end; ++i)
        if (const Sense *chatter = reader.sense(i, Meaning::Chatter);
            chatter && i + chatter->length == end)
            return true;
    return false;
}

bool TitleWords::isDetail(const Reader &reader, TokenSpan trimmed) const {
    const Sense *label = reader.sense(trimmed.begin, Meaning::LabelWord);
    const std::uint32_t next = label ? trimmed.begin + label->length : trimmed.end;
    if (next >= trimmed.end || label->value != static_cast<int>(Label::Sender))
        return false;
    const bool number = token(next).kind == TokenKind::Number;
    // "Ticket 1 of 2"
    const bool counted = number && next + 3 == trimmed.end && reader.has(next + 1, Meaning::Of) &&
                         token(next + 2).kind == TokenKind::Number;
    return token(next).symbol == ':' || (number && next + 1 == trimmed.end) || counted;
}

bool TitleWords::isOneOfSeveral(const Reader &reader, TokenSpan trimmed) const {
    // "First session"; a second interview is one of its own, and so is "First communion".
    const Sense *ordinal = reader.has(trimmed.begin, Meaning::Event)
                               ? nullptr
                               : reader.sense(trimmed.begin, Meaning::Ordinal);
    const std::uint32_t kind = ordinal ? trimmed.begin + ordinal->length : trimmed.begin;
    const Sense *event = reader.sense(kind, Meaning::Event);
    if (ordinal && ordinal->value == 1 && event && kind + event->length == trimmed.end)
        return true;
    const std::uint32_t number = event ? trimmed.begin + event->length : trimmed.end;
    return number + 1 == trimmed.end && token(number).kind == TokenKind::Number &&
           token(number).digits <= 2 && !token(trimmed.begin).unspaced;
}

bool TitleWords::isNumberedKind(TokenSpan span) const {
    constexpr std::uint32_t kMostTokens = 6;
    constexpr std::uint32_t kLongestMark = 4; ///< bytes: "cod", "nr", "n.º"
    const Reader reader(m_document, span.end);
    // "VHS Kurs K3107"
    const bool school = span.end > span.begin + 2 && token(span.begin).upper() &&
                        allCapitals(m_document.slice(token(span.begin))) &&
                        !reader.has(span.begin, Meaning::Event);
    const std::uint32_t kind = span.begin + (school ? 1U : 0U);
    const Sense *event = reader.sense(kind, Meaning::Event);
    const std::uint32_t mark = event ? kind + event->length : span.end;
    // but "Sommerfest 2026"
    if (mark >= span.end || span.end - mark > kMostTokens || token(mark).unspaced ||
        token(span.end - 1).kind != TokenKind::Number ||
        (mark + 1 == span.end && reader.number(mark, 1900, 2100, 4)))
        return false;
    for (std::uint32_t i = mark; i + 1 < span.end; ++i)
        if (token(i).kind == TokenKind::Word && token(i).end - token(i).begin > kLongestMark)
            return false;
    return true;
}

bool TitleWords::isNextOne(TokenSpan part, TokenSpan trimmed) const {
    static constexpr Meanings kOne{Meaning::Next, Meaning::Number};
    if (trimmed.begin != part.begin + 1 || part.begin == 0 || !token(part.begin).upper() ||
        !token(part.begin).meanings.meets(kOne))
        return false;
    const Sense *event = Reader(m_document, part.end).sense(trimmed.begin, Meaning::Event);
    return event && trimmed.begin + event->length == trimmed.end;
}

bool TitleWords::isNumberedPlace(TokenSpan trimmed) const {
    const std::uint32_t last = trimmed.end - 1;
    if (last == trimmed.begin)
        return false;
    const Reader reader(m_document, trimmed.end);
    const Sense *place = reader.sense(trimmed.begin, Meaning::PlaceNoun);
    const Sense *label = reader.sense(last - 1, Meaning::LabelWord);
    return (place && trimmed.begin + place->length == last) ||
           (label && label->value == static_cast<int>(Label::Sender) &&
            !reader.has(last - 1, Meaning::Event));
}

bool TitleWords::isOnlyOnline(TokenSpan trimmed) const {
    const Reader reader(m_document, trimmed.end);
    const Sense *online = reader.sense(trimmed.begin, Meaning::Online);
    if (!online)
        return false;
    const std::uint32_t next = trimmed.begin + online->length;
    const Sense *general = reader.sense(next, Meaning::OnlineEvent);
    return next == trimmed.end || (general && next + general->length == trimmed.end);
}

bool TitleWords::isCrumb(std::uint32_t i) const {
    constexpr char32_t kBreadcrumb = 0x203A;
    const char32_t mark = token(i).symbol;
    // "Staff lunch >> Friday 12:00"
    const bool arrow = token(i + 1).symbol == '>' || token(i + 1).used;
    return (mark == kBreadcrumb || mark == '>') && token(i).spaceBefore && !arrow &&
           m_document.fields[token(i).field].line == 0;
}

} // namespace pindle::conversion
