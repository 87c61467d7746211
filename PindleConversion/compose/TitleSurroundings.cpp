#include "PindleConversion/compose/TitleScore.h"

#include <algorithm>

namespace pindle::conversion {

bool TitleScore::isSignature(const Field &field) const {
    constexpr std::uint32_t kLongest = 4;
    constexpr std::uint32_t kLongestGoodbye = 5;
    if (field.begin < m_choice.anchor() || field.end - field.begin > kLongest ||
        &field == &m_document.fields.front())
        return false;
    const Field &before = *(&field - 1);
    return before.end - before.begin <= kLongestGoodbye && before.begin > m_choice.anchor() &&
           Reader(m_document, before.end).has(before.begin, Meaning::Greeting);
}

bool TitleScore::saysNothing(const Reader &reader, TokenSpan part, TokenSpan trimmed) const {
    return isNotice(reader, part) ||
           (!token(trimmed.begin).unspaced && isNotice(Reader(m_document, trimmed.end), trimmed));
}

bool TitleScore::isNotice(const Reader &reader, TokenSpan part) const {
    const Sense *chatter = reader.sense(part.begin, Meaning::Chatter);
    const std::uint32_t rest = chatter ? part.begin + chatter->length : part.begin;
    return chatter && (rest == part.end || isCode({rest, part.end}));
}

bool TitleScore::endsOnEve(const Reader &reader, TokenSpan part) {
    constexpr std::uint32_t kLongest = 4;
    std::uint32_t end = part.end;
    while (end > part.begin && isEdgeMark(reader.token(end - 1)))
        --end;
    const Sense *role = reader.senseBefore(end, Meaning::RoleWord, kLongest);
    return role && end >= part.begin + role->length && role->value == static_cast<int>(Role::Eve);
}

bool TitleScore::isBeforeMoment(TokenSpan trimmed) const {
    const std::uint32_t end = trimmed.end + (token(trimmed.end).symbol == ':' ? 1U : 0U);
    return end == m_choice.timeSpan.begin || end == m_choice.dateSpan.begin;
}

bool TitleScore::isVocative(TokenSpan part, TokenSpan trimmed) const {
    return part.begin == 0 && trimmed.end == part.begin + 1 && token(part.begin).capital &&
           !token(part.begin).unspaced && token(part.begin).word == 0 &&
           trimmed.end < m_document.tokens.size() && token(trimmed.end).symbol == ',';
}

bool TitleScore::greetsName(TokenSpan part, TokenSpan trimmed) const {
    constexpr std::uint32_t kLongest = 6;
    if (part.begin < 3 || token(part.begin - 1).symbol != ',' || !token(trimmed.begin).upper() ||
        trimmed.end != trimmed.begin + 1 || token(trimmed.begin).word != 0)
        return false;
    const Sense *greeting =
        Reader(m_document, part.begin).senseBefore(part.begin - 1, Meaning::Greeting, kLongest);
    // "Hello, Picnic!" may name the event.
    const Token &end = token(trimmed.end);
    return greeting && greeting->length > 1 &&
           (end.symbol == '!' || end.symbol == '.' || end.kind == TokenKind::LineBreak);
}

bool TitleScore::isQuoted(TokenSpan part) const {
    // "The thesis defence of Ms Nkemelu ("Groundwater")" is not called by what is in brackets.
    const bool aside = part.begin > 1 && token(part.begin - 2).symbol == '(';
    return part.begin > 0 && token(part.begin - 1).symbol == '"' && !aside &&
           part.end < m_document.tokens.size() && token(part.end).symbol == '"' &&
           (part.end - part.begin > 1 || token(part.begin).unspaced);
}

bool TitleScore::leadsToNews(const TitleCandidate &candidate) const {
    const std::uint32_t comma = candidate.part.end;
    const std::uint32_t end = candidate.run.span.end;
    const Reader reader(m_document, end);
    static constexpr Meanings kJoints{Meaning::PlaceMarker, Meaning::Or};
    return comma + 2 < end && reader.symbol(comma, ',') && reader.word(comma + 1) &&
           !token(comma + 1).unspaced && reader.has(comma + 1, Meaning::PlaceStop) &&
           reader.has(comma + 1, Meaning::TitleLead) && !reader.mayHave(comma + 1, kJoints) &&
           reader.has(comma + 2, Meaning::The) && m_document.sameSentence(comma, comma + 2) &&
           !contains(candidate.trimmed, Meaning::Event) &&
           contains({comma + 2, end}, Meaning::Event);
}

bool TitleScore::isOnlyTopic(TokenSpan part) const {
    constexpr std::uint32_t kReach = 16;
    if (part.begin < 2)
        return false;
    const Reader reader(m_document, part.begin);
    const std::uint32_t particle = part.begin - 2;
    if (reader.has(particle, Meaning::Chatter))
        return true;
    // "reference "Plot 37 water"": what to write on a transfer.
    const Sense *label = reader.sense(particle, Meaning::LabelWord);
    if (label && label->value == static_cast<int>(Label::Sender))
        return true;
    // "読書会やります 課題本は『灰色の港』": told of an event that was named, but
    // "上映は「夜の川」".
    const Token &sign = token(particle);
    if (!sign.unspaced || !sign.isOneSign() || sign.spaceBefore ||
        !reader.has(particle, Meaning::PlaceStop) || reader.has(particle, Meaning::Of))
        return false;
    std::uint32_t i = particle;
    const std::uint32_t low = m_document.fields[token(particle).field].begin;
    while (i > low && token(i).unspaced && !token(i).spaceBefore &&
           !reader.has(i - 1, Meaning::Event))
        --i;
    if (i == low || !token(i).spaceBefore)
        return false;
    for (std::uint32_t k = i; k > low && i - k < kReach; --k)
        if (reader.has(k - 1, Meaning::Event))
            return true;
    return false;
}

bool TitleScore::isPageHead(const Reader &reader, TokenSpan part) const {
    bool slash = false;
    bool number = false;
    std::uint32_t last = part.end;
    while (last > part.begin && isEdgeMark(token(last - 1)))
        --last;
    for (std::uint32_t i = part.begin; i < part.end; ++i) {
        const Sense *head = reader.sense(i, Meaning::PageHead);
        if (head && head->value == static_cast<int>(HeadKind::Promise))
            head = nullptr;
        // "Circulaire n° 12"
        constexpr std::uint32_t kLongestNumber = 3;
        const bool counted = head && i == part.begin && last <= i + head->length + kLongestNumber &&
                             token(last - 1).kind == TokenKind::Number &&
                             !hasFlightNumber({i + head->length, last});
        // "Sponsored walk" is an event, "Sponsored" heads what somebody paid for.
        const Sense *event = head && i == part.begin ? reader.sense(i, Meaning::Event) : nullptr;
        const bool opens = i == part.begin && head &&
                           head->value == static_cast<int>(HeadKind::Opens) &&
                           !(event && event->length > head->length);
        // "Accueil" in a menu, but "Journée d'accueil".
        const bool ends = head && i + head->length >= last;
        const bool alone = head && head->value == static_cast<int>(HeadKind::Alone);
        if (head && ((ends && (!alone || i == part.begin)) || counted || opens))
            return true;
        slash = slash || (reader.symbol(i, '/') && !reader.glued(i) && reader.at(i + 1) &&
                          !reader.glued(i + 1));
        number = number || token(i).kind == TokenKind::Number;
    }
    const bool crumb = part.end < m_document.tokens.size() && isCrumb(part.end) &&
                       m_document.sameSentence(part.begin, part.end);
    return crumb || (slash && !number && part.begin == 0);
}

bool TitleScore::isKindAbove(const Field &field, TokenSpan trimmed) const {
    const Field *next = &field + 1;
    if (next > &m_document.fields.back() || next->begin >= m_choice.anchor() ||
        next->label != Label::None || next->line != field.line + 1 || field.cell || next->spoken)
        return false;
    const Reader reader(m_document, trimmed.end);
    const Sense *event = reader.sense(trimmed.begin, Meaning::Event);
    const Token &word = token(next->begin);
    // "Repair Café" above "Bring up to two broken things"
    static constexpr Meanings kTalk{Meaning::Chatter, Meaning::Greeting};
    if (word.meanings.meets(kTalk))
        return false;
    // but "Year 4, Friday 12 June"
    const bool kind = (event && trimmed.begin + event->length == trimmed.end) ||
                      (isNumberedKind(trimmed) && m_choice.kind != EventKind::Travel);
    return kind && word.capital && !word.used && trimmed.begin == field.begin &&
           token(next->begin + 1).kind != TokenKind::Number;
}

bool TitleScore::isHostAbove(const Field &field, TokenSpan trimmed) const {
    constexpr std::ptrdiff_t kReach = 3; ///< lines; an address may stand between
    if (&field != &m_document.fields.front() || field.cell || field.spoken)
        return false;
    if (isVenueAbove(field))
        return true;
    if (!isHost({trimmed.begin, field.end}))
        return false;
    // "Primary School Fun Run", but "Parish PTA", which may be a meeting as well.
    static constexpr Meanings kEvent{Meaning::Event};
    const Reader reader(m_document, field.end);
    for (std::uint32_t i = field.begin; i < field.end; ++i)
        if (reader.mayHave(i, kEvent) && !reader.has(i, Meaning::Host))
            return false;
    const Field *last =
        &field + std::min(kReach, &m_document.fields.back() - &m_document.fields.front());
    for (const Field *next = &field + 1; next <= last && next->begin <= m_choice.anchor(); ++next)
        if (mayName(*next))
            return true;
    return false;
}

bool TitleScore::isPromised(const Field &field) const {
    const Field *next = &field + 1;
    if (!m_document.meanings.has(Meaning::PageHead) || field.cell || field.spoken ||
        next > &m_document.fields.back() || next->line > field.line + 2 || !mayName(*next) ||
        token(next->end - 1).used)
        return false;
    return promises(m_document, {field.begin, field.end});
}

bool TitleScore::isVenueAbove(const Field &field) const {
    constexpr std::uint32_t kMostWords = 6;
    const Field *next = &field + 1;
    if (next > &m_document.fields.back() || next->begin >= m_choice.anchor() ||
        field.end - field.begin > kMostWords)
        return false;
    const Reader reader(m_document, next->end);
    bool venue = reader.has(next->begin, Meaning::Greeting) && token(field.begin).upper() &&
                 contains({field.begin, field.end}, Meaning::PlaceNoun);
    for (std::uint32_t i = field.begin; i < field.end && venue; ++i)
        venue = !reader.has(i, Meaning::Event) || reader.has(i, Meaning::PlaceNoun);
    return venue;
}

bool TitleScore::mayName(const Field &field) const {
    static constexpr Meanings kTalk{Meaning::Chatter, Meaning::Greeting, Meaning::Opening,
                                    Meaning::PageHead};
    const Token &word = token(field.begin);
    if (field.label != Label::None || field.cell || field.spoken || field.ignored || word.used ||
        (word.kind == TokenKind::Word && !word.capital && !word.unspaced) ||
        word.meanings.meets(kTalk))
        return false;
    TokenSpan name{field.begin, field.begin};
    while (name.end < field.end && !token(name.end).used)
        ++name.end;
    const Reader reader(m_document, name.end);
    // "Dad's Night" says enough, "Tickets" does not.
    const bool says = hasContent(name) || (name.end > name.begin + 1 && hasLetters(name));
    const bool where =
        reader.has(name.end - 1, Meaning::PlaceNoun) || contains(name, Meaning::StreetWord);
    return isHeading(name) && says && (!where || contains(name, Meaning::Event));
}

bool TitleScore::isCalledByNext(TokenSpan trimmed) const {
    constexpr std::uint32_t kLongestKind = 3;
    constexpr char32_t kBullet = 0x2022;
    const std::uint32_t size = trimmed.end - trimmed.begin;
    const std::uint32_t next = trimmed.end + 1;
    if (next >= m_document.tokens.size())
        return false;
    const char32_t mark = token(trimmed.end).symbol;
    // "Cursus 2614 – Macramé"
    if (mark == '-' && token(next).spaceBefore && token(next).upper() && !token(next).used &&
        m_choice.kind != EventKind::Travel)
        return isNumberedKind(trimmed) && m_document.sameSentence(trimmed.begin, next);
    if (size > kLongestKind)
        return false;
    // "Lunch and learn (online): Composting"
    constexpr std::uint32_t kLongestAside = 4;
    for (std::uint32_t k = next; mark == '(' && k < next + kLongestAside; ++k)
        if (token(k).symbol == ')')
            return token(k + 1).symbol == ':' && m_document.sameSentence(trimmed.begin, k);
    if (token(next).used)
        return false;
    // "【线上讲座】家庭理财入门"
    if (mark == ']' && isWideBracket(trimmed.end))
        return isKindInBrackets(trimmed);
    if (mark == ':')
        return m_document.sameSentence(trimmed.begin, trimmed.end);
    const bool event = token(next).kind == TokenKind::Word && contains(trimmed, Meaning::Event);
    // "Talk "Heat Pumps""
    if (mark == '"')
        return event && m_document.sameSentence(trimmed.begin, next);
    // "Live webinar | Soil health"
    const bool kind =
        size == 1 ||
        (size == 2 && Reader(m_document, trimmed.end).has(trimmed.end - 1, Meaning::Event));
    return kind && (mark == '|' || mark == kBullet) && event;
}

bool TitleScore::isKindInBrackets(TokenSpan trimmed) const {
    constexpr std::uint32_t kShortest = 2;
    static constexpr Meanings kTalk{Meaning::Chatter, Meaning::Greeting, Meaning::PresentVerb,
                                    Meaning::Person, Meaning::LabelWord};
    const std::uint32_t begin = trimmed.end + 1;
    const Field &field = m_document.fields[token(trimmed.begin).field];
    const Reader reader(m_document, field.end);
    if (!token(begin).unspaced || token(begin).field != token(trimmed.begin).field)
        return false;
    if (reader.has(trimmed.begin, Meaning::OnlineEvent))
        return m_document.sameSentence(trimmed.begin, begin);
    const Sense *event = reader.senseBefore(trimmed.end, Meaning::Event, kShortest);
    // "【面接】田中様", "【会議】第2会議室"
    if (!event || field.end < begin + kShortest || reader.has(field.end - 1, Meaning::PlaceNoun))
        return false;
    for (std::uint32_t i = begin; i < field.end; ++i)
        if (token(i).used || !reader.word(i) || reader.mayHave(i, kTalk))
            return false;
    return true;
}

bool TitleScore::wasNamedBefore(std::uint32_t i) const {
    constexpr std::uint32_t kReach = 60;
    if (token(i).word == 0)
        return false;
    for (std::uint32_t k = i; k > 1 && i - k < kReach; --k)
        if (token(k - 1).word == token(i).word && token(k - 2).kind == TokenKind::Word &&
            !token(k - 2).used && !token(k - 2).meanings.has(Meaning::The) &&
            m_document.sameSentence(k - 2, k - 1))
            return true;
    return false;
}

bool TitleScore::isAnnouncement(const Reader &reader, TokenSpan part, TokenSpan trimmed) const {
    const Sense *tail = token(trimmed.begin).unspaced && trimmed.end < part.end
                            ? reader.sense(trimmed.end, Meaning::TitleTail)
                            : nullptr;
    return tail && tail->length > 1 && trimmed.end + tail->length == part.end &&
           contains(trimmed, Meaning::Event);
}

bool TitleScore::namesSender(TokenSpan part, TokenSpan trimmed) const {
    const std::uint32_t mark = trimmed.end + 1;
    // "【市一医院】": whose message it is.
    const Reader reader(m_document, trimmed.end);
    if (token(trimmed.begin).unspaced && trimmed.begin > 0 && isWideBracket(trimmed.begin - 1) &&
        isWideBracket(trimmed.end) && reader.has(trimmed.end - 1, Meaning::PlaceNoun) &&
        !reader.has(trimmed.end - 1, Meaning::Event))
        return true;
    // "【PTAより】"
    if (trimmed.begin > 0 && isWideBracket(trimmed.begin - 1) && trimmed.end + 1 == part.end &&
        token(trimmed.end).unspaced &&
        Reader(m_document, part.end).has(trimmed.end, Meaning::RangeTo))
        return true;
    return token(trimmed.begin).unspaced && mark < part.end && token(mark).symbol == ':' &&
           Reader(m_document, part.end).has(trimmed.end, Meaning::TitleTail) &&
           !contains(trimmed, Meaning::Event);
}

bool TitleScore::isHeadline(const Reader &reader, TokenSpan words) const {
    bool capitals = words.end > words.begin + 1;
    for (std::uint32_t i = words.begin; i < words.end && capitals; ++i)
        capitals = reader.word(i) && token(i).upper() && !reader.has(i, Meaning::Chatter);
    return capitals;
}

bool TitleScore::goesOnList(const Reader &reader, const TitleCandidate &candidate) const {
    const TokenSpan trimmed = candidate.trimmed;
    const std::uint32_t begin = candidate.part.begin;
    static constexpr Meanings kJoints{Meaning::And, Meaning::Or};
    if (begin == candidate.run.span.begin || token(begin - 1).symbol != ',' ||
        token(trimmed.begin).capital || token(trimmed.begin).unspaced)
        return false;
    for (std::uint32_t i = trimmed.begin + 1; i + 1 < trimmed.end; ++i)
        if (reader.mayHave(i, kJoints))
            return !contains(trimmed, Meaning::Event);
    return false;
}

bool TitleScore::endsInRequest(const Reader &reader, const TitleCandidate &candidate) const {
    constexpr std::uint32_t kLongestVerb = 2;
    const auto [begin, end] = candidate.trimmed;
    if (candidate.first || begin == 0 || token(begin - 1).symbol != ',' || token(begin).unspaced ||
        token(end - 1).capital)
        return false;
    const Sense *talk = reader.senseBefore(end, Meaning::Chatter, kLongestVerb);
    return talk && talk->value == 1 && begin + talk->length < end;
}

bool TitleScore::isHeading(TokenSpan part) const {
    constexpr std::uint32_t kMostTokens = 14;
    return part.end - part.begin <= kMostTokens && token(part.end - 1).symbol != '.' &&
           token(part.end - 1).symbol != ',' && token(part.end - 1).symbol != '?';
}

} // namespace pindle::conversion
