#include "PindleConversion/choose/Chooser.h"

#include <algorithm>

namespace pindle::conversion {

namespace {

constexpr std::uint32_t kLongestExpression = 16; ///< tokens

} // namespace

const Field &Surroundings::fieldOf(std::uint32_t token) const {
    return m_document.fields[m_document.tokens[token].field];
}

Role Surroundings::roleOf(std::uint32_t token) const {
    for (const TokenSpan end : m_ends)
        if (token >= end.begin && token < end.end)
            return Role::End;
    const Role role = saidRole(token);
    return role == Role::Posted && isAhead(token) ? Role::None : role;
}

bool Surroundings::isAhead(std::uint32_t token) const {
    return std::any_of(m_ahead.begin(), m_ahead.end(), [&](TokenSpan sentence) {
        return m_document.sameSentence(sentence.begin, token);
    });
}

Role Surroundings::saidRole(std::uint32_t token) const {
    const Field &field = fieldOf(token);
    if (field.label == Label::Deadline)
        return Role::Deadline;
    if (field.label == Label::End)
        return Role::End;
    Role role = Role::None;
    // In order of appearance, as their sentences are.
    const std::uint32_t sentence = m_document.tokens[token].sentence;
    auto next = std::partition_point(
        m_found.roles.begin(), m_found.roles.end(), [&](const RoleMention &mention) {
            return m_document.tokens[mention.token].sentence < sentence;
        });
    for (; next != m_found.roles.end() && next->token <= token + kLongestExpression; ++next) {
        const RoleMention &mention = *next;
        // "雨天の場合は4日に順延" tells of another day than the event's.
        if (mention.behind && standsBehind(mention.token, token))
            return role == Role::Posted ? role : mention.role;
        // "auf den 21.": the day's own lead tells that something moves there.
        const bool own = mention.token == token && mention.role == Role::MovedTo;
        if ((mention.token >= token && !own) || mention.behind)
            continue;
        if (m_document.sameSentence(mention.token, token) && !cutOff(mention, token))
            role = mention.role == Role::MovedFrom && isSecondDate(mention.token, token)
                       ? Role::MovedTo
                       : mention.role;
    }
    return role == Role::None && isMovedTo(token) ? Role::MovedTo : role;
}

bool Surroundings::isMovedTo(std::uint32_t token) const {
    constexpr std::uint32_t kReach = 16;
    const Reader reader(m_document, token);
    if (!m_document.meanings.has(Meaning::Moving) || token == 0 ||
        !reader.has(token - 1, Meaning::RangeTo) || !reader.word(token - 1))
        return false;
    bool from = false;
    for (std::uint32_t i = token - 1; i > 0 && token - i < kReach; --i) {
        if (!m_document.sameSentence(i - 1, token))
            return false;
        from = from || (m_document.tokens[i].used && reader.has(i - 1, Meaning::RangeFrom));
        if (from && reader.has(i - 1, Meaning::Moving))
            return true;
    }
    return false;
}

bool Surroundings::isSecondDate(std::uint32_t from, std::uint32_t token) const {
    const Reader reader(m_document, token);
    // "can't do Mon or Tues"
    if (token > 0 && reader.has(token - 1, Meaning::Or))
        return false;
    bool first = false;
    bool second = false;
    for (const DateMention &date : m_found.dates) {
        first = first || (date.span.begin > from && date.span.end <= token);
        second = second || date.span.begin == token;
    }
    // "extended from 1 to 15 December"
    const bool counted = token > from + 2 && reader.has(token - 1, Meaning::RangeTo) &&
                         reader.number(token - 2, 1, 31);
    if ((first || counted) && second)
        return true;
    first = second = false;
    for (const TimeMention &time : m_found.times) {
        first = first || (time.span.begin > from && time.span.end <= token);
        second = second || time.span.begin == token;
    }
    return first && second;
}

bool Surroundings::standsBehind(std::uint32_t role, std::uint32_t token) const {
    if (role <= token || role - token > kLongestExpression)
        return false;
    for (std::uint32_t i = token; i < role; ++i)
        if (!m_document.tokens[i].used)
            return false;
    // "18:00 開演19:00": the word is said of the time it is joined to.
    const Reader reader(m_document, static_cast<std::uint32_t>(m_document.tokens.size()));
    const Sense *word = reader.sense(role, Meaning::RoleBehind);
    const std::uint32_t next = role + (word ? word->length : 1U);
    const Token *behind = reader.at(next);
    return !(m_document.tokens[role].spaceBefore && behind && behind->used &&
             !behind->spaceBefore && behind->kind == TokenKind::Number);
}

bool Surroundings::cutOff(const RoleMention &mention, std::uint32_t to) const {
    constexpr std::uint32_t kReach = 9;
    std::uint32_t from = mention.token;
    const Reader reader(m_document, to);
    const Sense *word = reader.sense(from, Meaning::RoleWord);
    if (to - from > kReach + (word ? word->length - 1U : 0U))
        return true;
    if (word) {
        from += word->length - 1U;
        // "九点，哦不对，十点": the comma belongs to what corrects the first.
        from += mention.role == Role::MovedTo && reader.symbol(from + 1, ',') ? 1U : 0U;
    }
    for (std::uint32_t i = from + 1; i < to; ++i) {
        const Token &token = m_document.tokens[i];
        const bool mark = token.kind == TokenKind::Symbol &&
                          (token.symbol == ',' || token.symbol == ';' || token.symbol == '(' ||
                           token.symbol == ')' || (token.symbol == '-' && token.spaceBefore));
        if (mark && !token.used)
            return true;
        if (token.used && !m_document.token(i + 1).used && i + 1 < to && joins(i + 1))
            return true;
    }
    return false;
}

bool Surroundings::joins(std::uint32_t i) const {
    return Reader(m_document, static_cast<std::uint32_t>(m_document.tokens.size()))
        .has(i, Meaning::And);
}

bool Surroundings::sentenceHas(std::uint32_t token, Meaning meaning) const {
    if (!m_document.meanings.has(meaning))
        return false;
    const Field &field = fieldOf(token);
    const Reader reader(m_document, field.end);
    constexpr std::uint32_t kReach = 40;
    const std::uint32_t low = token > field.begin + kReach ? token - kReach : field.begin;
    const std::uint32_t high = std::min(field.end, token + kReach);
    for (std::uint32_t i = low; i < high; ++i)
        if (m_document.sameSentence(i, token) && reader.has(i, meaning) &&
            !m_document.tokens[i].used)
            return true;
    return false;
}

bool Surroundings::isPastVerb(const Reader &reader, std::uint32_t i) {
    if (!reader.has(i, Meaning::PastVerb))
        return false;
    // "24 Sept - Lost Railways of the Marches": a name.
    const bool named = i > 0 && reader.token(i).upper() && reader.symbol(i - 1, '-') &&
                       reader.token(i - 1).spaceBefore;
    return !named &&
           !(i > 0 && (reader.has(i - 1, Meaning::PresentVerb) || reader.has(i - 1, Meaning::The)));
}

bool Surroundings::isAskedBy(const Field &field, std::uint32_t token) const {
    constexpr std::uint32_t kReach = 30;
    const Reader reader(m_document, field.end);
    if (token == field.begin || !reader.has(token - 1, Meaning::DueMarker))
        return false;
    const std::uint32_t low = token > field.begin + kReach ? token - kReach : field.begin;
    for (std::uint32_t i = token; i > low && m_document.sameSentence(i - 1, token); --i)
        if (reader.has(i - 1, Meaning::Chatter))
            return true;
    return false;
}

bool Surroundings::toldInPast(const Field &field, std::uint32_t token) const {
    if (!m_document.meanings.has(Meaning::PastVerb) || isAskedBy(field, token))
        return false;
    constexpr std::uint32_t kReach = 30;
    const Reader reader(m_document, field.end);
    const std::uint32_t low = token > field.begin + kReach ? token - kReach : field.begin;
    bool past = false;
    for (std::uint32_t i = low; i < token; ++i) {
        if (!m_document.sameSentence(i, token))
            continue;
        past = (past || isPastVerb(reader, i)) && !reader.has(i, Meaning::PresentVerb);
    }
    return past;
}

bool Surroundings::hasDateMarker(std::uint32_t token) const {
    return token > 0 && Reader(m_document, static_cast<std::uint32_t>(m_document.tokens.size()))
                            .has(token - 1, Meaning::DateMarker);
}

int Surroundings::distance(std::uint32_t a, std::uint32_t b) {
    return static_cast<int>(a > b ? a - b : b - a);
}

int Surroundings::gap(TokenSpan a, TokenSpan b) {
    return a.end <= b.begin ? static_cast<int>(b.begin - a.end)
                            : static_cast<int>(a.begin) - static_cast<int>(b.end) + 1;
}

bool Surroundings::speaksOfPast(std::uint32_t token) const {
    if (!m_document.meanings.has(Meaning::PastVerb))
        return false;
    const Field &field = fieldOf(token);
    if (isAskedBy(field, token))
        return false;
    const Reader reader(m_document, field.end);
    constexpr std::uint32_t kReach = 40;
    const std::uint32_t low = token > field.begin + kReach ? token - kReach : field.begin;
    for (std::uint32_t i = low; i < std::min(field.end, token + kReach); ++i)
        if (m_document.sameSentence(i, token) && isPastVerb(reader, i) &&
            !m_document.tokens[i].used)
            return true;
    return false;
}

} // namespace pindle::conversion
