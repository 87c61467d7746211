#include "PindleConversion/layout/Labels.h"

#include <algorithm>

namespace pindle::conversion {

namespace {

bool isMoment(Label label) {
    return label == Label::When || label == Label::Date || label == Label::Time;
}

bool looksLikeMoment(const Reader &reader, std::uint32_t i) {
    return reader.number(i, 0, 9999, 4) || reader.has(i, Meaning::Weekday) ||
           reader.has(i, Meaning::WeakWeekday) || reader.has(i, Meaning::Month) ||
           reader.has(i, Meaning::ClockWord) || reader.has(i, Meaning::RelativeDay);
}

/// "At: 3 pm" tells when, "At: 12 Mill Lane" where.
bool isHour(const Reader &reader, std::uint32_t i) {
    constexpr std::uint32_t kLastHour = 24;
    if (!reader.number(i, 0, kLastHour))
        return reader.has(i, Meaning::ClockWord);
    return !reader.word(i + 1) || reader.has(i + 1, Meaning::Meridiem) ||
           reader.has(i + 1, Meaning::HourMark) || reader.has(i + 1, Meaning::OClock);
}

/// The word at `i` is that label, perhaps among others.
bool saysLabel(const Reader &reader, std::uint32_t i, Label label) {
    const Token &token = reader.token(i);
    const auto first = reader.document().senses.begin() + token.firstSense;
    return std::any_of(first, first + token.senses, [label](const Sense &sense) {
        return sense.meaning == Meaning::LabelWord && sense.value == static_cast<int>(label);
    });
}

/// "From:", "To:" and "À :" head a mail unless a date or time follows.
Label settle(const Reader &reader, Label label, std::uint32_t content, std::uint32_t word) {
    // "Access: https://..." says where, "Access: step-free" is a note.
    if (label == Label::Note && reader.at(content) && reader.token(content).kind == TokenKind::Link)
        return Label::Link;
    if (label != Label::Mail && label != Label::Start && label != Label::Time &&
        label != Label::Place)
        return label;
    const bool start = saysLabel(reader, word, Label::Start);
    const bool time = saysLabel(reader, word, Label::Time);
    const bool end = saysLabel(reader, word, Label::End);
    if ((start || time || end) && saysLabel(reader, word, Label::Mail)) {
        const Label moment = start ? Label::Start : time ? Label::Time : Label::End;
        return looksLikeMoment(reader, content) ? moment : Label::Mail;
    }
    if (time && !start && saysLabel(reader, word, Label::Place))
        return isHour(reader, content) ? Label::Time : Label::Place;
    return label;
}

/// "Event - Ceilidh" among other lines with a label and a dash, or the mark it has instead.
bool isMarkedList(const Document &document, std::uint32_t dash) {
    const auto &fields = document.fields;
    if (!fields.empty() && !fields.back().labelWords.empty() && fields.back().label != Label::None)
        return true;
    constexpr std::uint32_t kLongestLine = 30;
    const auto size = static_cast<std::uint32_t>(document.tokens.size());
    const Reader reader(document, size);
    for (std::uint32_t i = dash; i < std::min(size, dash + kLongestLine); ++i) {
        if (document.tokens[i].kind != TokenKind::LineBreak)
            continue;
        const Sense *label = reader.sense(i + 1, Meaning::LabelWord);
        return label && reader.symbol(i + 1 + label->length, document.tokens[dash].symbol);
    }
    return false;
}

/// The line before has a label that nothing but a space ends.
bool isPlainList(const Document &document) {
    if (document.fields.empty())
        return false;
    const Field &last = document.fields.back();
    return !last.labelWords.empty() && last.begin == last.labelWords.end &&
           (last.label == Label::When || last.label == Label::Place ||
            last.label == Label::Duration);
}

/// "WHERE ▸ The Old Mill", "When » 3 May", where the mark counts as a quotation mark.
bool isPointer(char32_t symbol) {
    constexpr char32_t kLastArrow = 0x2BFF;
    return symbol == '>' || symbol == '"' || symbol == 0x203A || symbol == 0x2192 ||
           (isShape(symbol) && symbol <= kLastArrow);
}

/// A label that a mark ends: a colon, dots, a dash. `label` is said by the tokens `i` to `end`.
LabelMatch markedLabel(const Reader &reader, std::uint32_t i, std::uint32_t end, Label label,
                       bool lineStart) {
    std::uint32_t j = end;
    // "日 = 4月1日"
    if (reader.symbol(j, ':') || (lineStart && reader.symbol(j, '=') && reader.token(i).unspaced))
        return {settle(reader, label, j + 1, i), j + 1, end};
    // "When.... Saturday"
    if (lineStart && reader.symbol(j, '.') && reader.symbol(j + 1, '.')) {
        while (reader.symbol(j, '.'))
            ++j;
        j = reader.skipSymbol(j, ':');
        return {settle(reader, label, j, i), j, end};
    }
    if (lineStart && reader.token(j).kind == TokenKind::Symbol &&
        (reader.symbol(j, '-') || isPointer(reader.token(j).symbol)) && !reader.glued(j) &&
        !reader.glued(j + 1) &&
        (isMoment(label) || label == Label::Place ||
         (label == Label::Title && isMarkedList(reader.document(), j))))
        return {label, j + 1, end};
    return {};
}

/// "【地点】" needs no colon.
LabelMatch bracketLabel(const Reader &reader, std::uint32_t open) {
    const Sense *sense = reader.sense(open + 1, Meaning::LabelWord);
    const std::uint32_t close = sense ? open + 1 + sense->length : open;
    if (!sense || !reader.symbol(close, ']'))
        return {};
    const auto label = static_cast<Label>(sense->value);
    const std::uint32_t content = reader.skipSymbol(close + 1, ':');
    // "【会议】明天下午三点" names the event.
    if (!reader.at(content) || (label == Label::Title && looksLikeMoment(reader, content)))
        return {};
    return {settle(reader, label, content, open + 1), content, close};
}

/// "aankomst", "vertrek": each may be the start or the end.
bool opensStay(const Reader &reader, std::uint32_t i) {
    return saysLabel(reader, i, Label::Start) && saysLabel(reader, i, Label::End);
}

/// Bytes between token `i` and the one before.
std::uint32_t gapBefore(const Reader &reader, std::uint32_t i) {
    return i == 0 || !reader.at(i) ? 0
                                   : reader.token(i).begin - reader.document().tokens[i - 1].end;
}

/// "FROM  Leeds     TO  York": a wide gap parts the label from what it labels, and columns.
bool isColumnHead(const Reader &reader, std::uint32_t i, std::uint32_t end, bool lineStart) {
    constexpr std::uint32_t kWide = 3;
    constexpr std::uint32_t kReach = 12;
    if (!reader.at(end) || reader.token(i).kind != TokenKind::Word || !reader.word(end - 1))
        return false;
    const bool loud = allCapitals(reader.document().slice(reader.token(i)));
    if (!lineStart)
        return loud && gapBefore(reader, i) >= kWide;
    if (gapBefore(reader, end) >= kWide)
        return reader.token(i).capital;
    // Where further columns stand apart, a narrow gap will do.
    std::uint32_t next = end + 1;
    while (next < end + kReach && reader.at(next) && gapBefore(reader, next) < kWide)
        ++next;
    return loud && reader.at(next) && gapBefore(reader, next) >= kWide;
}

/// A label that nothing but a space ends.
LabelMatch plainLabel(const Reader &reader, std::uint32_t i, std::uint32_t end, Label label,
                      bool lineStart) {
    // Where words are not spaced, a space behind the label is enough.
    if (lineStart && reader.token(i).unspaced && reader.at(end) && reader.token(end).spaceBefore)
        return {label, end, end};
    if (gapBefore(reader, end) > 1 && isColumnHead(reader, i, end, lineStart))
        return {label, end, end};
    const bool picture =
        reader.token(i).kind == TokenKind::Symbol && reader.token(i).symbol > 0x2000;
    if (picture)
        return {label, end, end};
    // "Check-in 14 Aug", "Saída 17 ago" on lines of their own.
    constexpr std::uint32_t kShortestPlain = 4;
    const Token &word = reader.token(i);
    if (lineStart && (label == Label::Start || label == Label::End) &&
        (word.capital || opensStay(reader, i)) && word.end - word.begin >= kShortestPlain &&
        looksLikeMoment(reader, end))
        return {label, end, end};
    // "When Thu 26 March", and then "Where Room 7".
    if (lineStart && word.capital && label == Label::When && !reader.has(i, Meaning::Event) &&
        !reader.symbol(end, ',') && word.end - word.begin >= kShortestPlain &&
        looksLikeMoment(reader, end))
        return {label, end, end};
    const bool goesOn = label == Label::Place || label == Label::Sender || label == Label::Duration;
    if (lineStart && word.capital && goesOn && isPlainList(reader.document()) && reader.at(end) &&
        (reader.word(end) || reader.number(end, 0, 9999, 4)))
        return {label, end, end};
    if (lineStart && end == reader.end() && mayStandAlone(label))
        return {label, end, end};
    return {};
}

/// "From: Nairobi   Dep 15:00": no mail's.
bool showsClock(const Document &document, const Field &field) {
    constexpr std::uint32_t kReach = 12;
    const Reader reader(document, std::min(field.end, field.begin + kReach));
    for (std::uint32_t i = field.begin; i < reader.end(); ++i)
        if (reader.number(i, 0, 23) && reader.symbol(i + 1, ':') && reader.number(i + 2, 0, 59) &&
            reader.glued(i + 1) && reader.glued(i + 2))
            return true;
    return false;
}

/// A "Date:" among the lines that head a mail tells when it was sent.
void settleMailHeads(const Document &document, std::vector<Field> &fields) {
    for (std::size_t i = 0; i < fields.size();) {
        std::size_t end = i;
        bool mail = false;
        bool time = false;
        bool written = false; ///< with a subject or the time of sending, as only mail has
        while (end < fields.size() && fields[end].label != Label::None &&
               (end == i || fields[end].line <= fields[end - 1].line + 1)) {
            mail = mail || fields[end].label == Label::Mail;
            time = time || fields[end].label == Label::Time || fields[end].label == Label::Place ||
                   (fields[end].label == Label::Mail && showsClock(document, fields[end]));
            written =
                written || fields[end].label == Label::Title || fields[end].label == Label::Sent;
            ++end;
        }
        for (std::size_t k = i; k < end && mail; ++k) {
            if (fields[k].label == Label::Date && !time)
                fields[k].ignored = true;
            if (fields[k].label == Label::Mail && !written && showsClock(document, fields[k])) {
                fields[k].label = Label::None;
                fields[k].ignored = false;
            }
        }
        i = std::max(end, i + 1);
    }
}

bool mayBe(const Document &document, const Field &field, Label label) {
    if (field.labelWords.empty())
        return false;
    const Token &token = document.tokens[field.labelWords.begin];
    const auto senses = document.senses.begin() + token.firstSense;
    return std::any_of(senses, senses + token.senses, [&](const Sense &sense) {
        return sense.meaning == Meaning::LabelWord && sense.value == static_cast<int>(label);
    });
}

/// "Depart Thu 26 Mar 06:30": the word that opens a line would label its moment.
bool opensWithStart(const Document &document, const Field &field) {
    const Reader reader(document, field.end);
    return field.label == Label::None && reader.has(field.begin, Meaning::LabelWord) &&
           (saysLabel(reader, field.begin, Label::When) ||
            saysLabel(reader, field.begin, Label::Start)) &&
           looksLikeMoment(reader, field.begin + 1);
}

/// Arrival and departure: who stays arrives first, who travels departs first.
void settleStays(Document &document) {
    bool started = false;
    for (Field &field : document.fields) {
        if (mayBe(document, field, Label::Start) && mayBe(document, field, Label::End))
            field.label = started ? Label::End : Label::Start;
        started = started || field.label == Label::Start || field.label == Label::When ||
                  opensWithStart(document, field);
    }
}

} // namespace

bool mayStandAlone(Label label) {
    return isMoment(label) || label == Label::Place || label == Label::Start ||
           label == Label::End || label == Label::Zone;
}

LabelMatch labelAt(const Reader &reader, std::uint32_t i, bool lineStart) {
    if (reader.symbol(i, '['))
        return bracketLabel(reader, i);
    const Sense *sense = reader.sense(i, Meaning::LabelWord);
    // "Clinic: Brunnen 4" is labelled by its kind of place, "Town Hall: our bridge" is a heading,
    // and of "Library: "Emma" is due" the place speaks.
    const bool named = !lineStart && i > 0 && reader.word(i - 1) && reader.token(i - 1).upper();
    if (!sense && !named && reader.has(i, Meaning::PlaceNoun) && reader.symbol(i + 1, ':') &&
        !looksLikeMoment(reader, i + 2) && reader.at(i + 2) && !reader.symbol(i + 2, '"') &&
        (reader.token(i + 2).capital || reader.token(i + 2).unspaced || !reader.word(i + 2)))
        return {Label::Place, i + 2, i + 1};
    if (!sense)
        return {};
    auto label = static_cast<Label>(sense->value);
    std::uint32_t j = i + sense->length;
    const bool joined = reader.symbol(j, '/') || reader.has(j, Meaning::And);
    if (const Sense *second = joined ? reader.sense(j + 1, Meaning::LabelWord) : nullptr) {
        if (isMoment(label) || isMoment(static_cast<Label>(second->value)))
            label = Label::When;
        j += 1 + second->length;
    }
    // "Ende November" is a date.
    if (reader.has(i, Meaning::MonthEnd) && reader.has(j, Meaning::Month))
        return {};
    // "Show: Saturday, 8pm" names the event and when it is at once.
    if (label == Label::Title && looksLikeMoment(reader, j + 1))
        return {};
    const LabelMatch marked = markedLabel(reader, i, j, label, lineStart);
    return marked.label != Label::None ? marked : plainLabel(reader, i, j, label, lineStart);
}

Label wholeLabel(const Reader &reader, std::uint32_t begin) {
    const Sense *sense = reader.sense(begin, Meaning::LabelWord);
    // "Booking No."
    return sense && reader.skipSymbol(begin + sense->length, '.') == reader.end()
               ? static_cast<Label>(sense->value)
               : Label::None;
}

void settleLabels(Document &document) {
    settleMailHeads(document, document.fields);
    settleStays(document);
}

} // namespace pindle::conversion
