#include <algorithm>

#include "PindleConversion/compose/PlaceFinder.h"

namespace pindle::conversion {

bool PlaceFinder::isAsked(std::uint32_t at) const {
    constexpr std::uint32_t kReach = 12;
    const Field &field = m_document.fields[token(at).field];
    if (!field.spoken)
        return false;
    for (std::uint32_t i = at; i < std::min(field.end, at + kReach); ++i)
        if (token(i).symbol == '?')
            return m_document.sameSentence(i, at) && !isAgreed(token(at).field);
    return false;
}

const Sense *PlaceFinder::answerTo(std::uint32_t f) const {
    // The field between two turns names the next speaker.
    const std::uint32_t next = f + 2;
    if (next >= m_document.fields.size() || !m_document.fields[next].spoken)
        return nullptr;
    const Field &answer = m_document.fields[next];
    return Reader(m_document, answer.end).sense(answer.begin, Meaning::Greeting);
}

bool PlaceFinder::isAgreed(std::uint32_t f) const {
    const Sense *answer = answerTo(f);
    return answer && answer->value == 0;
}

bool PlaceFinder::isTaken(TokenSpan span) const {
    const Field &field = m_document.fields[token(span.begin).field];
    const Sense *role = Reader(m_document, field.end).sense(span.end, Meaning::RoleBehind);
    return role && role->value == static_cast<int>(Role::MovedFrom) && role->length > 1;
}

bool PlaceFinder::isDenied(std::uint32_t at) const {
    const std::uint32_t f = token(at).field;
    const Sense *answer = m_document.fields[f].spoken ? answerTo(f) : nullptr;
    return answer && answer->value == 1;
}

bool PlaceFinder::opensTurnWithTime(const Reader &reader, TokenSpan part) const {
    return !m_choice.timeSpan.empty() && part.end > part.begin + 1 &&
           part.begin == m_document.fields[token(part.begin).field].begin &&
           reader.symbol(part.end, ',') &&
           m_document.sameSentence(part.begin, m_choice.timeSpan.begin);
}

bool PlaceFinder::isSaidOfOtherDay(std::uint32_t at) const {
    constexpr std::uint32_t kReach = 8;
    const Field &field = m_document.fields[token(at).field];
    if (!field.spoken || m_document.sameSentence(at, m_choice.anchor()))
        return false;
    const Reader reader(m_document, at);
    for (std::uint32_t i = at; i > field.begin && at - i < kReach; --i) {
        if (!m_document.sameSentence(i - 1, at))
            return false;
        const bool chosen = i - 1 >= m_choice.dateSpan.begin && i - 1 < m_choice.dateSpan.end;
        if (token(i - 1).used && !chosen && reader.mayHave(i - 1, kWeekdayNames))
            return true;
    }
    return false;
}

bool PlaceFinder::isSettledOtherwise(std::uint32_t at) const {
    const std::uint32_t next = token(at).field + 2;
    if (next >= m_document.fields.size() || !m_document.fields[next].spoken)
        return false;
    const Field &answer = m_document.fields[next];
    const Sense *role = Reader(m_document, answer.end).sense(answer.begin, Meaning::RoleWord);
    return role && role->value == static_cast<int>(Role::MovedTo);
}

std::uint32_t PlaceFinder::behindAnswer(const Reader &reader, const Field &field,
                                        TokenSpan part) const {
    if (!field.spoken)
        return part.begin;
    if (const Sense *yes = reader.sense(part.begin, Meaning::Greeting);
        yes && part.begin == field.begin && part.begin + yes->length < part.end)
        return part.begin + yes->length;
    const Sense *role = reader.sense(part.begin, Meaning::RoleWord);
    if (!role || role->value != static_cast<int>(Role::MovedTo))
        return part.begin;
    const std::uint32_t the = part.begin + role->length;
    // "plutôt place des Tilleuls"
    static constexpr Meanings kKinds{Meaning::PlaceNoun, Meaning::StreetWord};
    const bool names =
        the + 1 < part.end && ((reader.has(the, Meaning::The) && token(the + 1).upper()) ||
                               (reader.word(the) && reader.mayHave(the, kKinds)));
    return names ? the : part.begin;
}

std::uint32_t PlaceFinder::beforeTalk(const Reader &reader, const Field &field,
                                      TokenSpan part) const {
    for (std::uint32_t i = part.begin + 1; i < part.end; ++i) {
        const Sense *talk = reader.sense(i, Meaning::Chatter);
        const bool ends = i + 1 == part.end && field.spoken && !token(i).capital &&
                          reader.has(i, Meaning::Greeting);
        // "the Wheatsheaf this time"
        const Sense *stop = field.spoken ? reader.sense(i, Meaning::PlaceStop) : nullptr;
        if ((((talk && talk->length > 1) || (stop && stop->length > 1)) && !token(i).capital) ||
            ends)
            return i;
    }
    return part.end;
}

bool PlaceFinder::wasAskedWhere(std::uint32_t at) const {
    constexpr std::uint32_t kReach = 40;
    const std::uint32_t f = token(at).field;
    // The field between two turns names the next speaker.
    if (f < 2 || !m_document.fields[f - 2].spoken)
        return false;
    const Field &turn = m_document.fields[f - 2];
    const Reader reader(m_document, std::min(turn.end, turn.begin + kReach));
    for (std::uint32_t i = turn.begin; i < reader.end(); ++i) {
        const Sense *label = reader.sense(i, Meaning::LabelWord);
        if ((label && label->value == static_cast<int>(Label::Place)) ||
            reader.has(i, Meaning::PlaceNoun))
            return true;
    }
    return false;
}

bool PlaceFinder::isAnswer(const Reader &reader, TokenSpan part) const {
    std::uint32_t end = reader.skip(part.end, Meaning::Greeting);
    // "the Crown this time"
    if (const Sense *stop = reader.sense(end, Meaning::PlaceStop); stop && stop->length > 1)
        end += stop->length;
    const std::uint32_t before = part.begin;
    // "The Crown?", "the Crown" say more of where than "Sarah Jones?".
    const bool article = reader.has(before, Meaning::The);
    const bool small = article && !token(before).upper() && !token(before).unspaced;
    if (small ? !(token(before + 1).upper() && wasAskedWhere(before))
              : part.end - part.begin <= 2 && !article)
        return false;
    // "no, the Crown"
    const bool starts = before == 0 || !reader.document().sameSentence(before - 1, before) ||
                        (before > 1 && reader.symbol(before - 1, ',') &&
                         reader.senseBefore(before - 1, Meaning::Greeting, 2) &&
                         m_document.fields[token(before).field].begin + 2 >= before - 1);
    return starts && reader.at(end) &&
           (reader.symbol(end, '.') || reader.symbol(end, '!') ||
            (reader.symbol(end, ',') && reader.at(end + 1) && (small || token(end + 1).used)) ||
            (reader.symbol(end, '?') && isAgreed(token(before).field)));
}

bool PlaceFinder::closesNotice(TokenSpan part) const {
    const Field &field = m_document.fields[token(part.begin).field];
    const Reader reader(m_document, part.end);
    if (&field == m_document.fields.data() || part.begin != field.begin || part.end != field.end ||
        field.spoken || field.cell || !token(part.begin).unspaced ||
        reader.language(part.begin).script != Script::Chinese)
        return false;
    // The date may follow, but no other words.
    for (const Field *next = &field + 1; next <= &m_document.fields.back(); ++next)
        if (token(next->begin).kind != TokenKind::Number)
            return false;
    const Field &above = *(&field - 1);
    const Reader notice(m_document, above.end);
    if (!notice.symbol(above.end - 1, kIdeographicStop) && !notice.symbol(above.end - 1, '!'))
        return false;
    // "4号楼302室", "三楼会议室" tell where.
    static constexpr Meanings kRoom{Meaning::Number, Meaning::Ordinal};
    for (std::uint32_t i = part.begin; i < part.end; ++i)
        if (token(i).kind == TokenKind::Number || reader.mayHave(i, kRoom))
            return false;
    static constexpr Meanings kAsks{Meaning::PresentVerb, Meaning::Chatter};
    for (std::uint32_t i = above.begin; i < above.end; ++i)
        if (notice.mayHave(i, kAsks))
            return true;
    return false;
}

} // namespace pindle::conversion
